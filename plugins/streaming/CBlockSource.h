// SPDX-License-Identifier: MIT
#pragma once

#include "AcquisitionParameters.h"
#include "CMeasureBlock.h"
#include "CSampleClock.h"

#include <QSharedPointer>

/// Where the samples of one block lie in time.
struct BlockTimes
{
    qint64 originNs = 0;    ///< time of sample 0 of the clock, nanoseconds since 1970-01-01 UTC
    quint64 firstIndex = 0; ///< index of the block's first sample on the clock
    CSampleClock clock;

    qint64 SampleNs(int sample) const
    {
        return originNs + clock.OffsetNs(firstIndex + static_cast<quint64>(sample));
    }
};

/// Makes the blocks of one instrument. Called on the acquisition thread while the instrument runs and on the
/// main thread between two runs, never on both at once. Long work must look at
/// QThread::isInterruptionRequested() and give up when it is set. A source that waits for its samples may let
/// the events of the thread happen meanwhile.
class CBlockSource
{
public:
    CBlockSource() = default;
    virtual ~CBlockSource();
    CBlockSource(const CBlockSource&) = delete;
    CBlockSource& operator=(const CBlockSource&) = delete;

    /// The next block, or null if there are no more. A source with a time of its own may disregard `times`.
    virtual QSharedPointer<CMeasureBlock> NextBlock(const AcquisitionParameters& parameters,
                                                    const BlockTimes& times) = 0;
};
