// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedBench.h"

/// One straight motion of the probe at constant speed. Times in nanoseconds since 1970-01-01 UTC.
struct ProbeMotion
{
    ProbePose from;
    ProbePose to;
    qint64 startNs = 0;
    qint64 durationNs = 0;

    /// `from` before the motion, `to` after it.
    ProbePose At(qint64 epochNs) const;
    qint64 EndNs() const { return startNs + durationNs; }

    /// Nanoseconds that it takes at so many millimetres and degrees a second, whichever is slower. Both are
    /// above 0.
    static qint64 DurationNs(const ProbePose& from, const ProbePose& to, double speed, double angularSpeed);

    static qint64 NowNs();
};
