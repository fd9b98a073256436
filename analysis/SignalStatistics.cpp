// SPDX-License-Identifier: GPL-3.0-or-later
#include "SignalStatistics.h"

#include "ComputeError.h"

#include <cmath>

// The order and the width of each operation are part of the results: the same block must give the same
// figures everywhere.

bool ComputeRMSValue(const std::vector<float>& signal, float& rms)
{
    rms = 0.0F;
    if (signal.empty())
        throw ComputeError("No signal", "ComputeRMSValue");
    double sum = 0.0;
    for (const float sample : signal) {
        const auto wide = static_cast<double>(sample);
        sum += wide * wide;
    }
    rms = static_cast<float>(std::sqrt(sum / static_cast<double>(signal.size())));
    return true;
}

bool ComputeP2PValue(const std::vector<float>& signal, float& peakToPeak)
{
    peakToPeak = 0.0F;
    if (signal.empty())
        throw ComputeError("No signal", "ComputeP2PValue");
    float min = signal.front();
    float max = signal.front();
    for (const float sample : signal) {
        min = min < sample ? min : sample;
        max = max > sample ? max : sample;
    }
    peakToPeak = max - min;
    return true;
}

bool ComputeStdDevValue(const std::vector<float>& signal, float& standardDeviation)
{
    standardDeviation = 0.0F;
    if (signal.size() < 2)
        throw ComputeError("Need a signal with at least 2 samples", "ComputeStdDevValue");
    float sum = 0.0F;
    for (const float sample : signal)
        sum += sample;
    const float mean = sum / static_cast<float>(signal.size());
    float squares = 0.0F;
    for (const float sample : signal) {
        const float deviation = sample - mean;
        squares += deviation * deviation;
    }
    standardDeviation = std::sqrt(squares / static_cast<float>(signal.size() - 1));
    return true;
}
