// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FieldSeries.h"

#include <vector>

/// Averages over the samples of one block, each series by itself. The samples are replaced by the averages.
namespace BlockAverages {

/// y = x / n + y (n - 1) / n, in double with each y rounded to single precision. y starts at the first
/// sample. `n` is at least 1.
void makeExponential(std::vector<FieldSeries::Values>& samples, unsigned n);

/// The mean of the last `n` samples, in single precision, with a sum that is carried on. Samples before the
/// first count as equal to it. `n` is at least 1.
void makeMoving(std::vector<FieldSeries::Values>& samples, unsigned n);

} // namespace BlockAverages
