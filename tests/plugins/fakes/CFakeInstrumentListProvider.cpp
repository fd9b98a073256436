// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeInstrumentListProvider.h"

#include "FakeOptions.h"

#include <algorithm>
#include <thread>

CFakeInstrumentListProvider::CFakeInstrumentListProvider(const QStringList& serialNumbers, QObject* plugin,
                                                         QObject* parent)
    : CInstrumentListProvider(parent), m_plugin(plugin)
{
    for (const QString& serialNumber : serialNumbers)
        m_instruments.append(makeInstrument(serialNumber));
}

void CFakeInstrumentListProvider::AddInstrument(const QSharedPointer<CFakeInstrument>& instrument)
{
    watch(*instrument);
    m_instruments.append(instrument);
}

void CFakeInstrumentListProvider::RemoveInstrument(const QString& serialNumber)
{
    const auto isIt = [&](const auto& instrument) { return instrument->SerialNumber() == serialNumber; };
    m_instruments.erase(std::remove_if(m_instruments.begin(), m_instruments.end(), isIt),
                        m_instruments.end());
}

void CFakeInstrumentListProvider::Announce()
{
    if (option("threaded", false).toBool())
        std::thread([this] { emit InstrumentListUpdated(); }).join();
    else
        emit InstrumentListUpdated();
}

QList<QSharedPointer<CInstrument>> CFakeInstrumentListProvider::GetInstrumentList()
{
    FakeOptions::recordCall(*this, QStringLiteral("GetInstrumentList"));
    if (option("renewObjects", false).toBool()) {
        for (QSharedPointer<CFakeInstrument>& instrument : m_instruments)
            instrument = makeInstrument(instrument->SerialNumber());
    }
    QList<QSharedPointer<CInstrument>> list;
    for (const QSharedPointer<CFakeInstrument>& instrument : qAsConst(m_instruments))
        list.append(instrument);
    return list;
}

void CFakeInstrumentListProvider::SetSerialPortSettings(QString port, int baudRate)
{
    const QString call = QStringLiteral("SetSerialPortSettings %1 %2").arg(port).arg(baudRate);
    FakeOptions::recordCall(*this, call);
    if (m_plugin)
        FakeOptions::recordCall(*m_plugin, call);
}

QVariant CFakeInstrumentListProvider::option(const char* key, const QVariant& fallback) const
{
    return FakeOptions::value(this, m_plugin, key, fallback);
}

QSharedPointer<CFakeInstrument> CFakeInstrumentListProvider::makeInstrument(const QString& serialNumber)
{
    const auto instrument = QSharedPointer<CFakeInstrument>::create(serialNumber, m_plugin);
    watch(*instrument);
    return instrument;
}

void CFakeInstrumentListProvider::watch(const CFakeInstrument& instrument)
{
    // Queued, so that an instrument is not deleted in the middle of its own signal.
    const QString serialNumber = instrument.SerialNumber();
    connect(
        &instrument, &CFakeInstrument::VanishDue, this,
        [this, serialNumber] {
            RemoveInstrument(serialNumber);
            Announce();
        },
        Qt::QueuedConnection);
}
