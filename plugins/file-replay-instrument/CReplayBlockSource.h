// SPDX-License-Identifier: MIT
#pragma once

#include "CBlockSource.h"
#include "CRecordingReader.h"
#include "CSampleStamper.h"

#include <memory>

/// Makes blocks of the samples of a recording, in their own times. A recording without a date begins at the
/// time of the first block.
class CReplayBlockSource : public CBlockSource
{
public:
    CReplayBlockSource(std::unique_ptr<CRecordingReader> reader, bool isLooping);

    QSharedPointer<CMeasureBlock> NextBlock(const AcquisitionParameters& parameters,
                                            const BlockTimes& times) override;

    /// Goes back to the first sample.
    void Rewind();
    /// Whether the last sample has been delivered.
    bool IsAtEnd() const { return m_isAtEnd; }
    const RecordingInfo& Info() const { return m_reader->Info(); }

private:
    bool nextSample(RecordedSample& sample);
    void fillBlock(CMeasureBlock& block, const QVector<RecordedSample>& samples, CUnits::UnitType units);

    std::unique_ptr<CRecordingReader> m_reader;
    bool m_isLooping;
    CSampleStamper m_stamper;

    QVector<RecordedSample> m_pending; ///< read and not delivered yet
    bool m_isAtEnd = false;
    bool m_hasFirst = false; ///< a sample of the present pass was read
    bool m_isShiftKnown = false;
    qint64 m_shiftNs = 0; ///< added to the recorded times
    qint64 m_firstNs = 0; ///< recorded times of the present pass
    qint64 m_lastNs = 0;
};
