// SPDX-License-Identifier: GPL-3.0-or-later
#include "CRecordingManager.h"

#include "CDataset.h"
#include "CSettings.h"
#include "Property.h"
#include "SampleTime.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace {

constexpr int kShortestReplayDelayMs = 1;
constexpr int kBlockWaitMs = 100;
constexpr int kMaxBlockWaits = 10;
/// A wait that ends sooner than this is left to end by itself.
constexpr int kShortWaitMs = 10;

QString lastPathComponent(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

CRecordingManager::CRecordingManager(QObject* parent) : QObject(parent)
{
    // A coarse timer may be late by a twentieth of its delay.
    m_replayTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_replayTimer, &QTimer::timeout, this, &CRecordingManager::onReplayTimerTimeout);
    connect(this, &CRecordingManager::ReplayBlockDelayMillisecondChanged, &m_replayTimer,
            [this](int interval) {
                // A timer that runs would start anew and leave the recorded times.
                if (!m_replayTimer.isActive())
                    m_replayTimer.setInterval(interval);
            });
    connect(this, &CRecordingManager::IsProcessingBlockChanged, this, &CRecordingManager::OnBlockProcessed);
}

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

void CRecordingManager::StartReplay()
{
    if (m_replayStepByStep)
        SetReplayBlockDelayMillisecond(kShortestReplayDelayMs);
    if (!m_isPlayingBack) {
        SetReplayIndex(m_startReplayIndex);
        SetNextReplayIndex(m_startReplayIndex);
        m_replayTimer.stop();
        m_blockWaitCount = 0;
        m_isProcessingBlock = false;
    }
    SetIsPlayingBack(true);
    m_replayTimer.setSingleShot(true);
    m_replayTimer.start(toTimerInterval(
        static_cast<double>(std::max<qint64>(m_remainingTimeAtPause, kShortestReplayDelayMs))));
    m_remainingTimeAtPause = 0;
    SetIsHolding(false);
    SetIsIdleWithData(false);
}

void CRecordingManager::PauseReplay()
{
    SetIsHolding(true);
    SetIsIdleWithData(false);
    m_remainingTimeAtPause = m_replayTimer.remainingTime();
    m_replayTimer.stop();
}

void CRecordingManager::StopReplay()
{
    m_replayTimer.stop();
    SetIsIdleWithData(!m_isDataSetEmpty);
    SetIsPlayingBack(false);
    SetIsHolding(true);
    SetNextReplayIndex(0);
    m_remainingTimeAtPause = 0;
    if (m_isIdleWithData && m_replayIndex + 1 < m_numBlocks && m_numBlocks >= 1) {
        m_replayIndex = m_numBlocks - 1;
        m_nextReplayIndex = m_numBlocks - 1;
        PlayNextStep();
    }
    m_blockWaitCount = 0;
    m_isProcessingBlock = false;
}

void CRecordingManager::StopRecord()
{
    SetIsRecording(false);
    SetIsIdleWithData(!m_isDataSetEmpty);
    SetNextReplayIndex(0);
}

void CRecordingManager::OnBlockProcessed()
{
    if (!m_isPlayingBack || m_isProcessingBlock || m_blockWaitCount <= 0 || !m_replayTimer.isActive())
        return;
    m_blockWaitCount = 0;
    if (m_replayTimer.remainingTime() > kShortWaitMs) {
        m_replayTimer.stop();
        PlayNextStep();
    }
}

void CRecordingManager::playCurrentBlock(int currentBlock)
{
    if (currentBlock < 1 || currentBlock > m_numBlocks)
        return;
    m_replayIndex = currentBlock - 1;
    m_nextReplayIndex = currentBlock - 1;
    PlayNextStep();
}

void CRecordingManager::onReplayTimerTimeout()
{
    if (!m_isPlayingBack)
        return;
    if (!m_isProcessingBlock) {
        m_blockWaitCount = 0;
        PlayNextStep();
        return;
    }
    ++m_blockWaitCount;
    if (m_blockWaitCount >= kMaxBlockWaits)
        m_isProcessingBlock = false;
    m_replayTimer.start(kBlockWaitMs);
}

bool CRecordingManager::advance()
{
    const int index = m_nextReplayIndex;
    if (index > m_endReplayIndex || index >= m_numBlocks || index < 0 || m_replayIndex < 0 ||
        !(m_timeWarp > 0))
        return false;
    m_replayIndex = index;
    m_nextReplayIndex = index + 1;
    if (index < m_endReplayIndex && !m_replayStepByStep && m_isPlayingBack) {
        m_isProcessingBlock = true;
        m_replayTimer.start(
            toTimerInterval(static_cast<double>(millisecondsToNextBlock(index)) / m_timeWarp + 0.5));
    }
    return true;
}

bool CRecordingManager::isAtEndOfReplay() const
{
    return m_isPlayingBack && (m_nextReplayIndex > m_endReplayIndex || m_nextReplayIndex >= m_numBlocks);
}

qint64 CRecordingManager::millisecondsToNextBlock(int index) const
{
    if (index + 1 >= m_numBlocks)
        return 0;
    const auto& samples = blockAt(index)->Results;
    const auto& nextSamples = blockAt(index + 1)->Results;
    if (samples.isEmpty() || nextSamples.isEmpty())
        return 0;
    return millisecondsBetween(*samples.first(), *nextSamples.first());
}

qint64 CRecordingManager::millisecondsBetween(const CTimestampableResult& from,
                                              const CTimestampableResult& to)
{
    if (!from.Timestamp.isValid() || !to.Timestamp.isValid())
        return 0;
    return millisecondsSinceEpoch(to) - millisecondsSinceEpoch(from);
}

int CRecordingManager::toTimerInterval(double milliseconds)
{
    constexpr double kLongest = std::numeric_limits<int>::max();
    return milliseconds >= 0 ? static_cast<int>(std::min(milliseconds, kLongest)) : 0;
}

void CRecordingManager::beginRecord(CDataset& dataset)
{
    SetIsDataLoaded(false);
    SetHasUnsavedData(false);
    SetIsPlayingBack(false);
    SetIsRecording(true);
    dataset.SetComment(m_bodyComment);
    dataset.Clear();
}

void CRecordingManager::prepareNewBlock(CMeasureBlock& block)
{
    if (m_isRecording)
        SetHasUnsavedData(true);
    SetIsDataSetEmpty(false);
    block.SetComment(m_measComment + block.Comment());
}

void CRecordingManager::followNewBlock(int numBlocks)
{
    SetNumBlocks(numBlocks);
    SetReplayIndex(std::max(m_numBlocks - 1, 0));
}

void CRecordingManager::followCleared()
{
    SetNumBlocks(0);
    SetNextReplayIndex(0);
    SetReplayIndex(0);
    SetStartReplayIndex(0);
    SetEndReplayIndex(0);
    m_blockWaitCount = 0;
    m_isProcessingBlock = false;
}

void CRecordingManager::saveDataset(const QString& path, CDataset& dataset, const SerializerOperation& write)
{
    if (path.isEmpty())
        return;

    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        dataset.AssignFilePath(lastPathComponent(path));
        const bool isWritten = write(m_xmlResultsSerializer, &file);
        SetHasUnsavedData(!isWritten);
        if (isWritten)
            qInfo().noquote() << QStringLiteral("Data saved in file ") + path;
        else
            qWarning().noquote() << QStringLiteral("Error while saving file ") + path;
        file.close();
    } else {
        qDebug().noquote() << QStringLiteral("Error: Cannot create file : ") + path;
    }

    if (!dataset.SettingsRef.SaveRecordingsAsCsv())
        return;
    const QFileInfo record(path);
    QFile sideFile(record.absoluteDir().filePath(record.completeBaseName() + QStringLiteral(".csv")));
    if (sideFile.open(QIODevice::WriteOnly))
        SetHasUnsavedData(!write(m_csvResultsSerializer, &sideFile));
    else
        qDebug().noquote() << QStringLiteral("Error: Cannot create file : ") + path;
}

bool CRecordingManager::loadDataset(const QString& path, CDataset& dataset, const SerializerOperation& read,
                                    const std::function<int()>& countBlocks)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qDebug().noquote() << QStringLiteral("Error: Cannot open file : ") + path;
        return false;
    }
    SetHasUnsavedData(false);
    dataset.Clear();
    dataset.SetFilePath(lastPathComponent(path));
    const bool isRead = read(m_xmlResultsSerializer, &file);
    SetNumBlocks(countBlocks());
    const bool hasBlocks = m_numBlocks > 0;
    SetHasUnsavedData(hasBlocks);
    SetIsIdleWithData(hasBlocks);
    SetIsDataSetEmpty(!hasBlocks);
    SetIsDataLoaded(true);
    return isRead;
}
