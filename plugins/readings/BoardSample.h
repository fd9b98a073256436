// SPDX-License-Identifier: MIT
#pragma once

#include "FieldVector.h"

#include <QtGlobal>

#include <limits>

/// One sample of a board in the unit of the board.
struct BoardSample
{
    qint64 timeNs = 0; ///< of the host's steady clock
    FieldVector field;
    double temperature = std::numeric_limits<double>::quiet_NaN(); ///< degrees Celsius, if the board tells it
    double step = 0;                                               ///< value of the last digit
    quint32 series = 0; ///< samples of different series, as of different rates, do not share a block
};
