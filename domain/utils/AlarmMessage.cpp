// SPDX-License-Identifier: GPL-3.0-or-later
#include "AlarmMessage.h"

#include "CUserNotifier.h"
#include "CUtils.h"

QString alarmNumberText(double value)
{
    constexpr int kSignificantDigits = 5;
    return CUtils().doubleToString(value, kSignificantDigits, false);
}

void giveAlarm(CUserNotifier& notifier, CAlarm::AlarmState state, const QString& title, const QString& text)
{
    if (state == CAlarm::Notification || state == CAlarm::Audio)
        notifier.ShowTrayMessage(title, text);
    if (state == CAlarm::Audio)
        notifier.Beep();
}
