// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationMeasure.h"

#include "CPluginsManager.h"
#include "CSettings.h"
#include "Property.h"

namespace {

QString settingsFileName()
{
    return QStringLiteral("KestrixMeasureSettings.xml");
}

} // namespace

COperationMeasure::COperationMeasure(CSettings* settings, CPluginsManager* pluginsManager,
                                     CInstrumentSupervisor* supervisor, QObject* parent)
    : COperation(supervisor, parent), m_settings(settings), m_pluginsManager(pluginsManager),
      m_recordingManager(*settings), m_limitsFile(*this)
{
    SetName(QStringLiteral("MeterSpectrumAc"));
    CMeasurementParameters* measurement = OperationParameters()->MeasurementParameters();
    m_recordingManager.DataSet()->SetMeasurementParameters(measurement);

    connect(&m_recordingManager, &CRecordingManagerMeasure::ReplayMeasureBlock, this,
            &COperationMeasure::OnReplayMeasure);
    connect(OperationParameters()->LimitsParameters(), &CLimitsParameters::LimitsFilePathChanged, this,
            &COperationMeasure::OnLimitsFilePathChanged);
    connect(measurement, &CMeasurementParameters::DisplayUnitsChanged, &m_limitsFile,
            &LimitsXmlFile::OnOperationParameterUnitChanged);
}

quint64 COperationMeasure::GetMaxMeasurementCount() const
{
    return m_settings->MeasurementMaxMeasurementCount();
}

void COperationMeasure::Activate()
{
    if (!LoadSettingsFile(settingsFileName()))
        setDefaultParameters();
    if (const QSharedPointer<CInstrument> instrument = ActiveInstrument())
        connect(instrument.data(), &CInstrument::OnNewMeasureBlock, this, &COperationMeasure::OnNewMeasure,
                Qt::UniqueConnection);
}

void COperationMeasure::Deactivate()
{
    SaveSettingsFile(settingsFileName());
    if (const QSharedPointer<CInstrument> instrument = ActiveInstrument())
        disconnect(instrument.data(), &CInstrument::OnNewMeasureBlock, this,
                   &COperationMeasure::OnNewMeasure);
}

void COperationMeasure::setDefaultParameters()
{
    // The mode comes last: the cascade of each assignment depends on it.
    CMeasurementParameters& parameters = *OperationParameters()->MeasurementParameters();
    parameters.SetApplyConfiguration(false);
    parameters.SetAcquisitionRate(20.0);
    parameters.SetDisplayRate(10.0);
    parameters.SetAveraging(10);
    parameters.SetEnableAdcUnit(false);
    parameters.SetTriggerMode(CTrigger::CONTINUOUS);
    TakeUnitOfInstrument();
    parameters.SetApplyConfiguration(true);
}

void COperationMeasure::Reset()
{
    ResetRecording(m_recordingManager);
    m_recordingManager.DataSet()->Clear();
}

bool COperationMeasure::GetUnsavedData() const
{
    return m_recordingManager.HasUnsavedData();
}

bool COperationMeasure::GetDataSetEmpty() const
{
    return m_recordingManager.IsDataSetEmpty();
}

const QList<CTriggerPlugin*>& COperationMeasure::GetTriggerPlugins() const
{
    return m_pluginsManager->TriggerPlugins();
}

void COperationMeasure::SaveExtraParameters(QXmlStreamWriter& /*writer*/) const {}

void COperationMeasure::LoadExtraParameters(const QDomElement& /*element*/) {}

void COperationMeasure::clearLimitsFile()
{
    ForgetLimitsFile();
    m_limitsFile.Clear();
    SetLimitsFileLoaded(false);
}

int COperationMeasure::getLimitsCount() const
{
    return m_limitsFile.Ranges().size();
}

double COperationMeasure::getFrequency(int index) const
{
    const QSharedPointer<FrequencyRange> range = m_limitsFile.Ranges().value(index);
    return range ? range->UpperFrequencyLimitValue() : 0.0;
}

double COperationMeasure::getMaxFrequency() const
{
    const QSharedPointer<CInstrument> instrument = ActiveInstrument();
    return instrument ? instrument->FrequencyMaxBound()->Max() : -1.0;
}

double COperationMeasure::getExposure(int index) const
{
    const QSharedPointer<FrequencyRange> range = m_limitsFile.Ranges().value(index);
    return range ? range->ExposureLimitValue() : 0.0;
}

void COperationMeasure::OnNewMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock)
{
    // Instruments are plug-ins: nothing keeps one from sending no block.
    if (!pMeasureBlock)
        return;
    m_recordingManager.AddMeasureBlock(pMeasureBlock);
    emit NewMeasure(pMeasureBlock);
}

void COperationMeasure::OnReplayMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock)
{
    emit NewMeasure(pMeasureBlock);
}

void COperationMeasure::OnLimitsFilePathChanged()
{
    const QString path = LimitsFilePath();
    if (path.isEmpty())
        return;
    m_limitsFile.Clear();
    SetLimitsFileLoaded(false);
    m_limitsFile.ReadFile(path);
    CLimitsParameters& limits = *OperationParameters()->LimitsParameters();
    if (m_limitsFile.FileError()) {
        limits.SetLimitsFileName(QString());
        return;
    }
    limits.SetLimitsFileName(path);
    SetLimitsFileLoaded(true);
    m_limitsFile.Convert(false);
}

CUnits::UnitType COperationMeasure::LimitsDisplayUnits() const
{
    return OperationParameters()->MeasurementParameters()->DisplayUnits();
}

QString COperationMeasure::LimitsFilePath() const
{
    return OperationParameters()->LimitsParameters()->LimitsFilePath();
}

void COperationMeasure::ForgetLimitsFile()
{
    CLimitsParameters& limits = *OperationParameters()->LimitsParameters();
    limits.AssignLimitsFilePath(QString());
    limits.SetLimitsFileName(QString());
}

void COperationMeasure::SetLimitsFileLoaded(bool value)
{
    storeAndEmitOnChange(this, m_isLimitsFileLoaded, value, &COperationMeasure::LimitsFileLoadedChanged);
}
