// SPDX-License-Identifier: MIT
#pragma once

#include "StagePlace.h"

#include <QtGlobal>

#include <optional>

/// Where a machine is between two of its reports: it goes on as it did between the last two of them. Times in
/// milliseconds of any clock that runs forwards.
class CPlaceEstimate
{
public:
    /// A machine that reports no more is taken to stand after so long.
    static constexpr qint64 kMaxAheadMs = 250;

    void Report(const StagePlace& place, qint64 timeMs);
    /// It is on its way there, and does not go beyond.
    void HeadFor(const StagePlace& goal) { m_goal = goal; }
    /// It stands where it was reported last, until the next report.
    void Rest();
    StagePlace At(qint64 timeMs) const;

private:
    StagePlace m_place{};
    StagePlace m_speed{}; ///< per millisecond
    std::optional<StagePlace> m_goal;
    qint64 m_timeMs = 0;
    bool m_hasTime = false;
};
