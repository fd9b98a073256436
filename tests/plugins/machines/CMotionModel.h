// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <deque>

/// Straight moves one after the other, each from rest to rest with a finite acceleration. Millimetres and
/// seconds.
class CMotionModel
{
public:
    using Place = std::array<double, 3>;

    Place At{};
    double Acceleration = 20000;

    void Add(const Place& goal, double speed) { m_moves.push_back({goal, speed}); }
    void Advance(double seconds);
    /// Slows down to rest; what is left is kept until it is dropped.
    void Hold() { m_isHeld = true; }
    void Resume() { m_isHeld = false; }
    void Drop();
    bool IsMoving() const { return m_speed > 0 || (!m_isHeld && !m_moves.empty()); }
    bool IsHeld() const { return m_isHeld; }
    double Speed() const { return m_speed; }
    /// Where the last move ends.
    Place End() const { return m_moves.empty() ? At : m_moves.back().goal; }

private:
    struct Move
    {
        Place goal;
        double speed;
    };

    std::deque<Move> m_moves;
    double m_speed = 0;
    bool m_isHeld = false;
};
