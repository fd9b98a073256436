// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

/// What the user last chose for the replay in one operation; kept here so that it survives a change of page.
class CReplayParameters : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int SelectedTimeWarpIndex READ SelectedTimeWarpIndex WRITE SetSelectedTimeWarpIndex NOTIFY
                   SelectedTimeWarpIndexChanged)
    Q_PROPERTY(double TimeWarp READ TimeWarp WRITE SetTimeWarp NOTIFY TimeWarpChanged)
    Q_PROPERTY(int StartingBlock READ StartingBlock WRITE SetStartingBlock NOTIFY StartingBlockChanged)
    Q_PROPERTY(int CurrentBlock READ CurrentBlock WRITE SetCurrentBlock NOTIFY CurrentBlockChanged)
    Q_PROPERTY(int EndingBlock READ EndingBlock WRITE SetEndingBlock NOTIFY EndingBlockChanged)
    Q_PROPERTY(bool StepByStepMode READ StepByStepMode WRITE SetStepByStepMode NOTIFY StepByStepModeChanged)

public:
    using QObject::QObject;

    int SelectedTimeWarpIndex() const
    {
        return m_selectedTimeWarpIndex;
    }                                              ///< index in the table of time warps; -1 until first set
    double TimeWarp() const { return m_timeWarp; } ///< replay speed factor of the selected entry
    int StartingBlock() const { return m_startingBlock; }    ///< first block of the replay, from 1
    int CurrentBlock() const { return m_currentBlock; }      ///< block shown, from 1
    int EndingBlock() const { return m_endingBlock; }        ///< last block of the replay, from 1
    bool StepByStepMode() const { return m_stepByStepMode; } ///< replay one block per user step

    void SetSelectedTimeWarpIndex(int value);
    void SetTimeWarp(double value);
    void SetStartingBlock(int value);
    void SetCurrentBlock(int value);
    void SetEndingBlock(int value);
    void SetStepByStepMode(bool value);

signals:
    void SelectedTimeWarpIndexChanged(int value);
    void TimeWarpChanged(double value);
    void StartingBlockChanged(int value);
    void CurrentBlockChanged(int value);
    void EndingBlockChanged(int value);
    void StepByStepModeChanged(bool value);

private:
    int m_selectedTimeWarpIndex = -1;
    double m_timeWarp = 1.0;
    int m_startingBlock = 1;
    int m_currentBlock = 1;
    int m_endingBlock = 1;
    bool m_stepByStepMode = false;
};
