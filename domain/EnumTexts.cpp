// SPDX-License-Identifier: MIT
#include "EnumTexts.h"

namespace {

template <class Enum> struct EnumText
{
    Enum value;
    const char* text;
};

constexpr EnumText<CAlarm::AlarmState> kAlarmStates[] = {
    {CAlarm::Off, "Off"},
    {CAlarm::Notification, "Notification"},
    {CAlarm::Audio, "Audio"},
    {CAlarm::FlagNotification, "Flag Notification"},
};

constexpr EnumText<CAxis::AxisType> kAxes[] = {
    {CAxis::B, "B"},   {CAxis::BBprime, "B.B'"}, {CAxis::Bx, "Bx"},
    {CAxis::By, "By"}, {CAxis::Bz, "Bz"},        {CAxis::dB, "dB"},
};

constexpr EnumText<CTrigger::TriggerMode> kTriggerModes[] = {
    {CTrigger::CONTINUOUS, "Continuous"},
    {CTrigger::IMMEDIATE, "Immediate"},
    {CTrigger::TIMER, "Timer"},
    {CTrigger::EXTERNAL, "External"},
};

template <class Enum, std::size_t count> QString textOf(const EnumText<Enum> (&table)[count], Enum value)
{
    for (const EnumText<Enum>& entry : table) {
        if (entry.value == value)
            return QString::fromLatin1(entry.text);
    }
    return {};
}

template <class Enum, std::size_t count>
Enum valueOf(const EnumText<Enum> (&table)[count], const QString& text, Enum fallback)
{
    for (const EnumText<Enum>& entry : table) {
        if (text == QLatin1String(entry.text))
            return entry.value;
    }
    return fallback;
}

} // namespace

QString AlarmStateToText(CAlarm::AlarmState state)
{
    return textOf(kAlarmStates, state);
}

CAlarm::AlarmState TextToAlarmState(const QString& text)
{
    return valueOf(kAlarmStates, text, CAlarm::Off);
}

QString AxisToText(CAxis::AxisType axis)
{
    return textOf(kAxes, axis);
}

QString AxisToDisplayText(CAxis::AxisType axis)
{
    switch (axis) {
    case CAxis::BBprime:
        return QStringLiteral("B\u00B7B'");
    case CAxis::dB:
        return QStringLiteral("\u03B5(B)");
    default:
        return textOf(kAxes, axis);
    }
}

CAxis::AxisType TextToAxis(const QString& text)
{
    return valueOf(kAxes, text, CAxis::dB);
}

QString TriggerModeToText(CTrigger::TriggerMode mode)
{
    return textOf(kTriggerModes, mode);
}

CTrigger::TriggerMode TextToTriggerMode(const QString& text)
{
    return valueOf(kTriggerModes, text, CTrigger::CONTINUOUS);
}
