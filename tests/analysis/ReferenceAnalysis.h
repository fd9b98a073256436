// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// What the analysis must give, in double precision and straight from the definitions: transforms are sums
/// over sines and cosines. Shares no code with the program.
namespace ReferenceAnalysis {

/// Amplitudes 2/N |DFT| under the window sin²(π n / (N-1)), N/2+1 bins.
std::vector<double> spectrum(const std::vector<float>& signal);

/// The part of a signal made of the bins `begin` to before `end` of the lower half of its transform, with
/// their mirror images.
std::vector<double> bandPass(const std::vector<float>& signal, std::size_t begin, std::size_t end);

double rms(const std::vector<double>& signal);
double peakToPeak(const std::vector<double>& signal);
double standardDeviation(const std::vector<double>& signal);

/// Frequency and amplitude of each peak.
std::vector<std::pair<double, double>> peaks(const std::vector<float>& spectrum, double resolution,
                                             double thresholdDb);

std::vector<double> widened(const std::vector<float>& values);

} // namespace ReferenceAnalysis
