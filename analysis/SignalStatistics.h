// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

// Statistics of one block of equally spaced samples, in the unit of the samples. They return true, and throw
// ComputeError for a signal that is too short; the result is 0 then. Values that are not numbers or infinite
// are not tested for and pass through the arithmetic. Pure functions: any thread.

/// Root of the mean square, summed in double precision. Needs at least 1 sample.
bool ComputeRMSValue(const std::vector<float>& signal, float& rms);

/// Largest minus smallest sample. Needs at least 1 sample. A sample that is not a number makes both extremes
/// start anew with the sample after it.
bool ComputeP2PValue(const std::vector<float>& signal, float& peakToPeak);

/// Sample standard deviation (divisor N - 1), in two passes and all in single precision. Needs at least 2
/// samples.
bool ComputeStdDevValue(const std::vector<float>& signal, float& standardDeviation);
