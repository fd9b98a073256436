// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperation.h"

#include "CInstrumentSupervisor.h"
#include "CRecordingManager.h"
#include "CTriggerPlugin.h"
#include "ParameterFile.h"
#include "Property.h"
#include "SettingsDirectoryPath.h"

#include <QDebug>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QXmlStreamWriter>

namespace {

QString settingsFilePath(const QString& name)
{
    return SettingsDirectoryPath + QLatin1Char('/') + name;
}

} // namespace

COperation::COperation(CInstrumentSupervisor* supervisor, QObject* parent)
    : QObject(parent), m_supervisor(supervisor)
{
    connect(m_supervisor, &CInstrumentSupervisor::HasActiveInstrumentChanged, this,
            &COperation::onHasActiveInstrumentChanged);
    onHasActiveInstrumentChanged();
}

COperation::~COperation() = default;

void COperation::StartSession()
{
    if (const QSharedPointer<CInstrument> instrument = ActiveInstrument()) {
        SetSessionInProgress(true);
        if (!instrument->IsRunning())
            instrument->StartMeasurement();
    }
    StartTriggerPlugin();
}

void COperation::StopSession()
{
    const QSharedPointer<CInstrument> instrument = ActiveInstrument();
    if (instrument && instrument->IsRunning())
        instrument->StopMeasurement();
    StopTriggerPlugin();
    SetSessionInProgress(false);
}

bool COperation::GetUnsavedData() const
{
    return false;
}

QSharedPointer<CInstrument> COperation::ActiveInstrument() const
{
    return m_supervisor->Instrument().toStrongRef();
}

CInstrument* COperation::Instrument() const
{
    // An instrument that is being connected, or whose connection has just failed, is none yet: the signal
    // comes with HasActiveInstrument, and a binding that it wakes must not read what is about to go.
    return m_supervisor->HasActiveInstrument() ? ActiveInstrument().data() : nullptr;
}

bool COperation::LoadParameters(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QDomDocument document;
    QString error;
    int line = 0;
    int column = 0;
    if (!document.setContent(&file, &error, &line, &column)) {
        qWarning().noquote() << "Cannot parse XML file. Error :" << error << "Line" << line << "Column"
                             << column << "File" << path;
        return false;
    }
    file.close();

    // The driver must not follow the single fields.
    CMeasurementParameters& measurement = *m_operationParameters.MeasurementParameters();
    measurement.SetApplyConfiguration(false);
    const QSharedPointer<CInstrument> instrument = ActiveInstrument();
    ParameterFile::Context context{instrument.data(), GetTriggerPlugins()};
    for (QDomElement element = document.documentElement().firstChildElement(); !element.isNull();
         element = element.nextSiblingElement()) {
        if (ParameterFile::isMeasurementParameters(element)) {
            ParameterFile::readMeasurementParameters(element, measurement, context);
            emit OnLoadMeasParametersDone();
        } else if (!ParameterFile::readLimitsOrAlarm(element, m_operationParameters)) {
            LoadExtraParameters(element);
        }
    }
    measurement.SetApplyConfiguration(true);
    return true;
}

void COperation::SaveParameters(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qCritical().noquote().nospace() << "Error: Cannot read file : " << path;
        return;
    }
    QXmlStreamWriter writer(&file);
    ParameterFile::beginDocument(writer);
    ParameterFile::writeCommonElements(writer, m_operationParameters);
    SaveExtraParameters(writer);
    writer.writeEndDocument();
}

bool COperation::LoadSettingsFile(const QString& name)
{
    return LoadParameters(settingsFilePath(name));
}

void COperation::SaveSettingsFile(const QString& name)
{
    if (!QDir(SettingsDirectoryPath).exists())
        QDir().mkdir(SettingsDirectoryPath);
    SaveParameters(settingsFilePath(name));
}

void COperation::StartTriggerPlugin()
{
    const CMeasurementParameters& measurement = *m_operationParameters.MeasurementParameters();
    if (measurement.TriggerMode() != CTrigger::EXTERNAL)
        return;
    if (CTriggerPlugin* plugin = measurement.TriggerPlugin())
        plugin->Start();
    else
        qWarning("Trigger plugin is not set");
}

void COperation::StopTriggerPlugin()
{
    const CMeasurementParameters& measurement = *m_operationParameters.MeasurementParameters();
    if (measurement.TriggerMode() == CTrigger::EXTERNAL && measurement.TriggerPlugin())
        measurement.TriggerPlugin()->Stop();
}

void COperation::SetName(const QString& value)
{
    storeAndEmitOnChange(this, m_name, value, &COperation::NameChanged);
}

void COperation::SetSessionInProgress(bool value)
{
    storeAndEmitOnChange(this, m_isSessionInProgress, value, &COperation::SessionInProgressChanged);
}

void COperation::TakeUnitOfInstrument()
{
    const QSharedPointer<CInstrument> instrument = ActiveInstrument();
    if (!instrument || instrument->UnitList().isEmpty())
        return;
    CMeasurementParameters& parameters = *m_operationParameters.MeasurementParameters();
    parameters.SetUnits(instrument->UnitList().constFirst());
    parameters.SetDisplayUnits(parameters.Units());
    ParameterFile::setUncertaintyUnits(parameters, CUnits::UNKNOWN);
}

void COperation::ResetRecording(CRecordingManager& manager)
{
    manager.SetHasUnsavedData(false);
    manager.SetIsPlayingBack(false);
    manager.SetIsRecording(false);
    manager.SetIsIdleWithData(false);
    manager.SetIsDataLoaded(false);
    manager.SetIsHolding(true);
    manager.SetBodyComment(QString());
    manager.SetMeasComment(QString());
}

void COperation::onHasActiveInstrumentChanged()
{
    disconnect(m_instrumentDestroyed);
    CInstrument* instrument = Instrument();
    if (instrument)
        m_instrumentDestroyed =
            connect(instrument, &QObject::destroyed, this, [this] { emit InstrumentChanged(Instrument()); });
    emit InstrumentChanged(instrument);
}
