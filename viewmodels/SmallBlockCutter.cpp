// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallBlockCutter.h"

#include "SampleTime.h"

namespace {

QSharedPointer<CMeasureBlock> beginPiece(const CMeasureBlock& block)
{
    const auto piece = QSharedPointer<CMeasureBlock>::create();
    piece->SetComment(block.Comment());
    piece->Bprime.SetX(block.Bprime.X());
    piece->Bprime.SetY(block.Bprime.Y());
    piece->Bprime.SetZ(block.Bprime.Z());
    return piece;
}

} // namespace

QVector<QSharedPointer<CMeasureBlock>> cutIntoSmallBlocks(const CMeasureBlock& block, qint64 spanMs)
{
    QVector<QSharedPointer<CMeasureBlock>> pieces;
    if (block.Results.isEmpty())
        return pieces;

    const qint64 lastStartMs = millisecondsSinceEpoch(*block.Results.last()) - spanMs / 2;
    qint64 endMs = 0;
    for (const QSharedPointer<CFieldIntensityResult>& sample : block.Results) {
        const qint64 timeMs = millisecondsSinceEpoch(*sample);
        if (pieces.isEmpty() || (timeMs >= endMs && timeMs < lastStartMs)) {
            pieces.append(beginPiece(block));
            endMs = timeMs + spanMs;
        }
        pieces.last()->Results.append(sample);
    }
    return pieces;
}
