// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "CAxis.h"

#include <QList>
#include <QStringList>

/// What the boxes "Alarm" of the pages offer.
namespace AlarmChoices {

QList<CAlarm::AlarmState> states();
QStringList stateNames();

/// All fields of a sample.
QList<CAxis::AxisType> axes();
/// The fields that have a figure of merit: all but the uncertainty.
QList<CAxis::AxisType> axesWithoutUncertainty();
QStringList axisNames(const QList<CAxis::AxisType>& axes);

} // namespace AlarmChoices
