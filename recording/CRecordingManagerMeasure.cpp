// SPDX-License-Identifier: GPL-3.0-or-later
#include "CRecordingManagerMeasure.h"

#include "Property.h"

#include <utility>

namespace {

constexpr int kEndWaitMs = 100;
constexpr int kMaxEndWaits = 10;

} // namespace

CRecordingManagerMeasure::CRecordingManagerMeasure(const CSettings& settings, QObject* parent)
    : CRecordingManager(parent), m_dataSet(settings)
{
    using Self = CRecordingManagerMeasure;
    m_endOfReplayTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_dataSet, &CDataset::ClearedChanged, this, &Self::OnDataSetCleared);
    connect(this, &Self::BodyCommentChanged, this, &Self::OnBodyCommentChanged);
    connect(&m_endOfReplayTimer, &QTimer::timeout, this, &Self::l_OnStopReplayTimerTimeout);
    connect(this, &Self::IsHoldingChanged, this, &Self::OnIsHoldingChanged);
    connect(this, &Self::IsPlayingBackChanged, this, [this] { m_isEndOfReplayHeld = false; });
}

void CRecordingManagerMeasure::SetMinReplaySmallBlockDelayMillisecond(int value)
{
    storeAndEmitOnChange(this, m_minReplaySmallBlockDelayMillisecond, value,
                         &CRecordingManagerMeasure::MinReplaySmallBlockDelayMillisecondChanged);
}

void CRecordingManagerMeasure::PlayNextStep()
{
    const bool hasBlock = advance();
    if (isAtEndOfReplay())
        startEndOfReplay();
    if (!hasBlock)
        return;
    emit ReplayIndexChanged(ReplayIndex());
    // Whoever heard of the index may have emptied the dataset.
    if (ReplayIndex() >= 0 && static_cast<size_t>(ReplayIndex()) < m_dataSet.MeasureBlocks()->size())
        emit ReplayMeasureBlock(blockAt(ReplayIndex()));
}

void CRecordingManagerMeasure::startEndOfReplay()
{
    int delayMs = m_minReplaySmallBlockDelayMillisecond;
    if (!ReplayStepByStep() && ReplayIndex() >= 0 && ReplayIndex() < NumBlocks() && TimeWarp() > 0) {
        const auto& samples = m_dataSet.MeasureBlocks()->at(static_cast<size_t>(ReplayIndex()))->Results;
        const qint64 durationMs =
            samples.isEmpty() ? 0 : millisecondsBetween(*samples.first(), *samples.last());
        delayMs = toTimerInterval(static_cast<double>(durationMs) / TimeWarp() + delayMs);
    }
    markProcessingBlock();
    m_endOfReplayTimer.setSingleShot(true);
    m_endWaitCount = 0;
    m_endOfReplayTimer.start(delayMs);
}

void CRecordingManagerMeasure::l_OnStopReplayTimerTimeout()
{
    if (IsProcessingBlock() && m_endWaitCount < kMaxEndWaits) {
        ++m_endWaitCount;
        if (IsPlayingBack() && ReplayIndex() == EndReplayIndex()) {
            m_endOfReplayTimer.start(kEndWaitMs);
            return;
        }
    }
    StopReplay();
}

void CRecordingManagerMeasure::OnIsHoldingChanged(bool isHolding)
{
    if (isHolding) {
        m_isEndOfReplayHeld = IsPlayingBack() && m_endOfReplayTimer.isActive();
        m_endOfReplayTimer.stop();
        return;
    }
    const bool wasHeld = std::exchange(m_isEndOfReplayHeld, false);
    if (wasHeld && IsPlayingBack() && ReplayIndex() == EndReplayIndex())
        m_endOfReplayTimer.start();
}

void CRecordingManagerMeasure::ResetRecord()
{
    beginRecord(m_dataSet);
}

void CRecordingManagerMeasure::Save(const QString& path)
{
    saveDataset(path, m_dataSet, [this](CResultsSerializer& serializer, QIODevice* device) {
        return serializer.WriteMeasurement(m_dataSet, device);
    });
}

bool CRecordingManagerMeasure::Load(const QString& path)
{
    return loadDataset(
        path, m_dataSet,
        [this](CResultsSerializer& serializer, QIODevice* device) {
            return serializer.ReadMeasurement(device, m_dataSet);
        },
        [this] { return static_cast<int>(m_dataSet.MeasureBlocks()->size()); });
}

void CRecordingManagerMeasure::AddMeasureBlock(QSharedPointer<CMeasureBlock> block)
{
    if (!block)
        return;
    prepareNewBlock(*block);
    m_dataSet.AddBlock(block);
    followNewBlock(static_cast<int>(m_dataSet.MeasureBlocks()->size()));
}

void CRecordingManagerMeasure::OnDataSetCleared()
{
    SetIsDataSetEmpty(true);
    followCleared();
}

void CRecordingManagerMeasure::OnBodyCommentChanged()
{
    m_dataSet.SetComment(BodyComment());
}

QSharedPointer<CMeasureBlock> CRecordingManagerMeasure::blockAt(int index) const
{
    return m_dataSet.MeasureBlocks()->at(static_cast<size_t>(index));
}
