// SPDX-License-Identifier: MIT
#include "CFieldIntensityResult.h"

#include "Property.h"

void CFieldIntensityResult::SetBx(tFlux value)
{
    storeAndEmitOnChange(this, m_bx, value, &CFieldIntensityResult::BxChanged);
}

void CFieldIntensityResult::SetBy(tFlux value)
{
    storeAndEmitOnChange(this, m_by, value, &CFieldIntensityResult::ByChanged);
}

void CFieldIntensityResult::SetBz(tFlux value)
{
    storeAndEmitOnChange(this, m_bz, value, &CFieldIntensityResult::BzChanged);
}

void CFieldIntensityResult::SetB(tFlux value)
{
    storeAndEmitOnChange(this, m_b, value, &CFieldIntensityResult::BChanged);
}

void CFieldIntensityResult::SetDB(tFlux value)
{
    storeAndEmitOnChange(this, m_dB, value, &CFieldIntensityResult::dBChanged);
}

void CFieldIntensityResult::SetBBprime(tFlux value)
{
    storeAndEmitOnChange(this, m_bbPrime, value, &CFieldIntensityResult::BBprimeChanged);
}

void CFieldIntensityResult::SetDBConverted(tFlux value)
{
    storeAndEmitOnChange(this, m_dBConverted, value, &CFieldIntensityResult::dBConvertedChanged);
}

void CFieldIntensityResult::SetTemperature(quint16 value)
{
    storeAndEmitOnChange(this, m_temperature, value, &CFieldIntensityResult::TemperatureChanged);
}
