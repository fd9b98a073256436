// SPDX-License-Identifier: MIT
#include "CBprimeResult.h"

#include "Property.h"

CBprimeResult::CBprimeResult(QObject* parent) : QObject(parent) {}

void CBprimeResult::SetX(double value)
{
    storeAndEmitOnChange(this, m_x, value, &CBprimeResult::XChanged);
}

void CBprimeResult::SetY(double value)
{
    storeAndEmitOnChange(this, m_y, value, &CBprimeResult::YChanged);
}

void CBprimeResult::SetZ(double value)
{
    storeAndEmitOnChange(this, m_z, value, &CBprimeResult::ZChanged);
}
