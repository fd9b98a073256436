// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationMapping.h"
#include "CReplayParametersViewModel.h"
#include "MeasureFixture.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QtTest>

class tst_CReplayParametersViewModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void initialValues();
    void initialSyncTakesOverAndSendsNothing();
    void storedTimeWarpIndex_data();
    void storedTimeWarpIndex();
    void timeWarpReachesTheManager();
    void unknownTimeWarpIndexIsIgnored();
    void rangeReachesTheManager_data();
    void rangeReachesTheManager();
    void stepByStep();
    void currentBlockFollowsTheReplay();
    void numBlocksOpensTheRange();
    void numBlocksIsNeverNegative();
    void idleWithDataOpensTheRange();
    void idleWithDataDuringReplayDoesNothing();
    void mappingOperation();
};

void tst_CReplayParametersViewModel::surface()
{
    using namespace MetaObjectTable;
    VERIFY_NO_DIFFERENCE(compareProperties(CReplayParametersViewModel::staticMetaObject,
                                           {{"TimeWarpNames", "QStringList", ReadOnly},
                                            {"TimeWarpValues", "QList<double>", ReadOnly},
                                            {"SelectedTimeWarpIndex", "int", ReadWrite},
                                            {"StartingBlock", "int", ReadWrite},
                                            {"CurrentBlock", "int", ReadWrite},
                                            {"EndingBlock", "int", ReadWrite},
                                            {"NumBlocks", "int", ReadWrite},
                                            {"StepByStepMode", "bool", ReadWrite}}));
}

void tst_CReplayParametersViewModel::initialValues()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    QCOMPARE(model.TimeWarpNames(),
             (QStringList{QStringLiteral("0.0001x"), QStringLiteral("0.001x"), QStringLiteral("0.01x"),
                          QStringLiteral("0.1x"), QStringLiteral("1x"), QStringLiteral("10x")}));
    QCOMPARE(model.TimeWarpValues(), (QList<double>{0.0001, 0.001, 0.01, 0.1, 1.0, 10.0}));
    QCOMPARE(model.SelectedTimeWarpIndex(), 4);
    QCOMPARE(model.StartingBlock(), 1);
    QCOMPARE(model.CurrentBlock(), 1);
    QCOMPARE(model.EndingBlock(), 1);
    QCOMPARE(model.NumBlocks(), 0);
    QCOMPARE(model.StepByStepMode(), false);
}

void tst_CReplayParametersViewModel::initialSyncTakesOverAndSendsNothing()
{
    MeasureFixture f;
    CReplayParameters& stored = *f.operation.OperationParameters()->ReplayParameters();
    stored.SetStartingBlock(3);
    stored.SetCurrentBlock(5);
    stored.SetEndingBlock(7);
    stored.SetStepByStepMode(true);
    stored.SetSelectedTimeWarpIndex(1);
    f.manager().SetNumBlocks(9);
    PropertyLog managerLog(&f.manager());
    PropertyLog storedLog(&stored);
    CReplayParametersViewModel model(&f.operation);
    QCOMPARE(model.StartingBlock(), 3);
    QCOMPARE(model.CurrentBlock(), 5);
    QCOMPARE(model.EndingBlock(), 7);
    QCOMPARE(model.NumBlocks(), 9);
    QCOMPARE(model.StepByStepMode(), true);
    QCOMPARE(model.SelectedTimeWarpIndex(), 1);
    QCOMPARE(managerLog.entries(), QStringList());
    QCOMPARE(storedLog.entries(), QStringList());
    QCOMPARE(f.manager().TimeWarp(), 1.0);
}

void tst_CReplayParametersViewModel::storedTimeWarpIndex_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("shown");
    QTest::addRow("never set") << -1 << 4;
    QTest::addRow("first") << 0 << 0;
    QTest::addRow("last") << 5 << 5;
    QTest::addRow("beyond") << 6 << 4;
}

void tst_CReplayParametersViewModel::storedTimeWarpIndex()
{
    QFETCH(int, stored);
    QFETCH(int, shown);
    MeasureFixture f;
    f.operation.OperationParameters()->ReplayParameters()->SetSelectedTimeWarpIndex(stored);
    QCOMPARE(CReplayParametersViewModel(&f.operation).SelectedTimeWarpIndex(), shown);
}

void tst_CReplayParametersViewModel::timeWarpReachesTheManager()
{
    MeasureFixture f;
    CReplayParameters& stored = *f.operation.OperationParameters()->ReplayParameters();
    CReplayParametersViewModel model(&f.operation);
    for (int i = 0; i < 6; ++i) {
        model.SetSelectedTimeWarpIndex(i);
        QCOMPARE(f.manager().TimeWarp(), model.TimeWarpValues().at(i));
        QCOMPARE(stored.TimeWarp(), model.TimeWarpValues().at(i));
        QCOMPARE(stored.SelectedTimeWarpIndex(), -1);
    }
}

void tst_CReplayParametersViewModel::unknownTimeWarpIndexIsIgnored()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    model.SetSelectedTimeWarpIndex(5);
    for (const int index : {-1, 6}) {
        model.SetSelectedTimeWarpIndex(index);
        QCOMPARE(f.manager().TimeWarp(), 10.0);
    }
}

void tst_CReplayParametersViewModel::rangeReachesTheManager_data()
{
    QTest::addColumn<int>("block");
    QTest::addColumn<int>("index");
    QTest::addRow("negative") << -4 << 0;
    QTest::addRow("none") << 0 << 0;
    QTest::addRow("second") << 2 << 1;
    QTest::addRow("far") << 1000 << 999;
}

void tst_CReplayParametersViewModel::rangeReachesTheManager()
{
    QFETCH(int, block);
    QFETCH(int, index);
    MeasureFixture f;
    CReplayParameters& stored = *f.operation.OperationParameters()->ReplayParameters();
    CReplayParametersViewModel model(&f.operation);
    f.manager().SetStartReplayIndex(77);
    f.manager().SetEndReplayIndex(77);
    model.SetStartingBlock(block);
    QCOMPARE(f.manager().StartReplayIndex(), index);
    QCOMPARE(f.manager().EndReplayIndex(), 77);
    QCOMPARE(stored.StartingBlock(), block);
    model.SetEndingBlock(block);
    QCOMPARE(f.manager().EndReplayIndex(), index);
    QCOMPARE(stored.EndingBlock(), block);
    model.SetCurrentBlock(block);
    QCOMPARE(stored.CurrentBlock(), block);
    QCOMPARE(f.manager().ReplayIndex(), 0);
}

void tst_CReplayParametersViewModel::stepByStep()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    model.SetStepByStepMode(true);
    QVERIFY(f.manager().ReplayStepByStep());
    QVERIFY(f.operation.OperationParameters()->ReplayParameters()->StepByStepMode());
    model.SetStepByStepMode(false);
    QVERIFY(!f.manager().ReplayStepByStep());
}

void tst_CReplayParametersViewModel::currentBlockFollowsTheReplay()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    f.manager().SetReplayIndex(6);
    QCOMPARE(model.CurrentBlock(), 7);
    QCOMPARE(f.operation.OperationParameters()->ReplayParameters()->CurrentBlock(), 7);
    f.manager().SetReplayIndex(0);
    QCOMPARE(model.CurrentBlock(), 1);
}

void tst_CReplayParametersViewModel::numBlocksOpensTheRange()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    f.manager().SetNumBlocks(12);
    QCOMPARE(model.NumBlocks(), 12);
    QCOMPARE(model.EndingBlock(), 12);
    QCOMPARE(f.manager().EndReplayIndex(), 11);
    QCOMPARE(f.operation.OperationParameters()->ReplayParameters()->EndingBlock(), 12);
    // The user's end gives way to the next block.
    model.SetEndingBlock(4);
    f.manager().SetNumBlocks(13);
    QCOMPARE(model.EndingBlock(), 13);
    f.manager().SetNumBlocks(0);
    QCOMPARE(model.EndingBlock(), 0);
    QCOMPARE(f.manager().EndReplayIndex(), 0);
    QCOMPARE(f.operation.OperationParameters()->ReplayParameters()->EndingBlock(), 0);
}

void tst_CReplayParametersViewModel::numBlocksIsNeverNegative()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    f.manager().SetNumBlocks(-3);
    QCOMPARE(model.NumBlocks(), 0);
    QCOMPARE(model.EndingBlock(), 0);
}

void tst_CReplayParametersViewModel::idleWithDataOpensTheRange()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    f.manager().SetNumBlocks(5);
    model.SetStartingBlock(2);
    model.SetEndingBlock(3);
    model.SetCurrentBlock(4);
    f.manager().SetIsIdleWithData(true);
    QCOMPARE(model.StartingBlock(), 1);
    QCOMPARE(model.EndingBlock(), 5);
    QCOMPARE(model.CurrentBlock(), 4);
    QCOMPARE(f.manager().StartReplayIndex(), 0);
    QCOMPARE(f.manager().EndReplayIndex(), 4);
    // Both edges count, and a current block beyond the end goes back to the first.
    model.SetStartingBlock(2);
    model.SetCurrentBlock(6);
    f.manager().SetIsIdleWithData(false);
    QCOMPARE(model.StartingBlock(), 1);
    QCOMPARE(model.CurrentBlock(), 1);
}

void tst_CReplayParametersViewModel::idleWithDataDuringReplayDoesNothing()
{
    MeasureFixture f;
    CReplayParametersViewModel model(&f.operation);
    f.manager().SetNumBlocks(5);
    model.SetStartingBlock(2);
    model.SetEndingBlock(3);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsIdleWithData(true);
    QCOMPARE(model.StartingBlock(), 2);
    QCOMPARE(model.EndingBlock(), 3);
}

void tst_CReplayParametersViewModel::mappingOperation()
{
    MeasureFixture f;
    COperationMapping operation(&f.settings, &f.pluginsManager, &f.supervisor);
    CRecordingManagerMapping& manager = *operation.RecordingManager();
    operation.OperationParameters()->ReplayParameters()->SetStartingBlock(3);
    CReplayParametersViewModel model(&operation);
    QCOMPARE(model.StartingBlock(), 3);
    for (int i = 0; i < 4; ++i)
        manager.AddMeasureBlock(QSharedPointer<CMeasureBlockMapping>::create());
    QCOMPARE(model.NumBlocks(), 4);
    QCOMPARE(model.EndingBlock(), 4);
    QCOMPARE(model.CurrentBlock(), 4);
    QCOMPARE(manager.EndReplayIndex(), 3);
    model.SetSelectedTimeWarpIndex(5);
    QCOMPARE(manager.TimeWarp(), 10.0);
    manager.playCurrentBlock(2);
    QCOMPARE(model.CurrentBlock(), 2);
    QCOMPARE(operation.OperationParameters()->ReplayParameters()->CurrentBlock(), 2);
}

QTEST_GUILESS_MAIN(tst_CReplayParametersViewModel)
#include "tst_CReplayParametersViewModel.moc"
