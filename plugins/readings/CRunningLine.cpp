// SPDX-License-Identifier: MIT
#include "CRunningLine.h"

void CRunningLine::Add(double x, double y, double pastWeight)
{
    moveOrigin(x - m_x, y - m_y);
    m_s0 = m_s0 * pastWeight + 1;
    m_sx *= pastWeight;
    m_sxx *= pastWeight;
    m_sy *= pastWeight;
    m_sxy *= pastWeight;
}

double CRunningLine::At(double x) const
{
    if (m_s0 <= 0)
        return 0;
    return m_y + m_sy / m_s0 + Slope() * (x - m_x - m_sx / m_s0);
}

double CRunningLine::Slope() const
{
    // Rounding leaves a little where nothing should be.
    constexpr double kLeastSpread = 1e-12;
    const double spread = m_s0 * m_sxx - m_sx * m_sx;
    if (spread <= kLeastSpread * m_s0 * m_sxx || spread <= 0)
        return 0;
    return (m_s0 * m_sxy - m_sx * m_sy) / spread;
}

void CRunningLine::Shift(double dx, double dy)
{
    m_x += dx;
    m_y += dy;
}

void CRunningLine::moveOrigin(double dx, double dy)
{
    m_sxy += -dx * m_sy - dy * m_sx + dx * dy * m_s0;
    m_sxx += -2 * dx * m_sx + dx * dx * m_s0;
    m_sx -= dx * m_s0;
    m_sy -= dy * m_s0;
    m_x += dx;
    m_y += dy;
}
