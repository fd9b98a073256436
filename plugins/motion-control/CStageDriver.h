// SPDX-License-Identifier: MIT
#pragma once

#include "CMachineController.h"
#include "CPlaceEstimate.h"

#include <QElapsedTimer>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

class CScanPath;
class QThread;

/// Keeps a machine at work in a thread of its own. All calls return at once or within a moment. The port
/// stays open from session to session, since opening it restarts many boards, until Close().
class CStageDriver
{
public:
    using MakeLink = std::function<std::unique_ptr<CLineLink>()>;
    using MakeController = std::function<std::unique_ptr<CMachineController>(
        CLineLink&, const StageSettings&, const MachineTimes&, const MachineHooks&)>;

    struct Callbacks
    {
        // From the driver's thread, never after Stop() has returned.
        std::function<void()> onArrival = [] {};
        std::function<void(const StagePlace&)> onPoint = [](const StagePlace&) {}; ///< of a scan
    };

    CStageDriver(MakeLink makeLink, MakeController makeController, Callbacks callbacks,
                 const MachineTimes& times = {});
    ~CStageDriver();
    CStageDriver(const CStageDriver&) = delete;
    CStageDriver& operator=(const CStageDriver&) = delete;

    /// Begins a session: connects if need be.
    void Start(const StageSettings& settings);
    /// The place is gone to after what is under way. Without effect out of a session: whoever asks late must
    /// not move what was stopped.
    void GoTo(const StagePlace& place);
    /// Follows the path of the settings. Without effect out of a session.
    void Scan();
    /// Ends the session. The machine has been told to stop when this returns, and comes to rest meanwhile.
    void Stop();
    /// Frees the port as well, and waits for that.
    void Close();
    /// Where the machine is or was last known to be.
    StagePlace Place() const;

private:
    void run();
    void openFor(const StageSettings& settings);
    void goTo(const StagePlace& place);
    void scan();
    bool scanOnce();
    /// False if it does not arrive.
    bool moveTo(const StagePlace& place, double feed);
    /// Logs what went wrong and stops what moves. False if something did.
    bool isDone(const MachineResult& result);
    /// False if interrupted.
    bool settle();
    void report(const std::function<void()>& callback);
    void passPoints(int count);
    bool isInterrupted() const;
    MachineHooks hooks();
    qint64 nowMs() const { return m_clock.elapsed(); }

    MakeLink m_makeLink;
    MakeController m_makeController;
    Callbacks m_callbacks;
    MachineTimes m_times;
    QElapsedTimer m_clock;
    std::unique_ptr<QThread> m_thread; ///< one of Qt's: the port wants it

    // Of the thread.
    std::unique_ptr<CLineLink> m_link;
    std::unique_ptr<CMachineController> m_controller;
    StageSettings m_settings;
    CScanPath* m_path = nullptr; ///< of the line that is followed
    bool m_isReady = false;

    mutable std::mutex m_mutex; ///< of all below
    std::condition_variable m_changed;
    bool m_isInSession = false;
    std::optional<StageSettings> m_wantedSession;
    std::optional<StagePlace> m_wantedPlace;
    bool m_isScanWanted = false;
    bool m_isToEnd = false;
    bool m_isStopWanted = false; ///< of what is under way
    bool m_isAtWork = false;
    bool m_isReporting = false;
    CPlaceEstimate m_place;
};
