// SPDX-License-Identifier: GPL-3.0-or-later
#include "CReplayParametersViewModel.h"

#include "COperationMapping.h"
#include "COperationMeasure.h"
#include "COperationParameters.h"
#include "CRecordingManagerMeasure.h"
#include "CReplayParameters.h"
#include "Property.h"

#include <algorithm>

namespace {

constexpr int kDefaultTimeWarpIndex = 4;

/// Index of a block that is counted from 1.
int indexOfBlock(int block)
{
    return std::max(block - 1, 0);
}

} // namespace

CReplayParametersViewModel::CReplayParametersViewModel(COperationMeasure* operation, QObject* parent)
    : CReplayParametersViewModel(operation->OperationParameters()->ReplayParameters(),
                                 operation->RecordingManager(), parent)
{
}

CReplayParametersViewModel::CReplayParametersViewModel(COperationMapping* operation, QObject* parent)
    : CReplayParametersViewModel(operation->OperationParameters()->ReplayParameters(),
                                 operation->RecordingManager(), parent)
{
}

CReplayParametersViewModel::CReplayParametersViewModel(CReplayParameters* replayParameters,
                                                       CRecordingManager* recordingManager, QObject* parent)
    : QObject(parent), m_replayParameters(replayParameters), m_recordingManager(recordingManager),
      m_timeWarpNames{QStringLiteral("0.0001x"), QStringLiteral("0.001x"), QStringLiteral("0.01x"),
                      QStringLiteral("0.1x"),    QStringLiteral("1x"),     QStringLiteral("10x")},
      m_timeWarpValues{0.0001, 0.001, 0.01, 0.1, 1.0, 10.0}
{
    // Before the connections are made: a new page must not write to the recording manager.
    syncWithOperation();
    connectSignals();
}

void CReplayParametersViewModel::syncWithOperation()
{
    SetStartingBlock(m_replayParameters->StartingBlock());
    SetEndingBlock(m_replayParameters->EndingBlock());
    SetCurrentBlock(m_replayParameters->CurrentBlock());
    SetNumBlocks(m_recordingManager->NumBlocks());
    SetStepByStepMode(m_replayParameters->StepByStepMode());
    const int storedIndex = m_replayParameters->SelectedTimeWarpIndex();
    const bool isStoredIndexValid = storedIndex >= 0 && storedIndex < m_timeWarpValues.size();
    SetSelectedTimeWarpIndex(isStoredIndexValid ? storedIndex : kDefaultTimeWarpIndex);
}

void CReplayParametersViewModel::connectSignals()
{
    connect(this, &CReplayParametersViewModel::SelectedTimeWarpIndexChanged, this,
            &CReplayParametersViewModel::OnSelectedTimeWarpIndexChanged);
    connect(this, &CReplayParametersViewModel::StartingBlockChanged, this,
            &CReplayParametersViewModel::OnStartingBlockIndexChanged);
    connect(this, &CReplayParametersViewModel::EndingBlockChanged, this,
            &CReplayParametersViewModel::OnEndingBlockIndexChanged);
    connect(this, &CReplayParametersViewModel::CurrentBlockChanged, this,
            &CReplayParametersViewModel::OnCurrentBlockIndexChanged);
    connect(this, &CReplayParametersViewModel::StepByStepModeChanged, this,
            &CReplayParametersViewModel::OnStepByStepModeChanged);
    connect(m_recordingManager, &CRecordingManager::ReplayIndexChanged, this,
            &CReplayParametersViewModel::OnReplayIndexChanged);
    connect(m_recordingManager, &CRecordingManager::NumBlocksChanged, this,
            &CReplayParametersViewModel::OnNumBlocksChanged);
    connect(m_recordingManager, &CRecordingManager::IsIdleWithDataChanged, this,
            &CReplayParametersViewModel::OnIdleWithDataChanged);
}

void CReplayParametersViewModel::SetSelectedTimeWarpIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedTimeWarpIndex, index,
                         &CReplayParametersViewModel::SelectedTimeWarpIndexChanged);
}

void CReplayParametersViewModel::SetStartingBlock(int block)
{
    storeAndEmitOnChange(this, m_startingBlock, block, &CReplayParametersViewModel::StartingBlockChanged);
}

void CReplayParametersViewModel::SetCurrentBlock(int block)
{
    storeAndEmitOnChange(this, m_currentBlock, block, &CReplayParametersViewModel::CurrentBlockChanged);
}

void CReplayParametersViewModel::SetEndingBlock(int block)
{
    storeAndEmitOnChange(this, m_endingBlock, block, &CReplayParametersViewModel::EndingBlockChanged);
}

void CReplayParametersViewModel::SetNumBlocks(int numBlocks)
{
    storeAndEmitOnChange(this, m_numBlocks, numBlocks, &CReplayParametersViewModel::NumBlocksChanged);
}

void CReplayParametersViewModel::SetStepByStepMode(bool stepByStep)
{
    storeAndEmitOnChange(this, m_stepByStepMode, stepByStep,
                         &CReplayParametersViewModel::StepByStepModeChanged);
}

void CReplayParametersViewModel::OnSelectedTimeWarpIndexChanged(int index)
{
    if (index < 0 || index >= m_timeWarpValues.size())
        return;
    m_recordingManager->SetTimeWarp(m_timeWarpValues.at(index));
    m_replayParameters->SetTimeWarp(m_timeWarpValues.at(index));
}

void CReplayParametersViewModel::OnReplayIndexChanged(int currentIndex)
{
    SetCurrentBlock(currentIndex + 1);
}

void CReplayParametersViewModel::OnStartingBlockIndexChanged()
{
    m_recordingManager->SetStartReplayIndex(indexOfBlock(m_startingBlock));
    m_replayParameters->SetStartingBlock(m_startingBlock);
}

void CReplayParametersViewModel::OnEndingBlockIndexChanged()
{
    m_recordingManager->SetEndReplayIndex(indexOfBlock(m_endingBlock));
    m_replayParameters->SetEndingBlock(m_endingBlock);
}

void CReplayParametersViewModel::OnNumBlocksChanged()
{
    SetNumBlocks(std::max(m_recordingManager->NumBlocks(), 0));
    SetEndingBlock(m_numBlocks);
    m_replayParameters->SetEndingBlock(m_endingBlock);
}

void CReplayParametersViewModel::OnCurrentBlockIndexChanged()
{
    m_replayParameters->SetCurrentBlock(m_currentBlock);
}

void CReplayParametersViewModel::OnIdleWithDataChanged()
{
    if (m_recordingManager->IsPlayingBack())
        return;
    if (m_currentBlock > m_numBlocks && m_currentBlock != 1)
        SetCurrentBlock(1);
    SetStartingBlock(1);
    SetEndingBlock(m_numBlocks);
}

void CReplayParametersViewModel::OnStepByStepModeChanged()
{
    m_recordingManager->SetReplayStepByStep(m_stepByStepMode);
    m_replayParameters->SetStepByStepMode(m_stepByStepMode);
}
