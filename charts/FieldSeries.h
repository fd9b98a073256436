// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <vector>

class CFieldIntensityResult;
class CMeasureBlock;

/// The seven series of every field plot, in their fixed order.
namespace FieldSeries {

enum Index : std::size_t { B, BBprime, Bx, By, Bz, BMinusDB, BPlusDB, Count };

/// One value of each series.
using Values = std::array<float, Count>;
using Iterator = std::deque<Values>::const_iterator;

Values valuesOf(const CFieldIntensityResult& result);

/// One series over all results of the block, in their order.
std::vector<float> signalOf(const CMeasureBlock& block, Index series);

/// What one walk over the samples of a bucket finds, for each series.
struct Bucket
{
    Values furthest; ///< the sample furthest from the value drawn before; the earlier one of equals
    Values low;      ///< smallest value, plus infinity without one
    Values high;     ///< largest value, minus infinity without one
};

/// Walks `first` up to `last`, at least one sample. A value that is not a number wins only as the first
/// sample, and takes no part in `low` and `high`.
Bucket visitBucket(const Iterator& first, const Iterator& last, const Values& previous);

} // namespace FieldSeries
