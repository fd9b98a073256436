// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSettings.h"
#include "PatientWait.h"
#include "ReplayTestSupport.h"

#include <QSignalSpy>
#include <QtTest>

#include <limits>

using namespace RecordTestSupport;
using namespace ReplayTestSupport;

class tst_Replay : public QObject
{
    Q_OBJECT

private slots:
    void startBeginsAtTheStartIndex()
    {
        MeasureManager manager(m_settings);
        fill(manager, 5, 1000);
        manager.SetStartReplayIndex(2);
        QVERIFY(manager.IsIdleWithData());
        QStringList told;
        connect(&manager, &CRecordingManager::ReplayIndexChanged, this,
                [&](int i) { told << QStringLiteral("R%1").arg(i); });
        connect(&manager, &CRecordingManager::NextReplayIndexChanged, this,
                [&](int i) { told << QStringLiteral("N%1").arg(i); });
        connect(&manager, &CRecordingManager::IsPlayingBackChanged, this,
                [&] { told << QStringLiteral("playing"); });
        connect(&manager, &CRecordingManager::IsHoldingChanged, this,
                [&] { told << QStringLiteral("released"); });
        connect(&manager, &CRecordingManager::IsIdleWithDataChanged, this,
                [&] { told << QStringLiteral("busy"); });
        manager.StartReplay();
        QCOMPARE(told.join(QLatin1Char(' ')), QStringLiteral("R2 N2 playing released busy"));
        QVERIFY(manager.ReplayTimer().isActive() && manager.ReplayTimer().isSingleShot());
        QCOMPARE(manager.ReplayTimer().interval(), 1);
        QCOMPARE(manager.ReplayBlockDelayMillisecond(), 1000);
    }

    void stepByStepSetsTheDelay()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 1000);
        manager.SetReplayStepByStep(true);
        manager.StartReplay();
        QCOMPARE(manager.ReplayBlockDelayMillisecond(), 1);
    }

    void delayChangesTheStoredIntervalOnly()
    {
        MeasureManager manager(m_settings);
        manager.SetReplayBlockDelayMillisecond(321);
        QCOMPARE(manager.ReplayTimer().interval(), 321);
        QVERIFY(!manager.ReplayTimer().isActive());
    }

    void delayLeavesATimerThatRunsAlone()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 60000);
        manager.StartReplay();
        manager.PlayNextStep();
        manager.SetReplayBlockDelayMillisecond(321);
        QCOMPARE(manager.ReplayTimer().interval(), 60000);
    }

    void pacingFollowsTheRecordedTimes_data()
    {
        QTest::addColumn<int>("spacingMs");
        QTest::addColumn<double>("timeWarp");
        QTest::addColumn<int>("interval");
        QTest::newRow("1x") << 1000 << 1.0 << 1000;
        QTest::newRow("0.0001x") << 1000 << 0.0001 << 10000000;
        QTest::newRow("10x") << 1000 << 10.0 << 100;
        QTest::newRow("rounds up at a half") << 25 << 10.0 << 3;
        QTest::newRow("rounds down below") << 24 << 10.0 << 2;
        QTest::newRow("equal times") << 0 << 1.0 << 0;
        QTest::newRow("backwards") << -500 << 1.0 << 0;
        QTest::newRow("longer than a timer can") << 40000000 << 0.0001 << std::numeric_limits<int>::max();
    }

    void pacingFollowsTheRecordedTimes()
    {
        QFETCH(int, spacingMs);
        QFETCH(double, timeWarp);
        QFETCH(int, interval);
        MeasureManager measure(m_settings);
        MappingManager mapping(m_settings);
        fill(measure, 3, spacingMs);
        fill<MappingManager, CMeasureBlockMapping>(mapping, 3, spacingMs);
        for (CRecordingManager* manager :
             {static_cast<CRecordingManager*>(&measure), static_cast<CRecordingManager*>(&mapping)}) {
            manager->SetTimeWarp(timeWarp);
            manager->StartReplay();
            manager->PlayNextStep();
            QVERIFY(manager->IsProcessingBlock());
            QCOMPARE(manager->ReplayIndex(), 0);
            QCOMPARE(manager->NextReplayIndex(), 1);
        }
        QCOMPARE(measure.ReplayTimer().interval(), interval);
        QCOMPARE(mapping.ReplayTimer().interval(), interval);
        QVERIFY(measure.ReplayTimer().isActive() && mapping.ReplayTimer().isActive());
    }

    /// Some drivers give whole seconds and the rest in nanoseconds only.
    void pacingCountsNanosecondsOfWholeSeconds()
    {
        MeasureManager manager(m_settings);
        for (const int ms : {0, 300, 1700}) {
            auto block = QSharedPointer<CMeasureBlock>::create();
            block->Results.append(
                sampleAt(timeAt(ms / 1000 * 1000), static_cast<quint32>(ms % 1000) * 1000000U));
            manager.AddMeasureBlock(block);
        }
        manager.SetEndReplayIndex(2);
        manager.StartReplay();
        manager.PlayNextStep();
        QCOMPARE(manager.ReplayTimer().interval(), 300);
        manager.PlayNextStep();
        QCOMPARE(manager.ReplayTimer().interval(), 1400);
    }

    void blocksWithoutSamplesOrTimes()
    {
        MeasureManager manager(m_settings);
        manager.AddMeasureBlock(blockOf(0));
        manager.AddMeasureBlock(blockOf(1));
        auto untimed = QSharedPointer<CMeasureBlock>::create();
        untimed->Results.append(sampleAt(QDateTime(), 0));
        manager.AddMeasureBlock(untimed);
        manager.AddMeasureBlock(blockOf(0));
        manager.SetEndReplayIndex(3);
        manager.StartReplay();
        for (int i = 0; i < 3; ++i) {
            manager.PlayNextStep();
            QCOMPARE(manager.ReplayTimer().interval(), 0);
        }
        manager.PlayNextStep();
        QCOMPARE(manager.EndOfReplayTimer().interval(), 100);
    }

    /// An invalid time is not the beginning of the epoch.
    void fromUntimedToTimed()
    {
        auto untimed = QSharedPointer<CMeasureBlock>::create();
        untimed->Results.append(sampleAt(QDateTime(), 0));
        const auto halfTimed = blockOf(1);
        halfTimed->Results.prepend(sampleAt(QDateTime(), 0));
        MeasureManager manager(m_settings);
        manager.AddMeasureBlock(untimed);
        manager.AddMeasureBlock(blockOf(1));
        manager.AddMeasureBlock(halfTimed);
        manager.SetEndReplayIndex(2);
        manager.StartReplay();
        for (int i = 0; i < 2; ++i) {
            manager.PlayNextStep();
            QCOMPARE(manager.ReplayTimer().interval(), 0);
        }
        manager.PlayNextStep();
        QCOMPARE(manager.EndOfReplayTimer().interval(), 100);
    }

    void wholeReplay()
    {
        MeasureManager manager(m_settings);
        fill(manager, 4, 20);
        manager.SetStartReplayIndex(1);
        finishAtOnce(manager);
        QSignalSpy index(&manager, &CRecordingManager::ReplayIndexChanged);
        QVector<QSharedPointer<CMeasureBlock>> delivered;
        connect(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock, this,
                [&](const QSharedPointer<CMeasureBlock>& block) { delivered << block; });
        manager.StartReplay();
        QTRY_VERIFY(!manager.IsPlayingBack());
        QCOMPARE(delivered.size(), 3);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(delivered[i], manager.DataSet()->MeasureBlocks()->at(static_cast<size_t>(i + 1)));
        QCOMPARE(indicesOf(index), (QVector<int>{1, 1, 2, 3}));
        QVERIFY(manager.IsHolding() && manager.IsIdleWithData() && !manager.IsProcessingBlock());
        QCOMPARE(manager.NextReplayIndex(), 0);
        QCOMPARE(manager.ReplayIndex(), 3);
        QVERIFY(!manager.ReplayTimer().isActive() && !manager.EndOfReplayTimer().isActive());
    }

    void endOfReplayLastsTheBlockAndTheRest()
    {
        MeasureManager manager(m_settings);
        fill(manager, 2, 1000);
        manager.SetTimeWarp(0.1);
        manager.SetStartReplayIndex(1);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.StartReplay();
        manager.PlayNextStep();
        QCOMPARE(delivered.count(), 1);
        QVERIFY(manager.IsProcessingBlock());
        QVERIFY(manager.EndOfReplayTimer().isActive() && manager.EndOfReplayTimer().isSingleShot());
        QCOMPARE(manager.EndOfReplayTimer().interval(), 300); // 20 ms / 0.1 + 100 ms
        manager.SetIsProcessingBlock(false);
        QTRY_VERIFY(!manager.IsPlayingBack());
        QCOMPARE(delivered.count(), 1);
    }

    void restAtTheEndOfTheReplay()
    {
        const auto delayMs = [this](double timeWarp, int restMs, bool isStepByStep) {
            MeasureManager manager(m_settings);
            fill(manager, 1, 1000);
            manager.SetTimeWarp(timeWarp);
            manager.SetMinReplaySmallBlockDelayMillisecond(restMs);
            manager.SetReplayStepByStep(isStepByStep);
            manager.StartReplay();
            manager.PlayNextStep();
            return manager.EndOfReplayTimer().interval();
        };
        QCOMPARE(delayMs(1.0, 37, true), 37);     // step by step: without the length of the block
        QCOMPARE(delayMs(30.0, 100, false), 100); // 20 ms / 30 + 100 ms, cut to milliseconds
    }

    void unfinishedBlockHoldsTheNextOne()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 1);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        // Being done cuts the wait short. From within the tick: a busy machine could let the wait end by
        // itself.
        QVector<int> deliveries;
        const auto cutting = connect(&manager.ReplayTimer(), &QTimer::timeout, this, [&] {
            if (manager.BlockWaitCount() < 1 || !deliveries.isEmpty() || !manager.IsProcessingBlock())
                return;
            deliveries = {delivered.count(), manager.ReplayTimer().interval()};
            manager.SetIsProcessingBlock(false);
            deliveries << delivered.count() << manager.BlockWaitCount();
        });
        manager.StartReplay();
        QTRY_COMPARE(deliveries, (QVector<int>{1, 100, 2, 0}));
        disconnect(cutting);
        // Unless it ends soon by itself.
        QTRY_VERIFY(manager.BlockWaitCount() >= 1);
        while (manager.ReplayTimer().remainingTime() > 9)
            QThread::msleep(1);
        manager.SetIsProcessingBlock(false);
        QCOMPARE(manager.BlockWaitCount(), 0);
        QCOMPARE(delivered.count(), 2);
        QTRY_COMPARE(delivered.count(), 3);
    }

    void viewThatNeverFinishesCostsTenWaits()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 1);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        QSignalSpy processing(&manager, &CRecordingManager::IsProcessingBlockChanged);
        QVector<int> waits;
        connect(&manager.ReplayTimer(), &QTimer::timeout, this, [&] { waits << manager.BlockWaitCount(); });
        manager.StartReplay();
        QTRY_COMPARE_WITH_TIMEOUT(delivered.count(), 2, 5000);
        manager.StopReplay();
        // The first block, ten waits for it of which the last gives up, and the second block
        QCOMPARE(waits.mid(0, 12), (QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0}));
        QCOMPARE(processing.count(), 0);
    }

    void blockProcessedWithoutAWaitDoesNothing()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 1000);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.OnBlockProcessed();
        manager.StartReplay();
        manager.PlayNextStep();
        manager.SetIsProcessingBlock(false);
        QCOMPARE(delivered.count(), 1);
        QCOMPARE(manager.ReplayTimer().interval(), 1000);
    }

    void viewThatNeverFinishesTheLastBlock()
    {
        MeasureManager manager(m_settings);
        fill(manager, 1, 1000);
        manager.StartReplay();
        manager.PlayNextStep();
        for (int wait = 1; wait <= 10; ++wait) {
            manager.l_OnStopReplayTimerTimeout();
            QCOMPARE(manager.EndWaitCount(), wait);
            QVERIFY(manager.IsPlayingBack());
            QCOMPARE(manager.EndOfReplayTimer().interval(), 100);
        }
        manager.l_OnStopReplayTimerTimeout();
        QVERIFY(!manager.IsPlayingBack());
    }

    void unfinishedLastBlockOfARangeBeyondTheDatasetStillEnds()
    {
        MeasureManager manager(m_settings);
        fill(manager, 1, 1000);
        manager.SetEndReplayIndex(5);
        manager.StartReplay();
        manager.PlayNextStep();
        QVERIFY(manager.IsProcessingBlock());
        manager.l_OnStopReplayTimerTimeout();
        QVERIFY(!manager.IsPlayingBack());
    }

    void pauseKeepsTheRemainingTime()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 60000);
        finishAtOnce(manager);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.StartReplay();
        QTRY_COMPARE(delivered.count(), 1);
        manager.PauseReplay();
        QVERIFY(manager.IsHolding() && manager.IsPlayingBack() && !manager.IsIdleWithData());
        QVERIFY(!manager.ReplayTimer().isActive());
        const qint64 remaining = manager.RemainingTimeAtPause();
        QVERIFY2(remaining > 50000 && remaining <= 60000, QByteArray::number(remaining));
        manager.StartReplay();
        QCOMPARE(manager.ReplayTimer().interval(), static_cast<int>(remaining));
        QCOMPARE(manager.RemainingTimeAtPause(), 0);
        QCOMPARE(manager.ReplayIndex(), 0);
        QVERIFY(!manager.IsHolding());
        manager.StopReplay();
        QCOMPARE(manager.RemainingTimeAtPause(), 0);
    }

    void pauseWithoutATimerResumesAtOnce()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 1000);
        manager.PauseReplay();
        manager.StartReplay();
        QCOMPARE(manager.ReplayTimer().interval(), 1);
    }

    void pauseHoldsTheEndOfTheReplay()
    {
        MeasureManager manager(m_settings);
        fill(manager, 1, 1000);
        finishAtOnce(manager);
        manager.StartReplay();
        manager.PlayNextStep();
        QVERIFY(manager.EndOfReplayTimer().isActive());
        manager.PauseReplay();
        QVERIFY(!manager.EndOfReplayTimer().isActive());
        manager.StartReplay();
        QVERIFY(manager.EndOfReplayTimer().isActive());
        QCOMPARE(manager.EndOfReplayTimer().interval(), 120);
        QTRY_VERIFY(!manager.IsPlayingBack());
    }

    /// Nothing was held then: the release at the start must not end the replay before its only block.
    void releaseAtTheStartOfAReplayOfOneBlockEndsNothing()
    {
        MeasureManager manager(m_settings);
        fill(manager, 1, 1000);
        finishAtOnce(manager);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        for (int replay = 1; replay <= 2; ++replay) {
            manager.StartReplay();
            QVERIFY(!manager.EndOfReplayTimer().isActive());
            QTRY_COMPARE(delivered.count(), replay);
            QTRY_VERIFY(!manager.IsPlayingBack());
        }
    }

    void stopAtTheEndOfTheReplayStopsItsTimer()
    {
        MeasureManager manager(m_settings);
        fill(manager, 1, 1000);
        manager.StartReplay();
        manager.PlayNextStep();
        QVERIFY(manager.EndOfReplayTimer().isActive());
        manager.StopReplay();
        QVERIFY(!manager.EndOfReplayTimer().isActive());
        manager.StartReplay();
        QVERIFY(!manager.EndOfReplayTimer().isActive());
    }

    void stopShowsTheLastBlock()
    {
        MeasureManager manager(m_settings);
        fill(manager, 5, 1000);
        manager.StartReplay();
        manager.PlayNextStep();
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        QSignalSpy index(&manager, &CRecordingManager::ReplayIndexChanged);
        manager.StopReplay();
        QCOMPARE(delivered.count(), 1);
        QCOMPARE(delivered[0][0].value<QSharedPointer<CMeasureBlock>>(),
                 manager.DataSet()->MeasureBlocks()->back());
        QCOMPARE(indicesOf(index), QVector<int>{4});
        QVERIFY(!manager.ReplayTimer().isActive() && !manager.IsProcessingBlock());
        QVERIFY(!manager.IsPlayingBack() && manager.IsHolding() && manager.IsIdleWithData());
        QVERIFY(!manager.EndOfReplayTimer().isActive());
    }

    void stopDeliversNothingBehindTheRange()
    {
        MeasureManager manager(m_settings);
        fill(manager, 5, 1000);
        manager.SetEndReplayIndex(2);
        manager.StartReplay();
        manager.PlayNextStep();
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.StopReplay();
        QCOMPARE(delivered.count(), 0);
    }

    void stopOfAnEmptyDataset()
    {
        MeasureManager manager(m_settings);
        manager.StopReplay();
        QVERIFY(!manager.IsIdleWithData() && manager.IsHolding());
    }

    void rangeThatEndsBeforeItBegins()
    {
        MeasureManager manager(m_settings);
        fill(manager, 5, 10);
        manager.SetStartReplayIndex(3);
        manager.SetEndReplayIndex(1);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.StartReplay();
        QTRY_VERIFY(manager.EndOfReplayTimer().isActive());
        QCOMPARE(delivered.count(), 0);
        manager.SetIsProcessingBlock(false);
        QTRY_VERIFY(!manager.IsPlayingBack());
        QCOMPARE(delivered.count(), 0);
    }

    void withoutTimeWarpTheReplayStands()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        for (const double timeWarp : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
            manager.SetTimeWarp(timeWarp);
            manager.SetNextReplayIndex(0);
            manager.SetIsPlayingBack(true);
            manager.PlayNextStep();
            QCOMPARE(delivered.count(), 0);
            QCOMPARE(manager.NextReplayIndex(), 0);
            QVERIFY(!manager.ReplayTimer().isActive() && !manager.EndOfReplayTimer().isActive());
        }
    }

    void negativeIndicesDeliverNothing()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.SetNextReplayIndex(-1);
        manager.PlayNextStep();
        manager.SetNextReplayIndex(0);
        manager.SetReplayIndex(-1);
        manager.PlayNextStep();
        QCOMPARE(delivered.count(), 0);
    }

    void stepByStepDeliversOneBlockPerCall()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 10);
        manager.SetReplayStepByStep(true);
        finishAtOnce(manager);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        manager.StartReplay();
        QTRY_COMPARE(delivered.count(), 1);
        QVERIFY(!manager.ReplayTimer().isActive());
        QVERIFY(!manager.IsProcessingBlock());
        manager.StartReplay();
        QTRY_COMPARE(delivered.count(), 2);
        QVERIFY(!manager.ReplayTimer().isActive());
        manager.StartReplay();
        QTRY_COMPARE(delivered.count(), 3);
        QCOMPARE(manager.EndOfReplayTimer().interval(), 100);
        QTRY_VERIFY(!manager.IsPlayingBack());
    }

    void playCurrentBlock()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        QSignalSpy index(&manager, &CRecordingManager::ReplayIndexChanged);
        for (const int block : {0, -1, 4})
            manager.playCurrentBlock(block);
        QCOMPARE(delivered.count(), 0);
        manager.playCurrentBlock(2);
        QCOMPARE(delivered.count(), 1);
        QCOMPARE(indicesOf(index), QVector<int>{1});
        QCOMPARE(delivered[0][0].value<QSharedPointer<CMeasureBlock>>(),
                 manager.DataSet()->MeasureBlocks()->at(1));
        QVERIFY(!manager.ReplayTimer().isActive() && !manager.IsProcessingBlock() &&
                !manager.IsPlayingBack());
        manager.playCurrentBlock(3);
        QCOMPARE(delivered.count(), 2);
        QVERIFY(!manager.EndOfReplayTimer().isActive());
    }

    void datasetEmptiedWhileTheIndexIsTold()
    {
        MeasureManager measure(m_settings);
        fill(measure, 3, 10);
        connect(&measure, &CRecordingManager::ReplayIndexChanged, this, [&] { measure.DataSet()->Clear(); });
        QSignalSpy delivered(&measure, &CRecordingManagerMeasure::ReplayMeasureBlock);
        measure.playCurrentBlock(2);
        QCOMPARE(delivered.count(), 0);

        MappingManager mapping(m_settings);
        fill<MappingManager, CMeasureBlockMapping>(mapping, 3, 10);
        connect(&mapping, &CRecordingManager::ReplayIndexChanged, this, [&] { mapping.DataSet()->Clear(); });
        QSignalSpy deliveredMapping(&mapping, &CRecordingManagerMapping::ReplayMeasureBlock);
        mapping.playCurrentBlock(2);
        QCOMPARE(deliveredMapping.count(), 0);
    }

    void tickAfterTheEndDoesNothing()
    {
        MeasureManager manager(m_settings);
        fill(manager, 3, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMeasure::ReplayMeasureBlock);
        QSignalSpy ticked(&manager.ReplayTimer(), &QTimer::timeout);
        manager.StartReplay();
        manager.SetIsPlayingBack(false);
        QVERIFY(ticked.wait(kLongWaitMs));
        QCOMPARE(delivered.count(), 0);
    }

private:
    CSettings m_settings{QString()};
};

QTEST_GUILESS_MAIN(tst_Replay)
#include "tst_Replay.moc"
