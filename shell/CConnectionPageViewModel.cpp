// SPDX-License-Identifier: GPL-3.0-or-later
#include "CConnectionPageViewModel.h"

#include "CConnectionPageSettings.h"
#include "CInstrument.h"
#include "CInstrumentSupervisor.h"
#include "Property.h"

#include <QDateTime>
#include <QDebug>
#include <QLocale>
#include <QSerialPortInfo>

namespace {

constexpr int kCalibrationLifetimeDays = 365;

QString labelSeparator()
{
    return QStringLiteral(" - ");
}

QString label(const QString& name, const QString& serialNumber)
{
    return name + labelSeparator() + serialNumber;
}

QString dateText(const QDateTime& time)
{
    return QLocale::c().toString(time.date(), QStringLiteral("yyyy-MM-dd")).trimmed();
}

QStringList serialPortNames()
{
    QStringList names;
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& port : ports)
        names << port.portName();
    return names;
}

QStringList baudrateNames()
{
    QStringList names;
    for (const int rate :
         {110, 300, 600, 1200, 2400, 4800, 9600, 14400, 19200, 38400, 57600, 115200, 230400, 460800, 921600})
        names << QString::number(rate);
    return names;
}

} // namespace

CConnectionPageViewModel::CConnectionPageViewModel(CInstrumentSupervisor* supervisor, QObject* parent)
    : CPageViewModel(QStringLiteral("Connection"), parent), m_supervisor(supervisor),
      m_serialPortNames(serialPortNames()), m_baudrateNames(baudrateNames())
{
    emit SerialPortNamesChanged(m_serialPortNames); // clazy:exclude=incorrect-emit
    connect(m_supervisor, &CInstrumentSupervisor::HasActiveInstrumentChanged, this,
            &CConnectionPageViewModel::OnHasActiveInstrumentChanged);
    connect(m_supervisor, &CInstrumentSupervisor::AvailableInstrumentUpdated, this,
            &CConnectionPageViewModel::OnInstrumentListUpdated);
    m_supervisor->RefreshAvailableInstruments();
    OnInstrumentListUpdated();
    OnHasActiveInstrumentChanged();

    connect(this, &CConnectionPageViewModel::SelectedDefaultInstrumentIndexChanged, this,
            &CConnectionPageViewModel::OnConnectionPageParametersChanged);
    connect(this, &CConnectionPageViewModel::SelectedSerialPortNameIndexChanged, this,
            &CConnectionPageViewModel::OnConnectionPageParametersChanged);
    connect(this, &CConnectionPageViewModel::SelectedBaudrateIndexChanged, this,
            &CConnectionPageViewModel::OnConnectionPageParametersChanged);
    restore();
}

CConnectionPageViewModel::~CConnectionPageViewModel()
{
    m_supervisor->disconnect(this);
    disconnect(this, nullptr, this, nullptr);
}

QString CConnectionPageViewModel::GetHelpName() const
{
    return QStringLiteral("connection");
}

void CConnectionPageViewModel::apply()
{
    m_supervisor->SetSerialPortSettings(m_selectedSerialPortName, m_selectedBaudrateName.toInt());

    QString name;
    QString serialNumber;
    if (m_selectedDefaultInstrumentIndex >= 1) {
        const QStringList parts =
            m_instrumentNames.value(m_selectedDefaultInstrumentIndex).split(labelSeparator());
        if (parts.size() >= 2) {
            name = parts.at(0);
            serialNumber = parts.at(1);
        }
    }
    m_supervisor->SaveConnectionSettings(m_selectedSerialPortName, m_selectedBaudrateName, name,
                                         serialNumber);
    OnInstrumentListUpdated();

    if (HasUnsavedParameter())
        SetHasUnsavedParameter(false);
    else
        emit HasUnsavedParameterChanged(false);
}

void CConnectionPageViewModel::restore()
{
    const CConnectionPageSettings* stored = m_supervisor->ConnectionPageSettings();
    SetSelectedBaudrateName(stored->BaudRate());
    SetSelectedSerialPortName(stored->SerialPort());
    SetSelectedBaudrateIndex(qMax(0, m_baudrateNames.indexOf(stored->BaudRate())));
    SetSelectedSerialPortNameIndex(qMax(0, m_serialPortNames.indexOf(stored->SerialPort())));
    UpdateDefaultInstrumentIndex();
    m_isRestored = true;
}

void CConnectionPageViewModel::setActiveInstrument(int index)
{
    // The list may have become shorter since the row was clicked.
    const QSharedPointer<CInstrument> instrument = m_supervisor->AvailableInstruments().value(index);
    if (instrument)
        m_supervisor->SetActiveInstrument(instrument);
    UpdateActiveInstrumentIndex();
}

void CConnectionPageViewModel::clearActiveInstrument()
{
    qDebug() << "Active instrument cleared";
    m_supervisor->ClearActiveInstrument();
    UpdateActiveInstrumentIndex();
}

void CConnectionPageViewModel::OnInstrumentListUpdated()
{
    const CConnectionPageSettings* stored = m_supervisor->ConnectionPageSettings();
    const QList<QSharedPointer<CInstrument>> instruments = m_supervisor->AvailableInstruments();
    bool storedIsAvailable = false;

    m_connectedInstruments.Clear();
    m_instrumentNames = QStringList{tr("None")};
    for (const QSharedPointer<CInstrument>& instrument : instruments) {
        m_connectedInstruments.Append(instrument);
        m_instrumentNames << label(instrument->Name(), instrument->SerialNumber());
        storedIsAvailable =
            storedIsAvailable || instrument->SerialNumber() == stored->InstrumentSerialNumber();
    }
    if (!storedIsAvailable && !stored->InstrumentName().isEmpty() &&
        !stored->InstrumentSerialNumber().isEmpty())
        m_instrumentNames << StoredInstrumentLabel();

    emit InstrumentNamesChanged(m_instrumentNames);
    UpdateActiveInstrumentIndex();
    UpdateDefaultInstrumentIndex();
}

void CConnectionPageViewModel::OnHasActiveInstrumentChanged()
{
    const Facts facts = ActiveInstrumentFacts();
    using This = CConnectionPageViewModel;
    storeAndEmitOnChange(this, m_facts.serialNumber, facts.serialNumber, &This::SerialNumberChanged);
    storeAndEmitOnChange(this, m_facts.calibrationDate, facts.calibrationDate, &This::CalibrationDateChanged);
    storeAndEmitOnChange(this, m_facts.manufacturingDate, facts.manufacturingDate,
                         &This::ManufacturingDateChanged);
    storeAndEmitOnChange(this, m_facts.manufacturer, facts.manufacturer, &This::ManufacturerChanged);
    storeAndEmitOnChange(this, m_facts.model, facts.model, &This::ModelChanged);
    storeAndEmitOnChange(this, m_facts.electronicsVersion, facts.electronicsVersion,
                         &This::ElectronicsVersionChanged);
    storeAndEmitOnChange(this, m_facts.probeVersion, facts.probeVersion, &This::ProbeVersionChanged);
    storeAndEmitOnChange(this, m_facts.firmwareVersion, facts.firmwareVersion, &This::FirmwareVersionChanged);
    storeAndEmitOnChange(this, m_facts.calibrationOutOfDate, facts.calibrationOutOfDate,
                         &This::CalibrationOutOfDateChanged);
}

QSharedPointer<CInstrument> CConnectionPageViewModel::ActiveInstrument() const
{
    if (!m_supervisor->HasActiveInstrument())
        return {};
    return m_supervisor->Instrument().toStrongRef();
}

CConnectionPageViewModel::Facts CConnectionPageViewModel::ActiveInstrumentFacts() const
{
    Facts facts;
    const QSharedPointer<CInstrument> instrument = ActiveInstrument();
    if (!instrument)
        return facts;

    facts.serialNumber = instrument->SerialNumber().trimmed();
    facts.calibrationDate = dateText(instrument->CalibrationDate());
    facts.manufacturingDate = dateText(instrument->ManufacturingDate());
    facts.manufacturer = instrument->Manufacturer().trimmed();
    facts.model = instrument->Model().trimmed();
    facts.electronicsVersion = instrument->ElectronicsVersion().trimmed();
    facts.probeVersion = instrument->ProbeVersion().trimmed();
    facts.firmwareVersion = instrument->FirmwareVersion().trimmed();
    facts.calibrationOutOfDate =
        instrument->CalibrationDate().daysTo(QDateTime::currentDateTime()) > kCalibrationLifetimeDays;
    return facts;
}

void CConnectionPageViewModel::OnConnectionPageParametersChanged()
{
    if (m_selectedBaudrateIndex >= 0 && m_selectedBaudrateIndex < m_baudrateNames.size())
        SetSelectedBaudrateName(m_baudrateNames.at(m_selectedBaudrateIndex));
    if (m_selectedSerialPortNameIndex >= 0 && m_selectedSerialPortNameIndex < m_serialPortNames.size())
        SetSelectedSerialPortName(m_serialPortNames.at(m_selectedSerialPortNameIndex));
    if (m_isRestored)
        SetHasUnsavedParameter(true);
}

QString CConnectionPageViewModel::StoredInstrumentLabel() const
{
    const CConnectionPageSettings* stored = m_supervisor->ConnectionPageSettings();
    return label(stored->InstrumentName(), stored->InstrumentSerialNumber());
}

void CConnectionPageViewModel::UpdateActiveInstrumentIndex()
{
    SetActiveInstrumentIndex(-1);
    const QSharedPointer<CInstrument> active = ActiveInstrument();
    if (!active)
        return;
    const QList<QSharedPointer<CInstrument>> instruments = m_supervisor->AvailableInstruments();
    for (int i = 0; i < instruments.size(); ++i) {
        if (instruments.at(i)->SerialNumber() == active->SerialNumber() && instruments.at(i)->IsConnected())
            SetActiveInstrumentIndex(i);
    }
}

void CConnectionPageViewModel::UpdateDefaultInstrumentIndex()
{
    const QSharedPointer<CInstrument> instrument = m_supervisor->GetDefaultInstrument();
    // "None" stands before the instruments.
    int index = m_supervisor->AvailableInstruments().indexOf(instrument) + 1;
    if (!instrument) {
        index = m_instrumentNames.indexOf(StoredInstrumentLabel());
        if (index < 0 && !m_instrumentNames.isEmpty())
            index = 0;
    }
    SetSelectedDefaultInstrumentIndex(index);
}

void CConnectionPageViewModel::SetSelectedSerialPortName(const QString& value)
{
    storeAndEmitOnChange(this, m_selectedSerialPortName, value,
                         &CConnectionPageViewModel::SelectedSerialPortNameChanged);
}

void CConnectionPageViewModel::SetSelectedBaudrateName(const QString& value)
{
    storeAndEmitOnChange(this, m_selectedBaudrateName, value,
                         &CConnectionPageViewModel::SelectedBaudrateNameChanged);
}

void CConnectionPageViewModel::SetSelectedBaudrateIndex(int value)
{
    storeAndEmitOnChange(this, m_selectedBaudrateIndex, value,
                         &CConnectionPageViewModel::SelectedBaudrateIndexChanged);
}

void CConnectionPageViewModel::SetSelectedSerialPortNameIndex(int value)
{
    storeAndEmitOnChange(this, m_selectedSerialPortNameIndex, value,
                         &CConnectionPageViewModel::SelectedSerialPortNameIndexChanged);
}

void CConnectionPageViewModel::SetSelectedDefaultInstrumentIndex(int value)
{
    storeAndEmitOnChange(this, m_selectedDefaultInstrumentIndex, value,
                         &CConnectionPageViewModel::SelectedDefaultInstrumentIndexChanged);
}

void CConnectionPageViewModel::SetActiveInstrumentIndex(int value)
{
    storeAndEmitOnChange(this, m_activeInstrumentIndex, value,
                         &CConnectionPageViewModel::ActiveInstrumentIndexChanged);
}
