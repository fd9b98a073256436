// SPDX-License-Identifier: MIT
#pragma once

/// A straight line through points that come one after the other, by least squares, in which a point counts
/// the less the older it is. Sums are kept about the newest point, so that no digits are lost however long it
/// runs.
class CRunningLine
{
public:
    /// The next point. `pastWeight`, 0 to 1, multiplies the weight of all points before it.
    void Add(double x, double y, double pastWeight);

    /// y of the line at `x`; y of the newest point if there is but one.
    double At(double x) const;
    /// 0 with fewer than two different x.
    double Slope() const;
    /// Moves all points so far.
    void Shift(double dx, double dy);

private:
    void moveOrigin(double dx, double dy);

    // The newest point.
    double m_x = 0;
    double m_y = 0;
    // Weighted sums of 1, x, x^2, y and xy about it.
    double m_s0 = 0;
    double m_sx = 0;
    double m_sxx = 0;
    double m_sy = 0;
    double m_sxy = 0;
};
