// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

/// Three components in double precision, in whatever unit the context tells.
struct FieldVector
{
    double x = 0;
    double y = 0;
    double z = 0;

    double Norm() const { return std::sqrt(x * x + y * y + z * z); }
    double LargestComponent() const { return std::max({std::abs(x), std::abs(y), std::abs(z)}); }
    bool IsFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }

    /// The vector of length 1 in this direction; the zero vector if there is no direction.
    FieldVector Normalized() const
    {
        const double length = Norm();
        return length > 0 ? FieldVector{x / length, y / length, z / length} : FieldVector{};
    }
};

inline FieldVector operator+(const FieldVector& a, const FieldVector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline FieldVector operator-(const FieldVector& a, const FieldVector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline FieldVector operator*(const FieldVector& a, double factor)
{
    return {a.x * factor, a.y * factor, a.z * factor};
}

inline double dot(const FieldVector& a, const FieldVector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
