// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallBlockCutter.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

QSharedPointer<CMeasureBlock> makeBlock(const QVector<int>& timesMs)
{
    const QDateTime start(QDate(2024, 3, 31), QTime(0, 59, 59, 500));
    auto block = QSharedPointer<CMeasureBlock>::create();
    for (const int timeMs : timesMs) {
        auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->Timestamp = start.addMSecs(timeMs);
        sample->TimestampNanoseconds = quint32(sample->Timestamp.time().msec()) * 1000000U;
        block->Results.append(sample);
    }
    return block;
}

QVector<int> sizesOf(const QVector<QSharedPointer<CMeasureBlock>>& pieces)
{
    QVector<int> sizes;
    for (const auto& piece : pieces)
        sizes.append(piece->Results.size());
    return sizes;
}

QVector<int> everyMs(int count, int stepMs)
{
    QVector<int> times;
    for (int i = 0; i < count; ++i)
        times.append(i * stepMs);
    return times;
}

/// The sizes of the pieces, step by step on the calendar times, looking ahead from each sample to the next.
QVector<int> expectedSizes(const CMeasureBlock& block, int spanMs)
{
    QVector<int> sizes;
    if (block.Results.isEmpty())
        return sizes;
    const QDateTime lastStart = block.Results.last()->Timestamp.addMSecs(-(spanMs / 2));
    bool isNewPiece = true;
    QDateTime end;
    for (int i = 0; i < block.Results.size(); ++i) {
        if (isNewPiece) {
            sizes.append(0);
            end = block.Results.at(i)->Timestamp.addMSecs(spanMs);
        }
        ++sizes.last();
        isNewPiece = false;
        if (i + 1 < block.Results.size()) {
            const QDateTime next = block.Results.at(i + 1)->Timestamp;
            if (!(next < end) && next < lastStart)
                isNewPiece = true;
        }
    }
    return sizes;
}

} // namespace

class tst_SmallBlockCutter : public QObject
{
    Q_OBJECT

private slots:
    void secondInTenths();
    void tailJoinsLastPiece();
    void fewSamples();
    void spanOfZero();
    void spanLongerThanTheBlock();
    void equalTimes();
    void wholeSecondsWithNanoseconds();
    void piecesCarryCommentAndDirection();
    void randomBlocks();
};

void tst_SmallBlockCutter::secondInTenths()
{
    // 100 samples every 10 ms, spans of 100 ms: a piece may begin up to 940 ms, exclusive.
    const auto pieces = cutIntoSmallBlocks(*makeBlock(everyMs(100, 10)), 100);
    QCOMPARE(sizesOf(pieces), (QVector<int>(10, 10)));
    const auto& last = pieces.last()->Results;
    QVERIFY(last.first()->Timestamp.msecsTo(last.last()->Timestamp) <= 150);
}

void tst_SmallBlockCutter::tailJoinsLastPiece()
{
    // The last sample lies at 1030 ms: no piece begins at or behind 980 ms.
    const auto pieces = cutIntoSmallBlocks(*makeBlock(everyMs(104, 10)), 100);
    QCOMPARE(sizesOf(pieces), (QVector<int>{10, 10, 10, 10, 10, 10, 10, 10, 10, 14}));
    // At 1060 ms a piece may begin at 1000 ms.
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock(everyMs(107, 10)), 100)),
             (QVector<int>{10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 7}));
    // At 1050 ms it may not: the start must lie before the last start.
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock(everyMs(106, 10)), 100)),
             (QVector<int>{10, 10, 10, 10, 10, 10, 10, 10, 10, 16}));
    // Half of an odd span is rounded down: a piece may begin before 1049 - 50 for a span of 101.
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 998, 1049}), 101)), (QVector<int>{1, 2}));
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 999, 1049}), 101)), (QVector<int>{3}));
}

void tst_SmallBlockCutter::fewSamples()
{
    QVERIFY(cutIntoSmallBlocks(*makeBlock({}), 100).isEmpty());
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0}), 100)), (QVector<int>{1}));
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 5000}), 100)), (QVector<int>{2}));
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 5000, 10000}), 100)), (QVector<int>{1, 2}));
}

void tst_SmallBlockCutter::spanOfZero()
{
    // Each sample before the last time is a piece of its own; the last one joins its predecessor.
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 10, 20, 30}), 0)), (QVector<int>{1, 1, 2}));
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 10, 10, 30, 30}), 0)), (QVector<int>{1, 1, 3}));
}

void tst_SmallBlockCutter::spanLongerThanTheBlock()
{
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock(everyMs(100, 10)), 1000)), (QVector<int>{100}));
}

void tst_SmallBlockCutter::equalTimes()
{
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 0, 0, 0}), 100)), (QVector<int>{4}));
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*makeBlock({0, 0, 0, 0}), 0)), (QVector<int>{4}));
}

void tst_SmallBlockCutter::wholeSecondsWithNanoseconds()
{
    // Drivers that keep the fraction in the nanoseconds only are cut like the others.
    const auto block = makeBlock(everyMs(100, 10));
    for (const auto& sample : block->Results)
        sample->Timestamp = QDateTime::fromSecsSinceEpoch(sample->Timestamp.toSecsSinceEpoch());
    QCOMPARE(sizesOf(cutIntoSmallBlocks(*block, 100)), (QVector<int>(10, 10)));
}

void tst_SmallBlockCutter::piecesCarryCommentAndDirection()
{
    const auto block = makeBlock(everyMs(50, 10));
    block->SetComment(QStringLiteral("at the door"));
    block->Bprime.SetX(1);
    block->Bprime.SetY(-2);
    block->Bprime.SetZ(0.5);
    const auto pieces = cutIntoSmallBlocks(*block, 100);
    QVERIFY(pieces.size() > 1);
    for (const auto& piece : pieces) {
        QCOMPARE(piece->Comment(), QStringLiteral("at the door"));
        QCOMPARE(piece->Bprime.X(), 1.0);
        QCOMPARE(piece->Bprime.Y(), -2.0);
        QCOMPARE(piece->Bprime.Z(), 0.5);
    }
}

void tst_SmallBlockCutter::randomBlocks()
{
    QRandomGenerator random(5);
    for (int i = 0; i < 2000; ++i) {
        QVector<int> times;
        int timeMs = 0;
        const int count = random.bounded(0, 60);
        for (int k = 0; k < count; ++k) {
            times.append(timeMs);
            // Now and then a standstill or a step back.
            timeMs += random.bounded(10) == 0 ? random.bounded(-20, 1) : random.bounded(0, 40);
        }
        const auto block = makeBlock(times);
        const int spanMs = random.bounded(0, 200);
        const auto pieces = cutIntoSmallBlocks(*block, spanMs);
        QCOMPARE(sizesOf(pieces), expectedSizes(*block, spanMs));
        // Nothing is lost, copied or moved.
        QVector<QSharedPointer<CFieldIntensityResult>> joined;
        for (const auto& piece : pieces)
            joined += piece->Results;
        QCOMPARE(joined, block->Results);
    }
}

QTEST_GUILESS_MAIN(tst_SmallBlockCutter)
#include "tst_SmallBlockCutter.moc"
