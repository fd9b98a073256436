// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// An axis whose ends lie on round multiples of its tick.
struct NiceRange
{
    double min;
    double max;
    int tickCount;
};

/// The axis around `yMin` to `yMax`. `tickCount` is the number of ticks that the axis has now: it sets the
/// size of the tick, so the result depends on the axis' history. Equal ends have no tick: both limits then
/// are not a number and the tick count is 1; a `tickCount` below 2 counts as 11, so that the axis recovers
/// from that.
NiceRange niceRange(double yMin, double yMax, int tickCount);

/// What a position axis shows on either side of a range of this width: about half of it, rounded up and then
/// to a round number. A range without a width counts as 1.
double niceMargin(double span);
