// SPDX-License-Identifier: GPL-3.0-or-later
#include "BlockAverages.h"

namespace BlockAverages {

void makeExponential(std::vector<FieldSeries::Values>& samples, unsigned n)
{
    if (samples.empty())
        return;
    const double weight = 1.0 / static_cast<double>(static_cast<float>(n));
    const double rest = (static_cast<double>(n) - 1.0) * weight;
    FieldSeries::Values average = samples.front();
    for (FieldSeries::Values& sample : samples) {
        for (std::size_t i = 0; i < FieldSeries::Count; ++i)
            average[i] = static_cast<float>(static_cast<double>(sample[i]) * weight +
                                            static_cast<double>(average[i]) * rest);
        sample = average;
    }
}

void makeMoving(std::vector<FieldSeries::Values>& samples, unsigned n)
{
    if (samples.empty())
        return;
    const auto divisor = static_cast<float>(n);
    const std::vector<FieldSeries::Values> raw = samples;
    FieldSeries::Values sums = raw.front();
    for (float& sum : sums)
        sum *= divisor;
    for (std::size_t j = 0; j < raw.size(); ++j) {
        const FieldSeries::Values& leaving = raw[j > n ? j - n : 0];
        for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
            sums[i] += raw[j][i] - leaving[i];
            samples[j][i] = sums[i] / divisor;
        }
    }
}

} // namespace BlockAverages
