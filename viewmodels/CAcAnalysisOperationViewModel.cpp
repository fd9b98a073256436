// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAcAnalysisOperationViewModel.h"

#include "CMeasurementParameters.h"
#include "COperationMeasure.h"
#include "CRecordingManagerMeasure.h"
#include "Property.h"

#include <algorithm>

namespace {

using BlockPointer = QSharedPointer<CMeasureBlock>;
using Blocks = std::deque<BlockPointer>;

bool isAnalysable(const BlockPointer& block)
{
    constexpr int kFewestResults = 2;
    return block->Results.size() >= kFewestResults;
}

/// Those of the blocks that have figures.
Blocks analysableOf(const Blocks& blocks)
{
    Blocks analysable;
    std::copy_if(blocks.begin(), blocks.end(), std::back_inserter(analysable), isAnalysable);
    return analysable;
}

} // namespace

CAcAnalysisOperationViewModel::CAcAnalysisOperationViewModel(COperationMeasure* operation,
                                                             CSettings* settings, CUserNotifier* notifier,
                                                             QObject* parent)
    : CMeasurementOperationViewModel(QStringLiteral("AcAnalysisOperation"), operation, settings, parent),
      m_measurementParametersViewModel(operation, false), m_alarmParametersViewModel(operation),
      m_datasetViewModel(operation, notifier), m_figureOfMeritNames{tr("RMS Amplitude"),
                                                                    tr("Peak-to-Peak Amplitude"),
                                                                    tr("Standard Deviation")}
{
    connectSignals();
    recordingManager()->SetIsProcessingBlock(false);
    fillPlot([this](int index, bool wholeDataset) { loadUpTo(index, wholeDataset); }, [this] { loadAll(); });
}

void CAcAnalysisOperationViewModel::connectSignals()
{
    using Self = CAcAnalysisOperationViewModel;
    connect(operation(), &COperationMeasure::NewMeasure, this, &Self::OnNewMeasure);
    connect(liveParameters(), &CMeasurementParameters::UnitsChanged, this,
            &Self::OnOperationParameterUnitChanged);
    connect(dataSet(), &CDataset::ClearedChanged, this, &Self::OnDataSetCleared);
    connect(recordingManager(), &CRecordingManager::IsPlayingBackChanged, this, &Self::OnPlayingBackChanged);
    connect(this, &Self::SelectedFigureOfMeritIndexChanged, this, &Self::OnSelectedFigureOfMeritIndexChanged);
    connect(operation(), &COperationMeasure::LimitsFileLoadedChanged, this, &Self::OnLimitFileLoaded);
    connect(this, &COperationViewModel::DatasetLoaded, this, &Self::OnDatasetLoaded);
}

void CAcAnalysisOperationViewModel::PageLeft()
{
    disconnectFromOperation();
    disconnect(this, nullptr, this, nullptr);
}

QString CAcAnalysisOperationViewModel::GetHelpName() const
{
    switch (SectionIndex()) {
    case 0:
        return QStringLiteral("ac_analysis_plot");
    case 1:
        return QStringLiteral("ac_analysis_table");
    default:
        return {};
    }
}

void CAcAnalysisOperationViewModel::setDefaultParameters()
{
    applyDefaults(m_measurementParametersViewModel, 1, [](CMeasurementParameters& parameters) {
        parameters.SetAcquisitionRate(200.0);
        parameters.SetDisplayRate(2.0);
    });
}

void CAcAnalysisOperationViewModel::SetSelectedFigureOfMeritIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedFigureOfMeritIndex, index,
                         &CAcAnalysisOperationViewModel::SelectedFigureOfMeritIndexChanged);
}

void CAcAnalysisOperationViewModel::loadAll()
{
    const Blocks& blocks = *dataSet()->MeasureBlocks();
    CChart2DAcAnalysisData& chart = *m_datasetViewModel.Chart2DData();
    if (std::all_of(blocks.begin(), blocks.end(), isAnalysable))
        chart.LoadDataset(blocks, m_selectedFigureOfMeritIndex);
    else
        chart.LoadDataset(analysableOf(blocks), m_selectedFigureOfMeritIndex);
}

/// Blocks without figures have no point, which moves the index.
void CAcAnalysisOperationViewModel::loadUpTo(int index, bool wholeDataset)
{
    const Blocks& blocks = *dataSet()->MeasureBlocks();
    CChart2DAcAnalysisData& chart = *m_datasetViewModel.Chart2DData();
    if (std::all_of(blocks.begin(), blocks.end(), isAnalysable)) {
        chart.LoadDatasetUpTo(blocks, m_selectedFigureOfMeritIndex, index, wholeDataset);
        return;
    }
    const auto count = static_cast<std::ptrdiff_t>(blocks.size());
    const auto end = blocks.begin() + std::clamp<std::ptrdiff_t>(index + std::ptrdiff_t{1}, 0, count);
    const auto point = static_cast<int>(std::count_if(blocks.begin(), end, isAnalysable)) - 1;
    chart.LoadDatasetUpTo(analysableOf(blocks), m_selectedFigureOfMeritIndex,
                          wholeDataset ? std::max(0, point) : point, wholeDataset);
}

/// The bands of the limits can be such that no figure can be told.
void CAcAnalysisOperationViewModel::updateTable()
{
    CFrequencyTableData& table = *m_datasetViewModel.TableData();
    if (table.CanUpdate())
        table.UpdateTable(m_selectedFigureOfMeritIndex);
    else
        table.Clear();
}

void CAcAnalysisOperationViewModel::clearAll()
{
    m_datasetViewModel.Chart2DData()->ClearData();
    m_datasetViewModel.TableData()->Clear();
}

void CAcAnalysisOperationViewModel::OnNewMeasure(QSharedPointer<CMeasureBlock> block)
{
    const CRecordingManager& manager = *recordingManager();
    CChart2DAcAnalysisData& chart = *m_datasetViewModel.Chart2DData();
    if (!manager.IsPlayingBack() && !manager.IsRecording() && manager.IsIdleWithData()) {
        // The user moves through stored blocks.
        if (chart.MeasureResultCount() > 0)
            chart.ClearData();
        loadUpTo(manager.ReplayIndex(), true);
    } else if (m_fullRedraw) {
        loadAll();
    } else if (isAnalysable(block)) {
        chart.AddMeasureBlock(block, m_selectedFigureOfMeritIndex);
    }
    if (isAnalysable(block))
        updateTable();
    recordingManager()->SetIsProcessingBlock(false);
}

void CAcAnalysisOperationViewModel::OnOperationParameterUnitChanged()
{
    dataSet()->Clear();
}

void CAcAnalysisOperationViewModel::OnDataSetCleared()
{
    clearAll();
    SetCommentOverAll(QString());
}

void CAcAnalysisOperationViewModel::OnPlayingBackChanged(bool isPlayingBack)
{
    if (!isPlayingBack)
        return;
    clearAll();
    SetCommentOverAll(dataSet()->Comment());
}

void CAcAnalysisOperationViewModel::OnSelectedFigureOfMeritIndexChanged()
{
    m_datasetViewModel.Chart2DData()->ClearData();
    SetCommentOverAll(dataSet()->Comment());
    if (showsStoredBlocks())
        loadUpTo(recordingManager()->ReplayIndex(), true);
    else
        loadAll();
    updateTable();
}

void CAcAnalysisOperationViewModel::OnLimitFileLoaded(bool isFileLoaded)
{
    if (isFileLoaded)
        updateTable();
    else
        m_datasetViewModel.TableData()->Clear();
}

void CAcAnalysisOperationViewModel::OnDatasetLoaded()
{
    presentDataset([this](const BlockPointer& block) {
        m_fullRedraw = true;
        OnNewMeasure(block);
        m_fullRedraw = false;
    });
}
