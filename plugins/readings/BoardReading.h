// SPDX-License-Identifier: MIT
#pragma once

#include "CUnits.h"
#include "FieldVector.h"

#include <optional>

/// Unit of a board's own clock.
enum class BoardTimeUnit { Unknown, Seconds, Milliseconds, Microseconds };

/// One sample as a board printed it.
struct BoardReading
{
    FieldVector field;                       ///< in `unit`
    CUnits::UnitType unit = CUnits::UNKNOWN; ///< UNKNOWN if the board does not tell it
    std::optional<double> deviceTime;        ///< the board's clock, in `timeUnit`
    BoardTimeUnit timeUnit = BoardTimeUnit::Unknown;
    std::optional<double> temperature; ///< degrees Celsius
    double step = 0;                   ///< value of the last digit written, in `unit`
    int lostBefore = 0;                ///< samples right before this one that came too broken to be read
};
