// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersSpectrum.h"

#include "Property.h"

void CAlarmParametersSpectrum::SetState(CAlarm::AlarmState value)
{
    storeAndEmitOnChange(this, m_state, value, &CAlarmParametersSpectrum::StateChanged);
}
