// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlockMapping.h"
#include "FieldSeries.h"

#include <QSharedPointer>

#include <vector>

/// A block of a mapping as its plot keeps it.
struct MappingEntry
{
    QSharedPointer<CMeasureBlockMapping> block;
    double key = 0.0;                        ///< its place in the order of the plot
    quint64 firstResult = 0;                 ///< results that arrived before this block's
    std::vector<double> timeStamps;          ///< of each result on the time axis, in s since the epoch
    std::vector<FieldSeries::Values> values; ///< of each result, as they are plotted
};
