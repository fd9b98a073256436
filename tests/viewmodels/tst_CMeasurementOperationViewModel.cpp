// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogDriver.h"
#include "FakeMeasurePage.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

class tst_CMeasurementOperationViewModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();

    void constructionTakesTheLiveUnits();
    void constructionTakesTheLoadedUnits();
    void constructionInPercent();
    void unitsFollow();
    void uncertaintyUnitsFollow();
    void disconnectedPageFollowsNothing();

    void resumeStartsASession();
    void resumeWithoutInstrument();
    void resumeGoesOnWithTheReplay();
    void resumeAsksBeforeStoredDataIsDropped();
    void holdSession();
    void holdReplay();
    void recordFillsInTheTexts();
    void recordWithoutInstrument();
    void stopRecord();
    void stopReplay();
    void stopDoesNothingIdle();
    void endAsks();
    void startStepAndPlayback();
};

void tst_CMeasurementOperationViewModel::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& metaObject = CMeasurementOperationViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(
        compareProperties(metaObject, {{"ReplayParametersViewModel", "CReplayParametersViewModel*", Constant},
                                       {"CommentOverAll", "QString", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(metaObject, QMetaMethod::Method,
                       {"resume()", "hold()", "record()", "stop()", "end()", "start()", "step()",
                        "playback()", "load()", "save()", "zeroOffset(bool)", "zeroOffset()",
                        "restoreZeroOffsetToFactory()", "loadParameters()", "saveParameters()"}));
    VERIFY_NO_DIFFERENCE(compareMethods(metaObject, QMetaMethod::Slot,
                                        {"OnMeasureParametersUnitChanged(CUnits::UnitType)",
                                         "OnMeasureParametersUncertaintyUnitChanged(CUnits::UnitType)"}));
}

void tst_CMeasurementOperationViewModel::constructionTakesTheLiveUnits()
{
    MeasureFixture f;
    CMeasurementParameters other;
    f.dataSet().SetMeasurementParameters(&other);
    f.parameters().SetUnits(CUnits::TESLA);
    f.parameters().SetUncertaintyUnits(CUnits::GAUSS);
    QSignalSpy spy(&f.dataSet(), &CDataset::MeasurementParametersChanged);
    FakeMeasurePage page(f);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(page.DisplayUnits(), CUnits::TESLA);
    // The default uncertainty unit of the unit takes the place of the stored one.
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::MILLI_TESLA);
    QCOMPARE(page.CommentOverAll(), QString());
    QCOMPARE(page.Name(), QStringLiteral("Fake"));
}

void tst_CMeasurementOperationViewModel::constructionTakesTheLoadedUnits()
{
    MeasureFixture f;
    CMeasurementParameters loaded;
    loaded.SetUnits(CUnits::NANO_TESLA);
    loaded.SetUncertaintyUnits(CUnits::TESLA);
    f.dataSet().SetMeasurementParameters(&loaded);
    f.manager().SetIsDataLoaded(true);
    FakeMeasurePage page(f);
    QCOMPARE(f.dataSet().MeasurementParameters(), &loaded);
    QCOMPARE(page.DisplayUnits(), CUnits::NANO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::NANO_TESLA);
}

void tst_CMeasurementOperationViewModel::constructionInPercent()
{
    MeasureFixture f;
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    FakeMeasurePage page(f);
    QCOMPARE(page.DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::PERCENT);
}

void tst_CMeasurementOperationViewModel::unitsFollow()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    f.parameters().SetUnits(CUnits::TESLA);
    QCOMPARE(page.DisplayUnits(), CUnits::TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::MILLI_TESLA);
    page.SetDisplayUncertaintyUnits(CUnits::PERCENT);
    f.parameters().SetUnits(CUnits::GAUSS);
    QCOMPARE(page.DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::PERCENT);
    // The parameters of the dataset count as much.
    CMeasurementParameters loaded;
    loaded.SetUnits(CUnits::MILLI_GAUSS);
    f.dataSet().SetMeasurementParameters(&loaded);
    QCOMPARE(page.DisplayUnits(), CUnits::MILLI_GAUSS);
    f.dataSet().SetMeasurementParameters(&f.parameters());
}

void tst_CMeasurementOperationViewModel::uncertaintyUnitsFollow()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::PERCENT);
    f.parameters().SetUncertaintyUnits(CUnits::NANO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::NANO_TESLA);
    // With a record on screen its own unit stays.
    CMeasurementParameters loaded;
    loaded.SetUnits(CUnits::GAUSS);
    loaded.SetUncertaintyUnits(CUnits::MILLI_GAUSS);
    f.dataSet().SetMeasurementParameters(&loaded);
    f.manager().SetIsDataLoaded(true);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::MILLI_GAUSS);
    f.dataSet().SetMeasurementParameters(&f.parameters());
}

void tst_CMeasurementOperationViewModel::disconnectedPageFollowsNothing()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    page.disconnectFromOperation();
    f.parameters().SetUnits(CUnits::TESLA);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    f.dataSet().SetMeasurementParameters(&f.parameters());
    QCOMPARE(page.DisplayUnits(), CUnits::MICRO_TESLA);
    QVERIFY(page.DisplayUncertaintyUnits() != CUnits::PERCENT);
    // The replay box goes on with its work for the operation.
    f.manager().SetNumBlocks(8);
    QCOMPARE(f.operation.OperationParameters()->ReplayParameters()->EndingBlock(), 8);
}

void tst_CMeasurementOperationViewModel::resumeStartsASession()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    DialogDriver dialogs;
    PropertyLog log(&f.manager());
    page.resume();
    QCOMPARE(instrument->calls, QStringList{QStringLiteral("start")});
    QVERIFY(f.operation.SessionInProgress());
    QCOMPARE(log.take(), (QStringList{QStringLiteral("IsHolding=false"), QStringLiteral("IsIdle=false")}));
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::resumeWithoutInstrument()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    page.resume();
    QVERIFY(!f.operation.SessionInProgress());
    QVERIFY(!f.manager().IsHolding());
}

void tst_CMeasurementOperationViewModel::resumeGoesOnWithTheReplay()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    DialogDriver dialogs;
    storeData(f);
    page.start();
    page.hold();
    QVERIFY(f.manager().IsHolding());
    page.resume();
    QVERIFY(f.manager().IsPlayingBack());
    QVERIFY(!f.manager().IsHolding());
    QCOMPARE(instrument->calls, QStringList());
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::resumeAsksBeforeStoredDataIsDropped()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    storeData(f);
    page.SetDisplayUnits(CUnits::GAUSS);
    page.SetDisplayUncertaintyUnits(CUnits::PERCENT);
    DialogDriver dialogs;

    dialogs.pressNext(QMessageBox::Cancel);
    page.resume();
    QCOMPARE(f.dataSet().MeasureBlocks()->size(), std::size_t(2));
    QCOMPARE(instrument->calls, QStringList());
    QVERIFY(f.manager().IsIdleWithData());
    QVERIFY(f.manager().IsHolding());
    QCOMPARE(page.DisplayUnits(), CUnits::GAUSS);

    dialogs.pressNext(QMessageBox::Ok);
    page.resume();
    QVERIFY(f.manager().IsDataSetEmpty());
    QVERIFY(!f.manager().IsIdleWithData());
    QVERIFY(!f.manager().IsHolding());
    QVERIFY(f.operation.SessionInProgress());
    QCOMPARE(instrument->calls, QStringList{QStringLiteral("start")});
    QCOMPARE(page.DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(dialogs.messages, (QStringList{kQuitQuestion, kQuitQuestion}));
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::holdSession()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    page.resume();
    page.hold();
    QVERIFY(f.manager().IsHolding());
    QVERIFY(!f.operation.SessionInProgress());
    QCOMPARE(instrument->calls, (QStringList{QStringLiteral("start"), QStringLiteral("stop")}));
}

void tst_CMeasurementOperationViewModel::holdReplay()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    storeData(f);
    page.start();
    page.hold();
    QVERIFY(f.manager().IsHolding());
    QVERIFY(f.manager().IsPlayingBack());
    QVERIFY(!f.manager().IsIdleWithData());
    QCOMPARE(instrument->calls, QStringList());
}

void tst_CMeasurementOperationViewModel::recordFillsInTheTexts()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    storeData(f);
    CMeasurementParameters loaded;
    f.dataSet().SetMeasurementParameters(&loaded);
    QSignalSpy names(&f.dataSet(), &CDataset::InstrumentNameChanged);
    QSignalSpy dates(&f.dataSet(), &CDataset::DateChanged);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    page.record();
    QVERIFY(f.manager().IsRecording());
    QVERIFY(f.manager().IsDataSetEmpty());
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(f.dataSet().InstrumentName(), QStringLiteral("Probe 2040 B SN-17"));
    QCOMPARE(names.last().first().toString(), QStringLiteral("Probe 2040 B SN-17"));
    const QString format = QStringLiteral("yyyy.MM.dd HH:mm:ss");
    QCOMPARE(f.dataSet().Date().size(), format.size());
    const QDateTime date = QDateTime::fromString(f.dataSet().Date(), format);
    QVERIFY(date >= before && date <= QDateTime::currentDateTime());
    QCOMPARE(dates.last().first().toString(), f.dataSet().Date());
    // The session is not the record's business.
    QCOMPARE(instrument->calls, QStringList());
}

void tst_CMeasurementOperationViewModel::recordWithoutInstrument()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    page.record();
    QVERIFY(f.manager().IsRecording());
    QCOMPARE(f.dataSet().InstrumentName(), QString());
    QCOMPARE(f.dataSet().Date(), QString());
}

void tst_CMeasurementOperationViewModel::stopRecord()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    page.resume();
    page.record();
    f.operation.OnNewMeasure(makeRamp(1, 3, 0, 10));
    f.dataSet().SetComment(QStringLiteral("whole record"));
    page.stop();
    QVERIFY(f.manager().IsHolding());
    QVERIFY(!f.manager().IsRecording());
    QVERIFY(f.manager().IsIdleWithData());
    QVERIFY(f.manager().HasUnsavedData());
    QVERIFY(!f.operation.SessionInProgress());
    QCOMPARE(page.CommentOverAll(), QStringLiteral("whole record"));
    QCOMPARE(instrument->calls, (QStringList{QStringLiteral("start"), QStringLiteral("stop")}));
}

void tst_CMeasurementOperationViewModel::stopReplay()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    storeData(f);
    page.start();
    QVERIFY(f.manager().IsPlayingBack());
    page.stop();
    QVERIFY(!f.manager().IsPlayingBack());
    QVERIFY(f.manager().IsHolding());
    QVERIFY(f.manager().IsIdleWithData());
    QCOMPARE(instrument->calls, QStringList());
}

void tst_CMeasurementOperationViewModel::stopDoesNothingIdle()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    page.resume();
    page.SetCommentOverAll(QStringLiteral("kept"));
    PropertyLog log(&f.manager());
    page.stop();
    QCOMPARE(log.entries(), QStringList());
    QVERIFY(f.operation.SessionInProgress());
    QCOMPARE(page.CommentOverAll(), QStringLiteral("kept"));
}

void tst_CMeasurementOperationViewModel::endAsks()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
    page.resume();
    f.operation.OnNewMeasure(makeRamp(1, 3, 0, 10));
    CMeasurementParameters loaded;
    loaded.SetUnits(CUnits::GAUSS);
    f.dataSet().SetMeasurementParameters(&loaded);
    page.SetDisplayUncertaintyUnits(CUnits::PERCENT);
    DialogDriver dialogs;

    dialogs.pressNext(QMessageBox::Cancel);
    page.end();
    QVERIFY(f.operation.SessionInProgress());
    QVERIFY(!f.manager().IsDataSetEmpty());

    dialogs.pressNext(QMessageBox::Ok);
    page.end();
    QVERIFY(!f.operation.SessionInProgress());
    QVERIFY(f.manager().IsDataSetEmpty());
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(page.DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(instrument->calls, (QStringList{QStringLiteral("start"), QStringLiteral("stop")}));
    QCOMPARE(dialogs.messages, (QStringList{kQuitQuestion, kQuitQuestion}));
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::startStepAndPlayback()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    storeData(f);
    QSignalSpy delivered(&f.operation, &COperationMeasure::NewMeasure);
    page.playback();
    QCOMPARE(delivered.count(), 1);
    QVERIFY(!f.manager().IsPlayingBack());

    page.ReplayParametersViewModel()->SetStepByStepMode(true);
    page.step();
    QVERIFY(f.manager().IsPlayingBack());
    QTRY_COMPARE(delivered.count(), 2);
    page.stop();
    page.ReplayParametersViewModel()->SetStepByStepMode(false);
    page.start();
    QVERIFY(f.manager().IsPlayingBack());
}

QTEST_MAIN(tst_CMeasurementOperationViewModel)
#include "tst_CMeasurementOperationViewModel.moc"
