// SPDX-License-Identifier: MIT
#include "CIioClock.h"

#include "TimeUnits.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Times that are further from what the arrivals tell are of another clock than the kernel says.
constexpr qint64 kPlausibleNs = 1000000000;
constexpr qint64 kLeastStepNs = 1000;
constexpr int kOffsetTrials = 3;

qint64 nowNs(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<qint64>(now.tv_sec) * kNsPerSecond + now.tv_nsec;
}

// From the clock to the steady one. A reading that was interrupted half-way is worth less than another.
qint64 offsetOf(clockid_t clock)
{
    qint64 offsetNs = 0;
    qint64 leastNs = std::numeric_limits<qint64>::max();
    for (int i = 0; i < kOffsetTrials; ++i) {
        const qint64 beforeNs = nowNs(CLOCK_MONOTONIC);
        const qint64 clockNs = nowNs(clock);
        const qint64 tookNs = nowNs(CLOCK_MONOTONIC) - beforeNs;
        if (tookNs < leastNs) {
            leastNs = tookNs;
            offsetNs = beforeNs + tookNs / 2 - clockNs;
        }
    }
    return offsetNs;
}

} // namespace

std::optional<clockid_t> clockOfName(const QString& name)
{
    static const QHash<QString, clockid_t> clocks{
        {QString(), CLOCK_REALTIME},
        {QStringLiteral("realtime"), CLOCK_REALTIME},
        {QStringLiteral("realtime_coarse"), CLOCK_REALTIME},
        {QStringLiteral("monotonic"), CLOCK_MONOTONIC},
        {QStringLiteral("monotonic_coarse"), CLOCK_MONOTONIC},
        {QStringLiteral("monotonic_raw"), CLOCK_MONOTONIC_RAW},
        {QStringLiteral("boottime"), CLOCK_BOOTTIME},
        {QStringLiteral("tai"), CLOCK_TAI},
    };
    const auto found = clocks.constFind(name);
    return found == clocks.cend() ? std::nullopt : std::optional<clockid_t>(*found);
}

QVector<TimedReading> CIioClock::Arrive(const QVector<BoardReading>& readings, qint64 arrivalNs,
                                        qint64 firstTimeNs)
{
    QVector<TimedReading> timed = m_fitted.Arrive(readings, arrivalNs);
    if (!m_clock || timed.isEmpty() || !m_fitted.UsesDeviceTime())
        return timed;
    const qint64 firstNs = firstTimeNs + offsetOf(*m_clock);
    for (TimedReading& reading : timed) {
        const qint64 timeNs = firstNs + std::llround(reading.reading.deviceTime.value_or(0) *
                                                     static_cast<double>(kNsPerSecond));
        if (std::abs(timeNs - reading.timeNs) > kPlausibleNs) {
            m_clock.reset();
            break;
        }
        reading.timeNs = timeNs;
    }
    // The change to the fitted line, or a clock that was set, must not turn times back.
    for (TimedReading& reading : timed) {
        reading.timeNs = std::max(reading.timeNs, m_lastNs + kLeastStepNs);
        m_lastNs = reading.timeNs;
    }
    return timed;
}
