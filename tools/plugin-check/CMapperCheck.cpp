// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMapperCheck.h"

#include "CCheckRun.h"
#include "CPluginLibrary.h"
#include "SignalCounter.h"

#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace {

// Of the way; a mapper may have steps and limits of its own.
constexpr double kPlaceTolerance = 0.1;

} // namespace

void CMapperCheck::Execute(CPluginLibrary& library)
{
    m_run.Phase(QStringLiteral("start"));
    m_run.Call("CreateMapperPlugin()",
               [&] { m_plugin = library.Create<CMapperPlugin>("CreateMapperPlugin"); });
    if (!m_plugin) {
        m_run.Find("factory-null", QStringLiteral("CreateMapperPlugin"));
        return;
    }
    if (!m_run.CheckObject(*m_plugin, CMapperPlugin::staticMetaObject, "the plug-in"))
        return;
    if (m_plugin->Name.isEmpty())
        m_run.Find("name-empty", QString());
    m_run.Fact(QStringLiteral("name"), m_plugin->Name);
    if (!castToType()) {
        m_run.Call("Stop()", [this] { m_plugin->Stop(); });
        m_run.Delete(m_plugin);
        return;
    }
    // A plug-in that no session used is stopped at termination all the same.
    stop("Stop() without Start()");

    bool isRegular = false;
    for (const char* name : {"session", "second session"}) {
        m_run.Phase(QLatin1String(name));
        start();
        checkPlace();
        if (m_stopAndGo) {
            checkStopAndGo();
        } else if (!waitForAcquire()) {
            m_run.Find(isRegular ? "restart-failed" : "signal-not-seen", QStringLiteral("Acquire"));
        } else {
            isRegular = true;
        }
        stop("Stop()");
        stop("second Stop()");
    }

    m_run.Phase(QStringLiteral("end"));
    // The last block of a session comes after its stop, and asks where it was taken.
    checkPlace();
    start();
    m_run.Call("Shutdown()", [this] { m_plugin->Shutdown(); });
    stop("Stop()");
    stop("second Stop()");
    m_run.Delete(m_plugin);
}

bool CMapperCheck::castToType()
{
    const int type = m_plugin->MapperType;
    m_run.Fact(QStringLiteral("MapperType"), type);
    // The plug-in's class is known by its name, too, should the types be those of another library.
    if (type == CMapperPlugin::kStopAndGo)
        m_stopAndGo = qobject_cast<CMapperPluginStopAndGo*>(m_plugin);
    else if (type == CMapperPlugin::kOnTheFly)
        m_onTheFly = qobject_cast<CMapperPluginOnTheFly*>(m_plugin);
    if (m_stopAndGo || m_onTheFly)
        return true;
    m_run.Find("mapper-type", QStringLiteral("MapperType %1 of a %2")
                                  .arg(type)
                                  .arg(QLatin1String(m_plugin->metaObject()->superClass()->className())));
    return false;
}

void CMapperCheck::checkFinite(const CPosition& position, const COrientation& orientation)
{
    for (const double value : {position.X(), position.Y(), position.Z(), orientation.Roll(),
                               orientation.Pitch(), orientation.Yaw()}) {
        if (!std::isfinite(value))
            m_run.Find("position-invalid", QString::number(value));
    }
}

void CMapperCheck::checkPlace()
{
    CPosition position;
    COrientation orientation;
    m_run.Call("GetPosition()", [&] { position = m_plugin->GetPosition(); });
    m_run.Call("GetOrientation()", [&] { orientation = m_plugin->GetOrientation(); });
    checkFinite(position, orientation);
}

void CMapperCheck::start()
{
    m_run.Call("Start()", [this] { m_plugin->Start(); });
}

void CMapperCheck::stop(const char* name)
{
    const auto checkQuiet = [&](auto* plugin, auto signal) {
        SignalCounter counter(plugin, signal);
        m_run.Call(name, [plugin] { plugin->Stop(); });
        counter.Reset();
        m_run.Rest("no further signal", SignalCounter::kQuietMs);
        if (counter.Count() > 0)
            m_run.Find("signal-after-stop", QLatin1String(name));
    };
    if (m_stopAndGo)
        checkQuiet(m_stopAndGo, &CMapperPluginStopAndGo::Ready);
    else
        checkQuiet(m_onTheFly, &CMapperPluginOnTheFly::Acquire);
}

void CMapperCheck::checkStopAndGo()
{
    SignalCounter unasked(m_stopAndGo, &CMapperPluginStopAndGo::Ready);
    m_run.Rest("no Ready before a MoveTo()", SignalCounter::kQuietMs);
    if (unasked.Count() > 0)
        m_run.Find("ready-unasked", QStringLiteral("after Start()"));

    const double step = m_run.Options().step;
    // To where it is, there, and back: it arrives each time.
    const bool hasArrived = moveBy(0) && moveBy(step) && moveBy(-step);
    if (!hasArrived) {
        m_run.Find("signal-missing", QStringLiteral("Ready after MoveTo()"));
        return;
    }
    // The stop of the session comes in the middle of a move.
    CPosition position;
    COrientation orientation;
    m_run.Call("GetPosition()", [&] { position = m_plugin->GetPosition(); });
    m_run.Call("GetOrientation()", [&] { orientation = m_plugin->GetOrientation(); });
    position.SetX(position.X() + step);
    m_run.Call("MoveTo()", [&] { m_stopAndGo->MoveTo(position, orientation); });
}

bool CMapperCheck::moveBy(double distance)
{
    CPosition position;
    COrientation orientation;
    m_run.Call("GetPosition()", [&] { position = m_plugin->GetPosition(); });
    m_run.Call("GetOrientation()", [&] { orientation = m_plugin->GetOrientation(); });
    const double goal = position.X() + distance;
    position.SetX(goal);

    SignalCounter ready(m_stopAndGo, &CMapperPluginStopAndGo::Ready);
    m_run.Call("MoveTo()", [&] { m_stopAndGo->MoveTo(position, orientation); });
    const bool hasArrived =
        m_run.Wait("Ready", m_run.Options().waitMs, [&ready] { return ready.Count() > 0; });
    if (!hasArrived)
        return false;
    m_run.Rest("a second Ready", SignalCounter::kQuietMs);
    if (ready.Count() > 1)
        m_run.Find("ready-twice", QStringLiteral("%1 times").arg(ready.Count()));
    CPosition reached;
    m_run.Call("GetPosition()", [&] { reached = m_plugin->GetPosition(); });
    if (std::abs(reached.X() - goal) > kPlaceTolerance * std::abs(m_run.Options().step))
        m_run.Find("position-off", QStringLiteral("X %1 instead of %2").arg(reached.X()).arg(goal));
    return true;
}

bool CMapperCheck::waitForAcquire()
{
    const auto asked = std::make_shared<std::optional<std::pair<CPosition, COrientation>>>();
    // As in the application, queued: the arguments cross the threads by value.
    QObject receiver;
    QObject::connect(
        m_onTheFly, &CMapperPluginOnTheFly::Acquire, &receiver,
        [asked](const CPosition& position, const COrientation& orientation) {
            asked->emplace(position, orientation);
        },
        Qt::QueuedConnection);
    if (!m_run.Wait("Acquire", m_run.Options().waitMs, [&asked] { return asked->has_value(); }))
        return false;
    checkFinite((*asked)->first, (*asked)->second);
    return true;
}
