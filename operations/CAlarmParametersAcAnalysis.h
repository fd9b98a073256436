// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "CAxis.h"

#include <QObject>

/// Alarm of the AC analysis: the value of each band on the chosen axis is compared with the exposure limits
/// file.
class CAlarmParametersAcAnalysis : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CAlarm::AlarmState State READ State WRITE SetState NOTIFY StateChanged)
    Q_PROPERTY(CAxis::AxisType Axis READ Axis WRITE SetAxis NOTIFY AxisChanged)

public:
    using QObject::QObject;

    CAlarm::AlarmState State() const { return m_state; } ///< what a violation causes
    CAxis::AxisType Axis() const { return m_axis; }      ///< field whose figure of merit is compared

    void SetState(CAlarm::AlarmState value);
    void SetAxis(CAxis::AxisType value);

signals:
    void StateChanged(CAlarm::AlarmState value);
    void AxisChanged(CAxis::AxisType value);

private:
    CAlarm::AlarmState m_state = CAlarm::Off;
    CAxis::AxisType m_axis = CAxis::B;
};
