// SPDX-License-Identifier: MIT
#pragma once

#include "CBoundedParm.h"
#include "CInstrumentInterface.h"
#include "CMeasureBlock.h"
#include "CMeasurementParameters.h"
#include "CTrigger.h"
#include "CUnits.h"
#include "KestrixApi.h"
#include "tFlux.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QStringList>

/// A three-axis field instrument. It goes listed -> connected (IsConnected) -> running (IsRunning) and back.
/// The driver fills identity and capabilities in Connect(), reads `MeasurementParameters` and applies them
/// when their `ApplyConfiguration` becomes true. Calls come from the main thread; OnNewMeasureBlock and the
/// other signals may be emitted from any thread.
class KESTRIX_API CInstrument : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Name READ Name WRITE SetName NOTIFY NameChanged)
    Q_PROPERTY(
        CInstrumentInterface::Interface Interface READ Interface WRITE SetInterface NOTIFY InterfaceChanged)
    Q_PROPERTY(QString StatusString READ StatusString WRITE SetStatusString NOTIFY StatusStringChanged)
    Q_PROPERTY(QStringList MessagesHistory READ MessagesHistory WRITE SetMessagesHistory NOTIFY
                   MessagesHistoryChanged)
    Q_PROPERTY(QString LastMessage READ LastMessage WRITE SetLastMessage NOTIFY LastMessageChanged)
    Q_PROPERTY(int ErrorCode READ ErrorCode WRITE SetErrorCode NOTIFY ErrorCodeChanged)
    Q_PROPERTY(QString RessourceName READ RessourceName WRITE SetRessourceName NOTIFY RessourceNameChanged)
    Q_PROPERTY(QString SerialNumber READ SerialNumber WRITE SetSerialNumber NOTIFY SerialNumberChanged)
    Q_PROPERTY(
        QDateTime CalibrationDate READ CalibrationDate WRITE SetCalibrationDate NOTIFY CalibrationDateChanged)
    Q_PROPERTY(QDateTime ManufacturingDate READ ManufacturingDate WRITE SetManufacturingDate NOTIFY
                   ManufacturingDateChanged)
    Q_PROPERTY(QString Manufacturer READ Manufacturer WRITE SetManufacturer NOTIFY ManufacturerChanged)
    Q_PROPERTY(QString Model READ Model WRITE SetModel NOTIFY ModelChanged)
    Q_PROPERTY(QString ElectronicsVersion READ ElectronicsVersion WRITE SetElectronicsVersion NOTIFY
                   ElectronicsVersionChanged)
    Q_PROPERTY(QString ProbeVersion READ ProbeVersion WRITE SetProbeVersion NOTIFY ProbeVersionChanged)
    Q_PROPERTY(
        QString FirmwareVersion READ FirmwareVersion WRITE SetFirmwareVersion NOTIFY FirmwareVersionChanged)
    Q_PROPERTY(QList<tFlux> RangeList READ RangeList WRITE SetRangeList NOTIFY RangeListChanged)
    Q_PROPERTY(QList<CUnits::UnitType> UnitList READ UnitList WRITE SetUnitList NOTIFY UnitListChanged)
    Q_PROPERTY(QStringList DivisorList READ DivisorList WRITE SetDivisorList NOTIFY DivisorListChanged)
    Q_PROPERTY(QList<CTrigger::TriggerMode> TriggerList READ TriggerList WRITE SetTriggerList NOTIFY
                   TriggerListChanged)
    Q_PROPERTY(bool IsRunning READ IsRunning WRITE SetIsRunning NOTIFY IsRunningChanged)
    Q_PROPERTY(bool IsConnected READ IsConnected WRITE SetIsConnected NOTIFY IsConnectedChanged)
    Q_PROPERTY(CBoundedParm* AveragingBound READ AveragingBound CONSTANT)
    Q_PROPERTY(CBoundedParm* DisplayRateBound READ DisplayRateBound CONSTANT)
    Q_PROPERTY(CBoundedParm* BlockSizeBound READ BlockSizeBound CONSTANT)
    Q_PROPERTY(CBoundedParm* AcquisitionRateBound READ AcquisitionRateBound CONSTANT)
    Q_PROPERTY(CBoundedParm* KestrixAcquisitionRateBound READ KestrixAcquisitionRateBound CONSTANT)
    Q_PROPERTY(CBoundedParm* KestrixDisplayRateBound READ KestrixDisplayRateBound CONSTANT)
    Q_PROPERTY(CBoundedParm* FrequencyMinBound READ FrequencyMinBound CONSTANT)
    Q_PROPERTY(CBoundedParm* FrequencyMaxBound READ FrequencyMaxBound CONSTANT)
    Q_PROPERTY(CMeasurementParameters* MeasurementParameters READ MeasurementParameters WRITE
                   SetMeasurementParameters NOTIFY MeasurementParametersChanged)

public:
    explicit CInstrument(QObject* parent = nullptr);

    QString Name() const { return m_name; } ///< first half of the label in the lists
    CInstrumentInterface::Interface Interface() const { return m_interface; } ///< transport, shown as an icon
    QString StatusString() const { return m_statusString; }                   ///< shown in the status bar
    QStringList MessagesHistory() const { return m_messagesHistory; }         ///< for the plug-in only
    QString LastMessage() const { return m_lastMessage; }                     ///< for the plug-in only
    int ErrorCode() const { return m_errorCode; }                             ///< for the plug-in only
    QString RessourceName() const { return m_ressourceName; }                 ///< the transport address
    QString SerialNumber() const { return m_serialNumber; }                   ///< identity of the instrument
    QDateTime CalibrationDate() const { return m_calibrationDate; } ///< shown in red when over 365 days old
    QDateTime ManufacturingDate() const { return m_manufacturingDate; }
    QString Manufacturer() const { return m_manufacturer; }
    QString Model() const { return m_model; }
    QString ElectronicsVersion() const { return m_electronicsVersion; }
    QString ProbeVersion() const { return m_probeVersion; }
    QString FirmwareVersion() const { return m_firmwareVersion; }
    QList<tFlux> RangeList() const { return m_rangeList; } ///< ranges to choose from, in tesla
    QList<CUnits::UnitType> UnitList() const
    {
        return m_unitList;
    }                                                         ///< units in which the instrument can deliver
    QStringList DivisorList() const { return m_divisorList; } ///< for the plug-in only
    QList<CTrigger::TriggerMode> TriggerList() const
    {
        return m_triggerList;
    } ///< trigger modes to choose from, CONTINUOUS first if offered
    bool IsRunning() const { return m_isRunning; }               ///< true while the instrument is measuring
    bool IsConnected() const { return m_isConnected; }           ///< true while connected
    CBoundedParm* AveragingBound() { return &m_averagingBound; } ///< bound of Averaging
    CBoundedParm* DisplayRateBound() { return &m_displayRateBound; }         ///< bound of DisplayRate
    CBoundedParm* BlockSizeBound() { return &m_blockSizeBound; }             ///< bound of BlockSize
    CBoundedParm* AcquisitionRateBound() { return &m_acquisitionRateBound; } ///< bound of AcquisitionRate
    CBoundedParm* KestrixAcquisitionRateBound()
    {
        return &m_kestrixAcquisitionRateBound;
    } ///< acquisition rate bound that applies in this application, Hz
    CBoundedParm* KestrixDisplayRateBound()
    {
        return &m_kestrixDisplayRateBound;
    } ///< display rate bound that applies in this application, Hz
    CBoundedParm* FrequencyMinBound() { return &m_frequencyMinBound; } ///< bound of FrequencyMin, Hz
    CBoundedParm* FrequencyMaxBound() { return &m_frequencyMaxBound; } ///< bound of FrequencyMax, Hz
    /// The parameters of the operation in progress, not owned; null before the first one.
    CMeasurementParameters* MeasurementParameters() const { return m_measurementParameters; }

    void SetName(const QString& value);
    void SetInterface(CInstrumentInterface::Interface value);
    void SetStatusString(const QString& value);
    void SetMessagesHistory(const QStringList& value);
    void SetLastMessage(const QString& value);
    void SetErrorCode(int value);
    void SetRessourceName(const QString& value);
    void SetSerialNumber(const QString& value);
    void SetCalibrationDate(const QDateTime& value);
    void SetManufacturingDate(const QDateTime& value);
    void SetManufacturer(const QString& value);
    void SetModel(const QString& value);
    void SetElectronicsVersion(const QString& value);
    void SetProbeVersion(const QString& value);
    void SetFirmwareVersion(const QString& value);
    void SetRangeList(const QList<tFlux>& value);
    void SetUnitList(const QList<CUnits::UnitType>& value);
    void SetDivisorList(const QStringList& value);
    void SetTriggerList(const QList<CTrigger::TriggerMode>& value);
    void SetIsRunning(bool value);
    void SetIsConnected(bool value);
    void SetMeasurementParameters(CMeasurementParameters* value);

public slots:
    /// One software trigger.
    virtual void SendTrigger() = 0;
    /// Opens the instrument, reads its identity and capability lists and sets IsConnected. False or an
    /// exception derived from std::exception means failed. Blocks the user interface while it runs.
    virtual bool Connect() = 0;
    /// Closes the instrument; an exception is caught by the caller.
    virtual void Disconnect() = 0;
    /// Begins to deliver blocks, IsRunning true.
    virtual void StartMeasurement() = 0;
    /// Ends the delivery, IsRunning false.
    virtual void StopMeasurement() = 0;
    /// Zero-offset calibration; `forceCalibration` overrides the driver's warnings.
    virtual void CalibrateZeroOffset(bool forceCalibration = false) = 0;
    /// Undoes the zero-offset calibration.
    virtual void RestoreZeroOffsetToFactory() = 0;

signals:
    void NameChanged(const QString& value);
    void InterfaceChanged(CInstrumentInterface::Interface value);
    void StatusStringChanged(const QString& value);
    void MessagesHistoryChanged(const QStringList& value);
    void LastMessageChanged(const QString& value);
    void ErrorCodeChanged(int value);
    void RessourceNameChanged(const QString& value);
    void SerialNumberChanged(const QString& value);
    void CalibrationDateChanged(const QDateTime& value);
    void ManufacturingDateChanged(const QDateTime& value);
    void ManufacturerChanged(const QString& value);
    void ModelChanged(const QString& value);
    void ElectronicsVersionChanged(const QString& value);
    void ProbeVersionChanged(const QString& value);
    void FirmwareVersionChanged(const QString& value);
    void RangeListChanged(const QList<tFlux>& value);
    void UnitListChanged(const QList<CUnits::UnitType>& value);
    void DivisorListChanged(const QStringList& value);
    void TriggerListChanged(const QList<CTrigger::TriggerMode>& value);
    void IsRunningChanged(bool value);
    void IsConnectedChanged(bool value);
    void MeasurementParametersChanged(CMeasurementParameters* value);
    /// A finished block; the driver gives up its reference with the emit.
    void OnNewMeasureBlock(QSharedPointer<CMeasureBlock> measureBlock);
    void OnUnitListUpdated();
    void OnHasAdcUpdated();
    void OnRangeListUpdated();
    void OnTriggerListUpdated();

private:
    QString m_name;
    CInstrumentInterface::Interface m_interface = CInstrumentInterface::Unknown;
    QString m_statusString;
    QStringList m_messagesHistory;
    QString m_lastMessage;
    int m_errorCode = 0;
    QString m_ressourceName;
    QString m_serialNumber;
    QDateTime m_calibrationDate;
    QDateTime m_manufacturingDate;
    QString m_manufacturer;
    QString m_model;
    QString m_electronicsVersion;
    QString m_probeVersion;
    QString m_firmwareVersion;
    QList<tFlux> m_rangeList;
    QList<CUnits::UnitType> m_unitList;
    QStringList m_divisorList;
    QList<CTrigger::TriggerMode> m_triggerList;
    bool m_isRunning = false;
    bool m_isConnected = false;
    CBoundedParm m_averagingBound;
    CBoundedParm m_displayRateBound;
    CBoundedParm m_blockSizeBound;
    CBoundedParm m_acquisitionRateBound;
    CBoundedParm m_kestrixAcquisitionRateBound;
    CBoundedParm m_kestrixDisplayRateBound;
    CBoundedParm m_frequencyMinBound;
    CBoundedParm m_frequencyMaxBound;
    CMeasurementParameters* m_measurementParameters = nullptr;
};

Q_DECLARE_METATYPE(QSharedPointer<CInstrument>)
