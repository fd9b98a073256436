// SPDX-License-Identifier: GPL-3.0-or-later
#include "FieldSeries.h"

#include "CFieldIntensityResult.h"
#include "CMeasureBlock.h"

#include <cmath>
#include <limits>

namespace FieldSeries {

Values valuesOf(const CFieldIntensityResult& result)
{
    return {result.B(),
            result.BBprime(),
            result.Bx(),
            result.By(),
            result.Bz(),
            result.B() - result.dB(),
            result.B() + result.dB()};
}

std::vector<float> signalOf(const CMeasureBlock& block, Index series)
{
    std::vector<float> signal;
    signal.reserve(static_cast<std::size_t>(block.Results.size()));
    for (const auto& result : block.Results)
        signal.push_back(valuesOf(*result)[series]);
    return signal;
}

Bucket visitBucket(const Iterator& first, const Iterator& last, const Values& previous)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    Bucket bucket{};
    // One series after the other and selections instead of branches keep the running values in registers.
    for (std::size_t i = 0; i < Count; ++i) {
        const float drawn = previous[i];
        float furthest = (*first)[i];
        float distance = 0.0F;
        float low = kInfinity;
        float high = -kInfinity;
        for (Iterator sample = first; sample != last; ++sample) {
            const float y = (*sample)[i];
            const float d = std::fabs(drawn - y);
            furthest = d > distance ? y : furthest;
            distance = d > distance ? d : distance;
            low = y < low ? y : low;
            high = y > high ? y : high;
        }
        bucket.furthest[i] = furthest;
        bucket.low[i] = low;
        bucket.high[i] = high;
    }
    return bucket;
}

} // namespace FieldSeries
