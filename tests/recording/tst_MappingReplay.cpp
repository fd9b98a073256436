// SPDX-License-Identifier: GPL-3.0-or-later
// Where the replay of a mapping differs from that of a measurement: its end.
#include "CSettings.h"
#include "PatientWait.h"
#include "ReplayTestSupport.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using namespace ReplayTestSupport;

class tst_MappingReplay : public QObject
{
    Q_OBJECT

private slots:
    void endsAfterAFixedTime()
    {
        MappingManager manager(m_settings);
        fill<MappingManager, CMeasureBlockMapping>(manager, 3, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMapping::ReplayMeasureBlock);
        finishAtOnce(manager);
        manager.SetStartReplayIndex(1);
        manager.StartReplay();
        QTRY_VERIFY(!manager.IsPlayingBack());
        QCOMPARE(delivered.count(), 2);
        QVERIFY(!manager.IsProcessingBlock());
        QCOMPARE(manager.ReplayIndex(), 2);
    }

    void endWaitsWithoutABlockInWork()
    {
        MappingManager manager(m_settings);
        fill<MappingManager, CMeasureBlockMapping>(manager, 3, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMapping::ReplayMeasureBlock);
        QElapsedTimer clock;
        connect(&manager, &CRecordingManagerMapping::ReplayMeasureBlock, this, [&] {
            manager.SetIsProcessingBlock(false);
            clock.start();
        });
        // The last block alone: with this warp its own length would be hours.
        manager.SetTimeWarp(1e-9);
        manager.SetStartReplayIndex(2);
        manager.StartReplay();
        QTRY_COMPARE(delivered.count(), 1);
        QVERIFY(!manager.IsProcessingBlock());
        QVERIFY(!manager.ReplayTimer().isActive());
        QTRY_VERIFY(!manager.IsPlayingBack());
        QVERIFY(clock.elapsed() >= 95);
        QCOMPARE(delivered.count(), 1);
    }

    void pauseDoesNotHoldTheEnd()
    {
        MappingManager manager(m_settings);
        fill<MappingManager, CMeasureBlockMapping>(manager, 1, 10);
        manager.StartReplay();
        QTRY_COMPARE(manager.NextReplayIndex(), 1);
        manager.PauseReplay();
        QVERIFY(manager.IsPlayingBack() && manager.IsHolding());
        QTRY_VERIFY(!manager.IsPlayingBack());
    }

    void rangesThatDoNotFit()
    {
        MappingManager manager(m_settings);
        fill<MappingManager, CMeasureBlockMapping>(manager, 5, 10);
        QSignalSpy delivered(&manager, &CRecordingManagerMapping::ReplayMeasureBlock);
        finishAtOnce(manager);
        const auto replay = [&](int start, int end) {
            manager.SetStartReplayIndex(start);
            manager.SetEndReplayIndex(end);
            manager.StartReplay();
            return QTest::qWaitFor([&] { return !manager.IsPlayingBack(); }, kLongWaitMs) ? delivered.count()
                                                                                          : -1;
        };
        QCOMPARE(replay(3, 1), 0);
        QCOMPARE(replay(2, 9), 3);
        QCOMPARE(replay(7, 9), 3);
        QVERIFY(manager.IsIdleWithData() && manager.IsHolding() && !manager.ReplayTimer().isActive());
    }

private:
    CSettings m_settings{QString()};
};

QTEST_GUILESS_MAIN(tst_MappingReplay)
#include "tst_MappingReplay.moc"
