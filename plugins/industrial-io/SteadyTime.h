// SPDX-License-Identifier: MIT
#pragma once

#include "TimeUnits.h"

#include <QtGlobal>

#include <chrono>

/// Nanoseconds of the steady clock.
inline qint64 steadyNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}
