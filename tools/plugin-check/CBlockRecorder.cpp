// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBlockRecorder.h"

#include "CInstrument.h"

#include <QCryptographicHash>
#include <QDataStream>

#include <algorithm>
#include <chrono>

CBlockRecorder::CBlockRecorder(const CInstrument& instrument)
{
    connect(&instrument, &CInstrument::OnNewMeasureBlock, this, &CBlockRecorder::record,
            Qt::DirectConnection);
}

qint64 CBlockRecorder::NowNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

QByteArray CBlockRecorder::DigestOf(const CMeasureBlock& block)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream << block.Bprime.X() << block.Bprime.Y() << block.Bprime.Z() << block.Results.size();
    for (const QSharedPointer<CFieldIntensityResult>& sample : block.Results) {
        if (sample)
            stream << sample->Timestamp.toMSecsSinceEpoch() << sample->TimestampNanoseconds << sample->Bx()
                   << sample->By() << sample->Bz() << sample->B() << sample->dB() << sample->BBprime()
                   << sample->Temperature();
    }
    return QCryptographicHash::hash(content, QCryptographicHash::Md5);
}

void CBlockRecorder::record(const QSharedPointer<CMeasureBlock>& block)
{
    RecordedBlock recorded{block, NowNs(), QByteArray()};
    if (block)
        recorded.digest = DigestOf(*block);
    const QMutexLocker lock(&m_mutex);
    m_blocks.append(recorded);
}

int CBlockRecorder::Count() const
{
    const QMutexLocker lock(&m_mutex);
    return m_blocks.size();
}

QVector<RecordedBlock> CBlockRecorder::Blocks() const
{
    const QMutexLocker lock(&m_mutex);
    return m_blocks;
}

QVector<RecordedBlock> CBlockRecorder::BlocksSince(qint64 ns) const
{
    QVector<RecordedBlock> blocks = Blocks();
    blocks.erase(std::remove_if(blocks.begin(), blocks.end(),
                                [ns](const RecordedBlock& recorded) { return recorded.emittedNs < ns; }),
                 blocks.end());
    return blocks;
}

void CBlockRecorder::Clear()
{
    const QMutexLocker lock(&m_mutex);
    m_blocks.clear();
}
