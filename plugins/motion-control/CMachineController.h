// SPDX-License-Identifier: MIT
#pragma once

#include "CLineLink.h"
#include "StageSettings.h"

#include <QElapsedTimer>

#include <functional>
#include <optional>

/// How long a machine may take. Milliseconds.
struct MachineTimes
{
    int banner = 3000;  ///< from the opening of the port, or a reset, to the first sign of life
    int answer = 2000;  ///< from a line that takes no time by itself to its answer
    int silence = 3000; ///< without one byte, while something is asked for again and again
    int homing = 180000;
    int stall = 10000; ///< said to be under way without getting anywhere
    int busy = 180000; ///< said to be busy beyond what a line ought to take
    int halt = 3000;   ///< to come to rest after a stop
    int poll = 100;
    int quiet = 200; ///< from one answer to the next, if there is one
};

/// What became of something that a machine was asked for.
struct MachineResult
{
    enum class Kind {
        Done,
        Refused,     ///< not done; the machine can be used on
        Failed,      ///< not done; the machine has to be set up again
        Silent,      ///< the machine answers no more
        Interrupted, ///< by the user; the machine may be moving
    };

    Kind kind = Kind::Done;
    QString text; ///< why, for the log

    bool IsDone() const { return kind == Kind::Done; }
};

/// Between a controller and whoever uses it; called in the controller's thread.
struct MachineHooks
{
    std::function<bool()> isInterrupted = [] { return false; };
    std::function<void(const StagePlace& place)> onPlace = [](const StagePlace&) {}; ///< as told
    std::function<void()> onTick = [] {};     ///< again and again while it waits
    std::function<void()> onHaltSent = [] {}; ///< the machine is on its way to rest
};

/// Speaks with the controller of a machine. All calls are from one thread and take as long as the machine
/// does, though none waits without end for a machine that does not answer. Places are the application's: the
/// offset of the settings comes on top.
class CMachineController
{
public:
    CMachineController(CLineLink& link, StageSettings settings, const MachineTimes& times,
                       MachineHooks hooks);
    virtual ~CMachineController() = default;
    CMachineController(const CMachineController&) = delete;
    CMachineController& operator=(const CMachineController&) = delete;

    /// Makes acquaintance over a port that was just opened, and homes if the settings ask for it.
    virtual MachineResult Connect() = 0;
    /// Makes ready for a session of a machine that is known already.
    virtual MachineResult Prepare() = 0;
    /// Returns when the machine is at rest there. `feed` in millimetres per minute, 0 for the fastest.
    MachineResult MoveTo(const StagePlace& place, double feed);
    /// Stops whatever moves, and waits until it is at rest.
    virtual void Halt() = 0;

    void SetSettings(const StageSettings& settings) { m_settings = settings; }

protected:
    /// What is sent has three digits; steps are coarser.
    static constexpr double kPlaceToleranceMm = 0.05;

    /// `place` is the machine's, offset included and rounded to what can be sent.
    virtual MachineResult moveTo(const StagePlace& place, double feed) = 0;

    /// Takes in a line. False if it is none of the machine's language: somebody else may be at the port, and
    /// chatter is no sign of life.
    virtual bool take(const QByteArray& line) = 0;
    /// What stands in the way of going on; done if nothing.
    virtual MachineResult trouble() const = 0;

    /// Waits a little for a line, and takes in at most one. False if the way to the machine is lost.
    bool listen();
    /// The same. Not done if the way is lost, the user interrupts, or there is trouble.
    MachineResult heed();
    /// Heeds until `isOver` says so; done, too, when the time is up.
    MachineResult await(const std::function<bool()>& isOver, qint64 limitMs);
    /// Takes in what came unasked meanwhile.
    void drain();
    /// Since the machine was last understood, or asked.
    qint64 silentMs() const { return m_heard.elapsed(); }
    void startListening() { m_heard.start(); }
    bool isInterrupted() const { return m_hooks.isInterrupted(); }
    /// A place of the machine, in work coordinates, becomes known.
    void tellPlace(const StagePlace& workPlace);

    MachineResult silent() const;
    static MachineResult failed(const QString& text) { return {MachineResult::Kind::Failed, text}; }
    static MachineResult refused(const QString& text) { return {MachineResult::Kind::Refused, text}; }
    static MachineResult interrupted() { return {MachineResult::Kind::Interrupted, {}}; }

    /// "G1 X1.000 Y2.000 Z3.000 F600.0", or with G0 at feed 0.
    static QByteArray moveLine(const StagePlace& place, double feed);

    CLineLink& link() const { return m_link; }
    const StageSettings& settings() const { return m_settings; }
    const MachineTimes& times() const { return m_times; }
    const MachineHooks& hooks() const { return m_hooks; }

private:
    CLineLink& m_link;
    StageSettings m_settings;
    MachineTimes m_times;
    MachineHooks m_hooks;
    QElapsedTimer m_heard;
};
