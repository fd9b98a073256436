// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>

inline constexpr double kSecondsPerNs = 1e-9;
inline constexpr double kMsPerSecond = 1000;

/// Nanoseconds of the steady clock.
inline qint64 steadyNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}
