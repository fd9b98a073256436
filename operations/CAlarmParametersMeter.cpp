// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersMeter.h"

#include "Property.h"

void CAlarmParametersMeter::SetState(CAlarm::AlarmState value)
{
    storeAndEmitOnChange(this, m_state, value, &CAlarmParametersMeter::StateChanged);
}

void CAlarmParametersMeter::SetAxis(CAxis::AxisType value)
{
    storeAndEmitOnChange(this, m_axis, value, &CAlarmParametersMeter::AxisChanged);
}

void CAlarmParametersMeter::SetMinimum(double value)
{
    storeAndEmitOnChange(this, m_minimum, value, &CAlarmParametersMeter::MinimumChanged);
}

void CAlarmParametersMeter::SetMaximum(double value)
{
    storeAndEmitOnChange(this, m_maximum, value, &CAlarmParametersMeter::MaximumChanged);
}

void CAlarmParametersMeter::SetDisplayAlarmUnits(CUnits::UnitType value)
{
    storeAndEmit(this, m_displayAlarmUnits, value, &CAlarmParametersMeter::DisplayAlarmUnitsChanged);
}
