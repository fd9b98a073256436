// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMotionModel.h"

#include <algorithm>
#include <cmath>

void CMotionModel::Advance(double seconds)
{
    constexpr double kStep = 0.0005;
    for (double left = seconds; left > 0 && IsMoving(); left -= kStep) {
        if (m_moves.empty()) {
            m_speed = 0;
            return;
        }
        const double step = std::min(left, kStep);
        const Move& move = m_moves.front();
        const Place way{move.goal[0] - At[0], move.goal[1] - At[1], move.goal[2] - At[2]};
        const double distance = std::sqrt(way[0] * way[0] + way[1] * way[1] + way[2] * way[2]);
        // The speed from which it can still come to rest at the goal.
        const double speedToEnd = std::sqrt(2 * Acceleration * distance);
        const double wanted = m_isHeld ? 0 : std::min(move.speed, speedToEnd);
        const double change = Acceleration * step;
        m_speed = m_speed < wanted ? std::min(wanted, m_speed + change) : std::max(wanted, m_speed - change);
        if (distance <= m_speed * step + 1e-6) {
            At = move.goal;
            m_speed = 0;
            m_moves.pop_front();
            continue;
        }
        for (size_t axis = 0; axis < At.size(); ++axis)
            At[axis] += way[axis] / distance * m_speed * step;
    }
}

void CMotionModel::Drop()
{
    m_moves.clear();
    m_speed = 0;
    m_isHeld = false;
}
