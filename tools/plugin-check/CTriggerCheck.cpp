// SPDX-License-Identifier: GPL-3.0-or-later
#include "CTriggerCheck.h"

#include "CCheckRun.h"
#include "CPluginLibrary.h"
#include "SignalCounter.h"

void CTriggerCheck::Execute(CPluginLibrary& library)
{
    m_run.Phase(QStringLiteral("start"));
    m_run.Call("CreateTriggerPlugin()",
               [&] { m_plugin = library.Create<CTriggerPlugin>("CreateTriggerPlugin"); });
    if (!m_plugin) {
        m_run.Find("factory-null", QStringLiteral("CreateTriggerPlugin"));
        return;
    }
    if (!m_run.CheckObject(*m_plugin, CTriggerPlugin::staticMetaObject, "the plug-in"))
        return;
    checkName();
    // A plug-in that no session used is stopped at termination all the same.
    stop("Stop() without Start()");

    m_run.Phase(QStringLiteral("session"));
    const bool hasFired = session();
    if (!hasFired)
        m_run.Find("signal-not-seen", QStringLiteral("Trigger"));
    stop("Stop()");
    stop("second Stop()");

    m_run.Phase(QStringLiteral("second session"));
    if (hasFired && !session())
        m_run.Find("restart-failed", QStringLiteral("Trigger"));
    stop("Stop()");

    m_run.Phase(QStringLiteral("Shutdown"));
    m_run.Call("Shutdown()", [this] { m_plugin->Shutdown(); });
    if (hasFired && !session())
        m_run.Find("shutdown-final", QStringLiteral("Trigger"));
    m_run.Call("Shutdown()", [this] { m_plugin->Shutdown(); });

    m_run.Phase(QStringLiteral("end"));
    checkName();
    stop("Stop()");
    stop("second Stop()");
    m_run.Delete(m_plugin);
}

void CTriggerCheck::checkName()
{
    if (m_plugin->Name.isEmpty())
        m_run.Find("name-empty", QString());
    m_run.Fact(QStringLiteral("name"), m_plugin->Name);
}

bool CTriggerCheck::session()
{
    const SignalCounter triggers(m_plugin, &CTriggerPlugin::Trigger);
    m_run.Call("Start()", [this] { m_plugin->Start(); });
    return m_run.Wait("Trigger", m_run.Options().waitMs, [&triggers] { return triggers.Count() > 0; });
}

void CTriggerCheck::stop(const char* name)
{
    SignalCounter triggers(m_plugin, &CTriggerPlugin::Trigger);
    m_run.Call(name, [this] { m_plugin->Stop(); });
    triggers.Reset();
    m_run.Rest("no further Trigger", SignalCounter::kQuietMs);
    if (triggers.Count() > 0)
        m_run.Find("signal-after-stop", QStringLiteral("Trigger after %1").arg(QLatin1String(name)));
}
