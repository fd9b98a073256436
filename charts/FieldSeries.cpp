// SPDX-License-Identifier: GPL-3.0-or-later
#include "FieldSeries.h"

#include "CFieldIntensityResult.h"

#include <cmath>
#include <limits>

namespace FieldSeries {

Values valuesOf(const CFieldIntensityResult& result)
{
    Values values;
    values.lane[B] = result.B();
    values.lane[BBprime] = result.BBprime();
    values.lane[Bx] = result.Bx();
    values.lane[By] = result.By();
    values.lane[Bz] = result.Bz();
    values.lane[BMinusDB] = result.B() - result.dB();
    values.lane[BPlusDB] = result.B() + result.dB();
    return values;
}

Bucket visitBucket(Iterator first, Iterator last, const Values& previous)
{
    constexpr std::size_t kLanes = Values::kLanes;
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    Bucket bucket;
    bucket.furthest = *first;
    bucket.low.lane.fill(kInfinity);
    bucket.high.lane.fill(-kInfinity);
    Values distance;
    // Selections without branches: the compiler turns each line into one operation on all lanes.
    for (; first != last; ++first) {
        const Values& sample = *first;
        for (std::size_t i = 0; i < kLanes; ++i) {
            const float y = sample.lane[i];
            const float d = std::fabs(previous.lane[i] - y);
            bucket.furthest.lane[i] = d > distance.lane[i] ? y : bucket.furthest.lane[i];
            distance.lane[i] = d > distance.lane[i] ? d : distance.lane[i];
            bucket.low.lane[i] = y < bucket.low.lane[i] ? y : bucket.low.lane[i];
            bucket.high.lane[i] = y > bucket.high.lane[i] ? y : bucket.high.lane[i];
        }
    }
    return bucket;
}

} // namespace FieldSeries
