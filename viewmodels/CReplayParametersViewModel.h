// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

class COperationMapping;
class COperationMeasure;
class CRecordingManager;
class CReplayParameters;

/// The replay box: speed, range and position of a replay. Shows block numbers from 1 and talks in indices
/// from 0 with the recording manager. The choices are remembered in the operation's `CReplayParameters`, so
/// that they survive a change of page.
class CReplayParametersViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList TimeWarpNames READ TimeWarpNames NOTIFY TimeWarpNamesChanged)
    Q_PROPERTY(QList<double> TimeWarpValues READ TimeWarpValues NOTIFY TimeWarpValuesChanged)
    Q_PROPERTY(int SelectedTimeWarpIndex READ SelectedTimeWarpIndex WRITE SetSelectedTimeWarpIndex NOTIFY
                   SelectedTimeWarpIndexChanged)
    Q_PROPERTY(int StartingBlock READ StartingBlock WRITE SetStartingBlock NOTIFY StartingBlockChanged)
    Q_PROPERTY(int CurrentBlock READ CurrentBlock WRITE SetCurrentBlock NOTIFY CurrentBlockChanged)
    Q_PROPERTY(int EndingBlock READ EndingBlock WRITE SetEndingBlock NOTIFY EndingBlockChanged)
    Q_PROPERTY(int NumBlocks READ NumBlocks WRITE SetNumBlocks NOTIFY NumBlocksChanged)
    Q_PROPERTY(bool StepByStepMode READ StepByStepMode WRITE SetStepByStepMode NOTIFY StepByStepModeChanged)

public:
    /// The operation must outlive the view model.
    explicit CReplayParametersViewModel(COperationMeasure* operation, QObject* parent = nullptr);
    explicit CReplayParametersViewModel(COperationMapping* operation, QObject* parent = nullptr);

    QStringList TimeWarpNames() const { return m_timeWarpNames; }     ///< "1x" and the like
    QList<double> TimeWarpValues() const { return m_timeWarpValues; } ///< speed factors, one for each name
    int SelectedTimeWarpIndex() const { return m_selectedTimeWarpIndex; } ///< index into both lists
    int StartingBlock() const { return m_startingBlock; }                 ///< first block, from 1
    int CurrentBlock() const { return m_currentBlock; }                   ///< block on screen, from 1
    int EndingBlock() const { return m_endingBlock; }        ///< last block, from 1; 0 without blocks
    int NumBlocks() const { return m_numBlocks; }            ///< blocks in the dataset
    bool StepByStepMode() const { return m_stepByStepMode; } ///< one block for each step of the user

    void SetSelectedTimeWarpIndex(int index);
    void SetStartingBlock(int block);
    void SetCurrentBlock(int block);
    void SetEndingBlock(int block);
    void SetNumBlocks(int numBlocks);
    void SetStepByStepMode(bool stepByStep);

public slots:
    void OnSelectedTimeWarpIndexChanged(int index);
    void OnReplayIndexChanged(int currentIndex);
    void OnStartingBlockIndexChanged();
    void OnEndingBlockIndexChanged();
    void OnNumBlocksChanged();
    void OnCurrentBlockIndexChanged();
    void OnIdleWithDataChanged();
    void OnStepByStepModeChanged();

signals:
    void TimeWarpNamesChanged(const QStringList& names);
    void TimeWarpValuesChanged(const QList<double>& values);
    void SelectedTimeWarpIndexChanged(int index);
    void StartingBlockChanged(int block);
    void CurrentBlockChanged(int block);
    void EndingBlockChanged(int block);
    void NumBlocksChanged(int numBlocks);
    void StepByStepModeChanged(bool stepByStep);

private:
    CReplayParametersViewModel(CReplayParameters* replayParameters, CRecordingManager* recordingManager,
                               QObject* parent);
    void syncWithOperation();
    void connectSignals();

    CReplayParameters* const m_replayParameters;
    CRecordingManager* const m_recordingManager;
    QStringList m_timeWarpNames;
    QList<double> m_timeWarpValues;
    int m_selectedTimeWarpIndex = -1;
    int m_startingBlock = 1;
    int m_currentBlock = 1;
    int m_endingBlock = 1;
    int m_numBlocks = 0;
    bool m_stepByStepMode = false;
};
