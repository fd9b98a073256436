// SPDX-License-Identifier: GPL-3.0-or-later
#include "CReplayParameters.h"

#include "Property.h"

void CReplayParameters::SetSelectedTimeWarpIndex(int value)
{
    storeAndEmitOnChange(this, m_selectedTimeWarpIndex, value,
                         &CReplayParameters::SelectedTimeWarpIndexChanged);
}

void CReplayParameters::SetTimeWarp(double value)
{
    storeAndEmitOnChange(this, m_timeWarp, value, &CReplayParameters::TimeWarpChanged);
}

void CReplayParameters::SetStartingBlock(int value)
{
    storeAndEmitOnChange(this, m_startingBlock, value, &CReplayParameters::StartingBlockChanged);
}

void CReplayParameters::SetCurrentBlock(int value)
{
    storeAndEmitOnChange(this, m_currentBlock, value, &CReplayParameters::CurrentBlockChanged);
}

void CReplayParameters::SetEndingBlock(int value)
{
    storeAndEmitOnChange(this, m_endingBlock, value, &CReplayParameters::EndingBlockChanged);
}

void CReplayParameters::SetStepByStepMode(bool value)
{
    storeAndEmitOnChange(this, m_stepByStepMode, value, &CReplayParameters::StepByStepModeChanged);
}
