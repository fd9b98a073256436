// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMachineResponder.h"
#include "CSerialLink.h"
#include "CStageDriver.h"

#include <QStringList>

#include <atomic>

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

/// A driver with the real serial port before a responder, and little patience.
template <class Controller> class MachineBench
{
public:
    explicit MachineBench(CMachineResponder& responder)
        : driver([] { return std::make_unique<CSerialLink>(); },
                 [](CLineLink& link, const StageSettings& settings, const MachineTimes& times,
                    const MachineHooks& hooks) {
                     return std::make_unique<Controller>(link, settings, times, hooks);
                 },
                 {[this] { ++numArrivals; },
                  [this](const StagePlace& place) {
                      const std::lock_guard<std::mutex> lock(mutex);
                      points.append(place[0]);
                  }},
                 ShortTimes())
    {
        settings.port = responder.Port();
        settings.feed = 6000;
        settings.settleMs = 5;
    }

    static MachineTimes ShortTimes()
    {
        MachineTimes times;
        times.banner = 300;
        times.answer = 400;
        times.silence = 600;
        times.homing = 700;
        times.stall = 1000;
        times.halt = 1500;
        times.poll = 15;
        return times;
    }

    int NumPoints()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return points.size();
    }

    StageSettings settings;
    std::atomic<int> numArrivals{0};
    std::mutex mutex;
    QList<double> points; ///< X of each
    ThreadLog log;
    CStageDriver driver;
};
