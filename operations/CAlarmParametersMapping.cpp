// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersMapping.h"

#include "Property.h"

void CAlarmParametersMapping::SetState(CAlarm::AlarmState value)
{
    storeAndEmitOnChange(this, m_state, value, &CAlarmParametersMapping::StateChanged);
}

void CAlarmParametersMapping::SetAxis(CAxis::AxisType value)
{
    storeAndEmitOnChange(this, m_axis, value, &CAlarmParametersMapping::AxisChanged);
}

void CAlarmParametersMapping::SetMinimum(double value)
{
    storeAndEmitOnChange(this, m_minimum, value, &CAlarmParametersMapping::MinimumChanged);
}

void CAlarmParametersMapping::SetMaximum(double value)
{
    storeAndEmitOnChange(this, m_maximum, value, &CAlarmParametersMapping::MaximumChanged);
}

void CAlarmParametersMapping::SetDisplayAlarmUnits(CUnits::UnitType value)
{
    storeAndEmit(this, m_displayAlarmUnits, value, &CAlarmParametersMapping::DisplayAlarmUnitsChanged);
}
