// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogDriver.h"
#include "LogRecorder.h"
#include "MappingPageFixture.h"
#include "MetaObjectTable.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString kQuitQuestion =
    QStringLiteral("Are you sure you want to quit the current operation?|All the measured data will be lost");

/// A record of three blocks in gauss at X = 1, 2, 3, its first component turned already.
QString writeRecord(MappingPageFixture& f)
{
    CRecordingManagerMapping writer(f.settings);
    CMeasurementParameters gauss;
    gauss.SetUnits(CUnits::GAUSS);
    gauss.SetBlockSize(2);
    writer.DataSet()->SetMeasurementParameters(&gauss);
    for (int i = 1; i <= 3; ++i) {
        auto block = MappingBlock::create();
        Sample last = field(10.0F * static_cast<float>(i), 0, 0);
        last.timeMs = 100 * i + 50;
        Sample first = last;
        first.timeMs = 100 * i;
        block->Results = makeBlock({first, last})->Results;
        block->Position.SetX(i);
        block->Orientation.SetRoll(90);
        block->SetComment(QString::number(i));
        writer.AddMeasureBlock(block);
    }
    writer.SetBodyComment(QStringLiteral("from file"));
    const QString path = f.directory.filePath(QStringLiteral("map.xml"));
    writer.Save(path);
    return path;
}

} // namespace

class tst_CMappingOperationViewModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void initialValues();
    void helpNames();

    void resumeStartsRecordAndSession();
    void resumeAsksAboutStoredData();
    void resumeWithoutAMapper();
    void stopEndsRecordAndSession();
    void holdStopsTheSession();
    void end();
    void zeroOffset();
    void defaultParameters();

    void replay();
    void heldReplay();
    void replayDelay_data();
    void replayDelay();
    void stepByStep();

    void loadRecord();
    void loadAsksAboutUnsavedData();
    void loadEndsASession();
    void loadOfAnInvalidFile();
    void loadOfOneBlock();
    void saveProposal_data();
    void saveProposal();
    void parameterFiles();
};

void tst_CMappingOperationViewModel::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& metaObject = CMappingOperationViewModel::staticMetaObject;
    QCOMPARE(metaObject.superClass(), &COperationViewModel::staticMetaObject);
    VERIFY_NO_DIFFERENCE(compareProperties(
        metaObject, {{"MeasurementParametersViewModel", "CMeasurementParametersViewModel*", Constant},
                     {"AlarmParametersViewModel", "CAlarmParametersMappingViewModel*", Constant},
                     {"MappingParametersViewModel", "CMappingParametersViewModel*", Constant},
                     {"MappingOperationDatasetViewModel", "CMappingOperationDatasetViewModel*", Constant},
                     {"ReplayParametersViewModel", "CReplayParametersViewModel*", Constant},
                     {"BLastBlock", "double", ReadOnly},
                     {"dBLastBlock", "double", ReadOnly},
                     {"BPrimeLastBlock", "double", ReadOnly},
                     {"BxLastBlock", "double", ReadOnly},
                     {"ByLastBlock", "double", ReadOnly},
                     {"BzLastBlock", "double", ReadOnly},
                     {"Orientation", "COrientation*", ReadOnly},
                     {"Position", "CPosition*", ReadOnly},
                     {"XStart", "double", ReadOnly},
                     {"XStop", "double", ReadOnly},
                     {"YStart", "double", ReadOnly},
                     {"YStop", "double", ReadOnly},
                     {"ZStart", "double", ReadOnly},
                     {"ZStop", "double", ReadOnly},
                     {"Scale", "double", ReadOnly},
                     {"MaxScale", "double", ReadOnly},
                     {"PosX", "double", ReadOnly},
                     {"PosY", "double", ReadOnly},
                     {"PosZ", "double", ReadOnly},
                     {"QuatX", "double", ReadOnly},
                     {"QuatY", "double", ReadOnly},
                     {"QuatZ", "double", ReadOnly},
                     {"QuatScalar", "double", ReadOnly},
                     {"LastAlarmState", "CAlarm::AlarmState", ReadOnly},
                     {"LastAlarmAxis", "CAxis::AxisType", ReadOnly},
                     {"CommentOverAll", "QString", ReadOnly},
                     {"CommentBlock", "QString", ReadOnly},
                     {"SliderValueGraph3D", "double", ReadWrite},
                     {"CanAcceptNewMeasure", "bool", ReadOnly},
                     {"MaxVectorCount", "int", ReadOnly}}));
    VERIFY_NO_DIFFERENCE(compareMethods(
        metaObject, QMetaMethod::Method,
        {"resume()", "record()", "hold()", "stop()", "end()", "start()", "playback()", "step()",
         "zeroOffset(bool)", "zeroOffset()", "restoreZeroOffsetToFactory()", "setDefaultParameters()",
         "getComputeVector3D(int)", "load()", "save()", "loadParameters()", "saveParameters()"}));
    for (const char* name :
         {"clear3DPlots()", "reload3DPlots()", "newVectorToPlot()", "setVisibleUntilChart()"})
        QVERIFY(metaObject.indexOfSignal(name) >= 0);
    VERIFY_NO_DIFFERENCE(compareProperties(
        CMappingOperationDatasetViewModel::staticMetaObject,
        {{"Chart2DData", "CChart2DMappingData*", Constant}, {"TableData", "CMeasureBlockData*", Constant}}));
}

void tst_CMappingOperationViewModel::initialValues()
{
    MappingPageFixture f;
    f.alarm().SetState(CAlarm::Audio);
    f.alarm().SetAxis(CAxis::By);
    f.mappingManager().SetIsProcessingBlock(true);
    const MappingPage page = f.makePage();
    QCOMPARE(page->Name(), QStringLiteral("MappingOperation"));
    for (const double value :
         {page->BLastBlock(), page->dBLastBlock(), page->BPrimeLastBlock(), page->BxLastBlock(),
          page->ByLastBlock(), page->BzLastBlock(), page->Position()->X(), page->Position()->Y(),
          page->Position()->Z(), page->Orientation()->Roll(), page->Orientation()->Pitch(),
          page->Orientation()->Yaw()})
        QCOMPARE(value, 0.0);
    QCOMPARE(f.axes(*page), (QVector<double>{0, 1, 0, 1, 0, 1}));
    for (const double value : {page->Scale(), page->PosX(), page->PosY(), page->PosZ(), page->QuatX(),
                               page->QuatY(), page->QuatZ(), page->QuatScalar()})
        QCOMPARE(value, 0.0);
    QVERIFY(page->MaxScale() == 2.220446049250313e-16);
    QCOMPARE(page->LastAlarmState(), CAlarm::Audio);
    QCOMPARE(page->LastAlarmAxis(), CAxis::By);
    QCOMPARE(page->CommentOverAll() + page->CommentBlock(), QString());
    QCOMPARE(page->SliderValueGraph3D(), 0.1);
    QVERIFY(!page->CanAcceptNewMeasure());
    QVERIFY(!f.mappingManager().IsProcessingBlock());
    QCOMPARE(page->DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(f.mappingData().MeasurementParameters(), &f.live());

    QSignalSpy slider(page.get(), &CMappingOperationViewModel::SliderValueGraph3DChanged);
    page->SetSliderValueGraph3D(0.4);
    page->SetSliderValueGraph3D(0.4);
    QCOMPARE(slider.count(), 1);
}

void tst_CMappingOperationViewModel::helpNames()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    const QStringList names{QStringLiteral("mapping_numeric"), QStringLiteral("mapping_plot"),
                            QStringLiteral("mapping_table"), QStringLiteral("mapping_vector"), QString()};
    for (int section = 0; section < names.size(); ++section) {
        page->SetSectionIndex(section);
        QCOMPARE(page->GetHelpName(), names.at(section));
    }
}

void tst_CMappingOperationViewModel::resumeStartsRecordAndSession()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    const QDateTime before = QDateTime::currentDateTime();
    page->resume();
    QVERIFY(page->CanAcceptNewMeasure());
    QVERIFY(f.mappingManager().IsRecording());
    QVERIFY(f.mapping.SessionInProgress());
    QVERIFY(!f.mappingManager().IsHolding());
    QVERIFY(!f.mappingManager().IsIdle());
    QCOMPARE(f.mappingData().InstrumentName(), QStringLiteral("Probe 2040 B SN-17"));
    const QDateTime date =
        QDateTime::fromString(f.mappingData().Date(), QStringLiteral("yyyy.MM.dd HH:mm:ss"));
    QVERIFY(date >= before.addMSecs(-1000) && date <= QDateTime::currentDateTime());
    f.take(f.ramp(1));
    QVERIFY(f.mappingManager().HasUnsavedData());
}

void tst_CMappingOperationViewModel::resumeAsksAboutStoredData()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    f.take(f.ramp(1));
    f.mappingManager().StopRecord();
    f.mappingManager().SetMeasComment(QStringLiteral("old"));
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    page->resume();
    QCOMPARE(f.mappingManager().NumBlocks(), 1);
    QVERIFY(!f.mapping.SessionInProgress() && !page->CanAcceptNewMeasure());
    dialogs.pressNext(QMessageBox::Ok);
    page->resume();
    QCOMPARE(f.mappingManager().NumBlocks(), 0);
    QCOMPARE(f.mappingManager().MeasComment(), QString());
    QVERIFY(f.mapping.SessionInProgress() && f.mappingManager().IsRecording() && page->CanAcceptNewMeasure());
    QCOMPARE(dialogs.messages, (QStringList{kQuitQuestion, kQuitQuestion}));
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::resumeWithoutAMapper()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    f.mappingParameters().SetSelectedMapper(nullptr);
    LogRecorder log;
    page->resume();
    QVERIFY(log.Texts(QtWarningMsg).contains(QStringLiteral("Mapper is null")));
    QVERIFY(!f.mapping.SessionInProgress());
    page->stop();
    QVERIFY(!f.mappingManager().IsRecording());
}

void tst_CMappingOperationViewModel::stopEndsRecordAndSession()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    page->resume();
    f.take(f.ramp(1));
    f.mappingManager().SetBodyComment(QStringLiteral("a map"));
    QCOMPARE(page->CommentOverAll(), QString());
    page->stop();
    QVERIFY(!f.mapping.SessionInProgress());
    QVERIFY(!f.mappingManager().IsRecording());
    QVERIFY(f.mappingManager().IsHolding());
    QVERIFY(f.mappingManager().IsIdleWithData());
    QCOMPARE(page->CommentOverAll(), QStringLiteral("a map"));
}

void tst_CMappingOperationViewModel::holdStopsTheSession()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    page->resume();
    page->hold();
    QVERIFY(!f.mapping.SessionInProgress());
    QVERIFY(f.mappingManager().IsHolding());
    QVERIFY(f.mappingManager().IsRecording());
}

void tst_CMappingOperationViewModel::end()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    page->resume();
    f.take(f.ramp(1));
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    page->end();
    QVERIFY(f.mapping.SessionInProgress());
    dialogs.pressNext(QMessageBox::Ok);
    page->end();
    QVERIFY(!f.mapping.SessionInProgress());
    QVERIFY(!f.mappingManager().IsRecording());
    QVERIFY(f.mappingManager().IsDataSetEmpty());
    QCOMPARE(dialogs.messages, (QStringList{kQuitQuestion, kQuitQuestion}));
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::zeroOffset()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    page->zeroOffset();
    page->restoreZeroOffsetToFactory();
    const auto instrument = f.connectInstrument();
    page->zeroOffset();
    page->zeroOffset(false);
    page->restoreZeroOffsetToFactory();
    QCOMPARE(instrument->calls.join(QLatin1Char(' ')), QStringLiteral("calibrate forced calibrate restore"));
}

void tst_CMappingOperationViewModel::defaultParameters()
{
    MappingPageFixture f;
    f.live().SetTriggerMode(CTrigger::EXTERNAL);
    f.live().SetAveraging(7);
    const MappingPage page = f.makePage();
    page->setDefaultParameters();
    QCOMPARE(f.live().Averaging(), 7);
    f.connectInstrument();
    QStringList applied;
    connect(&f.live(), &CMeasurementParameters::ApplyConfigurationChanged, this, [&applied](bool apply) {
        applied.append(apply ? QStringLiteral("true") : QStringLiteral("false"));
    });
    f.live().SetApplyConfiguration(true);
    applied.clear();
    page->setDefaultParameters();
    QCOMPARE(f.live().TriggerMode(), CTrigger::IMMEDIATE);
    QCOMPARE(f.live().Averaging(), 100);
    QCOMPARE(f.live().BlockSize(), 10);
    QCOMPARE(applied.first(), QStringLiteral("false"));
    QCOMPARE(applied.last(), QStringLiteral("true"));
    CMeasurementParametersViewModel& box = *page->MeasurementParametersViewModel();
    for (const int index : {box.SelectedUnitIndex(), box.SelectedUncertaintyUnitIndex(),
                            box.SelectedRangeIndex(), box.SelectedTriggerIndex()})
        QCOMPARE(index, 0);
}

void tst_CMappingOperationViewModel::replay()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.recordRow(*page, 3);
    f.mappingData().SetComment(QStringLiteral("all"));
    QSignalSpy cleared(page.get(), &CMappingOperationViewModel::clear3DPlots);
    page->start();
    QVERIFY(f.mappingManager().IsPlayingBack());
    QCOMPARE(cleared.count(), 1);
    QVERIFY(page->VectorHistory().empty());
    QCOMPARE(f.tableB(*page), QVector<float>());
    QCOMPARE(f.charted(*page), 0ULL);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("all"));
    QCOMPARE(page->MaxVectorCount(), 3);
    QTRY_COMPARE(page->VectorHistory().size(), std::size_t(1));
    QCOMPARE(page->BLastBlock(), 10.0);
    QCOMPARE(page->Position()->X(), 1.0);
    QTRY_VERIFY(!f.mappingManager().IsPlayingBack());
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20, 30}));
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20, 30}));
    QCOMPARE(f.charted(*page), 6ULL);
    QCOMPARE(page->CommentBlock(), QStringLiteral("3"));
    QVERIFY(f.mappingManager().IsIdleWithData());
}

void tst_CMappingOperationViewModel::heldReplay()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.recordRow(*page, 2);
    page->start();
    page->hold();
    QVERIFY(f.mappingManager().IsHolding());
    QVERIFY(f.mappingManager().IsPlayingBack());
    page->resume();
    QVERIFY(!f.mappingManager().IsHolding());
    QVERIFY(f.mappingManager().IsPlayingBack());
    QVERIFY(!f.mappingManager().IsRecording());
    page->stop();
    QVERIFY(!f.mappingManager().IsPlayingBack());
    // The page ends on the last block.
    QCOMPARE(page->BLastBlock(), 20.0);
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20}));
}

void tst_CMappingOperationViewModel::replayDelay_data()
{
    QTest::addColumn<int>("warpIndex");
    QTest::addColumn<double>("displayRate");
    QTest::addColumn<int>("delayMs");
    QTest::newRow("1x") << 4 << 1.0 << 1000;
    QTest::newRow("10x") << 5 << 3.0 << 33;
    QTest::newRow("0.001x") << 1 << 0.5 << 2000000;
    QTest::newRow("no rate") << 4 << 0.0 << std::numeric_limits<int>::max();
}

void tst_CMappingOperationViewModel::replayDelay()
{
    QFETCH(int, warpIndex);
    QFETCH(double, displayRate);
    QFETCH(int, delayMs);
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.recordRow(*page, 1);
    f.live().SetDisplayRate(displayRate);
    page->ReplayParametersViewModel()->SetSelectedTimeWarpIndex(warpIndex);
    page->start();
    QCOMPARE(f.mappingManager().ReplayBlockDelayMillisecond(), delayMs);
}

void tst_CMappingOperationViewModel::stepByStep()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.recordRow(*page, 3);
    page->ReplayParametersViewModel()->SetStepByStepMode(true);
    page->start();
    QTRY_COMPARE(f.tableB(*page), (QVector<float>{10}));
    page->step();
    QTRY_COMPARE(f.tableB(*page), (QVector<float>{10, 20}));
    QVERIFY(f.mappingManager().IsPlayingBack());
    page->playback();
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20, 30}));
}

void tst_CMappingOperationViewModel::loadRecord()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    const QString path = writeRecord(f);
    QSignalSpy loaded(page.get(), &COperationViewModel::DatasetLoaded);
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page->load();
    QCOMPARE(loaded.count(), 0);
    QVERIFY(!page->CanAcceptNewMeasure());

    dialogs.pickNext(path);
    page->load();
    QCOMPARE(loaded.count(), 1);
    QVERIFY(page->CanAcceptNewMeasure());
    QCOMPARE(page->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(page->DisplayUncertaintyUnits(), GetUncertaintyUnit(CUnits::GAUSS));
    QCOMPARE(page->AlarmParametersViewModel()->DisplayAlarmUnits(), CUnits::GAUSS);
    CReplayParametersViewModel& replay = *page->ReplayParametersViewModel();
    QCOMPARE((QVector<int>{replay.NumBlocks(), replay.StartingBlock(), replay.EndingBlock(),
                           replay.CurrentBlock()}),
             (QVector<int>{3, 1, 3, 3}));
    QCOMPARE(f.mappingManager().ReplayIndex(), 2);
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20, 30}));
    QCOMPARE(page->MaxVectorCount(), 3);
    QCOMPARE(page->MaxScale(), 30.0);
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20, 30}));
    QCOMPARE(f.charted(*page), 6ULL);
    QCOMPARE(f.axes(*page), (QVector<double>{1, 3, 0, 1, 0, 1}));
    QCOMPARE(page->Position()->X(), 3.0);
    QCOMPARE(page->Orientation()->Roll(), 90.0);
    // What is stored was turned before.
    QCOMPARE(page->BxLastBlock(), 30.0);
    for (const MappingBlock& block : *f.mappingData().MeasureBlocks())
        QVERIFY(block->RotAppliedOnMeasBlock() && block->Results.last()->By() == 0.0F);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("from file"));
    QCOMPARE(page->CommentBlock(), QStringLiteral("3"));
    const QString dialog =
        QStringLiteral("Open File|open|") + f.directory.path() + QStringLiteral("||XML (*.xml)");
    QCOMPARE(dialogs.fileDialogs, (QStringList{dialog, dialog}));
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::loadAsksAboutUnsavedData()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    const QString path = writeRecord(f);
    f.recordRow(*page, 2);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    page->load();
    QCOMPARE(f.mappingManager().NumBlocks(), 2);
    dialogs.pressNext(QMessageBox::Ok);
    dialogs.pickNext(path);
    page->load();
    QCOMPARE(f.mappingManager().NumBlocks(), 3);
    QCOMPARE(dialogs.messages, (QStringList{kQuitQuestion, kQuitQuestion}));
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::loadEndsASession()
{
    MappingPageFixture f;
    f.connectInstrument();
    const MappingPage page = f.makePage();
    page->resume();
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page->load();
    QVERIFY(!f.mapping.SessionInProgress());
    QVERIFY(!f.mappingManager().IsRecording());
    QVERIFY(f.mappingManager().IsHolding());
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::loadOfAnInvalidFile()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    const QString path = f.directory.filePath(QStringLiteral("other.xml"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<other/>");
    file.close();
    DialogDriver dialogs;
    dialogs.pickNext(path);
    dialogs.pressNext(QMessageBox::Ok);
    LogRecorder log;
    page->load();
    QCOMPARE(dialogs.messages, QStringList{QStringLiteral(
                                   "Could not load file|The file is not a valid Norvane XML mapping file")});
    const QString warning = log.Texts(QtWarningMsg).value(0);
    QVERIFY2(warning.startsWith(QStringLiteral("Error while loading file: ")), qPrintable(warning));
    QVERIFY(f.mappingManager().IsDataSetEmpty());
    QVERIFY(!f.mappingManager().IsDataLoaded());
    QCOMPARE(f.mappingData().MeasurementParameters(), &f.live());
    QCOMPARE(page->DisplayUnits(), CUnits::MICRO_TESLA);
    QVERIFY(!page->CanAcceptNewMeasure());
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::loadOfOneBlock()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    page->resume();
    f.take(f.ramp(1), 4, -5, 0);
    page->stop();
    const QString path = f.directory.filePath(QStringLiteral("one.xml"));
    f.mappingManager().Save(path);
    DialogDriver dialogs;
    dialogs.pickNext(path);
    page->load();
    QCOMPARE(f.axes(*page), (QVector<double>{4, 5, -5, -4, 0, 1}));
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::saveProposal_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("digits");
    QTest::newRow("digits") << "Probe 20405 B"
                            << "2040";
    QTest::newRow("none") << "Probe 204"
                          << "0000";
}

void tst_CMappingOperationViewModel::saveProposal()
{
    QFETCH(QString, model);
    QFETCH(QString, digits);
    MappingPageFixture f;
    f.connectInstrument()->SetModel(model);
    const MappingPage page = f.makePage();
    f.recordRow(*page, 1);
    QVERIFY(f.mappingManager().HasUnsavedData());
    const QString path = f.directory.filePath(QStringLiteral("saved.xml"));
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page->save();
    QVERIFY(f.mappingManager().HasUnsavedData());
    dialogs.pickNext(path);
    page->save();
    QVERIFY(!f.mappingManager().HasUnsavedData());
    QVERIFY(QFile::exists(path));
    const QStringList parts = dialogs.fileDialogs.value(0).split(QLatin1Char('|'));
    QCOMPARE(parts.at(0), QStringLiteral("Save File"));
    QCOMPARE(parts.at(2), f.directory.path());
    const QRegularExpression name(
        QLatin1Char('^') + digits +
        QStringLiteral("_SN-17_[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{2}\\.[0-9]{2}\\.[0-9]{2}"
                       "_mapping\\.qdr\\.xml$"));
    QVERIFY2(name.match(parts.at(3)).hasMatch(), qPrintable(parts.at(3)));
    QCOMPARE(parts.at(4), QStringLiteral("XML (*.xml)"));
    QVERIFY(dialogs.isDone());
}

void tst_CMappingOperationViewModel::parameterFiles()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    const QString path = f.directory.filePath(QStringLiteral("parameters.xml"));
    f.live().SetTriggerMode(CTrigger::CONTINUOUS);
    f.live().SetAveraging(33);
    f.mappingParameters().MapperSourceCartesian()->Y()->SetStop(12);
    DialogDriver dialogs;
    dialogs.pickNext(path);
    page->saveParameters();
    f.live().SetAveraging(1);
    f.mappingParameters().MapperSourceCartesian()->Y()->SetStop(1);
    dialogs.pickNext(QString());
    page->loadParameters();
    QCOMPARE(f.live().TriggerMode(), CTrigger::CONTINUOUS);
    dialogs.pickNext(path);
    page->loadParameters();
    QCOMPARE(f.live().Averaging(), 33);
    QCOMPARE(f.live().TriggerMode(), CTrigger::IMMEDIATE);
    QCOMPARE(page->YStop(), 12.0);
    const QRegularExpression save(QStringLiteral(
        "^Save parameters to file\\|save\\|.*\\|MappingParameters-[0-9]{4}\\.[0-9]{2}\\.[0-9]{2}"
        "-[0-9]{2}\\.[0-9]{2}\\.[0-9]{2}\\.xml\\|XML \\(\\*\\.xml\\)$"));
    QVERIFY2(save.match(dialogs.fileDialogs.value(0)).hasMatch(), qPrintable(dialogs.fileDialogs.value(0)));
    QVERIFY(dialogs.fileDialogs.value(1).startsWith(QStringLiteral("Open parameters to file|open|")));
    QVERIFY(dialogs.isDone());
}

QTEST_MAIN(tst_CMappingOperationViewModel)
#include "tst_CMappingOperationViewModel.moc"
