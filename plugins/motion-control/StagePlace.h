// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>

/// X, Y and Z in millimetres.
using StagePlace = std::array<double, 3>;

inline StagePlace sumOf(const StagePlace& a, const StagePlace& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

inline StagePlace differenceOf(const StagePlace& a, const StagePlace& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline double distanceOf(const StagePlace& a, const StagePlace& b)
{
    const StagePlace way = differenceOf(a, b);
    return std::sqrt(way[0] * way[0] + way[1] * way[1] + way[2] * way[2]);
}
