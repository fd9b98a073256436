// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "MeasureFixture.h"
#include "PatientWait.h"
#include "PropertyLog.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

using MeterPointer = std::unique_ptr<CMeterOperationViewModel>;

/// Writes down what the table holds, as B of its rows, each time that a block was worked on.
class TableLog : public QObject
{
public:
    explicit TableLog(CMeterOperationViewModel& meter) : m_meter(meter)
    {
        connect(&meter, &CMeterOperationViewModel::NewMeasureReadyChanged, this, [this, &meter](bool ready) {
            if (ready)
                tables.append(read(meter));
        });
    }

    /// Whether tables are there, this many in all; returns with the last of them, before any other piece.
    bool reaches(int size)
    {
        QEventLoop loop;
        QTimer::singleShot(kLongWaitMs, &loop, &QEventLoop::quit);
        connect(&m_meter, &CMeterOperationViewModel::NewMeasureReadyChanged, &loop, [&] {
            if (tables.size() >= size)
                loop.quit();
        });
        if (tables.size() < size)
            loop.exec();
        return tables.size() == size;
    }

    /// Whether another block is worked on within a time; returns as soon as that is so.
    bool grows(int timeoutMs)
    {
        const int size = tables.size();
        return QTest::qWaitFor([this, size] { return tables.size() > size; }, timeoutMs);
    }

    static QVector<int> read(CMeterOperationViewModel& meter)
    {
        CMeasureBlockData& table = *meter.MeterOperationDatasetViewModel()->TableData();
        QVector<int> values;
        for (int row = 0; row < table.rowCount(); ++row)
            values.append(table.data(table.index(row, 0), CMeasureBlockData::BRole).toInt());
        return values;
    }

    QVector<QVector<int>> tables;

private:
    CMeterOperationViewModel& m_meter;
};

/// Live blocks of ten samples every 10 ms, B counting up from 0, then at rest.
MeterPointer makeMeterWithBlocks(MeasureFixture& f, int blocks)
{
    auto meter = std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    for (int i = 0; i < blocks; ++i)
        f.operation.OnNewMeasure(makeRamp(10 * i, 10, 100 * i, 10));
    f.manager().StopRecord();
    f.manager().SetMinReplaySmallBlockDelayMillisecond(20);
    return meter;
}

QVector<int> upTo(int first, int last)
{
    QVector<int> values;
    for (int value = first; value <= last; ++value)
        values.append(value);
    return values;
}

} // namespace

class tst_CMeterReplay : public QObject
{
    Q_OBJECT

private slots:
    void blocksComeInPieces();
    void fastReplayShowsWholeBlocks();
    void blockIsReleasedBehindItsLastPiece();
    void piecesKeepTheirPace();
    void piecesOfWholeSecondsKeepTheirPace();
    void slowReplayCutsSampleBySample();
    void spanIsRoundedToMilliseconds();
    void piecesWithinAMillisecond();
    void holdStopsThePieces();
    void releaseWithoutPiecesDoesNothing();
    void stepByStepShowsWholeBlocks();
    void restartDropsThePieces();
    void nextBlockDoesNotHurryThePieces();
    void clearDropsThePieces();
    void stopEndsThePieces();
    void emptyBlockReleasesAtOnce();
    void hugeGapDoesNotOverflow();
    void newPageInTheMiddle();

private:
    void keepPace(MeasureFixture& f, CMeterOperationViewModel& meter);
};

void tst_CMeterReplay::blocksComeInPieces()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 2);
    TableLog log(*meter);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    // Spans of 20 ms are two samples. The last piece may begin before 90 - 10 ms, so it begins at 60 ms and
    // takes the rest.
    QVector<QVector<int>> expected;
    for (const int first : {0, 10}) {
        for (const int last : {1, 3, 5, 9})
            expected.append(upTo(first, first + last));
    }
    QCOMPARE(log.tables, expected);
    QCOMPARE(meter->BLastBlock(), 19.0);
    QCOMPARE(f.dataSet().MeasureBlocks()->front()->Results.size(), 10);
}

void tst_CMeterReplay::fastReplayShowsWholeBlocks()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 3);
    f.manager().SetTimeWarp(10);
    TableLog log(*meter);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(log.tables, (QVector<QVector<int>>{upTo(0, 9), upTo(10, 19), upTo(20, 29)}));
}

void tst_CMeterReplay::blockIsReleasedBehindItsLastPiece()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 2);
    QVector<double> releasedAt;
    connect(&f.manager(), &CRecordingManager::IsProcessingBlockChanged, this, [&](bool isProcessing) {
        QVERIFY(!isProcessing);
        releasedAt.append(meter->BLastBlock());
    });
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(releasedAt, (QVector<double>{9, 19}));
    disconnect(&f.manager(), nullptr, this, nullptr);
}

void tst_CMeterReplay::piecesKeepTheirPace()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    keepPace(f, *meter);
}

void tst_CMeterReplay::piecesOfWholeSecondsKeepTheirPace()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    // The fraction of a second in the nanoseconds only.
    for (const auto& sample : f.dataSet().MeasureBlocks()->front()->Results)
        sample->Timestamp = QDateTime::fromSecsSinceEpoch(sample->Timestamp.toSecsSinceEpoch());
    keepPace(f, *meter);
}

void tst_CMeterReplay::keepPace(MeasureFixture& f, CMeterOperationViewModel& meter)
{
    f.manager().SetTimeWarp(0.1);
    f.manager().SetMinReplaySmallBlockDelayMillisecond(200);
    // Spans of 20 ms again, each lasting 200 ms.
    QElapsedTimer clock;
    QVector<qint64> times;
    connect(&meter, &CMeterOperationViewModel::NewMeasureReadyChanged, this, [&](bool ready) {
        if (ready)
            times.append(clock.elapsed());
    });
    clock.start();
    meter.start();
    QTRY_COMPARE(times.size(), 4);
    for (int i = 1; i < times.size(); ++i)
        QVERIFY2(times.at(i) - times.at(i - 1) > 150,
                 qPrintable(QString::number(times.at(i) - times.at(i - 1))));
    meter.stop();
}

void tst_CMeterReplay::slowReplayCutsSampleBySample()
{
    MeasureFixture f;
    auto meter = std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    // A millisecond apart at a speed of 0.1: 10 ms each.
    f.operation.OnNewMeasure(makeRamp(0, 5, 0, 1));
    f.manager().StopRecord();
    f.manager().SetTimeWarp(0.1);
    f.manager().SetMinReplaySmallBlockDelayMillisecond(1);
    TableLog log(*meter);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(log.tables, (QVector<QVector<int>>{upTo(0, 0), upTo(0, 1), upTo(0, 2), upTo(0, 4)}));
}

void tst_CMeterReplay::spanIsRoundedToMilliseconds()
{
    MeasureFixture f;
    auto meter = std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    f.operation.OnNewMeasure(makeRamp(0, 5, 0, 1));
    f.manager().StopRecord();
    f.manager().SetTimeWarp(0.1);
    f.manager().SetMinReplaySmallBlockDelayMillisecond(16);
    TableLog log(*meter);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    // 1.6 ms are 2 ms of the record; a piece may begin before 4 - 1 ms.
    QCOMPARE(log.tables, (QVector<QVector<int>>{upTo(0, 1), upTo(0, 4)}));
}

void tst_CMeterReplay::piecesWithinAMillisecond()
{
    MeasureFixture f;
    auto meter = std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    const auto block = makeRamp(0, 4, 0, 1);
    // The second sample lies half a millisecond behind the first one and begins no new table.
    block->Results.at(1)->Timestamp = block->Results.at(0)->Timestamp;
    block->Results.at(1)->TimestampNanoseconds = 500000;
    f.operation.OnNewMeasure(block);
    f.manager().StopRecord();
    f.manager().SetTimeWarp(0.1);
    f.manager().SetMinReplaySmallBlockDelayMillisecond(1);
    TableLog log(*meter);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(log.tables, (QVector<QVector<int>>{upTo(0, 0), upTo(0, 1), upTo(0, 3)}));
}

void tst_CMeterReplay::holdStopsThePieces()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    TableLog log(*meter);
    meter->start();
    QVERIFY(log.reaches(2));
    meter->hold();
    QVERIFY(!log.grows(100));
    QCOMPARE(log.tables.size(), 2);
    QCOMPARE(meter->BLastBlock(), 3.0);
    meter->resume();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(log.tables, (QVector<QVector<int>>{upTo(0, 1), upTo(0, 3), upTo(0, 5), upTo(0, 9)}));
}

void tst_CMeterReplay::releaseWithoutPiecesDoesNothing()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    f.manager().SetIsPlayingBack(true);
    PropertyLog log(meter.get());
    meter->OnIsHoldingChanged(true);
    meter->OnIsHoldingChanged(false);
    meter->OnSmallBlockTimer();
    QCOMPARE(log.count(QStringLiteral("NewMeasureReady")), 0);
}

void tst_CMeterReplay::stepByStepShowsWholeBlocks()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 3);
    meter->ReplayParametersViewModel()->SetStepByStepMode(true);
    TableLog log(*meter);
    for (int i = 0; i < 2; ++i) {
        meter->step();
        QTRY_COMPARE(log.tables.size(), i + 1);
        QCOMPARE(log.tables.last(), upTo(10 * i, 10 * i + 9));
    }
    QVERIFY(f.manager().IsPlayingBack());
    meter->stop();
}

void tst_CMeterReplay::restartDropsThePieces()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(false);
    f.manager().SetReplayIndex(0);
    f.manager().SetStartReplayIndex(0);
    TableLog log(*meter);
    meter->OnNewMeasure(makeRamp(100, 10, 0, 10));
    meter->OnNewMeasure(makeRamp(200, 10, 0, 10));
    QTRY_COMPARE(log.tables.size(), 4);
    // Nothing of the block that the start of the replay overtook.
    QCOMPARE(log.tables.first(), upTo(200, 201));
    QCOMPARE(log.tables.last(), upTo(200, 209));
    QVERIFY(!log.grows(50));
    QCOMPARE(log.tables.size(), 4);

    // Later blocks queue up behind each other.
    f.manager().SetReplayIndex(1);
    log.tables.clear();
    meter->OnNewMeasure(makeRamp(300, 10, 0, 10));
    meter->OnNewMeasure(makeRamp(400, 10, 100, 10));
    QTRY_COMPARE(log.tables.size(), 8);
    // The rows begin anew with the first piece of the newest block only.
    QCOMPARE(log.tables.at(4), upTo(400, 401));
}

void tst_CMeterReplay::nextBlockDoesNotHurryThePieces()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    f.manager().SetTimeWarp(0.1);
    f.manager().SetMinReplaySmallBlockDelayMillisecond(200);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(false);
    f.manager().SetReplayIndex(1);
    TableLog log(*meter);
    // Before the pieces' own clock, whatever keeps the test from going on
    QElapsedTimer clock;
    clock.start();
    meter->OnNewMeasure(makeRamp(100, 10, 0, 10));
    QVERIFY(log.reaches(1));
    meter->OnNewMeasure(makeRamp(200, 10, 100, 10));
    QVERIFY(log.reaches(2));
    QVERIFY2(clock.elapsed() > 150, qPrintable(QString::number(clock.elapsed())));
}

void tst_CMeterReplay::clearDropsThePieces()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    TableLog log(*meter);
    meter->start();
    QVERIFY(log.reaches(1));
    f.dataSet().Clear();
    QVERIFY(!log.grows(100));
    QCOMPARE(log.tables.size(), 1);
    QCOMPARE(meter->BLastBlock(), 0.0);
}

void tst_CMeterReplay::stopEndsThePieces()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 3);
    TableLog log(*meter);
    meter->start();
    QVERIFY(log.reaches(1));
    meter->stop();
    // The last block of the dataset is shown whole, and no piece follows.
    QCOMPARE(log.tables.size(), 2);
    QCOMPARE(log.tables.last(), upTo(20, 29));
    QVERIFY(!log.grows(100));
    QCOMPARE(log.tables.size(), 2);
}

void tst_CMeterReplay::emptyBlockReleasesAtOnce()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(false);
    f.manager().SetIsProcessingBlock(true);
    meter->OnNewMeasure(makeRamp(0, 0, 0, 0));
    QTRY_VERIFY(!f.manager().IsProcessingBlock());
}

void tst_CMeterReplay::hugeGapDoesNotOverflow()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeterWithBlocks(f, 1);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(false);
    f.manager().SetTimeWarp(0.0001);
    // Ten minutes in the record are seventy days at this speed.
    const auto block = makeRamp(0, 3, 0, 600000);
    TableLog log(*meter);
    meter->OnNewMeasure(block);
    QTRY_COMPARE(log.tables.size(), 1);
    QVERIFY(!log.grows(50));
    QCOMPARE(log.tables.size(), 1);
}

void tst_CMeterReplay::newPageInTheMiddle()
{
    MeasureFixture f;
    MeterPointer meter = makeMeterWithBlocks(f, 2);
    {
        TableLog log(*meter);
        meter->start();
        QVERIFY(log.reaches(1));
    }
    QVERIFY(f.manager().IsProcessingBlock());
    meter->PageLeft();
    meter.reset();
    // The new page releases what the old one left behind, and shows the block as a whole.
    meter = std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    QVERIFY(!f.manager().IsProcessingBlock());
    QCOMPARE(TableLog::read(*meter), upTo(0, 9));
    TableLog log(*meter);
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(log.tables.last(), upTo(10, 19));
}

QTEST_MAIN(tst_CMeterReplay)
#include "tst_CMeterReplay.moc"
