// SPDX-License-Identifier: MIT
#include "CPosition.h"

#include "Property.h"

CPosition::CPosition(QObject* parent) : QObject(parent) {}

CPosition::CPosition(const CPosition& other) : QObject(), m_x(other.m_x), m_y(other.m_y), m_z(other.m_z) {}

CPosition& CPosition::operator=(const CPosition& other)
{
    m_x = other.m_x;
    m_y = other.m_y;
    m_z = other.m_z;
    return *this;
}

void CPosition::SetX(double value)
{
    storeAndEmitOnChange(this, m_x, value, &CPosition::XChanged);
}

void CPosition::SetY(double value)
{
    storeAndEmitOnChange(this, m_y, value, &CPosition::YChanged);
}

void CPosition::SetZ(double value)
{
    storeAndEmitOnChange(this, m_z, value, &CPosition::ZChanged);
}
