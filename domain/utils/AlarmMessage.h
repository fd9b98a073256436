// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"

#include <QString>

class CUserNotifier;

/// A number in the message of an alarm: five significant digits, in the unit that it has.
QString alarmNumberText(double value);

/// Tells the user of a violation as the state of the alarm asks for it: at the tray icon, also with a beep,
/// or not at all.
void giveAlarm(CUserNotifier& notifier, CAlarm::AlarmState state, const QString& title, const QString& text);
