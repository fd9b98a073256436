// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlarmChoices.h"

#include "EnumTexts.h"

namespace AlarmChoices {

QList<CAlarm::AlarmState> states()
{
    return {CAlarm::Off, CAlarm::Notification, CAlarm::Audio, CAlarm::FlagNotification};
}

QStringList stateNames()
{
    QStringList names;
    const QList<CAlarm::AlarmState> all = states();
    for (const CAlarm::AlarmState state : all)
        names.append(AlarmStateToText(state));
    return names;
}

QList<CAxis::AxisType> axes()
{
    return axesWithoutUncertainty() << CAxis::dB;
}

QList<CAxis::AxisType> axesWithoutUncertainty()
{
    return {CAxis::B, CAxis::BBprime, CAxis::Bx, CAxis::By, CAxis::Bz};
}

QStringList axisNames(const QList<CAxis::AxisType>& axes)
{
    QStringList names;
    for (const CAxis::AxisType axis : axes)
        names.append(AxisToDisplayText(axis));
    return names;
}

} // namespace AlarmChoices
