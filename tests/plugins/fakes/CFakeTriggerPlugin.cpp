// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeTriggerPlugin.h"

#include "FakeOptions.h"

CFakeTriggerPlugin::CFakeTriggerPlugin(QObject* parent) : CTriggerPlugin(parent)
{
    setObjectName(QStringLiteral("fakeTriggerPlugin"));
    FakeOptions::takeFromEnvironment(*this);
    Name = FakeOptions::value(this, nullptr, "triggerName", QStringLiteral("Fake trigger")).toString();
}

void CFakeTriggerPlugin::Start()
{
    FakeOptions::recordCall(*this, QStringLiteral("Start"));
}

void CFakeTriggerPlugin::Stop()
{
    FakeOptions::recordCall(*this, QStringLiteral("Stop"));
}

void CFakeTriggerPlugin::Shutdown()
{
    FakeOptions::recordCall(*this, QStringLiteral("Shutdown"));
}
