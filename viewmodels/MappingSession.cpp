// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingSession.h"

#include "CInstrument.h"
#include "CMeasurementParameters.h"
#include "CMeasurementParametersViewModel.h"
#include "PresentTime.h"

#include <algorithm>
#include <limits>

void MappingSession::beginRecord()
{
    recordingManager().ResetRecord();
    if (const QSharedPointer<CInstrument> instrument = m_operation.ActiveInstrument())
        dataSet().SetInstrumentName(instrument->Model() + QLatin1Char(' ') + instrument->SerialNumber());
    dataSet().SetDate(presentTime(QStringLiteral("yyyy.MM.dd HH:mm:ss")));
}

void MappingSession::begin()
{
    beginRecord();
    m_operation.StartSession();
    recordingManager().SetIsHolding(false);
    recordingManager().SetIsIdle(false);
}

void MappingSession::hold()
{
    recordingManager().SetIsHolding(true);
    pauseReplayOrStopSession();
}

void MappingSession::endRecord()
{
    hold();
    recordingManager().StopRecord();
}

void MappingSession::pauseReplayOrStopSession()
{
    if (recordingManager().IsPlayingBack())
        recordingManager().PauseReplay();
    else
        m_operation.StopSession();
}

void MappingSession::startReplay(double timeWarp)
{
    // For those who show it: the pace of a replay follows the times of the record.
    const double displayRate = dataSet().MeasurementParameters()->DisplayRate();
    const double delayMs = 1 / timeWarp * (1 / displayRate) * 1000;
    constexpr double kLongestDelayMs = std::numeric_limits<int>::max();
    // Ordered so that a delay that is not a number gives none.
    recordingManager().SetReplayBlockDelayMillisecond(
        delayMs > 0 ? static_cast<int>(std::min(delayMs, kLongestDelayMs)) : 0);
    resumeReplay();
}

void MappingSession::resumeReplay()
{
    recordingManager().StartReplay();
}

void MappingSession::playNextBlock()
{
    recordingManager().PlayNextStep();
}

void MappingSession::calibrateZeroOffset(bool force)
{
    if (const QSharedPointer<CInstrument> instrument = m_operation.ActiveInstrument())
        instrument->CalibrateZeroOffset(force);
}

void MappingSession::restoreZeroOffset()
{
    if (const QSharedPointer<CInstrument> instrument = m_operation.ActiveInstrument())
        instrument->RestoreZeroOffsetToFactory();
}

void MappingSession::setDefaultParameters(CMeasurementParametersViewModel& box)
{
    if (!m_operation.ActiveInstrument())
        return;
    // The order counts: each assignment adapts the other rates.
    CMeasurementParameters& parameters = liveParameters();
    parameters.SetApplyConfiguration(false);
    parameters.SetTriggerMode(CTrigger::IMMEDIATE);
    parameters.SetAveraging(100);
    parameters.SetDisplayRate(1.0);
    parameters.SetAcquisitionRate(10.0);
    parameters.SetBlockSize(10);
    parameters.SetApplyConfiguration(true);

    box.SetSelectedUnitIndex(0);
    box.SetSelectedUncertaintyUnitIndex(0);
    box.SetSelectedRangeIndex(0);
    box.SetSelectedTriggerIndex(0);
}
