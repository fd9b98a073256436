// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QList>
#include <QMetaType>
#include <QObject>

/// Holder of the ways in which an acquisition is triggered. Zero is none of them.
class KESTRIX_API CTrigger : public QObject
{
    Q_OBJECT

public:
    enum TriggerMode : int { CONTINUOUS = 1, IMMEDIATE = 2, TIMER = 3, EXTERNAL = 4 };
    Q_ENUM(TriggerMode)

    using QObject::QObject;
};

Q_DECLARE_METATYPE(QList<CTrigger::TriggerMode>)
