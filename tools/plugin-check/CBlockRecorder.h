// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"

#include <QMutex>
#include <QObject>
#include <QVector>

class CInstrument;

/// A block as it was emitted.
struct RecordedBlock
{
    QSharedPointer<CMeasureBlock> block;
    qint64 emittedNs = 0; ///< CBlockRecorder::NowNs()
    QByteArray digest;    ///< of its contents at that time
};

/// Takes every block of an instrument in the very moment and thread of its emit: what a queue between the
/// plug-in and the application would hide, such as a block after the stop, is seen.
class CBlockRecorder : public QObject
{
    Q_OBJECT

public:
    /// The instrument must outlive this object.
    explicit CBlockRecorder(const CInstrument& instrument);

    int Count() const;
    QVector<RecordedBlock> Blocks() const;
    /// Those that were emitted since this time.
    QVector<RecordedBlock> BlocksSince(qint64 ns) const;
    void Clear();

    /// Time that never goes back.
    static qint64 NowNs();
    /// Of samples, times and the reference direction.
    static QByteArray DigestOf(const CMeasureBlock& block);

private:
    void record(const QSharedPointer<CMeasureBlock>& block);

    mutable QMutex m_mutex; ///< of m_blocks
    QVector<RecordedBlock> m_blocks;
};
