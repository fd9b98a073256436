// SPDX-License-Identifier: GPL-3.0-or-later
#include "CapabilityRules.h"

#include "CCheckRun.h"
#include "CInstrument.h"
#include "EnumTexts.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// BlockSize is used as 16 bits without sign.
constexpr double kMaxBlockSize = 65535;
// Bounds are computed: the half of a rate need not be the other bound to the last digit.
constexpr double kRounding = 1e-6;

template <class List> bool hasDuplicates(const List& list)
{
    for (int i = 0; i < list.size(); ++i) {
        if (list.lastIndexOf(list.at(i)) != i)
            return true;
    }
    return false;
}

void checkIdentity(CCheckRun& run, const CInstrument& instrument)
{
    QStringList empty;
    if (instrument.Name().isEmpty())
        empty.append(QStringLiteral("Name"));
    if (instrument.Manufacturer().isEmpty())
        empty.append(QStringLiteral("Manufacturer"));
    if (instrument.Model().isEmpty())
        empty.append(QStringLiteral("Model"));
    if (!empty.isEmpty())
        run.Find("identity-empty", empty.join(QLatin1String(", ")));
}

void checkUnits(CCheckRun& run, const QList<CUnits::UnitType>& units)
{
    if (units.isEmpty())
        run.Find("units-empty", QString());
    for (const CUnits::UnitType unit : units) {
        if (unit < CUnits::TESLA || unit > CUnits::ADC)
            run.Find("unit-invalid", QString::number(unit));
    }
    if (units.contains(CUnits::ADC) && units.constLast() != CUnits::ADC)
        run.Find("unit-order", QString());
    if (hasDuplicates(units))
        run.Find("list-duplicate", QStringLiteral("UnitList"));
}

void checkRanges(CCheckRun& run, const QList<tFlux>& ranges)
{
    if (ranges.isEmpty())
        run.Find("ranges-empty", QString());
    for (const tFlux range : ranges) {
        if (!std::isfinite(range) || range <= 0)
            run.Find("range-invalid", QString::number(static_cast<double>(range)));
    }
    if (!std::is_sorted(ranges.cbegin(), ranges.cend()))
        run.Find("range-order", QString());
    if (hasDuplicates(ranges))
        run.Find("list-duplicate", QStringLiteral("RangeList"));
}

void checkTriggers(CCheckRun& run, const QList<CTrigger::TriggerMode>& modes)
{
    if (modes.isEmpty())
        run.Find("triggers-empty", QString());
    for (const CTrigger::TriggerMode mode : modes) {
        if (mode < CTrigger::CONTINUOUS || mode > CTrigger::EXTERNAL)
            run.Find("enum-value", QStringLiteral("TriggerList holds %1").arg(mode));
    }
    if (hasDuplicates(modes))
        run.Find("list-duplicate", QStringLiteral("TriggerList"));
    if (modes.contains(CTrigger::CONTINUOUS) && modes.constFirst() != CTrigger::CONTINUOUS) {
        run.Find("trigger-order", QString());
        return;
    }
    // The mapping page names the modes by their places behind CONTINUOUS.
    for (int i = 0; i < modes.size(); ++i) {
        if (modes.at(i) != i + CTrigger::CONTINUOUS)
            run.Find("trigger-position", TriggerModeToText(modes.at(i)));
    }
}

struct BoundRule
{
    const char* name;
    const CBoundedParm* bound;
    double lowest;  ///< Min must not be below it
    bool isAbove;   ///< Min must be above it
    double highest; ///< Max must not be above it
};

void checkBound(CCheckRun& run, const BoundRule& rule)
{
    const double min = rule.bound->Min();
    const double max = rule.bound->Max();
    const double value = rule.bound->Default();
    const QString text = QStringLiteral("%1: Min %2, Max %3, Default %4")
                             .arg(QLatin1String(rule.name))
                             .arg(min)
                             .arg(max)
                             .arg(value);
    if (!std::isfinite(min) || !std::isfinite(max) || !std::isfinite(value)) {
        run.Find("bound-invalid", text);
        return;
    }
    if (min > max)
        run.Find("bound-inverted", text);
    else if (value < min || value > max)
        run.Find("bound-default", text);
    const bool isTooLow = rule.isAbove ? min <= rule.lowest : min < rule.lowest;
    if (isTooLow || max > rule.highest || max <= 0)
        run.Find("bound-invalid", text);
}

void checkAveraging(CCheckRun& run, const CBoundedParm& bound)
{
    // The defaults of the meter page and of a mapping.
    for (const double start : {10.0, 100.0}) {
        if (bound.Min() <= bound.Max() && (start < bound.Min() || start > bound.Max()))
            run.Find("bound-averaging", QString::number(start));
    }
}

void checkBounds(CCheckRun& run, CInstrument& instrument)
{
    constexpr double kNoLimit = std::numeric_limits<double>::max();
    const BoundRule rules[] = {
        {"AveragingBound", instrument.AveragingBound(), 1, false, std::numeric_limits<int>::max()},
        {"DisplayRateBound", instrument.DisplayRateBound(), 0, true, kNoLimit},
        {"BlockSizeBound", instrument.BlockSizeBound(), 1, false, kMaxBlockSize},
        {"AcquisitionRateBound", instrument.AcquisitionRateBound(), 0, true, kNoLimit},
        {"KestrixAcquisitionRateBound", instrument.KestrixAcquisitionRateBound(), 0, true, kNoLimit},
        {"KestrixDisplayRateBound", instrument.KestrixDisplayRateBound(), 0, true, kNoLimit},
        {"FrequencyMinBound", instrument.FrequencyMinBound(), 0, false, kNoLimit},
        {"FrequencyMaxBound", instrument.FrequencyMaxBound(), 0, false, kNoLimit}};
    for (const BoundRule& rule : rules)
        checkBound(run, rule);
    checkAveraging(run, *instrument.AveragingBound());
    const double highest = instrument.FrequencyMaxBound()->Max();
    const double needed = instrument.KestrixAcquisitionRateBound()->Max() / 2;
    if (highest < needed * (1 - kRounding))
        run.Find("bound-frequency", QStringLiteral("Max %1, needed %2").arg(highest).arg(needed));
}

} // namespace

void checkCapabilities(CCheckRun& run, CInstrument& instrument)
{
    checkIdentity(run, instrument);
    checkUnits(run, instrument.UnitList());
    checkRanges(run, instrument.RangeList());
    checkTriggers(run, instrument.TriggerList());
    checkBounds(run, instrument);

    QJsonArray units;
    const QList<CUnits::UnitType> unitList = instrument.UnitList();
    for (const CUnits::UnitType unit : unitList)
        units.append(UnitToText(unit));
    QJsonArray modes;
    const QList<CTrigger::TriggerMode> triggerList = instrument.TriggerList();
    for (const CTrigger::TriggerMode mode : triggerList)
        modes.append(TriggerModeToText(mode));
    run.Fact(instrument.SerialNumber() + QStringLiteral(" units"), units);
    run.Fact(instrument.SerialNumber() + QStringLiteral(" trigger modes"), modes);
}
