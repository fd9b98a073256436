// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersAcAnalysis.h"

#include "Property.h"

void CAlarmParametersAcAnalysis::SetState(CAlarm::AlarmState value)
{
    storeAndEmitOnChange(this, m_state, value, &CAlarmParametersAcAnalysis::StateChanged);
}

void CAlarmParametersAcAnalysis::SetAxis(CAxis::AxisType value)
{
    storeAndEmitOnChange(this, m_axis, value, &CAlarmParametersAcAnalysis::AxisChanged);
}
