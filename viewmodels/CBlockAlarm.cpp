// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBlockAlarm.h"

#include "AlarmMessage.h"
#include "EnumTexts.h"

#include <QDebug>

#include <cmath>
#include <limits>

namespace {

constexpr int kLimitIntervalMs = 2000;

/// Without the cut at large percentages that the display has.
tFlux uncertaintyOf(const CFieldIntensityResult& sample, const CBlockAlarm::DisplayUnits& units)
{
    constexpr double kSmallestMagnitude = 0.0001;

    if (units.uncertainty != CUnits::PERCENT) {
        tFlux converted = 0;
        ConvertUnits(units.field, units.uncertainty, converted, sample.dB());
        return converted;
    }
    const auto magnitude = static_cast<double>(sample.B());
    if (std::abs(magnitude) <= kSmallestMagnitude)
        return std::numeric_limits<tFlux>::quiet_NaN();
    return static_cast<tFlux>(static_cast<double>(sample.dB()) * 100.0 / magnitude);
}

tFlux valueOf(const CFieldIntensityResult& sample, CAxis::AxisType axis,
              const CBlockAlarm::DisplayUnits& units)
{
    switch (axis) {
    case CAxis::B:
        return sample.B();
    case CAxis::BBprime:
        return sample.BBprime();
    case CAxis::Bx:
        return sample.Bx();
    case CAxis::By:
        return sample.By();
    case CAxis::Bz:
        return sample.Bz();
    case CAxis::dB:
        break;
    }
    return uncertaintyOf(sample, units);
}

/// What is not a number is outside of all limits.
bool isInside(tFlux value, const CBlockAlarm::Limits& limits)
{
    const auto number = static_cast<double>(value);
    return number >= limits.minimum && number <= limits.maximum;
}

} // namespace

CBlockAlarm::CBlockAlarm(CUserNotifier* notifier, CAlarm::AlarmState state, CAxis::AxisType axis,
                         bool mayNotify, QObject* parent)
    : QObject(parent), m_notifier(notifier), m_lastState(state), m_lastAxis(axis),
      m_limitTimer(new QTimer(this)), m_mayNotify(mayNotify)
{
    m_limitTimer->setTimerType(Qt::PreciseTimer);
    connect(m_limitTimer, &QTimer::timeout, this, &CBlockAlarm::OnRangeTimerTimedOut);
    m_limitTimer->start(kLimitIntervalMs);
}

void CBlockAlarm::Stop()
{
    m_limitTimer->stop();
}

void CBlockAlarm::OnRangeTimerTimedOut()
{
    m_mayNotify = true;
}

void CBlockAlarm::Check(const CMeasureBlock& block, const Limits& limits, const DisplayUnits& units,
                        const std::function<void(bool)>& setFlag)
{
    if (limits.state != m_lastState || limits.axis != m_lastAxis) {
        m_lastState = limits.state;
        m_lastAxis = limits.axis;
        m_mayNotify = true;
    }
    if (limits.state == CAlarm::Off) {
        setFlag(false);
        return;
    }
    for (const QSharedPointer<CFieldIntensityResult>& sample : block.Results) {
        const tFlux value = valueOf(*sample, limits.axis, units);
        const bool isViolated = !isInside(value, limits);
        if (isViolated)
            m_limitTimer->start(kLimitIntervalMs);
        setFlag(isViolated);
        if (!isViolated)
            continue;
        if (m_mayNotify)
            report(limits, value);
        m_mayNotify = false;
        return;
    }
}

void CBlockAlarm::report(const Limits& limits, tFlux value) const
{
    const QString axis = AxisToDisplayText(limits.axis);
    const QString minimumText = alarmNumberText(limits.minimum);
    const QString valueText = alarmNumberText(static_cast<double>(value));
    const QString maximumText = alarmNumberText(limits.maximum);
    const QString title = tr("%1 is out-of-limit [%2]").arg(axis, UnitToText(limits.unit));

    qWarning().noquote() << title + tr(" : Minimum = %1, %2 = %3, Maximum = %4")
                                        .arg(minimumText, axis, valueText, maximumText);
    giveAlarm(*m_notifier, limits.state, title,
              tr("Minimum = %1\n%2 = %3\nMaximum = %4").arg(minimumText, axis, valueText, maximumText));
}
