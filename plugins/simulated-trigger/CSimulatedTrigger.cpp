// SPDX-License-Identifier: MIT
#include "CSimulatedTrigger.h"

#include "CIniReader.h"
#include "SimulatedBench.h"

CSimulatedTrigger::CSimulatedTrigger(QObject* parent) : CTriggerPlugin(parent)
{
    Name = tr("Simulated trigger");
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &CSimulatedTrigger::fire);
}

void CSimulatedTrigger::Start()
{
    const CIniReader reader(CIniReader::PathOf(QStringLiteral("KestrixSimulatedTrigger.ini")));
    int delayMs = 20;
    int count = 0;
    m_intervalMs = 500;
    reader.ReadInteger("Trigger/DelayMs", delayMs);
    reader.ReadInteger("Trigger/IntervalMs", m_intervalMs);
    reader.ReadInteger("Trigger/Count", count);
    m_left = count > 0 ? count : -1;
    if (SimulatedBench::IsProbeMounted())
        m_left = 1;
    m_timer.start(delayMs);
}

void CSimulatedTrigger::Stop()
{
    m_timer.stop();
}

void CSimulatedTrigger::Shutdown()
{
    Stop();
}

void CSimulatedTrigger::fire()
{
    // The next one is set before this one is told of: the receiver may stop the plug-in.
    if (m_left > 0)
        --m_left;
    if (m_left != 0)
        m_timer.start(qMax(m_intervalMs, 1));
    emit Trigger();
}
