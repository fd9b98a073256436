// SPDX-License-Identifier: MIT
#include "CSimulatedInstrumentListProvider.h"

#include "SimulationSettings.h"

#include <QTimer>

#include <algorithm>

void CSimulatedInstrumentListProvider::Start()
{
    if (m_isStarted)
        return;
    m_isStarted = true;
    if (m_entries.isEmpty()) {
        const SimulationSettings settings = SimulationSettings::Load();
        for (int index = 0; index < settings.count; ++index)
            addInstrument(settings, index);
    }
    QMetaObject::invokeMethod(this, &CInstrumentListProvider::InstrumentListUpdated, Qt::QueuedConnection);
}

void CSimulatedInstrumentListProvider::Stop()
{
    m_isStarted = false;
    for (const Entry& entry : qAsConst(m_entries))
        entry.instrument->StopMeasurement();
}

QList<QSharedPointer<CInstrument>> CSimulatedInstrumentListProvider::GetInstrumentList()
{
    QList<QSharedPointer<CInstrument>> instruments;
    for (const Entry& entry : qAsConst(m_entries))
        instruments.append(entry.instrument);
    return instruments;
}

void CSimulatedInstrumentListProvider::SetSerialPortSettings(QString /*port*/, int /*baudRate*/) {}

void CSimulatedInstrumentListProvider::addInstrument(const SimulationSettings& settings, int index)
{
    auto instrument = QSharedPointer<CSimulatedInstrument>::create(settings, index);
    // Queued, since the list may hold the last reference to the sender.
    connect(
        instrument.data(), &CSimulatedInstrument::Vanished, this, [this, index] { onVanished(index); },
        Qt::QueuedConnection);
    const auto position = std::find_if(m_entries.begin(), m_entries.end(),
                                       [index](const Entry& entry) { return entry.index > index; });
    m_entries.insert(position, Entry{index, instrument});
}

void CSimulatedInstrumentListProvider::onVanished(int index)
{
    const auto gone = std::find_if(m_entries.begin(), m_entries.end(),
                                   [index](const Entry& entry) { return entry.index == index; });
    if (gone == m_entries.end())
        return;
    m_entries.erase(gone);
    const SimulationSettings settings = SimulationSettings::Load();
    if (settings.returnAfterS > 0) {
        QTimer::singleShot(static_cast<int>(settings.returnAfterS * 1000), this, [this, settings, index] {
            addInstrument(settings, index);
            emit InstrumentListUpdated();
        });
    }
    emit InstrumentListUpdated();
}
