// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2D.h"

#include "Property.h"

CChart2D::CChart2D(QObject* parent) : QAbstractTableModel(parent) {}

void CChart2D::SetXmax(double value)
{
    storeAndEmit(this, m_xmax, value, &CChart2D::XmaxChanged);
}

void CChart2D::SetXmin(double value)
{
    storeAndEmit(this, m_xmin, value, &CChart2D::XminChanged);
}

void CChart2D::SetVisible(bool value)
{
    storeAndEmit(this, m_visible, value, &CChart2D::VisibleChanged);
}

void CChart2D::SetAutoScaling(bool value)
{
    storeAndEmit(this, m_autoScaling, value, &CChart2D::AutoScalingChanged);
}

void CChart2D::SetYmax(double value)
{
    storeAndEmit(this, m_ymax, value, &CChart2D::YmaxChanged);
}

void CChart2D::SetYmin(double value)
{
    storeAndEmit(this, m_ymin, value, &CChart2D::YminChanged);
}

void CChart2D::SetYmaxAllSignal(double value)
{
    storeAndEmit(this, m_ymaxAllSignal, value, &CChart2D::YmaxAllSignalChanged);
}

void CChart2D::SetYminAllSignal(double value)
{
    storeAndEmit(this, m_yminAllSignal, value, &CChart2D::YminAllSignalChanged);
}

void CChart2D::SetFirstDataInit(bool value)
{
    storeAndEmit(this, m_firstDataInit, value, &CChart2D::FirstDataInitChanged);
}

void CChart2D::SetYminMaxReseted(bool value)
{
    storeAndEmit(this, m_yminMaxReseted, value, &CChart2D::YminMaxResetedChanged);
}

void CChart2D::WidenAllSignal(double value)
{
    if (value < m_yminAllSignal || m_yminAllSignal == kYminUnset)
        SetYminAllSignal(value);
    if (value > m_ymaxAllSignal || m_ymaxAllSignal == kYmaxUnset)
        SetYmaxAllSignal(value);
}
