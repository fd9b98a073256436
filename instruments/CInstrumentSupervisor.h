// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CConnectionPageSettings.h"
#include "CInstrument.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QWeakPointer>

class CInstrumentListProvider;
class CSettings;

/// Knows which instruments exist and which one is active, and is the single place where an instrument is
/// connected or disconnected. The active instrument is held weakly: it belongs to its provider's list, and
/// whoever needs it takes a strong reference for the length of a call. Main thread only; providers may emit
/// from other threads.
class CInstrumentSupervisor : public QObject
{
    Q_OBJECT
    // The two without a signal of their own change with the signals below.
    // clazy:excludeall=qproperty-without-notify
    Q_PROPERTY(QList<QSharedPointer<CInstrument>> AvailableInstruments READ AvailableInstruments)
    Q_PROPERTY(bool HasActiveInstrument READ HasActiveInstrument NOTIFY HasActiveInstrumentChanged)
    Q_PROPERTY(QWeakPointer<CInstrument> Instrument READ Instrument)
    Q_PROPERTY(CConnectionPageSettings* ConnectionPageSettings READ ConnectionPageSettings CONSTANT)

public:
    /// `settings` must outlive the supervisor.
    explicit CInstrumentSupervisor(CSettings* settings, QObject* parent = nullptr);

    /// Every instrument of every provider, in the order of the providers.
    QList<QSharedPointer<CInstrument>> AvailableInstruments() const { return m_availableInstruments; }
    /// True while the active instrument is connected.
    bool HasActiveInstrument() const { return m_hasActiveInstrument; }
    /// The active instrument; while SetActiveInstrument runs also the one that is being connected.
    QWeakPointer<CInstrument> Instrument() const { return m_instrument; }
    CConnectionPageSettings* ConnectionPageSettings() { return &m_connectionPageSettings; }

    /// The provider stays with its plug-in and must outlive the supervisor's use of it.
    void AddInstrumentListProvider(CInstrumentListProvider* provider);

    /// The available instrument with the stored serial number, or null.
    QSharedPointer<CInstrument> GetDefaultInstrument() const;

    /// Disconnects the active instrument, unless it is the same one, and connects this one; null connects
    /// none. Blocks while the instrument connects. A failure shows in HasActiveInstrument and in the log.
    void SetActiveInstrument(QSharedPointer<CInstrument> instrument);
    void ClearActiveInstrument();

    /// Told to every provider. `baudRate` in baud.
    void SetSerialPortSettings(const QString& port, int baudRate);
    /// Stores the choices of the connection page.
    void SaveConnectionSettings(const QString& port, const QString& baudRate, const QString& name,
                                const QString& serialNumber);

public slots:
    /// Asks every provider for its list. An active instrument that is not listed any more is disconnected and
    /// given up.
    void RefreshAvailableInstruments();

signals:
    void HasActiveInstrumentChanged(bool value);
    void AvailableInstrumentUpdated();

private:
    void setHasActiveInstrument(bool value);
    void giveUpAfterFailedConnect(CInstrument& instrument);

    QList<QSharedPointer<CInstrument>> m_availableInstruments;
    bool m_hasActiveInstrument = false;
    QWeakPointer<CInstrument> m_instrument;
    CConnectionPageSettings m_connectionPageSettings;
    QList<CInstrumentListProvider*> m_providers;
};
