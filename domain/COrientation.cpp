// SPDX-License-Identifier: MIT
#include "COrientation.h"

#include "Property.h"

COrientation::COrientation(QObject* parent) : QObject(parent) {}

COrientation::COrientation(const COrientation& other)
    : QObject(), m_roll(other.m_roll), m_pitch(other.m_pitch), m_yaw(other.m_yaw)
{
}

COrientation& COrientation::operator=(const COrientation& other)
{
    m_roll = other.m_roll;
    m_pitch = other.m_pitch;
    m_yaw = other.m_yaw;
    return *this;
}

void COrientation::SetRoll(double value)
{
    storeAndEmitOnChange(this, m_roll, value, &COrientation::RollChanged);
}

void COrientation::SetPitch(double value)
{
    storeAndEmitOnChange(this, m_pitch, value, &COrientation::PitchChanged);
}

void COrientation::SetYaw(double value)
{
    storeAndEmitOnChange(this, m_yaw, value, &COrientation::YawChanged);
}
