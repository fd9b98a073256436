// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrumentSupervisor.h"
#include "CInstrumentsList.h"
#include "CPageViewModel.h"

#include <QSharedPointer>
#include <QString>
#include <QStringList>

/// The instrument selection page: the instruments found, connect and disconnect, the facts of the active
/// instrument, the default instrument and the serial port. Connecting acts at once; the choices of default
/// instrument and port are unsaved until apply(). Every visit refreshes the list.
class CConnectionPageViewModel : public CPageViewModel
{
    Q_OBJECT
    Q_PROPERTY(CInstrumentSupervisor* InstrumentSupervisor READ InstrumentSupervisor CONSTANT)
    Q_PROPERTY(
        CInstrumentsList* ConnectedInstruments READ ConnectedInstruments NOTIFY ConnectedInstrumentsChanged)
    Q_PROPERTY(QStringList SerialPortNames READ SerialPortNames NOTIFY SerialPortNamesChanged)
    Q_PROPERTY(QStringList BaudrateNames READ BaudrateNames NOTIFY BaudrateNamesChanged)
    Q_PROPERTY(QStringList InstrumentNames READ InstrumentNames NOTIFY InstrumentNamesChanged)
    Q_PROPERTY(
        QString SelectedSerialPortName READ SelectedSerialPortName NOTIFY SelectedSerialPortNameChanged)
    Q_PROPERTY(QString SelectedBaudrateName READ SelectedBaudrateName NOTIFY SelectedBaudrateNameChanged)
    Q_PROPERTY(int SelectedBaudrateIndex READ SelectedBaudrateIndex WRITE SetSelectedBaudrateIndex NOTIFY
                   SelectedBaudrateIndexChanged)
    Q_PROPERTY(int SelectedSerialPortNameIndex READ SelectedSerialPortNameIndex WRITE
                   SetSelectedSerialPortNameIndex NOTIFY SelectedSerialPortNameIndexChanged)
    Q_PROPERTY(int SelectedDefaultInstrumentIndex READ SelectedDefaultInstrumentIndex WRITE
                   SetSelectedDefaultInstrumentIndex NOTIFY SelectedDefaultInstrumentIndexChanged)
    Q_PROPERTY(int ActiveInstrumentIndex READ ActiveInstrumentIndex NOTIFY ActiveInstrumentIndexChanged)
    Q_PROPERTY(QString SerialNumber READ SerialNumber NOTIFY SerialNumberChanged)
    Q_PROPERTY(QString CalibrationDate READ CalibrationDate NOTIFY CalibrationDateChanged)
    Q_PROPERTY(QString ManufacturingDate READ ManufacturingDate NOTIFY ManufacturingDateChanged)
    Q_PROPERTY(QString Manufacturer READ Manufacturer NOTIFY ManufacturerChanged)
    Q_PROPERTY(QString Model READ Model NOTIFY ModelChanged)
    Q_PROPERTY(QString ElectronicsVersion READ ElectronicsVersion NOTIFY ElectronicsVersionChanged)
    Q_PROPERTY(QString ProbeVersion READ ProbeVersion NOTIFY ProbeVersionChanged)
    Q_PROPERTY(QString FirmwareVersion READ FirmwareVersion NOTIFY FirmwareVersionChanged)
    Q_PROPERTY(bool CalibrationOutOfDate READ CalibrationOutOfDate NOTIFY CalibrationOutOfDateChanged)

public:
    /// `supervisor` must outlive the view model.
    explicit CConnectionPageViewModel(CInstrumentSupervisor* supervisor, QObject* parent = nullptr);
    ~CConnectionPageViewModel() override;

    QString GetHelpName() const override;

    /// Hands the serial port to the instruments and writes the choices of the page to the connection
    /// settings. The default instrument is kept by the two halves of its label, cut at the first two " - ".
    Q_INVOKABLE void apply();
    /// Takes the stored choices back.
    Q_INVOKABLE void restore();
    /// Connects the available instrument at `index`; blocks while the instrument does. An index outside the
    /// list changes no connection.
    Q_INVOKABLE void setActiveInstrument(int index);
    Q_INVOKABLE void clearActiveInstrument();

    CInstrumentSupervisor* InstrumentSupervisor() const { return m_supervisor; }
    CInstrumentsList* ConnectedInstruments() { return &m_connectedInstruments; }
    QStringList SerialPortNames() const { return m_serialPortNames; } ///< read once, at construction
    QStringList BaudrateNames() const { return m_baudrateNames; }
    QStringList InstrumentNames() const
    {
        return m_instrumentNames;
    } ///< choices of the default, "None" first
    QString SelectedSerialPortName() const { return m_selectedSerialPortName; }
    QString SelectedBaudrateName() const { return m_selectedBaudrateName; }
    int SelectedBaudrateIndex() const { return m_selectedBaudrateIndex; }
    int SelectedSerialPortNameIndex() const { return m_selectedSerialPortNameIndex; }
    int SelectedDefaultInstrumentIndex() const { return m_selectedDefaultInstrumentIndex; }
    int ActiveInstrumentIndex() const { return m_activeInstrumentIndex; } ///< -1 without active instrument
    QString SerialNumber() const { return m_facts.serialNumber; }
    QString CalibrationDate() const { return m_facts.calibrationDate; }     ///< "yyyy-MM-dd"
    QString ManufacturingDate() const { return m_facts.manufacturingDate; } ///< "yyyy-MM-dd"
    QString Manufacturer() const { return m_facts.manufacturer; }
    QString Model() const { return m_facts.model; }
    QString ElectronicsVersion() const { return m_facts.electronicsVersion; }
    QString ProbeVersion() const { return m_facts.probeVersion; }
    QString FirmwareVersion() const { return m_facts.firmwareVersion; }
    bool CalibrationOutOfDate() const { return m_facts.calibrationOutOfDate; } ///< older than 365 days

    void SetSelectedBaudrateIndex(int value);
    void SetSelectedSerialPortNameIndex(int value);
    void SetSelectedDefaultInstrumentIndex(int value);

public slots:
    void OnInstrumentListUpdated();
    void OnHasActiveInstrumentChanged();
    void OnConnectionPageParametersChanged();

signals:
    void ConnectedInstrumentsChanged(CInstrumentsList* value);
    void SerialPortNamesChanged(const QStringList& value);
    void BaudrateNamesChanged(const QStringList& value);
    void InstrumentNamesChanged(const QStringList& value);
    void SelectedSerialPortNameChanged(const QString& value);
    void SelectedBaudrateNameChanged(const QString& value);
    void SelectedBaudrateIndexChanged(int value);
    void SelectedSerialPortNameIndexChanged(int value);
    void SelectedDefaultInstrumentIndexChanged(int value);
    void ActiveInstrumentIndexChanged(int value);
    void SerialNumberChanged(const QString& value);
    void CalibrationDateChanged(const QString& value);
    void ManufacturingDateChanged(const QString& value);
    void ManufacturerChanged(const QString& value);
    void ModelChanged(const QString& value);
    void ElectronicsVersionChanged(const QString& value);
    void ProbeVersionChanged(const QString& value);
    void FirmwareVersionChanged(const QString& value);
    void CalibrationOutOfDateChanged(bool value);

private:
    /// What the page tells about the active instrument; empty without one.
    struct Facts
    {
        QString serialNumber;
        QString calibrationDate;
        QString manufacturingDate;
        QString manufacturer;
        QString model;
        QString electronicsVersion;
        QString probeVersion;
        QString firmwareVersion;
        bool calibrationOutOfDate = false;
    };

    QSharedPointer<CInstrument> ActiveInstrument() const; ///< null without one
    Facts ActiveInstrumentFacts() const;
    QString StoredInstrumentLabel() const;
    void UpdateActiveInstrumentIndex();
    void UpdateDefaultInstrumentIndex();
    void SetSelectedSerialPortName(const QString& value);
    void SetSelectedBaudrateName(const QString& value);
    void SetActiveInstrumentIndex(int value);

    CInstrumentSupervisor* m_supervisor;
    CInstrumentsList m_connectedInstruments;
    QStringList m_serialPortNames;
    QStringList m_baudrateNames;
    QStringList m_instrumentNames;
    QString m_selectedSerialPortName;
    QString m_selectedBaudrateName;
    int m_selectedBaudrateIndex = -1;
    int m_selectedSerialPortNameIndex = -1;
    int m_selectedDefaultInstrumentIndex = -1;
    int m_activeInstrumentIndex = -1;
    Facts m_facts;
    bool m_isRestored = false; ///< from the constructor's restore on, changes are the user's
};
