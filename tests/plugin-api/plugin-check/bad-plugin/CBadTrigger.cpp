// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBadTrigger.h"

#include "BadMode.h"

namespace {

constexpr int kIntervalMs = 10;

} // namespace

CBadTrigger::CBadTrigger()
{
    if (!isBad("name-empty"))
        Name = QStringLiteral("Bad trigger");
    connect(&m_timer, &QTimer::timeout, this, [this] { emit Trigger(); });
}

void CBadTrigger::Start()
{
    const bool isDead = isBad("signal-not-seen") || (isBad("restart-failed") && m_wasStopped) ||
                        (isBad("shutdown-final") && m_isShutDown);
    if (!isDead)
        m_timer.start(kIntervalMs);
}

void CBadTrigger::Stop()
{
    m_wasStopped = m_wasStopped || m_timer.isActive();
    if (!isBad("signal-after-stop"))
        m_timer.stop();
}

void CBadTrigger::Shutdown()
{
    m_timer.stop();
    m_isShutDown = true;
}
