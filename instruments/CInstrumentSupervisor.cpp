// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentSupervisor.h"

#include "CInstrumentListProvider.h"
#include "CSettings.h"

#include <QDebug>

#include <algorithm>

namespace {

/// Closes an instrument. A driver that fails at it is as good as closed.
void disconnectInstrument(CInstrument& instrument)
{
    try {
        instrument.Disconnect();
    } catch (...) {
        qWarning("Error occured when disconnecting the instrument.");
    }
}

} // namespace

CInstrumentSupervisor::CInstrumentSupervisor(CSettings* settings, QObject* parent)
    : QObject(parent), m_connectionPageSettings(settings)
{
}

void CInstrumentSupervisor::AddInstrumentListProvider(CInstrumentListProvider* provider)
{
    m_providers.append(provider);
    connect(provider, &CInstrumentListProvider::InstrumentListUpdated, this,
            &CInstrumentSupervisor::RefreshAvailableInstruments);
}

void CInstrumentSupervisor::RefreshAvailableInstruments()
{
    // The lists may hold the last references: one that is gone lives on until it has been disconnected.
    const QSharedPointer<CInstrument> active = m_instrument.toStrongRef();

    QList<QSharedPointer<CInstrument>> available;
    for (CInstrumentListProvider* provider : qAsConst(m_providers))
        available.append(provider->GetInstrumentList());
    available.removeAll(QSharedPointer<CInstrument>());
    m_availableInstruments = available;

    if (m_hasActiveInstrument && !(active && m_availableInstruments.contains(active)))
        ClearActiveInstrument();
    emit AvailableInstrumentUpdated();
}

QSharedPointer<CInstrument> CInstrumentSupervisor::GetDefaultInstrument() const
{
    const QString serialNumber = m_connectionPageSettings.InstrumentSerialNumber();
    const auto found =
        std::find_if(m_availableInstruments.cbegin(), m_availableInstruments.cend(),
                     [&](const auto& instrument) { return instrument->SerialNumber() == serialNumber; });
    return found == m_availableInstruments.cend() ? QSharedPointer<CInstrument>() : *found;
}

void CInstrumentSupervisor::SetActiveInstrument(QSharedPointer<CInstrument> instrument)
{
    // An active instrument that died is another one too: its end is announced before the new one begins.
    const QSharedPointer<CInstrument> previous = m_instrument.toStrongRef();
    if (previous != instrument) {
        if (previous)
            disconnectInstrument(*previous);
        m_instrument.clear();
        setHasActiveInstrument(false);
    }

    m_instrument = instrument;
    if (instrument) {
        try {
            if (!instrument->Connect())
                giveUpAfterFailedConnect(*instrument);
        } catch (...) {
            giveUpAfterFailedConnect(*instrument);
            qWarning("Error occured when connecting the instrument.");
            return;
        }
    }
    setHasActiveInstrument(!m_instrument.isNull());
}

void CInstrumentSupervisor::ClearActiveInstrument()
{
    if (const QSharedPointer<CInstrument> instrument = m_instrument.toStrongRef())
        disconnectInstrument(*instrument);
    m_instrument.clear();
    setHasActiveInstrument(false);
}

void CInstrumentSupervisor::SetSerialPortSettings(const QString& port, int baudRate)
{
    for (CInstrumentListProvider* provider : qAsConst(m_providers))
        provider->SetSerialPortSettings(port, baudRate);
}

void CInstrumentSupervisor::SaveConnectionSettings(const QString& port, const QString& baudRate,
                                                   const QString& name, const QString& serialNumber)
{
    m_connectionPageSettings.SaveConnectionSettings(port, baudRate, name, serialNumber);
}

void CInstrumentSupervisor::setHasActiveInstrument(bool value)
{
    if (m_hasActiveInstrument == value)
        return;
    m_hasActiveInstrument = value;
    emit HasActiveInstrumentChanged(value);
}

void CInstrumentSupervisor::giveUpAfterFailedConnect(CInstrument& instrument)
{
    setHasActiveInstrument(false);
    instrument.SetIsConnected(false);
    m_instrument.clear();
}
