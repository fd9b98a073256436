// SPDX-License-Identifier: MIT
#include "CInstrument.h"

#include "Property.h"

CInstrument::CInstrument(QObject* parent) : QObject(parent) {}

void CInstrument::SetName(const QString& value)
{
    storeAndEmitOnChange(this, m_name, value, &CInstrument::NameChanged);
}

void CInstrument::SetInterface(CInstrumentInterface::Interface value)
{
    storeAndEmitOnChange(this, m_interface, value, &CInstrument::InterfaceChanged);
}

void CInstrument::SetStatusString(const QString& value)
{
    storeAndEmitOnChange(this, m_statusString, value, &CInstrument::StatusStringChanged);
}

void CInstrument::SetMessagesHistory(const QStringList& value)
{
    storeAndEmitOnChange(this, m_messagesHistory, value, &CInstrument::MessagesHistoryChanged);
}

void CInstrument::SetLastMessage(const QString& value)
{
    storeAndEmitOnChange(this, m_lastMessage, value, &CInstrument::LastMessageChanged);
}

void CInstrument::SetErrorCode(int value)
{
    storeAndEmitOnChange(this, m_errorCode, value, &CInstrument::ErrorCodeChanged);
}

void CInstrument::SetRessourceName(const QString& value)
{
    storeAndEmitOnChange(this, m_ressourceName, value, &CInstrument::RessourceNameChanged);
}

void CInstrument::SetSerialNumber(const QString& value)
{
    storeAndEmitOnChange(this, m_serialNumber, value, &CInstrument::SerialNumberChanged);
}

void CInstrument::SetCalibrationDate(const QDateTime& value)
{
    storeAndEmitOnChange(this, m_calibrationDate, value, &CInstrument::CalibrationDateChanged);
}

void CInstrument::SetManufacturingDate(const QDateTime& value)
{
    storeAndEmitOnChange(this, m_manufacturingDate, value, &CInstrument::ManufacturingDateChanged);
}

void CInstrument::SetManufacturer(const QString& value)
{
    storeAndEmitOnChange(this, m_manufacturer, value, &CInstrument::ManufacturerChanged);
}

void CInstrument::SetModel(const QString& value)
{
    storeAndEmitOnChange(this, m_model, value, &CInstrument::ModelChanged);
}

void CInstrument::SetElectronicsVersion(const QString& value)
{
    storeAndEmitOnChange(this, m_electronicsVersion, value, &CInstrument::ElectronicsVersionChanged);
}

void CInstrument::SetProbeVersion(const QString& value)
{
    storeAndEmitOnChange(this, m_probeVersion, value, &CInstrument::ProbeVersionChanged);
}

void CInstrument::SetFirmwareVersion(const QString& value)
{
    storeAndEmitOnChange(this, m_firmwareVersion, value, &CInstrument::FirmwareVersionChanged);
}

void CInstrument::SetRangeList(const QList<tFlux>& value)
{
    storeAndEmitOnChange(this, m_rangeList, value, &CInstrument::RangeListChanged);
}

void CInstrument::SetUnitList(const QList<CUnits::UnitType>& value)
{
    storeAndEmitOnChange(this, m_unitList, value, &CInstrument::UnitListChanged);
}

void CInstrument::SetDivisorList(const QStringList& value)
{
    storeAndEmitOnChange(this, m_divisorList, value, &CInstrument::DivisorListChanged);
}

void CInstrument::SetTriggerList(const QList<CTrigger::TriggerMode>& value)
{
    storeAndEmitOnChange(this, m_triggerList, value, &CInstrument::TriggerListChanged);
}

void CInstrument::SetIsRunning(bool value)
{
    storeAndEmitOnChange(this, m_isRunning, value, &CInstrument::IsRunningChanged);
}

void CInstrument::SetIsConnected(bool value)
{
    storeAndEmitOnChange(this, m_isConnected, value, &CInstrument::IsConnectedChanged);
}

void CInstrument::SetMeasurementParameters(CMeasurementParameters* value)
{
    storeAndEmitOnChange(this, m_measurementParameters, value, &CInstrument::MeasurementParametersChanged);
}
