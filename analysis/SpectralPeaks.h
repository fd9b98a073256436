// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

/// Finds the peaks of an amplitude spectrum as ComputeSpectrum makes it: one for each run of neighbouring
/// bins that are more than `thresholdDb` decibels above the middle bin by size, in ascending order, placed
/// between the bins by a parabola through the largest bin and its neighbours within the run.
///
/// `frequencyResolution` is the width of a bin in Hz. `frequencies` (Hz) and `amplitudes` receive one entry
/// per peak. Amplitudes are those of sines: the factor 2 that the window took is made up for, but not at 0
/// Hz, where a constant reads itself already. A run that begins in one of the last two bins is not seen.
///
/// Returns true; throws ComputeError for a spectrum of less than 2 bins, with both results empty. Pure
/// function: any thread.
bool ComputeSpectralPeaks(const std::vector<float>& spectrum, std::vector<float>& frequencies,
                          std::vector<float>& amplitudes, float frequencyResolution, float thresholdDb);
