// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "CAxis.h"
#include "CUnits.h"

#include <QObject>

/// Alarm of the mapping: each sample is compared with a minimum and a maximum on the chosen axis.
class CAlarmParametersMapping : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CAlarm::AlarmState State READ State WRITE SetState NOTIFY StateChanged)
    Q_PROPERTY(CAxis::AxisType Axis READ Axis WRITE SetAxis NOTIFY AxisChanged)
    Q_PROPERTY(double Minimum READ Minimum WRITE SetMinimum NOTIFY MinimumChanged)
    Q_PROPERTY(double Maximum READ Maximum WRITE SetMaximum NOTIFY MaximumChanged)
    Q_PROPERTY(CUnits::UnitType DisplayAlarmUnits READ DisplayAlarmUnits WRITE SetDisplayAlarmUnits NOTIFY
                   DisplayAlarmUnitsChanged)

public:
    using QObject::QObject;

    CAlarm::AlarmState State() const { return m_state; } ///< what a violation causes
    CAxis::AxisType Axis() const { return m_axis; }      ///< field of the sample that is compared
    double Minimum() const { return m_minimum; } ///< in the unit of the samples; not converted with it
    double Maximum() const { return m_maximum; } ///< in the unit of the samples; not converted with it
    CUnits::UnitType DisplayAlarmUnits() const { return m_displayAlarmUnits; } ///< label of the limits

    // DisplayAlarmUnits emits at every assignment, the others on a change.
    void SetState(CAlarm::AlarmState value);
    void SetAxis(CAxis::AxisType value);
    void SetMinimum(double value);
    void SetMaximum(double value);
    void SetDisplayAlarmUnits(CUnits::UnitType value);

signals:
    void StateChanged(CAlarm::AlarmState value);
    void AxisChanged(CAxis::AxisType value);
    void MinimumChanged(double value);
    void MaximumChanged(double value);
    void DisplayAlarmUnitsChanged(CUnits::UnitType value);

private:
    CAlarm::AlarmState m_state = CAlarm::Off;
    CAxis::AxisType m_axis = CAxis::B;
    double m_minimum = 0.0;
    double m_maximum = 0.0;
    CUnits::UnitType m_displayAlarmUnits = CUnits::TESLA;
};
