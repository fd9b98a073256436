// SPDX-License-Identifier: MIT
#include "CBoundedParm.h"

#include "Property.h"

CBoundedParm::CBoundedParm(QObject* parent) : QObject(parent) {}

void CBoundedParm::SetMin(double value)
{
    storeAndEmitOnChange(this, m_min, value, &CBoundedParm::MinChanged);
}

void CBoundedParm::SetMax(double value)
{
    storeAndEmitOnChange(this, m_max, value, &CBoundedParm::MaxChanged);
}

void CBoundedParm::SetDefault(double value)
{
    storeAndEmitOnChange(this, m_default, value, &CBoundedParm::DefaultChanged);
}
