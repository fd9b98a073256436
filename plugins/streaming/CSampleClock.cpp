// SPDX-License-Identifier: MIT
#include "CSampleClock.h"

#include "TimeUnits.h"

#include <cmath>

namespace {

// A remainder below the numerator is multiplied by 1e9 in 64 bits.
constexpr double kMaxNumerator = 9e9;
// Leaves room for indices up to 2^43 in the product with the denominator.
constexpr double kMaxDenominator = 1e6;
constexpr double kMaxRate = 1e9;

} // namespace

CSampleClock::CSampleClock(double rate)
    : m_rate(std::isfinite(rate) && rate > 0 ? std::fmin(rate, kMaxRate) : 1)
{
    // Continued fraction of the rate, broken off when it gives the very same number.
    double rest = m_rate;
    double numerator = std::floor(rest);
    double denominator = 1;
    double previousNumerator = 1;
    double previousDenominator = 0;
    while (numerator / denominator != m_rate) {
        const double fraction = rest - std::floor(rest);
        if (fraction <= 0)
            break;
        rest = 1 / fraction;
        const double term = std::floor(rest);
        const double nextNumerator = term * numerator + previousNumerator;
        const double nextDenominator = term * denominator + previousDenominator;
        if (nextNumerator > kMaxNumerator || nextDenominator > kMaxDenominator)
            break;
        previousNumerator = numerator;
        previousDenominator = denominator;
        numerator = nextNumerator;
        denominator = nextDenominator;
    }
    if (numerator < 1) {
        // Slower than any ratio within the limits.
        numerator = 1;
        denominator = kMaxDenominator;
    }
    m_numerator = static_cast<quint64>(numerator);
    m_denominator = static_cast<quint64>(denominator);
}

qint64 CSampleClock::OffsetNs(quint64 index) const
{
    constexpr auto kNs = static_cast<quint64>(kNsPerSecond);
    const quint64 product = index * m_denominator;
    const quint64 seconds = product / m_numerator;
    const quint64 remainder = product % m_numerator;
    return static_cast<qint64>(seconds * kNs + remainder * kNs / m_numerator);
}
