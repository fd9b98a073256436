// SPDX-License-Identifier: MIT
#include "CAcquisitionWorker.h"

#include "TimeUnits.h"

#include <QDateTime>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

constexpr double kBurstFactor = 10;
// Further behind than this the acquisition goes on from the present, like a device whose buffer ran over.
constexpr qint64 kMaxLagNs = 5000000000;
// Blocks delivered before the event loop of the thread gets its turn.
constexpr int kBlocksPerTurn = 64;
// A block may last for months, a timer of milliseconds in an int does not: longer waits come in pieces.
constexpr qint64 kMaxWaitMs = 3600000;

qint64 wallClockNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

CAcquisitionWorker::CAcquisitionWorker(std::shared_ptr<CBlockSource> source,
                                       const AcquisitionParameters& parameters,
                                       const AcquisitionPacing& pacing)
    : m_source(std::move(source)), m_parameters(parameters), m_pacing(pacing),
      m_sampleClock(parameters.EffectiveRate())
{
    // Blocks that overlap cannot be taken: a timer faster than that is slowed down to what is possible.
    double blockRate = parameters.displayRate;
    if (pacing.speed > 0)
        blockRate = std::fmin(blockRate, parameters.EffectiveRate() * pacing.speed / parameters.blockSize);
    m_blockClock = CSampleClock(blockRate);

    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &CAcquisitionWorker::onTimer);
}

void CAcquisitionWorker::Run()
{
    m_elapsed.start();
    m_runEpochNs = wallClockNs();
    if (m_parameters.triggerMode == CTrigger::CONTINUOUS || m_parameters.triggerMode == CTrigger::TIMER)
        scheduleNext();
}

void CAcquisitionWorker::RequestBlock()
{
    ++m_requested;
    if (!m_isScheduled)
        scheduleNow();
}

void CAcquisitionWorker::Trigger()
{
    if (m_parameters.triggerMode == CTrigger::EXTERNAL && !m_isScheduled)
        scheduleNow();
}

void CAcquisitionWorker::BlockTaken()
{
    if (m_inFlight > 0)
        --m_inFlight;
    if (m_isScheduled && !m_timer.isActive())
        onTimer();
}

void CAcquisitionWorker::SetParameters(const AcquisitionParameters& parameters)
{
    m_parameters = parameters;
}

void CAcquisitionWorker::onTimer()
{
    if (m_isDelivering)
        return;
    for (int count = 0; count < kBlocksPerTurn && m_isScheduled && mayDeliver(); ++count) {
        if (m_dueNs > m_elapsed.nsecsElapsed() || thread()->isInterruptionRequested())
            break;
        deliver();
    }
    if (!m_isScheduled || !mayDeliver())
        return;
    const qint64 waitNs = m_dueNs - m_elapsed.nsecsElapsed();
    m_timer.start(static_cast<int>(std::clamp<qint64>((waitNs + kNsPerMs - 1) / kNsPerMs, 0, kMaxWaitMs)));
}

void CAcquisitionWorker::scheduleNext()
{
    m_isScheduled = false;
    if (m_isExhausted)
        return;
    switch (m_parameters.triggerMode) {
    case CTrigger::CONTINUOUS:
        scheduleContinuous();
        break;
    case CTrigger::TIMER:
        scheduleTimer();
        break;
    case CTrigger::IMMEDIATE:
        if (m_delivered < m_requested)
            scheduleNow();
        else
            emit RequestsDone(m_delivered);
        break;
    case CTrigger::EXTERNAL:
        break;
    }
    if (m_isScheduled && !m_timer.isActive())
        m_timer.start(0);
}

void CAcquisitionWorker::scheduleContinuous()
{
    const qint64 blockStartNs = m_seriesNs + scaled(m_sampleClock.OffsetNs(m_seriesCount));
    if (isBurstAt(blockStartNs) != m_isBurst) {
        m_isBurst = !m_isBurst;
        m_sampleClock = CSampleClock(m_parameters.EffectiveRate() * (m_isBurst ? kBurstFactor : 1));
        m_seriesNs = blockStartNs;
        m_seriesCount = 0;
    }
    const quint64 first = m_seriesCount;
    m_seriesCount += static_cast<quint64>(m_parameters.blockSize);
    m_isScheduled = true;
    m_originNs = m_seriesNs;
    m_firstIndex = first;
    m_dueNs = m_seriesNs + scaled(m_sampleClock.OffsetNs(m_seriesCount));
    catchUp();
}

void CAcquisitionWorker::scheduleTimer()
{
    m_isScheduled = true;
    m_originNs = m_seriesNs + m_blockClock.OffsetNs(m_seriesCount);
    m_firstIndex = 0;
    m_dueNs = m_originNs + scaled(m_sampleClock.OffsetNs(static_cast<quint64>(m_parameters.blockSize)));
    ++m_seriesCount;
    catchUp();
}

void CAcquisitionWorker::scheduleNow()
{
    m_isScheduled = true;
    m_originNs = m_elapsed.nsecsElapsed();
    m_firstIndex = 0;
    m_dueNs = m_originNs + scaled(m_sampleClock.OffsetNs(static_cast<quint64>(m_parameters.blockSize)));
    if (!m_timer.isActive())
        m_timer.start(0);
}

void CAcquisitionWorker::catchUp()
{
    const qint64 lagNs = m_elapsed.nsecsElapsed() - m_dueNs;
    if (m_pacing.speed <= 0 || lagNs <= kMaxLagNs)
        return;
    m_seriesNs += lagNs;
    m_originNs += lagNs;
    m_dueNs += lagNs;
}

void CAcquisitionWorker::deliver()
{
    const BlockTimes times{m_runEpochNs + m_originNs, m_firstIndex, m_sampleClock};
    // A source that waits lets events happen: other parameters count from the next block on.
    const AcquisitionParameters parameters = m_parameters;
    m_isDelivering = true;
    const QSharedPointer<CMeasureBlock> block = m_source->NextBlock(parameters, times);
    m_isDelivering = false;
    if (!block) {
        m_isExhausted = true;
        m_isScheduled = false;
        emit Exhausted();
        return;
    }
    ++m_inFlight;
    ++m_delivered;
    emit BlockReady(block, parameters.units);
    scheduleNext();
}

qint64 CAcquisitionWorker::scaled(qint64 durationNs) const
{
    if (m_pacing.speed == 1)
        return durationNs;
    return m_pacing.speed > 0 ? static_cast<qint64>(static_cast<double>(durationNs) / m_pacing.speed) : 0;
}

bool CAcquisitionWorker::isBurstAt(qint64 timeNs) const
{
    if (m_pacing.burstIntervalS <= 0)
        return false;
    const double phaseS = std::fmod(static_cast<double>(timeNs) / kNsPerSecond, m_pacing.burstIntervalS);
    return phaseS >= m_pacing.burstIntervalS - m_pacing.burstLengthS;
}

bool CAcquisitionWorker::mayDeliver() const
{
    return m_pacing.maxBlocksInFlight <= 0 || m_inFlight < m_pacing.maxBlocksInFlight;
}
