// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasurementOperationViewModel.h"
#include "DialogDriver.h"
#include "MeasureFixture.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString kQuitQuestion =
    QStringLiteral("Are you sure you want to quit the current operation?|All the measured data will be lost");

class FakePage : public CMeasurementOperationViewModel
{
public:
    explicit FakePage(MeasureFixture& f)
        : CMeasurementOperationViewModel(QStringLiteral("Fake"), &f.operation, &f.settings)
    {
    }

    QString GetHelpName() const override { return QString(); }

    using CMeasurementOperationViewModel::disconnectFromOperation;
    using CMeasurementOperationViewModel::openReplayRange;
};

/// Two blocks and a stopped record: stored data are on screen.
void storeData(MeasureFixture& f)
{
    f.manager().AddMeasureBlock(makeRamp(1, 2, 0, 10));
    f.manager().AddMeasureBlock(makeRamp(3, 2, 20, 10));
    f.manager().StopRecord();
}

void replaceInFile(const QString& path, const QByteArray& before, const QByteArray& after)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray text = file.readAll();
    QVERIFY(text.contains(before));
    text.replace(before, after);
    file.resize(0);
    file.seek(0);
    file.write(text);
}

} // namespace

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

    void loadRecord();
    void loadAsksAboutUnsavedData();
    void loadEndsASession();
    void loadEndsAReplay();
    void loadEndsARecordWithoutSession();
    void loadedUncertaintyUnitIsAnnounced();
    void loadThatFailsLateLeavesTheLiveUnits();
    void loadOfAnInvalidFile();
    void openReplayRange();

    void saveProposal_data();
    void saveProposal();
    void saveWritesTheRecord();
    void saveCancelled();
    void saveAndLoadParameters();
    void zeroOffset();
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
    FakePage page(f);
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
    FakePage page(f);
    QCOMPARE(f.dataSet().MeasurementParameters(), &loaded);
    QCOMPARE(page.DisplayUnits(), CUnits::NANO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::NANO_TESLA);
}

void tst_CMeasurementOperationViewModel::constructionInPercent()
{
    MeasureFixture f;
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    FakePage page(f);
    QCOMPARE(page.DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::PERCENT);
}

void tst_CMeasurementOperationViewModel::unitsFollow()
{
    MeasureFixture f;
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
    page.resume();
    QVERIFY(!f.operation.SessionInProgress());
    QVERIFY(!f.manager().IsHolding());
}

void tst_CMeasurementOperationViewModel::resumeGoesOnWithTheReplay()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
    page.record();
    QVERIFY(f.manager().IsRecording());
    QCOMPARE(f.dataSet().InstrumentName(), QString());
    QCOMPARE(f.dataSet().Date(), QString());
}

void tst_CMeasurementOperationViewModel::stopRecord()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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
    FakePage page(f);
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

void tst_CMeasurementOperationViewModel::loadRecord()
{
    MeasureFixture f;
    FakePage page(f);
    const QString path = f.writeRecord();
    DialogDriver dialogs;
    QSignalSpy loaded(&page, &COperationViewModel::DatasetLoaded);

    dialogs.pickNext(QString());
    page.load();
    QCOMPARE(loaded.count(), 0);
    QVERIFY(!f.manager().IsDataLoaded());

    dialogs.pickNext(path);
    page.load();
    QCOMPARE(loaded.count(), 1);
    QVERIFY(f.manager().IsDataLoaded());
    QCOMPARE(f.manager().NumBlocks(), 3);
    QCOMPARE(page.DisplayUnits(), CUnits::GAUSS);
    QVERIFY(f.dataSet().MeasurementParameters() != &f.parameters());
    const QString dialog =
        QStringLiteral("Open File|open|") + f.directory.path() + QStringLiteral("||XML (*.xml)");
    QCOMPARE(dialogs.fileDialogs, (QStringList{dialog, dialog}));
    QCOMPARE(dialogs.messages, QStringList());
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::loadAsksAboutUnsavedData()
{
    MeasureFixture f;
    FakePage page(f);
    const QString path = f.writeRecord();
    storeData(f);
    f.manager().SetHasUnsavedData(true);
    DialogDriver dialogs;

    dialogs.pressNext(QMessageBox::Cancel);
    page.load();
    QCOMPARE(f.manager().NumBlocks(), 2);
    QVERIFY(dialogs.isDone());

    dialogs.pressNext(QMessageBox::Ok);
    dialogs.pickNext(path);
    page.load();
    QCOMPARE(f.manager().NumBlocks(), 3);
    QCOMPARE(dialogs.messages, (QStringList{kQuitQuestion, kQuitQuestion}));
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::loadEndsASession()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakePage page(f);
    page.resume();
    f.operation.OnNewMeasure(makeRamp(1, 3, 0, 10));
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.load();
    QVERIFY(!f.operation.SessionInProgress());
    QVERIFY(f.manager().IsDataSetEmpty());
    QCOMPARE(instrument->calls, (QStringList{QStringLiteral("start"), QStringLiteral("stop")}));
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::loadEndsAReplay()
{
    MeasureFixture f;
    FakePage page(f);
    storeData(f);
    page.start();
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.load();
    QVERIFY(!f.manager().IsPlayingBack());
    QVERIFY(f.manager().IsIdleWithData());
    QCOMPARE(f.manager().NumBlocks(), 2);
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::loadEndsARecordWithoutSession()
{
    MeasureFixture f;
    FakePage page(f);
    page.record();
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.load();
    QVERIFY(!f.manager().IsRecording());
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::loadedUncertaintyUnitIsAnnounced()
{
    MeasureFixture f;
    FakePage page(f);
    const QString path = f.writeRecord();
    replaceInFile(path, "Units=G ", "Units=% ");
    DialogDriver dialogs;
    dialogs.pickNext(path);
    page.load();
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::PERCENT);

    // The same record again: the unit is the same, and is announced nevertheless, once.
    PropertyLog log(&page);
    dialogs.pressNext(QMessageBox::Ok);
    dialogs.pickNext(path);
    page.load();
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::PERCENT);
    QCOMPARE(log.count(QStringLiteral("DisplayUncertaintyUnits")), 1);
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::loadThatFailsLateLeavesTheLiveUnits()
{
    MeasureFixture f;
    FakePage page(f);
    const QString path = f.writeRecord();
    // A second dataset of a kind that does not exist, behind blocks and parameters in gauss.
    replaceInFile(path, "</dataset>", "</dataset><dataset type=\"other\" ver=\"1.2\"></dataset>");
    DialogDriver dialogs;
    dialogs.pickNext(path);
    dialogs.pressNext(QMessageBox::Ok);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Error while loading file:")));
    page.load();
    QVERIFY(dialogs.isDone());
    QVERIFY(f.manager().IsDataSetEmpty());
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(page.DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::MICRO_TESLA);
}

void tst_CMeasurementOperationViewModel::loadOfAnInvalidFile()
{
    MeasureFixture f;
    FakePage page(f);
    storeData(f);
    const QString path = f.directory.filePath(QStringLiteral("broken.xml"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<nonsense/>");
    file.close();
    DialogDriver dialogs;
    QSignalSpy loaded(&page, &COperationViewModel::DatasetLoaded);
    dialogs.pickNext(path);
    dialogs.pressNext(QMessageBox::Ok);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Error while loading file:")));
    page.load();
    QCOMPARE(loaded.count(), 0);
    QVERIFY(f.manager().IsDataSetEmpty());
    QVERIFY(!f.manager().IsDataLoaded());
    QVERIFY(!f.manager().HasUnsavedData());
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(dialogs.messages,
             QStringList{
                 QStringLiteral("Could not load file|The file is not a valid Norvane XML measurement file")});
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementOperationViewModel::openReplayRange()
{
    MeasureFixture f;
    FakePage page(f);
    CReplayParametersViewModel& replay = *page.ReplayParametersViewModel();
    storeData(f);
    replay.SetStartingBlock(2);
    replay.SetEndingBlock(1);
    f.manager().SetReplayIndex(0);
    page.openReplayRange();
    QCOMPARE(replay.NumBlocks(), 2);
    QCOMPARE(replay.StartingBlock(), 1);
    QCOMPARE(replay.EndingBlock(), 2);
    QCOMPARE(replay.CurrentBlock(), 2);
    QCOMPARE(f.manager().ReplayIndex(), 1);
    f.dataSet().Clear();
    page.openReplayRange();
    QCOMPARE(replay.NumBlocks(), 0);
    QCOMPARE(replay.EndingBlock(), 0);
    QCOMPARE(f.manager().ReplayIndex(), 0);
}

void tst_CMeasurementOperationViewModel::saveProposal_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("digits");
    QTest::addRow("in the middle") << "Probe 2040 B"
                                   << "2040";
    QTest::addRow("first match") << "A12 3456 7890"
                                 << "3456";
    QTest::addRow("first four of many") << "X987654"
                                        << "9876";
    QTest::addRow("too few in a row") << "12 345 67"
                                      << "0000";
    QTest::addRow("none") << ""
                          << "0000";
}

void tst_CMeasurementOperationViewModel::saveProposal()
{
    QFETCH(QString, model);
    QFETCH(QString, digits);
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    instrument->SetModel(model);
    FakePage page(f);
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.save();
    QVERIFY(dialogs.isDone());
    const QStringList dialog = dialogs.fileDialogs.first().split(QLatin1Char('|'));
    QCOMPARE(dialog.mid(0, 3),
             (QStringList{QStringLiteral("Save File"), QStringLiteral("save"), f.directory.path()}));
    QCOMPARE(dialog.at(4), QStringLiteral("XML (*.xml)"));
    const QRegularExpression expected(
        QStringLiteral("^%1_SN-17_(\\d{4}-\\d\\d-\\d\\d_\\d\\d\\.\\d\\d\\.\\d\\d)_measurement\\.qdr\\.xml$")
            .arg(digits));
    const QRegularExpressionMatch match = expected.match(dialog.at(3));
    QVERIFY2(match.hasMatch(), qPrintable(dialog.at(3)));
    const QDateTime time = QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd_HH.mm.ss"));
    QVERIFY(qAbs(time.secsTo(QDateTime::currentDateTime())) < 60);
}

void tst_CMeasurementOperationViewModel::saveWritesTheRecord()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakePage page(f);
    page.record();
    f.operation.OnNewMeasure(makeRamp(1, 3, 0, 10));
    page.stop();
    QVERIFY(f.manager().HasUnsavedData());
    const QString path = f.directory.filePath(QStringLiteral("mine.xml"));
    DialogDriver dialogs;
    dialogs.pickNext(path);
    page.save();
    QVERIFY(dialogs.isDone());
    QVERIFY(!f.manager().HasUnsavedData());
    QVERIFY(QFile::exists(path));
}

void tst_CMeasurementOperationViewModel::saveCancelled()
{
    MeasureFixture f;
    FakePage page(f);
    storeData(f);
    f.manager().SetHasUnsavedData(true);
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.save();
    QVERIFY(dialogs.isDone());
    QVERIFY(f.manager().HasUnsavedData());
    QCOMPARE(QDir(f.directory.path()).entryList(QDir::Files), QStringList());
}

void tst_CMeasurementOperationViewModel::saveAndLoadParameters()
{
    MeasureFixture f;
    FakePage page(f);
    const QString path = f.directory.filePath(QStringLiteral("parameters.xml"));
    f.parameters().SetAveraging(37);
    DialogDriver dialogs;
    dialogs.pickNext(path);
    page.saveParameters();
    f.parameters().SetAveraging(1);

    // A cancelled dialog leaves the parameters alone.
    dialogs.pickNext(QString());
    page.loadParameters();
    QCOMPARE(f.parameters().Averaging(), 1);

    dialogs.pickNext(path);
    page.loadParameters();
    QCOMPARE(f.parameters().Averaging(), 37);
    QVERIFY(dialogs.isDone());

    const QStringList saving = dialogs.fileDialogs.first().split(QLatin1Char('|'));
    QCOMPARE(saving.mid(0, 3), (QStringList{QStringLiteral("Save parameters to file"), QStringLiteral("save"),
                                            f.directory.path()}));
    QVERIFY(
        QRegularExpression(
            QStringLiteral("^MeasurementParameters-\\d{4}\\.\\d\\d\\.\\d\\d-\\d\\d\\.\\d\\d\\.\\d\\d\\.xml$"))
            .match(saving.at(3))
            .hasMatch());
    QCOMPARE(saving.at(4), QStringLiteral("XML (*.xml)"));
    QCOMPARE(dialogs.fileDialogs.last(), QStringLiteral("Open parameters to file|open|") +
                                             f.directory.path() + QStringLiteral("||XML (*.xml)"));
}

void tst_CMeasurementOperationViewModel::zeroOffset()
{
    MeasureFixture f;
    FakePage page(f);
    // Without an instrument nothing happens.
    page.zeroOffset();
    page.zeroOffset(true);
    page.restoreZeroOffsetToFactory();
    const auto instrument = f.connectInstrument();
    page.zeroOffset();
    page.zeroOffset(false);
    page.zeroOffset(true);
    page.restoreZeroOffsetToFactory();
    QCOMPARE(instrument->calls, (QStringList{QStringLiteral("calibrate"), QStringLiteral("calibrate"),
                                             QStringLiteral("calibrate forced"), QStringLiteral("restore")}));
}

QTEST_MAIN(tst_CMeasurementOperationViewModel)
#include "tst_CMeasurementOperationViewModel.moc"
