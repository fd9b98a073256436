// SPDX-License-Identifier: MIT
#pragma once

#include "CBlockSource.h"
#include "CSampleQueue.h"
#include "CSampleStamper.h"

#include <memory>

/// Makes blocks of what a board sends. A block waits until its samples have come, and lets the events of its
/// thread happen meanwhile. In CONTINUOUS mode blocks follow one another without a gap; in the other modes a
/// block is made of what comes from its beginning on. No block has samples of two series.
class CReadingBlockSource : public CBlockSource
{
public:
    /// `uncertainty` in `unit`, 0 if it is not known.
    CReadingBlockSource(std::shared_ptr<CSampleQueue> queue, CUnits::UnitType unit, double uncertainty);

    QSharedPointer<CMeasureBlock> NextBlock(const AcquisitionParameters& parameters,
                                            const BlockTimes& times) override;

    /// The next block begins a run.
    void BeginRun();

private:
    bool collect(const AcquisitionParameters& parameters);
    void dropFormerSeries();
    void fillBlock(CMeasureBlock& block, const AcquisitionParameters& parameters);

    std::shared_ptr<CSampleQueue> m_queue;
    CUnits::UnitType m_unit;
    double m_uncertainty;
    CSampleStamper m_stamper;
    qint64 m_epochNs = 0; ///< of the steady clock, nanoseconds since 1970
    QVector<BoardSample> m_collected;
};
