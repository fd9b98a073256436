// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"

#include "CMeasurementParameters.h"
#include "COperationMeasure.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "CompassGeometry.h"
#include "FieldArrows.h"
#include "Property.h"
#include "SampleTime.h"
#include "SmallBlockCutter.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int kZAxisIndex = 2;
constexpr int kDirectMode = 0;
constexpr int kAlternatingMode = 1;
constexpr int kShortestDelayMs = 1;

CAlarmParametersMeter& alarmParameters(COperationMeasure* operation)
{
    return *operation->OperationParameters()->AlarmParametersMeter();
}

} // namespace

CMeterOperationViewModel::CMeterOperationViewModel(COperationMeasure* operation, CSettings* settings,
                                                   CUserNotifier* notifier, QObject* parent)
    : CMeasurementOperationViewModel(QStringLiteral("MeterOperation"), operation, settings, parent),
      m_measurementParametersViewModel(operation, false), m_alarmParametersViewModel(operation),
      m_datasetViewModel(operation, settings),
      m_alarm(notifier, alarmParameters(operation).State(), alarmParameters(operation).Axis(), true)
{
    m_alarmParametersViewModel.SetDisplayAlarmUnits(DisplayUnits());
    m_smallBlockTimer.setSingleShot(true);
    // A coarse timer may be late by a twentieth of its delay.
    m_smallBlockTimer.setTimerType(Qt::PreciseTimer);
    connectSignals();
    resetDisplay();
    recordingManager()->SetIsProcessingBlock(false);
    presentExistingData();
    SetCommentOverAll(dataSet()->Comment());
    fillChart();
}

void CMeterOperationViewModel::connectSignals()
{
    connect(operation(), &COperationMeasure::NewMeasure, this, &CMeterOperationViewModel::OnNewMeasure);
    connect(liveParameters(), &CMeasurementParameters::UnitsChanged, this,
            &CMeterOperationViewModel::OnOperationParameterUnitChanged);
    connect(liveParameters(), &CMeasurementParameters::UncertaintyUnitsChanged, this,
            &CMeterOperationViewModel::OnMeasureParametersUncertaintyUnitChanged);
    connect(liveParameters(), &CMeasurementParameters::UncertaintyUnitsChanged, this,
            &CMeterOperationViewModel::OnAlarmAxisUnitChanged);
    connect(&alarmParameters(operation()), &CAlarmParametersMeter::AxisChanged, this,
            &CMeterOperationViewModel::OnAlarmAxisUnitChanged);
    connect(dataSet(), &CDataset::ClearedChanged, this, &CMeterOperationViewModel::OnDataSetCleared);
    connect(recordingManager(), &CRecordingManager::IsPlayingBackChanged, this,
            &CMeterOperationViewModel::OnPlayingBackChanged);
    connect(recordingManager(), &CRecordingManager::IsHoldingChanged, this,
            &CMeterOperationViewModel::OnIsHoldingChanged);
    connect(this, &CMeterOperationViewModel::SelectedProbeAxisIndexChanged, this,
            &CMeterOperationViewModel::OnSelectedProbeAxisIndexChanged);
    connect(this, &CMeterOperationViewModel::SelectedModeIndexChanged, this,
            &CMeterOperationViewModel::OnSelectedModeIndexChanged);
    connect(this, &COperationViewModel::DatasetLoaded, this, &CMeterOperationViewModel::OnDatasetLoaded);
    connect(&m_smallBlockTimer, &QTimer::timeout, this, &CMeterOperationViewModel::OnSmallBlockTimer);
}

void CMeterOperationViewModel::PageLeft()
{
    disconnectFromOperation();
    disconnect(&alarmParameters(operation()), nullptr, this, nullptr);
    disconnect(this, nullptr, this, nullptr);
    m_smallBlockTimer.stop();
    disconnect(&m_smallBlockTimer, nullptr, this, nullptr);
    m_alarm.Stop();
}

QString CMeterOperationViewModel::GetHelpName() const
{
    switch (SectionIndex()) {
    case 0:
        return QStringLiteral("meter_component");
    case 1:
        return QStringLiteral("meter_plot");
    case 2:
        return QStringLiteral("meter_table");
    default:
        return {};
    }
}

void CMeterOperationViewModel::setDefaultParameters()
{
    applyDefaults(m_measurementParametersViewModel, 10, [](CMeasurementParameters& parameters) {
        parameters.SetDisplayRate(10.0);
        parameters.SetAcquisitionRate(20.0);
    });
}

void CMeterOperationViewModel::resetAllMaximum()
{
    using Self = CMeterOperationViewModel;
    storeAndEmit(this, m_bMax, 0.0, &Self::BMaxChanged);
    storeAndEmit(this, m_bPrimeMax, 0.0, &Self::BPrimeMaxChanged);
    storeAndEmit(this, m_bxMax, 0.0, &Self::BxMaxChanged);
    storeAndEmit(this, m_byMax, 0.0, &Self::ByMaxChanged);
    storeAndEmit(this, m_bzMax, 0.0, &Self::BzMaxChanged);
}

void CMeterOperationViewModel::SetSelectedProbeAxisIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedProbeAxisIndex, index,
                         &CMeterOperationViewModel::SelectedProbeAxisIndexChanged);
}

void CMeterOperationViewModel::SetSelectedModeIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedModeIndex, index,
                         &CMeterOperationViewModel::SelectedModeIndexChanged);
}

void CMeterOperationViewModel::SetRotEnable(bool enable)
{
    storeAndEmitOnChange(this, m_rotEnable, enable, &CMeterOperationViewModel::RotEnableChanged);
}

void CMeterOperationViewModel::setCommentBlock(const QString& comment)
{
    storeAndEmitOnChange(this, m_commentBlock, comment, &CMeterOperationViewModel::CommentBlockChanged);
}

void CMeterOperationViewModel::setRotVisible(bool visible)
{
    storeAndEmitOnChange(this, m_rotVisible, visible, &CMeterOperationViewModel::RotVisibleChanged);
}

CMeterOperationViewModel::BlockPointer CMeterOperationViewModel::lastBlockOfDataSet() const
{
    const auto& blocks = *dataSet()->MeasureBlocks();
    return blocks.empty() ? BlockPointer() : blocks.back();
}

void CMeterOperationViewModel::resetDisplay()
{
    using Self = CMeterOperationViewModel;
    storeAndEmit(this, m_bLastBlock, 0.0, &Self::BLastBlockChanged);
    storeAndEmit(this, m_bPrimeLastBlock, 0.0, &Self::BPrimeLastBlockChanged);
    storeAndEmit(this, m_bxLastBlock, 0.0, &Self::BxLastBlockChanged);
    storeAndEmit(this, m_byLastBlock, 0.0, &Self::ByLastBlockChanged);
    storeAndEmit(this, m_bzLastBlock, 0.0, &Self::BzLastBlockChanged);
    storeAndEmit(this, m_dBLastBlock, 0.0, &Self::dBLastBlockChanged);
    resetAllMaximum();

    storeAndEmitOnChange(this, m_probeAxisNames,
                         {QStringLiteral("Bx"), QStringLiteral("By"), QStringLiteral("Bz")},
                         &Self::ProbeAxisNamesChanged);
    storeAndEmitOnChange(this, m_modeNames, {QStringLiteral("DC"), QStringLiteral("AC")},
                         &Self::ModeNamesChanged);
    m_selectedModeIndex = kDirectMode;
    m_selectedProbeAxisIndex = kZAxisIndex;

    dropSmallBlocks();
    m_firstSampleTime = QDateTime::fromMSecsSinceEpoch(0);
    m_firstSampleNanoseconds = 0;
    m_timeWarp = 1.0;

    if (!recordingManager()->IsDataLoaded())
        pointDataSetAtLiveParameters();
}

void CMeterOperationViewModel::presentExistingData()
{
    const BlockPointer block = blockOnScreen();
    if (!block)
        return;
    updateLastBlockValues(*block);
    setCommentBlock(block->Comment());
    updateCompass(*block);
    updateArrows(*block);
    storeAndEmit(this, m_newMeasureReady, true, &CMeterOperationViewModel::NewMeasureReadyChanged);
}

void CMeterOperationViewModel::fillChart()
{
    CChart2DMeterData& chart = *m_datasetViewModel.Chart2DData();
    const auto& blocks = *dataSet()->MeasureBlocks();
    fillPlot([&](int index, bool wholeDataset) { chart.LoadDatasetUpTo(blocks, index, wholeDataset); },
             [&] { chart.LoadDataset(blocks); });
}

bool CMeterOperationViewModel::isChartBehind()
{
    const auto blockSize = static_cast<qulonglong>(dataSet()->MeasurementParameters()->BlockSize());
    const auto numBlocks = static_cast<qulonglong>(recordingManager()->NumBlocks());
    return blockSize != 0 && m_datasetViewModel.Chart2DData()->MeasureResultCount() / blockSize < numBlocks;
}

void CMeterOperationViewModel::OnNewMeasure(QSharedPointer<CMeasureBlock> block)
{
    const CRecordingManager& manager = *recordingManager();
    if (!manager.IsPlayingBack() && !manager.IsRecording() && manager.IsIdleWithData()) {
        // The user moves through stored blocks.
        m_fullRedraw = m_fullRedraw || isChartBehind();
        processBlock(block, TableRows::Replace, BlockSource::Stored);
        m_fullRedraw = false;
        return;
    }
    if (manager.ReplayIndex() == manager.StartReplayIndex())
        dropSmallBlocks();
    if (!manager.IsPlayingBack() || manager.ReplayStepByStep()) {
        processBlock(block, TableRows::Replace, BlockSource::Incoming);
        return;
    }
    appendSmallBlocks(*block);
}

void CMeterOperationViewModel::processBlock(const BlockPointer& block, TableRows tableRows,
                                            BlockSource source)
{
    using Self = CMeterOperationViewModel;
    storeAndEmit(this, m_newMeasureReady, false, &Self::NewMeasureReadyChanged);
    convertUncertainty(*block);
    updateCompass(*block);
    updateLastBlockValues(*block);
    CMeasureBlockData& table = *m_datasetViewModel.TableData();
    if (tableRows == TableRows::Replace)
        table.Clear();
    table.AddBlock(block);
    updateChart(block, source);
    checkAlarm(*block);
    setCommentBlock(block->Comment());
    updateArrows(*block);
    storeAndEmit(this, m_newMeasureReady, true, &Self::NewMeasureReadyChanged);
}

void CMeterOperationViewModel::updateChart(const BlockPointer& block, BlockSource source)
{
    CChart2DMeterData& chart = *m_datasetViewModel.Chart2DData();
    const auto& blocks = *dataSet()->MeasureBlocks();
    const int index = recordingManager()->ReplayIndex();
    if (m_fullRedraw) {
        if (chart.MeasureResultCount() > 0)
            chart.ClearData();
        if (source == BlockSource::Stored)
            chart.LoadDatasetUpTo(blocks, index, true);
        else
            chart.LoadDataset(blocks);
    } else if (source == BlockSource::Stored) {
        chart.MoveToBlock(blocks, index, true);
    } else {
        chart.AddMeasureBlock(block);
    }
}

void CMeterOperationViewModel::raiseMaximum(double& maximum, double value,
                                            void (CMeterOperationViewModel::*changed)(double))
{
    if (std::abs(value) > std::abs(maximum))
        storeAndEmit(this, maximum, value, changed);
}

void CMeterOperationViewModel::updateLastBlockValues(const CMeasureBlock& block)
{
    if (block.Results.isEmpty())
        return;
    using Self = CMeterOperationViewModel;
    const CFieldIntensityResult& sample = *block.Results.last();
    storeAndEmit<Self, double>(this, m_bLastBlock, sample.B(), &Self::BLastBlockChanged);
    storeAndEmit<Self, double>(this, m_bPrimeLastBlock, sample.BBprime(), &Self::BPrimeLastBlockChanged);
    storeAndEmit<Self, double>(this, m_bxLastBlock, sample.Bx(), &Self::BxLastBlockChanged);
    storeAndEmit<Self, double>(this, m_byLastBlock, sample.By(), &Self::ByLastBlockChanged);
    storeAndEmit<Self, double>(this, m_bzLastBlock, sample.Bz(), &Self::BzLastBlockChanged);
    storeAndEmit<Self, double>(this, m_dBLastBlock, sample.dBConverted(), &Self::dBLastBlockChanged);

    raiseMaximum(m_bMax, m_bLastBlock, &Self::BMaxChanged);
    raiseMaximum(m_bPrimeMax, m_bPrimeLastBlock, &Self::BPrimeMaxChanged);
    raiseMaximum(m_bxMax, m_bxLastBlock, &Self::BxMaxChanged);
    raiseMaximum(m_byMax, m_byLastBlock, &Self::ByMaxChanged);
    raiseMaximum(m_bzMax, m_bzLastBlock, &Self::BzMaxChanged);
}

void CMeterOperationViewModel::updateCompass(const CMeasureBlock& block)
{
    if (block.Results.isEmpty())
        return;
    using Self = CMeterOperationViewModel;
    double x = 0;
    double y = 0;
    double z = 0;
    double n = 0;
    if (m_selectedModeIndex == kAlternatingMode) {
        x = block.Bprime.X();
        y = block.Bprime.Y();
        z = block.Bprime.Z();
        n = std::sqrt(x * x + y * y + z * z);
    } else {
        const CFieldIntensityResult& sample = *block.Results.last();
        x = sample.Bx();
        y = sample.By();
        z = sample.Bz();
        n = sample.B();
    }
    if (n == 0) {
        clearCompass();
        return;
    }
    const std::optional<CompassTriangle> triangle =
        computeCompassTriangle(m_selectedProbeAxisIndex, x, y, z, n);
    if (!triangle)
        return;

    storeAndEmit(this, m_compasWidth, triangle->width, &Self::CompasWidthChanged);
    storeAndEmit(this, m_compasHeight, triangle->height, &Self::CompasHeightChanged);
    storeAndEmit(this, m_updateLeftCompas, false, &Self::UpdateLeftCompasChanged);
    storeAndEmit(this, m_updateRightCompas, false, &Self::UpdateRightCompasChanged);
    if (m_compasWidth < 0) {
        // The page draws at the update signal and reads the width then, as a length.
        m_compasWidth = -m_compasWidth;
        storeAndEmit(this, m_updateLeftCompas, true, &Self::UpdateLeftCompasChanged);
    } else {
        storeAndEmit(this, m_updateRightCompas, true, &Self::UpdateRightCompasChanged);
    }
}

void CMeterOperationViewModel::clearCompass()
{
    storeAndEmit(this, m_clearCompas, true, &CMeterOperationViewModel::ClearCompasChanged);
    storeAndEmit(this, m_clearCompas, false, &CMeterOperationViewModel::ClearCompasChanged);
}

void CMeterOperationViewModel::redoCompass()
{
    if (const BlockPointer block = lastBlockOfDataSet())
        updateCompass(*block);
}

void CMeterOperationViewModel::checkAlarm(const CMeasureBlock& block)
{
    const CAlarmParametersMeter& parameters = alarmParameters(operation());
    m_alarm.Check(block,
                  {parameters.State(), parameters.Axis(), parameters.Minimum(), parameters.Maximum(),
                   m_alarmParametersViewModel.DisplayAlarmUnits()},
                  {DisplayUnits(), DisplayUncertaintyUnits()},
                  [this](bool isViolated) { m_alarmParametersViewModel.SetFlagNotification(isViolated); });
}

void CMeterOperationViewModel::updateArrows(const CMeasureBlock& block)
{
    updateFieldArrow();
    updateRotationArrow(block);
}

void CMeterOperationViewModel::updateFieldArrow()
{
    using Self = CMeterOperationViewModel;
    QQuaternion rotation;
    if (m_selectedModeIndex == kAlternatingMode) {
        if (const BlockPointer block = lastBlockOfDataSet())
            rotation = fieldArrowRotation(block->Bprime.X(), block->Bprime.Y(), block->Bprime.Z());
    } else {
        rotation = fieldArrowRotation(m_bxLastBlock, m_byLastBlock, m_bzLastBlock);
    }
    storeAndEmit<Self, double>(this, m_arrow.x, rotation.x(), &Self::QuatXChanged);
    storeAndEmit<Self, double>(this, m_arrow.y, rotation.y(), &Self::QuatYChanged);
    storeAndEmit<Self, double>(this, m_arrow.z, rotation.z(), &Self::QuatZChanged);
    storeAndEmit<Self, double>(this, m_arrow.scalar, rotation.scalar(), &Self::QuatScalarChanged);
}

void CMeterOperationViewModel::updateRotationArrow(const CMeasureBlock& block)
{
    using Self = CMeterOperationViewModel;
    if (!m_rotEnable) {
        setRotVisible(false);
        return;
    }
    const std::optional<QVector3D> viewAxis = viewAxisOfCameraPreset(settings()->Meter3DCameraPreset());
    RotationSense sense = RotationSense::None;
    if (viewAxis)
        sense = detectRotation(block.Results, *viewAxis);
    if (sense == RotationSense::None) {
        setRotVisible(false);
        return;
    }
    setRotVisible(true);
    const QQuaternion rotation = rotationArrowOrientation(*viewAxis, sense);
    storeAndEmit<Self, double>(this, m_rotationArrow.x, rotation.x(), &Self::RotQuatXChanged);
    storeAndEmit<Self, double>(this, m_rotationArrow.y, rotation.y(), &Self::RotQuatYChanged);
    storeAndEmit<Self, double>(this, m_rotationArrow.z, rotation.z(), &Self::RotQuatZChanged);
    storeAndEmit<Self, double>(this, m_rotationArrow.scalar, rotation.scalar(), &Self::RotQuatScalarChanged);
}

void CMeterOperationViewModel::appendSmallBlocks(const CMeasureBlock& block)
{
    m_timeWarp = recordingManager()->TimeWarp();
    const double exactSpanMs = m_timeWarp * recordingManager()->MinReplaySmallBlockDelayMillisecond();
    const auto spanMs = static_cast<qint64>(std::trunc(exactSpanMs + 0.5));
    const auto pieces = cutIntoSmallBlocks(block, spanMs);
    for (const BlockPointer& piece : pieces)
        m_smallBlocks.append(piece);
    if (!block.Results.isEmpty()) {
        m_firstSampleTime = block.Results.first()->Timestamp;
        m_firstSampleNanoseconds = block.Results.first()->TimestampNanoseconds;
    }
    if (!m_smallBlockTimer.isActive())
        m_smallBlockTimer.start(kShortestDelayMs);
}

void CMeterOperationViewModel::dropSmallBlocks()
{
    m_smallBlockTimer.stop();
    m_smallBlocks.clear();
    m_smallBlockIndex = 0;
}

int CMeterOperationViewModel::delayToNextSmallBlock() const
{
    const qint64 timeMs = millisecondsSinceEpoch(*m_smallBlocks.at(m_smallBlockIndex)->Results.first());
    const qint64 nextTimeMs =
        millisecondsSinceEpoch(*m_smallBlocks.at(m_smallBlockIndex + 1)->Results.first());
    const double delayMs = static_cast<double>(nextTimeMs - timeMs) / m_timeWarp + 0.5;
    constexpr double kLongestDelayMs = std::numeric_limits<int>::max();
    // Ordered so that a delay that is not a number gives the shortest one.
    return delayMs > kShortestDelayMs ? static_cast<int>(std::min(delayMs, kLongestDelayMs))
                                      : kShortestDelayMs;
}

void CMeterOperationViewModel::OnSmallBlockTimer()
{
    if (!recordingManager()->IsPlayingBack() || recordingManager()->IsHolding()) {
        m_smallBlockTimer.stop();
        return;
    }
    if (m_smallBlockIndex + 1 < m_smallBlocks.size())
        m_smallBlockTimer.start(delayToNextSmallBlock());
    if (m_smallBlockIndex < m_smallBlocks.size()) {
        const BlockPointer piece = m_smallBlocks.at(m_smallBlockIndex);
        ++m_smallBlockIndex;
        const CFieldIntensityResult& first = *piece->Results.first();
        const bool beginsBlock =
            first.Timestamp == m_firstSampleTime && first.TimestampNanoseconds == m_firstSampleNanoseconds;
        processBlock(piece, beginsBlock ? TableRows::Replace : TableRows::Append, BlockSource::Incoming);
    }
    if (m_smallBlockIndex >= m_smallBlocks.size()) {
        // Let go of the pieces first: the recording manager may deliver the next block at once.
        dropSmallBlocks();
        recordingManager()->SetIsProcessingBlock(false);
    }
}

void CMeterOperationViewModel::OnIsHoldingChanged(bool isHolding)
{
    if (isHolding || !recordingManager()->IsPlayingBack() || m_smallBlocks.isEmpty())
        return;
    if (!m_smallBlockTimer.isActive())
        m_smallBlockTimer.start(kShortestDelayMs);
}

void CMeterOperationViewModel::OnOperationParameterUnitChanged()
{
    dataSet()->Clear();
    resetDisplay();
    OnAlarmAxisUnitChanged();
}

void CMeterOperationViewModel::OnAlarmAxisUnitChanged()
{
    const bool isOfUncertainty = alarmParameters(operation()).Axis() == CAxis::dB;
    m_alarmParametersViewModel.SetDisplayAlarmUnits(isOfUncertainty ? DisplayUncertaintyUnits()
                                                                    : DisplayUnits());
}

void CMeterOperationViewModel::OnMeasureParametersUncertaintyUnitChanged()
{
    const BlockPointer block = lastBlockOfDataSet();
    if (!block)
        return;
    convertUncertainty(*block);
    updateLastBlockValues(*block);
    m_datasetViewModel.TableData()->ReloadRows();
}

void CMeterOperationViewModel::OnDataSetCleared()
{
    m_datasetViewModel.Chart2DData()->ClearData();
    m_datasetViewModel.TableData()->Clear();
    resetDisplay();
    setCommentBlock(QString());
    SetCommentOverAll(QString());
    clearCompass();
    pointDataSetAtLiveParameters();
}

void CMeterOperationViewModel::OnPlayingBackChanged(bool isPlayingBack)
{
    if (!isPlayingBack)
        return;
    m_datasetViewModel.Chart2DData()->ClearData();
    m_datasetViewModel.TableData()->Clear();
    setCommentBlock(QString());
    SetCommentOverAll(dataSet()->Comment());
}

void CMeterOperationViewModel::OnSelectedProbeAxisIndexChanged()
{
    redoCompass();
}

void CMeterOperationViewModel::OnSelectedModeIndexChanged()
{
    redoCompass();
}

void CMeterOperationViewModel::OnDatasetLoaded()
{
    presentDataset([this](const BlockPointer& block) {
        m_fullRedraw = true;
        OnNewMeasure(block);
        m_fullRedraw = false;
    });
}
