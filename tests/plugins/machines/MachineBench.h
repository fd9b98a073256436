// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMachineResponder.h"
#include "CSerialLink.h"
#include "CStageDriver.h"
#include "PatientWait.h"

#include <QStringList>

#include <atomic>

QByteArray textOf(const StagePlace& place);

/// Collects the log of all threads while it lives.
class ThreadLog
{
public:
    ThreadLog();
    ~ThreadLog();
    ThreadLog(const ThreadLog&) = delete;
    ThreadLog& operator=(const ThreadLog&) = delete;
    static bool Contains(const char* text);

private:
    QtMessageHandler m_previous;
};

/// A driver with the real serial port before a responder.
template <class Controller> class MachineBench
{
public:
    explicit MachineBench(CMachineResponder& responder, const MachineTimes& times = PatientTimes())
        : driver([] { return std::make_unique<CSerialLink>(); },
                 [](CLineLink& link, const StageSettings& settings, const MachineTimes& machineTimes,
                    const MachineHooks& hooks) {
                     return std::make_unique<Controller>(link, settings, machineTimes, hooks);
                 },
                 {[this, &responder] {
                      wasAtRest = wasAtRest && !responder.IsMoving();
                      ++numArrivals;
                  },
                  [this](const StagePlace& place) {
                      const std::lock_guard<std::mutex> lock(mutex);
                      points.append(place[0]);
                  }},
                 times)
    {
        settings.port = responder.Port();
        settings.feed = 30000;
        settings.settleMs = 5;
    }

    /// For tests in which no time is up, however busy the computer is.
    static MachineTimes PatientTimes()
    {
        MachineTimes times;
        times.banner = kLongWaitMs;
        times.answer = kLongWaitMs;
        times.silence = kLongWaitMs;
        times.homing = kLongWaitMs;
        times.stall = kLongWaitMs;
        times.halt = kLongWaitMs;
        times.poll = 15;
        times.quiet = 30;
        return times;
    }
    /// For tests in which lines get lost.
    static MachineTimes AlertTimes()
    {
        MachineTimes times = PatientTimes();
        times.answer = 150;
        return times;
    }
    /// For tests that wait for the end of the driver's patience.
    static MachineTimes HastyTimes()
    {
        MachineTimes times = AlertTimes();
        times.banner = 100;
        times.silence = 400;
        times.homing = 200;
        times.halt = 150;
        return times;
    }

    int NumPoints()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return points.size();
    }

    StageSettings settings;
    std::atomic<int> numArrivals{0};
    std::atomic<bool> wasAtRest{true}; ///< the machine, at every arrival
    std::mutex mutex;
    QList<double> points; ///< X of each
    ThreadLog log;
    CStageDriver driver;
};
