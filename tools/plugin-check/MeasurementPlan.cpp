// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeasurementPlan.h"

#include "CInstrument.h"

#include <algorithm>
#include <cmath>

namespace {

// So many blocks a second keep the check short.
constexpr double kQuickDisplayRate = 10;

double clampTo(double value, const CBoundedParm& bound)
{
    return std::max(bound.Min(), std::min(value, bound.Max()));
}

bool isAllowed(double acquisitionRate, double displayRate, CInstrument& instrument)
{
    const CBoundedParm& rates = *instrument.KestrixDisplayRateBound();
    const CBoundedParm& sizes = *instrument.BlockSizeBound();
    if (displayRate <= 0 || displayRate > acquisitionRate || displayRate < rates.Min() ||
        displayRate > rates.Max())
        return false;
    const double size = std::floor(acquisitionRate / displayRate);
    return size >= std::max(1.0, sizes.Min()) && size <= sizes.Max();
}

} // namespace

MeasurementPlan MeasurementPlan::Of(CInstrument& instrument)
{
    MeasurementPlan plan;
    const CBoundedParm& rates = *instrument.KestrixAcquisitionRateBound();
    const CBoundedParm& displayRates = *instrument.KestrixDisplayRateBound();
    plan.acquisitionRate = clampTo(rates.Default(), rates);
    plan.averaging =
        static_cast<int>(clampTo(instrument.AveragingBound()->Default(), *instrument.AveragingBound()));
    const double preferred = std::max(displayRates.Default(), kQuickDisplayRate);
    plan.displayRate = std::min(clampTo(preferred, displayRates), plan.acquisitionRate);
    if (!isAllowed(plan.acquisitionRate, plan.displayRate, instrument))
        plan.displayRate = std::min(clampTo(displayRates.Default(), displayRates), plan.acquisitionRate);
    for (const double other : {plan.displayRate / 2, plan.displayRate * 2}) {
        const bool isOther =
            std::floor(plan.acquisitionRate / other) != std::floor(plan.acquisitionRate / plan.displayRate);
        if (plan.otherDisplayRate == 0 && isOther && isAllowed(plan.acquisitionRate, other, instrument))
            plan.otherDisplayRate = other;
    }
    return plan;
}

void MeasurementPlan::Configure(CMeasurementParameters& parameters, const CInstrument& instrument,
                                CTrigger::TriggerMode mode) const
{
    parameters.SetApplyConfiguration(false);
    if (!instrument.UnitList().isEmpty()) {
        parameters.SetUnits(instrument.UnitList().constFirst());
        parameters.SetDisplayUnits(parameters.Units());
    }
    parameters.SetAutoRange(true);
    parameters.SetAveraging(averaging);
    // In these modes the block size follows the rates; in the others the display rate would follow it.
    parameters.SetTriggerMode(mode == CTrigger::TIMER ? CTrigger::TIMER : CTrigger::CONTINUOUS);
    parameters.SetAcquisitionRate(acquisitionRate);
    parameters.SetDisplayRate(displayRate);
    parameters.SetTriggerMode(mode);
    parameters.SetApplyConfiguration(true);
}
