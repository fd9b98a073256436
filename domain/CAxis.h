// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QObject>

/// Holder of the fields of a sample that an alarm can watch. Zero is none of them.
class KESTRIX_API CAxis : public QObject
{
    Q_OBJECT

public:
    enum AxisType : int { B = 1, BBprime = 2, Bx = 3, By = 4, Bz = 5, dB = 6 };
    Q_ENUM(AxisType)

    using QObject::QObject;
};
