// SPDX-License-Identifier: MIT
#include "CStageDriver.h"

#include "CScanPath.h"

#include <QLoggingCategory>
#include <QThread>

#include <chrono>
#include <utility>

namespace {

/// The machine is told to stop much sooner; a port that holds up its writer must not hold up the program.
constexpr std::chrono::milliseconds kStopWait{150};

} // namespace

CStageDriver::CStageDriver(MakeLink makeLink, MakeController makeController, Callbacks callbacks,
                           const MachineTimes& times)
    : m_makeLink(std::move(makeLink)), m_makeController(std::move(makeController)),
      m_callbacks(std::move(callbacks)), m_times(times)
{
    m_clock.start();
}

CStageDriver::~CStageDriver()
{
    Close();
}

void CStageDriver::Start(const StageSettings& settings)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isInSession = true;
        m_wantedSession = settings;
        m_wantedPlace.reset();
        m_isScanWanted = false;
    }
    if (!m_thread) {
        m_isToEnd = false;
        m_thread.reset(QThread::create([this] { run(); }));
        m_thread->start();
    }
    m_changed.notify_all();
}

void CStageDriver::GoTo(const StagePlace& place)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_isInSession)
            m_wantedPlace = place;
    }
    m_changed.notify_all();
}

void CStageDriver::Scan()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isScanWanted = m_isInSession;
    }
    m_changed.notify_all();
}

void CStageDriver::Stop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isInSession = false;
    m_wantedSession.reset();
    m_wantedPlace.reset();
    m_isScanWanted = false;
    m_isStopWanted = m_isAtWork;
    m_changed.notify_all();
    if (QThread::currentThread() == m_thread.get())
        return;
    m_changed.wait_for(lock, kStopWait, [this] { return !m_isStopWanted; });
    // However long whoever hears of it takes: nobody hears of anything after a stop.
    m_changed.wait(lock, [this] { return !m_isReporting; });
}

void CStageDriver::Close()
{
    if (!m_thread)
        return;
    Stop();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isToEnd = true;
    }
    m_changed.notify_all();
    m_thread->wait();
    m_thread.reset();
}

StagePlace CStageDriver::Place() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_place.At(nowMs());
}

void CStageDriver::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isToEnd) {
        std::function<void()> work;
        if (m_wantedSession) {
            work = [this, settings = *m_wantedSession] { openFor(settings); };
            m_wantedSession.reset();
        } else if (m_wantedPlace) {
            work = [this, place = *m_wantedPlace] { goTo(place); };
            m_wantedPlace.reset();
        } else if (m_isScanWanted) {
            work = [this] { scan(); };
            m_isScanWanted = false;
        } else {
            m_changed.wait(lock);
            continue;
        }
        m_isAtWork = true;
        lock.unlock();
        work();
        lock.lock();
        m_isAtWork = false;
        m_isStopWanted = false;
        m_changed.notify_all();
    }
    lock.unlock();
    // The port belongs to this thread.
    m_controller.reset();
    m_link.reset();
    m_isReady = false;
}

void CStageDriver::openFor(const StageSettings& settings)
{
    const bool isOpen = m_link && m_link->IsOpen() && m_settings.IsSamePort(settings);
    m_settings = settings;
    m_isReady = false;
    if (isOpen) {
        m_controller->SetSettings(settings);
        const MachineResult result = m_controller->Prepare();
        m_isReady = result.IsDone();
        if (result.kind == MachineResult::Kind::Interrupted)
            isDone(result);
        // Otherwise it was perhaps switched off and on: a fresh start tells.
        if (m_isReady || result.kind == MachineResult::Kind::Interrupted)
            return;
        qInfo("%s: %s; connecting anew", qPrintable(settings.port), qPrintable(result.text));
    }
    m_link = m_makeLink();
    QString error;
    if (!m_link->Open(settings.port, settings.baudRate, error)) {
        qWarning("%s: the machine's port cannot be opened: %s", qPrintable(settings.port), qPrintable(error));
        m_link.reset();
        return;
    }
    m_controller = m_makeController(*m_link, settings, m_times, hooks());
    const MachineResult result = m_controller->Connect();
    m_isReady = isDone(result);
    if (!m_isReady && m_link)
        m_link->Close();
}

void CStageDriver::goTo(const StagePlace& place)
{
    if (!m_isReady) {
        qWarning("%s: the machine is not ready: no move", qPrintable(m_settings.port));
        return;
    }
    if (!moveTo(place, m_settings.feed) || !settle())
        return;
    report(m_callbacks.onArrival);
}

void CStageDriver::scan()
{
    if (!m_isReady)
        qWarning("%s: the machine is not ready: no scan", qPrintable(m_settings.port));
    else if (scanOnce())
        qInfo("%s: the path is at its end", qPrintable(m_settings.port));
}

bool CStageDriver::scanOnce()
{
    for (const ScanLine& line : CScanPath::LinesOf(m_settings)) {
        if (!moveTo(line.from, m_settings.feed) || !settle())
            return false;
        CScanPath path(line, m_settings.scanSpacing);
        passPoints(path.Pass(line.from));
        m_path = &path;
        const bool isAtEnd = moveTo(line.to, m_settings.scanFeed);
        m_path = nullptr;
        if (!isAtEnd)
            return false;
        passPoints(path.Finish());
        if (isInterrupted())
            return false;
    }
    return true;
}

bool CStageDriver::moveTo(const StagePlace& place, double feed)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_place.HeadFor(place);
    }
    const MachineResult result = m_controller->MoveTo(place, feed);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_place.Rest();
    }
    return isDone(result);
}

bool CStageDriver::isDone(const MachineResult& result)
{
    if (result.IsDone())
        return true;
    if (!result.text.isEmpty())
        qWarning("%s: %s", qPrintable(m_settings.port), qPrintable(result.text));
    if (result.kind == MachineResult::Kind::Refused)
        return false;
    // What is passed while it comes to rest is no point of the map.
    m_path = nullptr;
    m_controller->Halt();
    if (result.kind != MachineResult::Kind::Interrupted)
        m_isReady = false;
    if (result.kind == MachineResult::Kind::Silent)
        m_link->Close();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_place.Rest();
    return false;
}

bool CStageDriver::settle()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_changed.wait_for(lock, std::chrono::milliseconds(m_settings.settleMs),
                               [this] { return m_isStopWanted || m_isToEnd; });
}

void CStageDriver::report(const std::function<void()>& callback)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_isStopWanted || m_isToEnd)
            return;
        m_isReporting = true;
    }
    callback();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isReporting = false;
    }
    m_changed.notify_all();
}

void CStageDriver::passPoints(int count)
{
    for (int i = 0; i < count; ++i)
        report([this] { m_callbacks.onPoint(Place()); });
}

bool CStageDriver::isInterrupted() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isStopWanted || m_isToEnd;
}

MachineHooks CStageDriver::hooks()
{
    MachineHooks hooks;
    hooks.isInterrupted = [this] { return isInterrupted(); };
    hooks.onPlace = [this](const StagePlace& place) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_place.Report(place, nowMs());
    };
    hooks.onTick = [this] {
        if (m_path)
            passPoints(m_path->Pass(Place()));
    };
    hooks.onHaltSent = [this] {
        {
            // Who waits for a stop need not wait for the rest.
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isStopWanted = false;
        }
        m_changed.notify_all();
    };
    return hooks;
}
