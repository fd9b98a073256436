// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CCSVResultsSerializer.h"
#include "CMeasureBlock.h"
#include "CXMLResultsSerializer.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QTimer>

#include <functional>

class CDataset;

/// Keeps the dataset of one operation, saves, loads and replays it, and holds the state flags to which the
/// user interface binds. Nothing is written to disk before `Save`. Main thread only.
///
/// A replay delivers the blocks on their recorded time base, divided by `TimeWarp`. The view that works on a
/// delivered block clears `IsProcessingBlock` when it is done, which releases the next one; a view that never
/// does holds each block up by a second at most.
class CRecordingManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CXMLResultsSerializer* XMLResultsSerializer READ XMLResultsSerializer NOTIFY
                   XMLResultsSerializerChanged)
    Q_PROPERTY(CCSVResultsSerializer* CSVResultsSerializer READ CSVResultsSerializer NOTIFY
                   CSVResultsSerializerChanged)
    Q_PROPERTY(int ReplayIndex READ ReplayIndex WRITE SetReplayIndex NOTIFY ReplayIndexChanged)
    Q_PROPERTY(
        int NextReplayIndex READ NextReplayIndex WRITE SetNextReplayIndex NOTIFY NextReplayIndexChanged)
    Q_PROPERTY(
        int StartReplayIndex READ StartReplayIndex WRITE SetStartReplayIndex NOTIFY StartReplayIndexChanged)
    Q_PROPERTY(int EndReplayIndex READ EndReplayIndex WRITE SetEndReplayIndex NOTIFY EndReplayIndexChanged)
    Q_PROPERTY(int NumBlocks READ NumBlocks WRITE SetNumBlocks NOTIFY NumBlocksChanged)
    Q_PROPERTY(double TimeWarp READ TimeWarp WRITE SetTimeWarp NOTIFY TimeWarpChanged)
    Q_PROPERTY(int ReplayBlockDelayMillisecond READ ReplayBlockDelayMillisecond WRITE
                   SetReplayBlockDelayMillisecond NOTIFY ReplayBlockDelayMillisecondChanged)
    Q_PROPERTY(
        bool ReplayStepByStep READ ReplayStepByStep WRITE SetReplayStepByStep NOTIFY ReplayStepByStepChanged)
    Q_PROPERTY(bool IsHolding READ IsHolding WRITE SetIsHolding NOTIFY IsHoldingChanged)
    Q_PROPERTY(bool HasUnsavedData READ HasUnsavedData WRITE SetHasUnsavedData NOTIFY HasUnsavedDataChanged)
    Q_PROPERTY(bool IsPlayingBack READ IsPlayingBack WRITE SetIsPlayingBack NOTIFY IsPlayingBackChanged)
    Q_PROPERTY(bool IsDataLoaded READ IsDataLoaded WRITE SetIsDataLoaded NOTIFY IsDataLoadedChanged)
    Q_PROPERTY(bool IsRecording READ IsRecording WRITE SetIsRecording NOTIFY IsRecordingChanged)
    Q_PROPERTY(bool IsIdle READ IsIdle WRITE SetIsIdle NOTIFY IsIdleChanged)
    Q_PROPERTY(bool IsIdleWithData READ IsIdleWithData WRITE SetIsIdleWithData NOTIFY IsIdleWithDataChanged)
    Q_PROPERTY(bool IsDataSetEmpty READ IsDataSetEmpty WRITE SetIsDataSetEmpty NOTIFY IsDataSetEmptyChanged)
    Q_PROPERTY(bool IsOperationMeasure READ IsOperationMeasure WRITE SetIsOperationMeasure NOTIFY
                   IsOperationMeasureChanged)
    Q_PROPERTY(bool IsProcessingBlock READ IsProcessingBlock WRITE SetIsProcessingBlock NOTIFY
                   IsProcessingBlockChanged)
    Q_PROPERTY(QString MeasComment READ MeasComment WRITE SetMeasComment NOTIFY MeasCommentChanged)
    Q_PROPERTY(QString BodyComment READ BodyComment WRITE SetBodyComment NOTIFY BodyCommentChanged)

public:
    explicit CRecordingManager(QObject* parent = nullptr);

    CXMLResultsSerializer* XMLResultsSerializer() { return &m_xmlResultsSerializer; }
    CCSVResultsSerializer* CSVResultsSerializer() { return &m_csvResultsSerializer; }
    int ReplayIndex() const
    {
        return m_replayIndex;
    } ///< index of the block last delivered; while recording, of the newest block
    int NextReplayIndex() const
    {
        return m_nextReplayIndex;
    } ///< index of the block that the next step delivers
    int StartReplayIndex() const { return m_startReplayIndex; } ///< first index of a replay
    int EndReplayIndex() const { return m_endReplayIndex; }     ///< last index of a replay, inclusive
    int NumBlocks() const { return m_numBlocks; }               ///< blocks in the dataset
    double TimeWarp() const { return m_timeWarp; }              ///< replay speed factor
    int ReplayBlockDelayMillisecond() const
    {
        return m_replayBlockDelayMillisecond;
    } ///< stored interval of the replay timer; the pacing follows the recorded times instead
    bool ReplayStepByStep() const { return m_replayStepByStep; } ///< replay one block per user step
    bool IsHolding() const { return m_isHolding; }               ///< acquisition or replay is held
    bool HasUnsavedData() const
    {
        return m_hasUnsavedData;
    } ///< the dataset holds data that a quit or load would lose
    bool IsPlayingBack() const
    {
        return m_isPlayingBack;
    }                                                    ///< a replay is in progress, also while it is paused
    bool IsDataLoaded() const { return m_isDataLoaded; } ///< the dataset came from a file
    bool IsRecording() const { return m_isRecording; }   ///< a record is running
    bool IsIdle() const { return m_isIdle; }             ///< nothing has been started since launch
    bool IsIdleWithData() const { return m_isIdleWithData; } ///< stopped, and the dataset has data to show
    bool IsDataSetEmpty() const { return m_isDataSetEmpty; } ///< the dataset has no block
    bool IsOperationMeasure() const { return m_isOperationMeasure; } ///< false in the manager of a mapping
    bool IsProcessingBlock() const
    {
        return m_isProcessingBlock;
    } ///< a delivered block is still being worked on by the views
    QString MeasComment() const
    {
        return m_measComment;
    } ///< comment put in front of every new block's comment
    QString BodyComment() const { return m_bodyComment; } ///< overall comment, copied to the dataset's

    // IsRecording emits at every assignment, the others on a change.
    void SetReplayIndex(int value);
    void SetNextReplayIndex(int value);
    void SetStartReplayIndex(int value);
    void SetEndReplayIndex(int value);
    void SetNumBlocks(int value);
    void SetTimeWarp(double value);
    void SetReplayBlockDelayMillisecond(int value);
    void SetReplayStepByStep(bool value);
    void SetIsHolding(bool value);
    void SetHasUnsavedData(bool value);
    void SetIsPlayingBack(bool value);
    void SetIsDataLoaded(bool value);
    void SetIsRecording(bool value);
    void SetIsIdle(bool value);
    void SetIsIdleWithData(bool value);
    void SetIsDataSetEmpty(bool value);
    void SetIsOperationMeasure(bool value);
    void SetIsProcessingBlock(bool value);
    void SetMeasComment(const QString& value);
    void SetBodyComment(const QString& value);

public slots:
    /// Begins a replay at `StartReplayIndex`, or resumes the paused one. With `ReplayStepByStep` each call
    /// delivers one block.
    virtual void StartReplay();
    virtual void PauseReplay();
    /// Ends the replay and shows the last block of the dataset, unless the range of the replay ends before
    /// it.
    virtual void StopReplay();
    /// Delivers the block at `NextReplayIndex` if it lies in the range, and arms the timer for the one after.
    virtual void PlayNextStep() = 0;
    /// Starts a record: empties the dataset and sets the flags.
    virtual void ResetRecord() = 0;
    /// Ends a record. Nothing is written.
    virtual void StopRecord();
    /// Writes the whole dataset to the record file `path` and, if the settings ask for it, to a CSV file
    /// beside it. The outcome is in `HasUnsavedData` and in the log. An empty path does nothing.
    virtual void Save(const QString& path) = 0;
    /// Replaces the dataset by the record in `path`. On a failed read the blocks read before it stay, with
    /// the flags of a success, and the reason is in the serializer's ErrorMessage.
    virtual bool Load(const QString& path) = 0;
    /// Keeps a block, whether or not a record is running.
    virtual void AddMeasureBlock(QSharedPointer<CMeasureBlock> block) = 0;
    void OnBlockProcessed();
    /// Delivers the block of this number, from 1; nothing for a number that is none.
    void playCurrentBlock(int currentBlock);

signals:
    void XMLResultsSerializerChanged(CXMLResultsSerializer* value);
    void CSVResultsSerializerChanged(CCSVResultsSerializer* value);
    void ReplayIndexChanged(int value);
    void NextReplayIndexChanged(int value);
    void StartReplayIndexChanged(int value);
    void EndReplayIndexChanged(int value);
    void NumBlocksChanged(int value);
    void TimeWarpChanged(double value);
    void ReplayBlockDelayMillisecondChanged(int value);
    void ReplayStepByStepChanged(bool value);
    void IsHoldingChanged(bool value);
    void HasUnsavedDataChanged(bool value);
    void IsPlayingBackChanged(bool value);
    void IsDataLoadedChanged(bool value);
    void IsRecordingChanged(bool value);
    void IsIdleChanged(bool value);
    void IsIdleWithDataChanged(bool value);
    void IsDataSetEmptyChanged(bool value);
    void IsOperationMeasureChanged(bool value);
    void IsProcessingBlockChanged(bool value);
    void MeasCommentChanged(const QString& value);
    void BodyCommentChanged(const QString& value);

protected:
    using SerializerOperation = std::function<bool(CResultsSerializer&, QIODevice*)>;

    const QTimer& ReplayTimer() const { return m_replayTimer; }
    qint64 RemainingTimeAtPause() const { return m_remainingTimeAtPause; } ///< milliseconds
    int BlockWaitCount() const { return m_blockWaitCount; } ///< waits of 100 ms for the last block

    /// The block of this index; it must exist.
    virtual QSharedPointer<CMeasureBlock> blockAt(int index) const = 0;

    void saveDataset(const QString& path, CDataset& dataset, const SerializerOperation& write);
    bool loadDataset(const QString& path, CDataset& dataset, const SerializerOperation& read,
                     const std::function<int()>& countBlocks);
    void beginRecord(CDataset& dataset);
    /// The part of `AddMeasureBlock` before and behind the dataset's own work.
    void prepareNewBlock(CMeasureBlock& block);
    void followNewBlock(int numBlocks);
    void followCleared();
    /// Moves the indices to the next block and arms the timer for the one after. False if there is none to
    /// deliver.
    bool advance();
    /// Whether a replay is in progress and has no block left.
    bool isAtEndOfReplay() const;
    /// 0 if either time is invalid.
    static qint64 millisecondsBetween(const CTimestampableResult& from, const CTimestampableResult& to);
    /// Truncated and brought into the range of a timer.
    static int toTimerInterval(double milliseconds);
    /// Marks a block as in work, which nobody is told.
    void markProcessingBlock() { m_isProcessingBlock = true; }

private:
    void onReplayTimerTimeout();
    /// From the first sample of this block to that of the next one; 0 if either block has none.
    qint64 millisecondsToNextBlock(int index) const;

    CXMLResultsSerializer m_xmlResultsSerializer;
    CCSVResultsSerializer m_csvResultsSerializer;
    int m_replayIndex = 0;
    int m_nextReplayIndex = 0;
    int m_startReplayIndex = 0;
    int m_endReplayIndex = 0;
    int m_numBlocks = 0;
    double m_timeWarp = 1.0;
    int m_replayBlockDelayMillisecond = 1000;
    bool m_replayStepByStep = false;
    bool m_isHolding = true;
    bool m_hasUnsavedData = false;
    bool m_isPlayingBack = false;
    bool m_isDataLoaded = false;
    bool m_isRecording = false;
    bool m_isIdle = true;
    bool m_isIdleWithData = false;
    bool m_isDataSetEmpty = true;
    bool m_isOperationMeasure = true;
    bool m_isProcessingBlock = false;
    QString m_measComment;
    QString m_bodyComment;
    QTimer m_replayTimer;
    qint64 m_remainingTimeAtPause = 0;
    int m_blockWaitCount = 0;
};
