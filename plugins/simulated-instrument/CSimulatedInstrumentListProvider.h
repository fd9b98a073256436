// SPDX-License-Identifier: MIT
#pragma once

#include "CInstrumentListProvider.h"
#include "CSimulatedInstrument.h"

#include <QList>
#include <QSharedPointer>

/// Lists as many simulated instruments as the settings file says. One that vanishes leaves the list, and a
/// new object comes back in its place if the settings say so.
class CSimulatedInstrumentListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    using CInstrumentListProvider::CInstrumentListProvider;

    /// Makes the instruments, and reports them when the event loop runs.
    void Start();
    /// Ends the measurements that are still running.
    void Stop();

public slots:
    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    /// The instruments have no serial line: ignored.
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    void addInstrument(const SimulationSettings& settings, int index);
    void onVanished(int index);

    struct Entry
    {
        int index;
        QSharedPointer<CSimulatedInstrument> instrument;
    };
    QList<Entry> m_entries; ///< by ascending index
    bool m_isStarted = false;
};
