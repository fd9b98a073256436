// SPDX-License-Identifier: MIT
#pragma once

#include "AcquisitionParameters.h"
#include "CBlockSource.h"
#include "CMeasureBlock.h"
#include "CSampleClock.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSharedPointer>
#include <QTimer>

#include <memory>

/// How the blocks of a run are paced.
struct AcquisitionPacing
{
    double speed = 1;          ///< multiple of real time; 0 delivers as fast as blocks can be made
    int maxBlocksInFlight = 0; ///< blocks delivered and not yet taken, at most; 0 is unlimited
    double burstIntervalS = 0; ///< a burst of ten times the rate ends every so many seconds; 0 is never
    double burstLengthS = 0;   ///< length of such a burst
};

/// The acquisition of one run: decides when which block is due, has it made by the source and hands it over.
/// A block is due when its last sample is over. Dues are absolute, so that late timers do not add up. Lives
/// in a thread of its own; construct it on the main thread, move it, and call the slots queued.
class CAcquisitionWorker : public QObject
{
    Q_OBJECT

public:
    CAcquisitionWorker(std::shared_ptr<CBlockSource> source, const AcquisitionParameters& parameters,
                       const AcquisitionPacing& pacing);

public slots:
    /// Begins the run.
    void Run();
    /// One more block in IMMEDIATE mode.
    void RequestBlock();
    /// One block in EXTERNAL mode. Without effect while one is being taken, as with a real instrument.
    void Trigger();
    /// The receiver is done with a block.
    void BlockTaken();
    /// Parameters of the same timing for the blocks to come.
    void SetParameters(const AcquisitionParameters& parameters);

signals:
    /// `units` are those of the values.
    void BlockReady(QSharedPointer<CMeasureBlock> block, CUnits::UnitType units);
    /// All blocks asked for by RequestBlock() are delivered; `delivered` counts those since Run().
    void RequestsDone(int delivered);
    /// The source has no more blocks.
    void Exhausted();

private:
    void onTimer();
    void scheduleNext();
    void scheduleContinuous();
    void scheduleTimer();
    void scheduleNow();
    void deliver();
    void catchUp();
    qint64 scaled(qint64 durationNs) const;
    bool isBurstAt(qint64 timeNs) const;
    bool mayDeliver() const;

    std::shared_ptr<CBlockSource> m_source;
    AcquisitionParameters m_parameters;
    AcquisitionPacing m_pacing;
    CSampleClock m_sampleClock;
    CSampleClock m_blockClock; ///< starts of blocks in TIMER mode

    QTimer m_timer{this};
    QElapsedTimer m_elapsed; ///< monotonic time since Run()
    qint64 m_runEpochNs = 0; ///< wall clock at Run()

    // The block that is due next; times count from Run().
    bool m_isScheduled = false;
    qint64 m_dueNs = 0;
    qint64 m_originNs = 0;
    quint64 m_firstIndex = 0;

    // CONTINUOUS and TIMER: beginning of the present series, and how many samples or blocks of it are done.
    qint64 m_seriesNs = 0;
    quint64 m_seriesCount = 0;
    bool m_isBurst = false;

    int m_requested = 0;
    int m_delivered = 0;
    int m_inFlight = 0;
    bool m_isDelivering = false; ///< the source is at work
    bool m_isExhausted = false;
};
