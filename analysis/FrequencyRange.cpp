// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrequencyRange.h"

#include "Property.h"

void FrequencyRange::SetUpperFrequencyLimitValue(double value)
{
    storeAndEmitOnChange(this, m_upperFrequencyLimitValue, value,
                         &FrequencyRange::UpperFrequencyLimitValueChanged);
}

void FrequencyRange::SetUpperFrequencyLimitUnit(CUnits::UnitType value)
{
    storeAndEmitOnChange(this, m_upperFrequencyLimitUnit, value,
                         &FrequencyRange::UpperFrequencyLimitUnitChanged);
}

void FrequencyRange::SetExposureLimitValue(double value)
{
    storeAndEmitOnChange(this, m_exposureLimitValue, value, &FrequencyRange::ExposureLimitValueChanged);
}

void FrequencyRange::SetExposureLimitUnit(CUnits::UnitType value)
{
    storeAndEmitOnChange(this, m_exposureLimitUnit, value, &FrequencyRange::ExposureLimitUnitChanged);
}
