// SPDX-License-Identifier: GPL-3.0-or-later
#include "NiceRange.h"

#include <cmath>

namespace {

constexpr int kMostTicks = 11;

double roundFactor(double fraction)
{
    if (fraction < 1.5)
        return 1.0;
    if (fraction < 3.0)
        return 2.0;
    if (fraction < 7.0)
        return 5.0;
    return 10.0;
}

double ceilFactor(double fraction)
{
    if (fraction <= 1.0)
        return 1.0;
    if (fraction <= 2.0)
        return 2.0;
    if (fraction <= 5.0)
        return 5.0;
    return 10.0;
}

double powerOfTen(double x)
{
    return std::pow(10.0, std::floor(std::log10(x)));
}

/// Truncates. What is not a number, or too large for any axis, gives 0.
int toTickSpan(double value)
{
    constexpr double kLimit = 1e9;
    return std::abs(value) < kLimit ? static_cast<int>(value) : 0;
}

} // namespace

NiceRange niceRange(double yMin, double yMax, int tickCount)
{
    const int n = tickCount < 2 ? kMostTicks : tickCount;
    const double x = (yMax - yMin) / (n - 1);
    const double power = powerOfTen(x);
    const double tick = power * roundFactor(x / power);
    const double low = std::floor(yMin / tick);
    const double high = std::ceil(yMax / tick);
    const int span = toTickSpan(high - low);
    const int ticks = span + 1 > kMostTicks ? span / 2 + 1 : span + 1;
    return {low * tick, high * tick, ticks};
}

double niceMargin(double span)
{
    const double width = span <= 0.0 ? 1.0 : span;
    const double widthPower = powerOfTen(width);
    const double half = widthPower * ceilFactor(width / widthPower) * 0.5;
    const double halfPower = powerOfTen(half);
    return halfPower * roundFactor(half / halfPower);
}
