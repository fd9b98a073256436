// SPDX-License-Identifier: GPL-3.0-or-later
#include "CRecordingManager.h"

#include "Property.h"

void CRecordingManager::SetReplayIndex(int value)
{
    storeAndEmitOnChange(this, m_replayIndex, value, &CRecordingManager::ReplayIndexChanged);
}

void CRecordingManager::SetNextReplayIndex(int value)
{
    storeAndEmitOnChange(this, m_nextReplayIndex, value, &CRecordingManager::NextReplayIndexChanged);
}

void CRecordingManager::SetStartReplayIndex(int value)
{
    storeAndEmitOnChange(this, m_startReplayIndex, value, &CRecordingManager::StartReplayIndexChanged);
}

void CRecordingManager::SetEndReplayIndex(int value)
{
    storeAndEmitOnChange(this, m_endReplayIndex, value, &CRecordingManager::EndReplayIndexChanged);
}

void CRecordingManager::SetNumBlocks(int value)
{
    storeAndEmitOnChange(this, m_numBlocks, value, &CRecordingManager::NumBlocksChanged);
}

void CRecordingManager::SetTimeWarp(double value)
{
    storeAndEmitOnChange(this, m_timeWarp, value, &CRecordingManager::TimeWarpChanged);
}

void CRecordingManager::SetReplayBlockDelayMillisecond(int value)
{
    storeAndEmitOnChange(this, m_replayBlockDelayMillisecond, value,
                         &CRecordingManager::ReplayBlockDelayMillisecondChanged);
}

void CRecordingManager::SetReplayStepByStep(bool value)
{
    storeAndEmitOnChange(this, m_replayStepByStep, value, &CRecordingManager::ReplayStepByStepChanged);
}

void CRecordingManager::SetIsHolding(bool value)
{
    storeAndEmitOnChange(this, m_isHolding, value, &CRecordingManager::IsHoldingChanged);
}

void CRecordingManager::SetHasUnsavedData(bool value)
{
    storeAndEmitOnChange(this, m_hasUnsavedData, value, &CRecordingManager::HasUnsavedDataChanged);
}

void CRecordingManager::SetIsPlayingBack(bool value)
{
    storeAndEmitOnChange(this, m_isPlayingBack, value, &CRecordingManager::IsPlayingBackChanged);
}

void CRecordingManager::SetIsDataLoaded(bool value)
{
    storeAndEmitOnChange(this, m_isDataLoaded, value, &CRecordingManager::IsDataLoadedChanged);
}

void CRecordingManager::SetIsRecording(bool value)
{
    storeAndEmit(this, m_isRecording, value, &CRecordingManager::IsRecordingChanged);
}

void CRecordingManager::SetIsIdle(bool value)
{
    storeAndEmitOnChange(this, m_isIdle, value, &CRecordingManager::IsIdleChanged);
}

void CRecordingManager::SetIsIdleWithData(bool value)
{
    storeAndEmitOnChange(this, m_isIdleWithData, value, &CRecordingManager::IsIdleWithDataChanged);
}

void CRecordingManager::SetIsDataSetEmpty(bool value)
{
    storeAndEmitOnChange(this, m_isDataSetEmpty, value, &CRecordingManager::IsDataSetEmptyChanged);
}

void CRecordingManager::SetIsOperationMeasure(bool value)
{
    storeAndEmitOnChange(this, m_isOperationMeasure, value, &CRecordingManager::IsOperationMeasureChanged);
}

void CRecordingManager::SetIsProcessingBlock(bool value)
{
    storeAndEmitOnChange(this, m_isProcessingBlock, value, &CRecordingManager::IsProcessingBlockChanged);
}

void CRecordingManager::SetMeasComment(const QString& value)
{
    storeAndEmitOnChange(this, m_measComment, value, &CRecordingManager::MeasCommentChanged);
}

void CRecordingManager::SetBodyComment(const QString& value)
{
    storeAndEmitOnChange(this, m_bodyComment, value, &CRecordingManager::BodyCommentChanged);
}
