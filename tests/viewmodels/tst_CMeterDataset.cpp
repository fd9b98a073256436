// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "DialogDriver.h"
#include "MeterFixture.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

const QStringList kResetLog =
    lines("BLastBlock=0 BPrimeLastBlock=0 BxLastBlock=0 ByLastBlock=0 BzLastBlock=0 dBLastBlock=0 BMax=0 "
          "BPrimeMax=0 BxMax=0 ByMax=0 BzMax=0");

} // namespace

class tst_CMeterDataset : public QObject
{
    Q_OBJECT

private slots:
    void unitChangeClears();
    void uncertaintyUnitChangeRedoesTheLastBlock();
    void uncertaintyUnitChangeWithoutData();
    void dataSetCleared();
    void playingBackStarted();

    void opensOnNothing();
    void opensOnExistingData_data();
    void opensOnExistingData();
    void opensOnLoadedRecord();
    void loadPresentsTheLastBlock();
    void loadOfAnEmptyRecord();
    void sameTableForStoredBlocks();
    void leftPageHearsNothing();
};

void tst_CMeterDataset::unitChangeClears()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("comment")));
    meter->SetSelectedProbeAxisIndex(0);
    f.parameters().SetUnits(CUnits::GAUSS);
    QVERIFY(f.manager().IsDataSetEmpty());
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 0.0);
    QCOMPARE(meter->BMax(), 0.0);
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(meter->SelectedProbeAxisIndex(), 2);
    QCOMPARE(tableB(*meter), QVector<float>());
}

void tst_CMeterDataset::uncertaintyUnitChangeRedoesTheLastBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    Sample sample = magnitude(2);
    sample.dB = 0.125F;
    const auto first = makeBlock({sample});
    const auto last = makeBlock({sample, sample});
    deliver(f, first);
    deliver(f, last);
    meter->resetAllMaximum();
    CMeasureBlockData& table = *meter->MeterOperationDatasetViewModel()->TableData();
    QSignalSpy removed(&table, &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserted(&table, &QAbstractItemModel::rowsInserted);
    PropertyLog log(meter.get());
    f.parameters().SetUncertaintyUnits(CUnits::NANO_TESLA);
    QCOMPARE(meter->DisplayUncertaintyUnits(), CUnits::NANO_TESLA);
    for (const auto& result : last->Results)
        QCOMPARE(result->dBConverted(), 125.0F);
    QCOMPARE(first->Results.first()->dBConverted(), 0.125F);
    QCOMPARE(meter->dBLastBlock(), 125.0);
    QCOMPARE(meter->BMax(), 2.0);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(table.data(table.index(1, 0), CMeasureBlockData::dBRole).toFloat(), 125.0F);
    // The unit on the page comes first: the conversion needs it.
    QCOMPARE(log.entries().first(), QStringLiteral("DisplayUncertaintyUnits=NANO_TESLA"));
    QCOMPARE(log.count(QStringLiteral("NewMeasureReady")), 0);
}

void tst_CMeterDataset::uncertaintyUnitChangeWithoutData()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    PropertyLog log(meter.get());
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(log.take(), lines("DisplayUncertaintyUnits=PERCENT"));
}

void tst_CMeterDataset::dataSetCleared()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("comment")));
    meter->SetCommentOverAll(QStringLiteral("all"));
    meter->SetSelectedModeIndex(1);
    meter->SetSelectedProbeAxisIndex(0);
    meter->SetRotEnable(true);
    CMeasurementParameters other;
    f.dataSet().SetMeasurementParameters(&other);
    QSignalSpy pointed(&f.dataSet(), &CDataset::MeasurementParametersChanged);
    PropertyLog log(meter.get());
    f.dataSet().Clear();
    QStringList entries = log.take();
    // The units follow the live parameters, to which the dataset points again.
    entries = entries.filter(QRegularExpression(QStringLiteral("^(?!Display)")));
    QCOMPARE(entries, kResetLog + lines("CommentBlock= CommentOverAll= ClearCompas=true ClearCompas=false"));
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(pointed.count(), 2);
    // Reset without a signal.
    QCOMPARE(meter->SelectedModeIndex(), 0);
    QCOMPARE(meter->SelectedProbeAxisIndex(), 2);
    // What is no data stays.
    QVERIFY(meter->RotEnable());
    QCOMPARE(tableB(*meter), QVector<float>());
}

void tst_CMeterDataset::playingBackStarted()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("comment")));
    f.dataSet().SetComment(QStringLiteral("whole"));
    f.manager().SetIsPlayingBack(true);
    QCOMPARE(tableB(*meter), QVector<float>());
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("whole"));
    QCOMPARE(meter->BLastBlock(), 3.0);
    meter->SetCommentOverAll(QStringLiteral("other"));
    f.manager().SetIsPlayingBack(false);
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("other"));
}

void tst_CMeterDataset::opensOnNothing()
{
    MeasureFixture f;
    f.manager().SetIsProcessingBlock(true);
    f.dataSet().SetComment(QStringLiteral("whole"));
    QSignalSpy processed(&f.manager(), &CRecordingManager::IsProcessingBlockChanged);
    const MeterPointer meter = makeMeter(f);
    QVERIFY(!f.manager().IsProcessingBlock());
    QCOMPARE(processed.count(), 1);
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("whole"));
    QVERIFY(!meter->NewMeasureReady());
    processed.clear();
    makeMeter(f);
    QCOMPARE(processed.count(), 0);
}

void tst_CMeterDataset::opensOnExistingData_data()
{
    QTest::addColumn<bool>("playingBack");
    QTest::addColumn<bool>("dataLoaded");
    QTest::addColumn<bool>("idleWithData");
    QTest::addColumn<bool>("recording");
    QTest::addColumn<int>("replayIndex");
    QTest::addColumn<double>("shown");
    QTest::addRow("live") << false << false << false << false << 0 << 30.0;
    QTest::addRow("recording") << false << false << false << true << 0 << 30.0;
    QTest::addRow("recording over idle data") << false << false << true << true << 0 << 30.0;
    QTest::addRow("replay at the first block") << true << false << false << false << 0 << 10.0;
    QTest::addRow("replay in the middle") << true << false << false << false << 1 << 20.0;
    QTest::addRow("replay beyond the end") << true << false << false << false << 7 << 30.0;
    QTest::addRow("replay before the start") << true << false << false << false << -1 << 30.0;
    QTest::addRow("stored data at rest") << false << false << true << false << 1 << 20.0;
    QTest::addRow("loaded record") << false << true << false << false << 1 << 20.0;
    QTest::addRow("record over a loaded one") << false << true << false << true << 1 << 20.0;
}

void tst_CMeterDataset::opensOnExistingData()
{
    QFETCH(bool, playingBack);
    QFETCH(bool, dataLoaded);
    QFETCH(bool, idleWithData);
    QFETCH(bool, recording);
    QFETCH(int, replayIndex);
    QFETCH(double, shown);
    MeasureFixture f;
    for (const float b : {10.0F, 20.0F, 30.0F})
        f.operation.OnNewMeasure(makeBlock({field(0, 0, b)}, QString::number(double(b))));
    f.manager().SetIsPlayingBack(playingBack);
    f.manager().SetIsDataLoaded(dataLoaded);
    f.manager().SetIsIdleWithData(idleWithData);
    f.manager().SetIsRecording(recording);
    f.manager().SetReplayIndex(replayIndex);
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(meter->BLastBlock(), shown);
    QCOMPARE(meter->BMax(), shown);
    QCOMPARE(meter->CommentBlock(), QString::number(shown));
    QCOMPARE(meter->CompasWidth(), 1.0);
    QVERIFY(meter->UpdateRightCompas());
    QVERIFY(meter->NewMeasureReady());
    QCOMPARE(meter->QuatScalar(), 1.0);
}

void tst_CMeterDataset::opensOnLoadedRecord()
{
    MeasureFixture f;
    QVERIFY(f.manager().Load(f.writeRecord()));
    f.manager().SetReplayIndex(1);
    const CMeasurementParameters* loaded = f.dataSet().MeasurementParameters();
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(f.dataSet().MeasurementParameters(), loaded);
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 11.0);
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("from file"));
}

void tst_CMeterDataset::loadPresentsTheLastBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("live")));
    DialogDriver dialogs;
    dialogs.pickNext(f.writeRecord());
    meter->load();
    QVERIFY(dialogs.isDone());
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 21.0);
    QCOMPARE(meter->BMax(), 21.0);
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("from file"));
    QCOMPARE(tableB(*meter), (QVector<float>{20, 21}));
    QVERIFY(meter->NewMeasureReady());
    QCOMPARE(f.manager().ReplayIndex(), 2);
    QCOMPARE(meter->ReplayParametersViewModel()->CurrentBlock(), 3);
    QCOMPARE(meter->ReplayParametersViewModel()->EndingBlock(), 3);
    QVERIFY(f.dataSet().MeasurementParameters() != &f.parameters());
}

void tst_CMeterDataset::loadOfAnEmptyRecord()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    f.manager().SetIsDataLoaded(true);
    PropertyLog log(meter.get());
    emit meter->DatasetLoaded();
    QCOMPARE(log.count(QStringLiteral("NewMeasureReady")), 0);
    QCOMPARE(meter->ReplayParametersViewModel()->EndingBlock(), 0);
    QCOMPARE(f.manager().ReplayIndex(), 0);
}

void tst_CMeterDataset::sameTableForStoredBlocks()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeRamp(1, 2, 0, 10));
    deliver(f, makeRamp(3, 2, 20, 10));
    deliver(f, makeRamp(5, 2, 40, 10));
    f.manager().StopRecord();
    for (const int block : {1, 3, 2}) {
        f.manager().playCurrentBlock(block);
        QCOMPARE(tableB(*meter), (QVector<float>{float(2 * block - 1), float(2 * block)}));
        QCOMPARE(meter->BLastBlock(), double(2 * block));
    }
}

void tst_CMeterDataset::leftPageHearsNothing()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}));
    meter->PageLeft();
    PropertyLog log(meter.get());
    deliver(f, makeBlock({magnitude(30)}));
    f.parameters().SetUnits(CUnits::GAUSS);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(true);
    f.manager().SetIsHolding(false);
    f.dataSet().SetMeasurementParameters(&f.parameters());
    f.dataSet().Clear();
    emit meter->DatasetLoaded();
    QCOMPARE(log.take(), QStringList());
    meter->SetSelectedProbeAxisIndex(0);
    meter->SetSelectedModeIndex(1);
    QCOMPARE(log.take(), lines("SelectedProbeAxisIndex=0 SelectedModeIndex=1"));
    QVERIFY(f.manager().IsDataSetEmpty());
}

QTEST_MAIN(tst_CMeterDataset)
#include "tst_CMeterDataset.moc"
