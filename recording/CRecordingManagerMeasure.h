// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CDataSetMeasurement.h"
#include "CRecordingManager.h"

/// Recording manager of the meter, spectrum and AC analysis operations.
class CRecordingManagerMeasure : public CRecordingManager
{
    Q_OBJECT
    Q_PROPERTY(CDataSetMeasurement* DataSet READ DataSet CONSTANT)
    Q_PROPERTY(int MinReplaySmallBlockDelayMillisecond READ MinReplaySmallBlockDelayMillisecond WRITE
                   SetMinReplaySmallBlockDelayMillisecond NOTIFY MinReplaySmallBlockDelayMillisecondChanged)

public:
    explicit CRecordingManagerMeasure(const CSettings& settings, QObject* parent = nullptr);

    CDataSetMeasurement* DataSet() { return &m_dataSet; }
    const CDataSetMeasurement* DataSet() const { return &m_dataSet; }
    int MinReplaySmallBlockDelayMillisecond() const
    {
        return m_minReplaySmallBlockDelayMillisecond;
    } ///< pace of the pieces in which the meter shows a replayed block, and rest behind the last block
    void SetMinReplaySmallBlockDelayMillisecond(int value);

public slots:
    void PlayNextStep() override;
    void ResetRecord() override;
    void Save(const QString& path) override;
    bool Load(const QString& path) override;
    void AddMeasureBlock(QSharedPointer<CMeasureBlock> block) override;
    void OnDataSetCleared();
    void OnBodyCommentChanged();
    void OnIsHoldingChanged(bool isHolding);
    void l_OnStopReplayTimerTimeout();

signals:
    void MinReplaySmallBlockDelayMillisecondChanged(int value);
    void ReplayMeasureBlock(QSharedPointer<CMeasureBlock> block);

protected:
    const QTimer& EndOfReplayTimer() const { return m_endOfReplayTimer; }
    int EndWaitCount() const { return m_endWaitCount; } ///< waits of 100 ms for the last block

    QSharedPointer<CMeasureBlock> blockAt(int index) const override;

private:
    void startEndOfReplay();

    CDataSetMeasurement m_dataSet;
    int m_minReplaySmallBlockDelayMillisecond = 100;
    QTimer m_endOfReplayTimer;
    int m_endWaitCount = 0;
    /// The end of the replay was under way when a pause stopped it.
    bool m_isEndOfReplayHeld = false;
};
