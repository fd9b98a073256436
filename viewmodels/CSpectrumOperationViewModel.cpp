// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSpectrumOperationViewModel.h"

#include "CMeasurementParameters.h"
#include "COperationMeasure.h"
#include "CRecordingManagerMeasure.h"
#include "Property.h"

namespace {

constexpr int kDefaultFieldIndex = 1;
constexpr double kDefaultThresholdDb = 10.0;
constexpr std::size_t kFewestBins = 2;
constexpr int kFewestResults = 2;

} // namespace

CSpectrumOperationViewModel::CSpectrumOperationViewModel(COperationMeasure* operation, CSettings* settings,
                                                         CUserNotifier* notifier, QObject* parent)
    : CMeasurementOperationViewModel(QStringLiteral("SpectrumOperation"), operation, settings, parent),
      m_measurementParametersViewModel(operation, false), m_alarmParametersViewModel(operation),
      m_datasetViewModel(operation),
      m_alarm(notifier), m_fieldNames{QStringLiteral("B"), QStringLiteral("B.B'"), QStringLiteral("Bx"),
                                      QStringLiteral("By"), QStringLiteral("Bz")},
      m_selectedFieldIndex(kDefaultFieldIndex), m_threshold(kDefaultThresholdDb)
{
    connectSignals();
    SetCommentOverAll(dataSet()->Comment());
    recordingManager()->SetIsProcessingBlock(false);
}

void CSpectrumOperationViewModel::connectSignals()
{
    using Self = CSpectrumOperationViewModel;
    connect(operation(), &COperationMeasure::NewMeasure, this, &Self::OnNewMeasure);
    connect(liveParameters(), &CMeasurementParameters::UnitsChanged, this,
            &Self::OnOperationParameterUnitChanged);
    connect(dataSet(), &CDataset::ClearedChanged, this, &Self::OnDataSetCleared);
    connect(recordingManager(), &CRecordingManager::IsPlayingBackChanged, this, &Self::OnPlayingBackChanged);
    connect(operation(), &COperationMeasure::LimitsFileLoadedChanged, this, &Self::OnLimitsFileLoaded);
    connect(operation()->LimitsFile(), &LimitsXmlFile::ConvertedChanged, this, &Self::OnLimitsFileConverted);
    connect(this, &Self::SelectedFieldIndexChanged, this, &Self::OnSelectedFieldIndexChanged);
    connect(this, &Self::ThresholdChanged, this, &Self::OnThresholdChanged);
    connect(this, &COperationViewModel::DatasetLoaded, this, &Self::OnDatasetLoaded);
}

void CSpectrumOperationViewModel::PageLeft()
{
    disconnectFromOperation();
    disconnect(this, nullptr, this, nullptr);
    m_alarm.Stop();
}

QString CSpectrumOperationViewModel::GetHelpName() const
{
    switch (SectionIndex()) {
    case 0:
        return QStringLiteral("spectrum_plot");
    case 1:
        return QStringLiteral("spectrum_table");
    default:
        return {};
    }
}

void CSpectrumOperationViewModel::setDefaultParameters()
{
    if (!operation()->ActiveInstrument())
        return;
    applyDefaults(m_measurementParametersViewModel, 1, [](CMeasurementParameters& parameters) {
        parameters.SetDisplayRate(1.0);
        parameters.SetFrequencyMin(0.0);
        parameters.SetFrequencyMax(1000.0);
    });
    SetSelectedFieldIndex(kDefaultFieldIndex);
    SetThreshold(kDefaultThresholdDb);
}

void CSpectrumOperationViewModel::SetSelectedFieldIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedFieldIndex, index,
                         &CSpectrumOperationViewModel::SelectedFieldIndexChanged);
}

void CSpectrumOperationViewModel::SetThreshold(double threshold)
{
    storeAndEmitOnChange(this, m_threshold, threshold, &CSpectrumOperationViewModel::ThresholdChanged);
}

const CMeasurementParameters& CSpectrumOperationViewModel::parametersOfDataSet() const
{
    return *dataSet()->MeasurementParameters();
}

/// Whether there was something to analyse.
bool CSpectrumOperationViewModel::analyse(const BlockPointer& block)
{
    const bool hasField = m_selectedFieldIndex >= 0 && m_selectedFieldIndex < m_fieldNames.size();
    if (!hasField || block->Results.size() < kFewestResults)
        return false;
    m_datasetViewModel.FFTChart2DData()->UpdateSpectrum(block, m_selectedFieldIndex);
    updatePeaks();
    return true;
}

void CSpectrumOperationViewModel::updatePeaks()
{
    const std::vector<float> spectrum = m_datasetViewModel.FFTChart2DData()->GetSpectrum();
    if (spectrum.size() < kFewestBins)
        return;
    const CMeasurementParameters& parameters = parametersOfDataSet();
    m_datasetViewModel.TableData()->UpdatePeaks(spectrum, parameters.FrequencyResolution(), m_threshold,
                                                parameters.FrequencyMin());
}

void CSpectrumOperationViewModel::checkAlarm()
{
    const CAlarm::AlarmState state = operation()->OperationParameters()->AlarmParametersSpectrum()->State();
    if (state == CAlarm::Off)
        return;
    const CMeasurementParameters& parameters = parametersOfDataSet();
    m_alarm.Check(m_datasetViewModel.FFTChart2DData()->GetSpectrum(),
                  {parameters.FrequencyResolution(), parameters.FrequencyMin()},
                  operation()->LimitsFile()->Ranges(), state,
                  [this](bool isViolated) { m_alarmParametersViewModel.SetFlagNotification(isViolated); });
}

void CSpectrumOperationViewModel::loadData()
{
    if (const BlockPointer block = blockOnScreen())
        analyse(block);
}

void CSpectrumOperationViewModel::unloadData()
{
    m_datasetViewModel.FFTChart2DData()->Clear();
    m_datasetViewModel.TableData()->Clear();
}

void CSpectrumOperationViewModel::OnNewMeasure(QSharedPointer<CMeasureBlock> block)
{
    if (analyse(block))
        checkAlarm();
    recordingManager()->SetIsProcessingBlock(false);
}

void CSpectrumOperationViewModel::OnOperationParameterUnitChanged()
{
    dataSet()->Clear();
}

void CSpectrumOperationViewModel::OnDataSetCleared()
{
    unloadData();
    SetCommentOverAll(QString());
}

void CSpectrumOperationViewModel::OnPlayingBackChanged(bool isPlayingBack)
{
    if (!isPlayingBack)
        return;
    unloadData();
    SetCommentOverAll(dataSet()->Comment());
}

void CSpectrumOperationViewModel::OnLimitsFileLoaded()
{
    m_datasetViewModel.FFTChart2DData()->ResetAxisX();
    m_datasetViewModel.TableData()->ReloadLimits();
}

void CSpectrumOperationViewModel::OnLimitsFileConverted(bool isConverted)
{
    if (!isConverted)
        return;
    m_datasetViewModel.FFTChart2DData()->ResetAxisX();
    m_datasetViewModel.TableData()->ReloadLimits();
}

void CSpectrumOperationViewModel::OnSelectedFieldIndexChanged()
{
    loadData();
}

void CSpectrumOperationViewModel::OnThresholdChanged()
{
    if (!dataSet()->MeasureBlocks()->empty())
        updatePeaks();
}

void CSpectrumOperationViewModel::OnDatasetLoaded()
{
    presentDataset([this](const BlockPointer& block) { OnNewMeasure(block); });
}
