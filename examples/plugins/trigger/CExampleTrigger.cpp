// SPDX-License-Identifier: MIT
#include "CExampleTrigger.h"

#include <chrono>

using namespace std::chrono_literals;

KESTRIX_PLUGIN_FACTORY CTriggerPlugin* CreateTriggerPlugin()
{
    return new CExampleTrigger;
}

CExampleTrigger::CExampleTrigger()
{
    // The user chooses the plug-in by this name, and parameter files find it again by it: it never changes.
    Name = QStringLiteral("Example trigger");
    // A driver waits for its device here. If it does so in a thread of its own, Trigger() may be emitted
    // there.
    connect(&m_timer, &QTimer::timeout, this, &CTriggerPlugin::Trigger);
}

void CExampleTrigger::Start()
{
    m_timer.start(500ms);
}

void CExampleTrigger::Stop()
{
    m_timer.stop();
}

void CExampleTrigger::Shutdown()
{
    Stop();
}
