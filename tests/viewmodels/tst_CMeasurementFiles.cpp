// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogDriver.h"
#include "FakeMeasurePage.h"
#include "PropertyLog.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

namespace {

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

class tst_CMeasurementFiles : public QObject
{
    Q_OBJECT

private slots:
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

void tst_CMeasurementFiles::loadRecord()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::loadAsksAboutUnsavedData()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::loadEndsASession()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::loadEndsAReplay()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::loadEndsARecordWithoutSession()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    page.record();
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.load();
    QVERIFY(!f.manager().IsRecording());
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementFiles::loadedUncertaintyUnitIsAnnounced()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::loadThatFailsLateLeavesTheLiveUnits()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::loadOfAnInvalidFile()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::openReplayRange()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::saveProposal_data()
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

void tst_CMeasurementFiles::saveProposal()
{
    QFETCH(QString, model);
    QFETCH(QString, digits);
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    instrument->SetModel(model);
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::saveWritesTheRecord()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::saveCancelled()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
    storeData(f);
    f.manager().SetHasUnsavedData(true);
    DialogDriver dialogs;
    dialogs.pickNext(QString());
    page.save();
    QVERIFY(dialogs.isDone());
    QVERIFY(f.manager().HasUnsavedData());
    QCOMPARE(QDir(f.directory.path()).entryList(QDir::Files), QStringList());
}

void tst_CMeasurementFiles::saveAndLoadParameters()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

void tst_CMeasurementFiles::zeroOffset()
{
    MeasureFixture f;
    FakeMeasurePage page(f);
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

QTEST_MAIN(tst_CMeasurementFiles)
#include "tst_CMeasurementFiles.moc"
