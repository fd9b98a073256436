// SPDX-License-Identifier: MIT
#pragma once

#include "CAlarm.h"
#include "CAxis.h"
#include "CTrigger.h"
#include "KestrixApi.h"

#include <QString>

/// Texts of the enumerations for files and display. A value that is none of the enumeration gives the empty
/// text.

KESTRIX_API QString AlarmStateToText(CAlarm::AlarmState state);
/// An unknown text gives Off.
KESTRIX_API CAlarm::AlarmState TextToAlarmState(const QString& text);

/// The form for files, "B.B'" with a full stop.
KESTRIX_API QString AxisToText(CAxis::AxisType axis);
/// The form for the screen, "B·B'" and "ε(B)".
KESTRIX_API QString AxisToDisplayText(CAxis::AxisType axis);
/// Reads the form for files; an unknown text gives dB.
KESTRIX_API CAxis::AxisType TextToAxis(const QString& text);

KESTRIX_API QString TriggerModeToText(CTrigger::TriggerMode mode);
/// An unknown text gives CONTINUOUS.
KESTRIX_API CTrigger::TriggerMode TextToTriggerMode(const QString& text);
