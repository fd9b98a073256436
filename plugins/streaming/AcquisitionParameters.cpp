// SPDX-License-Identifier: MIT
#include "AcquisitionParameters.h"

#include "CInstrument.h"

#include <algorithm>
#include <cmath>

namespace {

double clampToBound(double value, const CBoundedParm& bound)
{
    if (std::isnan(value))
        return bound.Default();
    return std::clamp(value, bound.Min(), std::max(bound.Min(), bound.Max()));
}

} // namespace

bool operator==(const AcquisitionParameters& a, const AcquisitionParameters& b)
{
    return haveSameTiming(a, b) && a.averaging == b.averaging && a.units == b.units &&
           a.autoRange == b.autoRange && a.range == b.range;
}

bool haveSameTiming(const AcquisitionParameters& a, const AcquisitionParameters& b)
{
    return a.triggerMode == b.triggerMode && a.EffectiveRate() == b.EffectiveRate() &&
           a.blockSize == b.blockSize &&
           (a.triggerMode != CTrigger::TIMER || a.displayRate == b.displayRate) &&
           (a.triggerMode != CTrigger::EXTERNAL || a.triggerPlugin == b.triggerPlugin);
}

AcquisitionParameters copyWithinBounds(const CMeasurementParameters& parameters, CInstrument& instrument)
{
    AcquisitionParameters copy;
    copy.acquisitionRate = clampToBound(parameters.AcquisitionRate(), *instrument.AcquisitionRateBound());
    copy.blockSize = static_cast<int>(clampToBound(parameters.BlockSize(), *instrument.BlockSizeBound()));
    copy.displayRate = clampToBound(parameters.DisplayRate(), *instrument.DisplayRateBound());
    copy.averaging = static_cast<int>(clampToBound(parameters.Averaging(), *instrument.AveragingBound()));
    copy.units = parameters.Units();
    copy.range = parameters.Range();
    // The application itself falls back to automatic ranging for a range that the instrument does not list.
    copy.autoRange = parameters.AutoRange() || !instrument.RangeList().contains(parameters.Range());
    copy.triggerMode = parameters.TriggerMode();
    copy.triggerPlugin = parameters.TriggerPlugin();
    return copy;
}
