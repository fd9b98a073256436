// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QObject>

/// Holder of the alarm states, so that QML can name them. Zero is none of them.
class KESTRIX_API CAlarm : public QObject
{
    Q_OBJECT

public:
    enum AlarmState : int { Off = 1, Notification = 2, Audio = 3, FlagNotification = 4 };
    Q_ENUM(AlarmState)

    using QObject::QObject;
};
