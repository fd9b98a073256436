// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DAveragedData.h"

#include "CSettings.h"
#include "Property.h"

CChart2DAveragedData::CChart2DAveragedData(CMeasurementParameters* parameters, CSettings* settings,
                                           QObject* parent)
    : CChart2DFieldsData(parameters, parent), m_settings(settings),
      m_averagingModeNames({tr("Off"), tr("Exponential"), tr("Moving")})
{
    SetAveragingCount(m_settings->AveragingCount());
    SetAveragingModeIndex(m_settings->AveragingMode());
    onAveragingModeIndexChange();
    // Only now: there is nothing yet to be filtered, nor a derived class to do it.
    connect(this, &CChart2DAveragedData::AveragingModeChanged, this,
            &CChart2DFieldsData::RecomputeFullFilter);
    connect(this, &CChart2DAveragedData::AveragingCountChanged, this,
            &CChart2DFieldsData::RecomputeFullFilter);
    connect(this, &CChart2DAveragedData::AveragingModeIndexChanged, this,
            &CChart2DAveragedData::onAveragingModeIndexChange);
    connect(this, &CChart2DAveragedData::AveragingCountChanged, this,
            &CChart2DAveragedData::onAveragingCountIndexChange);
}

void CChart2DAveragedData::SetAveragingCount(uint value)
{
    storeAndEmitOnChange(this, m_averagingCount, value, &CChart2DAveragedData::AveragingCountChanged);
}

void CChart2DAveragedData::SetAveragingMode(AveragingModes value)
{
    storeAndEmitOnChange(this, m_averagingMode, value, &CChart2DAveragedData::AveragingModeChanged);
}

void CChart2DAveragedData::SetAveragingModeIndex(int value)
{
    storeAndEmitOnChange(this, m_averagingModeIndex, value, &CChart2DAveragedData::AveragingModeIndexChanged);
}

void CChart2DAveragedData::saveAveragingParameter()
{
    m_settings->WriteToFile();
}

unsigned CChart2DAveragedData::ComputeDeltaX()
{
    return static_cast<unsigned>(Parameters()->AcquisitionRate() * 10.0);
}

void CChart2DAveragedData::onAveragingModeIndexChange()
{
    switch (m_averagingModeIndex) {
    case Exponential:
        SetAveragingMode(Exponential);
        break;
    case Moving:
        SetAveragingMode(Moving);
        break;
    default:
        SetAveragingMode(Off);
        SetAveragingModeIndex(0);
    }
    m_settings->SetAveragingMode(m_averagingModeIndex);
}

void CChart2DAveragedData::onAveragingCountIndexChange()
{
    m_settings->SetAveragingCount(m_averagingCount);
}
