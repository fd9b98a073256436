// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAxisStepSeries.h"

#include "Property.h"

CAxisStepSeries::CAxisStepSeries(QObject* parent) : QObject(parent)
{
    connect(this, &CAxisStepSeries::StartChanged, this, &CAxisStepSeries::OnUpdated);
    connect(this, &CAxisStepSeries::StopChanged, this, &CAxisStepSeries::OnUpdated);
    connect(this, &CAxisStepSeries::StepSizeChanged, this, &CAxisStepSeries::OnUpdated);
}

void CAxisStepSeries::SetStart(double value)
{
    storeAndEmitOnChange(this, m_start, value, &CAxisStepSeries::StartChanged);
}

void CAxisStepSeries::SetStop(double value)
{
    storeAndEmitOnChange(this, m_stop, value, &CAxisStepSeries::StopChanged);
}

void CAxisStepSeries::SetStepSize(double value)
{
    storeAndEmitOnChange(this, m_stepSize, value, &CAxisStepSeries::StepSizeChanged);
}

void CAxisStepSeries::OnUpdated()
{
    emit Updated();
}
