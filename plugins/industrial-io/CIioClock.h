// SPDX-License-Identifier: MIT
#pragma once

#include "CBoardClock.h"

#include <QString>
#include <QVector>

#include <ctime>
#include <optional>

/// The clock of this computer with the kernel's name ("realtime", "monotonic"); nothing for other names. No
/// name is "realtime", the kernel's default.
std::optional<clockid_t> clockOfName(const QString& name);

/// Tells when the scans of a buffer were taken, in nanoseconds of the steady clock. Times that the kernel of
/// this computer has put into the scans are taken as they are. Those of another computer, or the arrivals if
/// scans have none, are brought to this one's time by a fitted line; see CBoardClock, which also tells the
/// rate. A gap stays a gap.
class CIioClock
{
public:
    /// `clock`: of the times in the scans, if it is one of this computer.
    explicit CIioClock(std::optional<clockid_t> clock) : m_clock(clock) {}

    /// Readings that arrived together; their device times count from `firstTimeNs` of the clock.
    QVector<TimedReading> Arrive(const QVector<BoardReading>& readings, qint64 arrivalNs, qint64 firstTimeNs);

    bool IsSettled() const { return m_fitted.IsSettled(); }
    double Rate() const { return m_fitted.Rate(); } ///< readings per second, once settled
    bool UsesDeviceTime() const { return m_fitted.UsesDeviceTime(); }

private:
    CBoardClock m_fitted;
    std::optional<clockid_t> m_clock;
    qint64 m_lastNs = 0;
};
