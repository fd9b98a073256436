// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectralPeaks.h"

#include "ComputeError.h"

#include <algorithm>
#include <cmath>

namespace {

/// Values that are not numbers come last, since the plain comparison would give them no place at all.
bool isBefore(float left, float right)
{
    return left < right || (std::isnan(right) && !std::isnan(left));
}

/// Of an odd number of bins the mean of two neighbours, of an even number one bin: not the median of the
/// textbook, and kept so, as the same spectrum must always give the same peaks.
double medianOf(std::vector<float> sorted)
{
    std::sort(sorted.begin(), sorted.end(), isBefore);
    const std::size_t half = sorted.size() / 2;
    if (sorted.size() % 2 == 0)
        return static_cast<double>(sorted[half]);
    return static_cast<double>(sorted[half - 1] + sorted[half]) * 0.5;
}

struct Peak
{
    double bin = 0; ///< position in bins, with a fraction
    double value = 0;
};

/// The peak of the bins `begin` to before `end`.
Peak peakOf(const std::vector<float>& spectrum, std::size_t begin, std::size_t end)
{
    const auto first = spectrum.begin();
    const auto run = first + static_cast<std::ptrdiff_t>(begin);
    const auto runEnd = first + static_cast<std::ptrdiff_t>(end);
    const auto largest = std::max_element(run, runEnd); // the first of equal ones
    const auto bin = static_cast<double>(largest - first);
    const auto at = static_cast<double>(*largest);
    if (largest == run || largest + 1 == runEnd)
        return {bin, at};

    const auto before = static_cast<double>(*(largest - 1));
    const auto after = static_cast<double>(*(largest + 1));
    const double delta = ((before - after) * 0.5) / (before - (at + at) + after);
    return {bin + delta, at - ((before - after) * 0.25) * delta};
}

} // namespace

bool ComputeSpectralPeaks(const std::vector<float>& spectrum, std::vector<float>& frequencies,
                          std::vector<float>& amplitudes, float frequencyResolution, float thresholdDb)
{
    frequencies.clear();
    amplitudes.clear();
    const std::size_t size = spectrum.size();
    if (size < 2)
        throw ComputeError("Need spectrum with at least 2 bins", "ComputeSpectralPeaks");

    const double threshold = medianOf(spectrum) * std::pow(10.0, static_cast<double>(thresholdDb / 20.0F));
    const auto isAbove = [&](std::size_t bin) { return static_cast<double>(spectrum[bin]) > threshold; };

    std::size_t bin = 0;
    while (bin < size - 2) {
        if (!isAbove(bin)) {
            ++bin;
            continue;
        }
        const std::size_t begin = bin;
        while (bin < size && isAbove(bin))
            ++bin;
        const Peak peak = peakOf(spectrum, begin, bin);
        const float frequency = static_cast<float>(peak.bin) * frequencyResolution;
        auto amplitude = static_cast<float>(peak.value);
        if (frequency > 0.0F)
            amplitude += amplitude;
        frequencies.push_back(frequency);
        amplitudes.push_back(amplitude);
    }
    return true;
}
