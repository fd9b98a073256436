// SPDX-License-Identifier: MIT
#include "CPlaceEstimate.h"

#include <algorithm>

void CPlaceEstimate::Report(const StagePlace& place, qint64 timeMs)
{
    const qint64 elapsedMs = timeMs - m_timeMs;
    m_speed = {};
    if (m_hasTime && elapsedMs > 0) {
        const StagePlace way = differenceOf(place, m_place);
        for (size_t axis = 0; axis < way.size(); ++axis)
            m_speed[axis] = way[axis] / static_cast<double>(elapsedMs);
    }
    m_place = place;
    m_timeMs = timeMs;
    m_hasTime = true;
}

void CPlaceEstimate::Rest()
{
    m_speed = {};
    m_goal.reset();
    m_hasTime = false;
}

StagePlace CPlaceEstimate::At(qint64 timeMs) const
{
    const auto aheadMs = static_cast<double>(std::clamp<qint64>(timeMs - m_timeMs, 0, kMaxAheadMs));
    StagePlace place = m_place;
    for (size_t axis = 0; axis < place.size(); ++axis) {
        const double step = m_speed[axis] * aheadMs;
        const double left = m_goal ? (*m_goal)[axis] - m_place[axis] : step;
        place[axis] += step * left > 0 && std::abs(step) > std::abs(left) ? left : step;
    }
    return place;
}
