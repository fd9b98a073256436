// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "COperationParameters.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>

class CInstrumentSupervisor;
class CRecordingManager;
class CTriggerPlugin;
class QDomElement;
class QXmlStreamWriter;

/// What the user does with the instrument: holds the parameters, starts and stops the measuring session,
/// reads and writes the parameter files. An operation is idle, active (one of its pages is shown), or active
/// with a session in progress. Main thread only.
class COperation : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Name READ Name NOTIFY NameChanged)
    Q_PROPERTY(bool SessionInProgress READ SessionInProgress NOTIFY SessionInProgressChanged)
    Q_PROPERTY(COperationParameters* OperationParameters READ OperationParameters CONSTANT)
    Q_PROPERTY(CInstrument* Instrument READ Instrument NOTIFY InstrumentChanged)

public:
    /// `supervisor` must outlive the operation.
    explicit COperation(CInstrumentSupervisor* supervisor, QObject* parent = nullptr);
    ~COperation() override;

    /// Samples (or blocks, as the operation counts) that are kept.
    virtual quint64 GetMaxMeasurementCount() const = 0;
    virtual void Activate() = 0;
    virtual void Deactivate() = 0;
    /// Without an instrument only the trigger plug-in is started.
    virtual void StartSession();
    virtual void StopSession();
    /// Back to no data.
    virtual void Reset() = 0;
    virtual bool GetUnsavedData() const;
    virtual bool GetDataSetEmpty() const = 0;
    virtual const QList<CTriggerPlugin*>& GetTriggerPlugins() const = 0;
    /// Writes elements of the derived class behind the common ones.
    virtual void SaveExtraParameters(QXmlStreamWriter& writer) const = 0;
    /// Gets every element of a parameter file that is none of the common ones.
    virtual void LoadExtraParameters(const QDomElement& element) = 0;

    QString Name() const { return m_name; }                          ///< tells operations apart
    bool SessionInProgress() const { return m_isSessionInProgress; } ///< between StartSession and StopSession
    COperationParameters* OperationParameters() { return &m_operationParameters; }
    const COperationParameters* OperationParameters() const { return &m_operationParameters; }

    /// The connected instrument, or null. For bindings; who calls it holds on to ActiveInstrument().
    CInstrument* Instrument() const;
    /// A strong reference for the length of a call, or null.
    QSharedPointer<CInstrument> ActiveInstrument() const;

    /// False if the file cannot be read or parsed; then no parameter has changed.
    bool LoadParameters(const QString& path);
    /// A failure is logged.
    void SaveParameters(const QString& path);
    /// As LoadParameters and SaveParameters, for a file in the settings directory.
    bool LoadSettingsFile(const QString& name);
    void SaveSettingsFile(const QString& name);

    /// In EXTERNAL trigger mode only.
    void StartTriggerPlugin();
    void StopTriggerPlugin();

signals:
    void NameChanged(const QString& value);
    void SessionInProgressChanged(bool value);
    /// The property Instrument reads another value: an instrument was connected, disconnected, lost or
    /// deleted.
    void InstrumentChanged(CInstrument* value);
    /// The measurement parameters of a file are set.
    void OnLoadMeasParametersDone();

protected:
    void SetName(const QString& value);
    void SetSessionInProgress(bool value);
    /// Measures and shows in the first unit that the instrument offers, if there is one.
    void TakeUnitOfInstrument();
    /// Takes the manager back to no data; the dataset is left to the caller.
    static void ResetRecording(CRecordingManager& manager);

private:
    void onHasActiveInstrumentChanged();

    CInstrumentSupervisor* m_supervisor;
    QString m_name;
    bool m_isSessionInProgress = false;
    COperationParameters m_operationParameters;
    QMetaObject::Connection m_instrumentDestroyed;
};
