// SPDX-License-Identifier: GPL-3.0-or-later
// Records: made, saved, loaded and replayed, and the question before they are lost.
#include "EndToEndTest.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QXmlStreamReader>

namespace {

/// Number of samples in the flux texts of a record file, read without the program's own reader.
int samplesInRecord(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    QXmlStreamReader xml(&file);
    int samples = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("flux"))
            samples += xml.readElementText().split(QLatin1Char('\n')).size();
    }
    return xml.hasError() ? -1 : samples;
}

} // namespace

class tst_EndToEndRecords : public EndToEndTest
{
    Q_OBJECT

    /// The page shows the last block, and a place at the last corner of the grid with this Z.
    void verifyLastPlaceOfMap(int places, const QString& z = QStringLiteral("2.000"))
    {
        QCOMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")),
                 QString::number(places));
        const auto shown = [this](const char* name) {
            return driver().Text(QLatin1String(name), QStringLiteral("value"));
        };
        QCOMPARE(shown("positionXDisplayer"), QStringLiteral("1.000"));
        QCOMPARE(shown("positionYDisplayer"), QStringLiteral("1.000"));
        QCOMPARE(shown("positionZDisplayer"), z);
        QCOMPARE(shown("orientationYawDisplayer"), QStringLiteral("0.00"));
    }

private slots:
    void connectMeasureRecordSaveLoad()
    {
        scenario().Start(Scenario::Shipped);
        connectFirstInstrument();
        QCOMPARE(driver().Text(QStringLiteral("statusSerial"), QStringLiteral("value")), kSimulated);
        openMeter();
        QCOMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")), QStringLiteral("--"));

        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 3);
        QVERIFY(!driver().IsVisible(QStringLiteral("resumeButton")));
        QVERIFY(!driver().IsVisible(QStringLiteral("loadButton")));
        QVERIFY(!scenario().Flag("HasUnsavedData"));
        const double magnitude =
            driver().Text(QStringLiteral("bDisplayer"), QStringLiteral("value")).toDouble();
        QVERIFY2(magnitude > 40 && magnitude < 60, qPrintable(QString::number(magnitude)));

        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
        QVERIFY(scenario().Flag("IsHolding"));

        makeRecord();
        QVERIFY(scenario().Flag("HasUnsavedData"));
        const int recorded = blocks();
        const QString path = saveRecord(QStringLiteral("first.qdr.xml"));
        QVERIFY(!path.isEmpty());
        QVERIFY(answers().LastProposal().endsWith(QStringLiteral("_measurement.qdr.xml")));
        QVERIFY(answers().LastProposal().startsWith(QStringLiteral("1000_SIM-0001_")));
        QVERIFY(!scenario().Flag("HasUnsavedData"));
        QCOMPARE(samplesInRecord(path), recorded * 2);

        endAndLoad(path, recorded);
        QVERIFY(!driver().IsVisible(QStringLiteral("saveButton")));

        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("resultsTable")));
        QTRY_COMPARE(driver().Find(QStringLiteral("resultsTable"))->property("rowCount").toInt(), 2);
        QVERIFY(!driver().IsVisible(QStringLiteral("bMaxDisplayer")));
        QVERIFY(driver().Click(QStringLiteral("componentTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("bMaxDisplayer")));

        // A loaded record counts as data that leaving would lose.
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(!scenario().CloseWindow());
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void csvSideFile()
    {
        Scenario::WriteApplicationSettings(QStringLiteral("<SaveRecordingsAsCsv>1</SaveRecordingsAsCsv>"));
        startWithDefaultInstrument();
        makeRecord();
        const QString path = saveRecord(QStringLiteral("side.qdr.xml"));
        QFile csv(QDir::current().filePath(QStringLiteral("side.qdr.csv")));
        QVERIFY(csv.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(csv.readAll());
        QVERIFY(text.contains(QStringLiteral("\nTimestamp;B;B.B';Bx;By;Bz;Temp;dB\n")));
        QCOMPARE(text.count(QLatin1Char('\n')), 12 + samplesInRecord(path) + 1);
        QVERIFY(scenario().CloseWindow());
    }

    void quitQuestionIsDueInASession()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 1);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(!scenario().CloseWindow());
        QVERIFY(scenario().ActiveOperation()->property("SessionInProgress").toBool());
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void quitQuestionIsDueWithAnUnsavedRecord()
    {
        startWithDefaultInstrument();
        makeRecord();
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(driver().Click(QStringLiteral("instrumentSelectionButton")));
        QTRY_VERIFY(answers().IsDone());
        QVERIFY(driver().IsVisible(QStringLiteral("meterPage")));
        QVERIFY(blocks() >= 5);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void quitQuestionIsNotDueOtherwise()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 2);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        // Measured, not recorded and held: nothing would be lost.
        QVERIFY(driver().Click(QStringLiteral("instrumentSelectionButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("recordButton")));
        makeRecord();
        QVERIFY(!saveRecord(QStringLiteral("kept.qdr.xml")).isEmpty());
        QVERIFY(scenario().CloseWindow());
    }

    void anInvalidFileIsRefusedWithAMessage()
    {
        startWithDefaultInstrument();
        QFile file(QDir::current().filePath(QStringLiteral("bad.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<other/>");
        file.close();
        answers().ExpectFileDialog(QStringLiteral("Open File"), file.fileName());
        answers().ExpectMessage(QStringLiteral("Could not load file"), QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("loadButton")));
        QTRY_VERIFY(answers().IsDone());
        QVERIFY(!scenario().Flag("IsDataLoaded"));
        QVERIFY(driver().IsVisible(QStringLiteral("loadButton")));
        QVERIFY(scenario().CloseWindow());
    }

    void quitDuringASession()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 1);
        // The tray's "Quit" asks nothing.
        scenario().Quit();
    }

    void quitDuringAReplay()
    {
        startWithDefaultInstrument();
        makeRecord();
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
        scenario().Quit();
    }

    void aReplayEndsWhereItBegan()
    {
        startWithDefaultInstrument();
        makeRecord();
        const int recorded = blocks();
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
        QTRY_VERIFY_WITH_TIMEOUT(!scenario().Flag("IsPlayingBack"), 10000);
        QVERIFY(scenario().Flag("IsIdleWithData"));
        QCOMPARE(scenario().RecordingManager()->property("ReplayIndex").toInt(), recorded - 1);
        QVERIFY(!saveRecord(QStringLiteral("replayed.qdr.xml")).isEmpty());
        QVERIFY(scenario().CloseWindow());
    }

    void mapIsMadeSavedLoadedAndReplayed()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("mappingMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("mappingPage")));
        for (const char* absent :
             {"recordButton", "stopButton", "holdButton", "playbackButton", "saveButton"})
            QVERIFY2(!driver().IsVisible(QLatin1String(absent)), absent);
        // Two values of X, two of Y and, with the third that is typed here, three of Z.
        QVERIFY(driver().Click(QStringLiteral("zStopField")));
        driver().Key(Qt::Key_A, Qt::ControlModifier);
        driver().Key(Qt::Key_2);
        driver().Key(Qt::Key_Tab);
        const int places = 12;

        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("stopButton")));
        QVERIFY(!driver().IsVisible(QStringLiteral("holdButton")));
        QVERIFY(!driver().IsVisible(QStringLiteral("loadButton")));
        QVERIFY(!driver().Find(QStringLiteral("zStopField"))->isEnabled());
        QVERIFY(!driver().Find(QStringLiteral("blockSizeField"))->isEnabled());
        // The map ends by itself.
        QTRY_VERIFY_WITH_TIMEOUT(scenario().Flag("IsIdleWithData"), 20000);
        // To the page the last block is a stored one, which leaves the place.
        verifyLastPlaceOfMap(places, QStringLiteral("1.000"));
        QVERIFY(!driver().IsVisible(QStringLiteral("mappingBox")));
        const int blockSize = 10;
        const QString path = saveRecord(QStringLiteral("map.qdr.xml"));
        QVERIFY(!path.isEmpty());
        QVERIFY(answers().LastProposal().endsWith(QStringLiteral("_mapping.qdr.xml")));
        QCOMPARE(samplesInRecord(path), places * blockSize);

        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("endButton")));
        QTRY_COMPARE(blocks(), 0);
        QCOMPARE(driver().Text(QStringLiteral("positionZDisplayer"), QStringLiteral("value")),
                 QStringLiteral("0.000"));
        answers().ExpectFileDialog(QStringLiteral("Open File"), path);
        QVERIFY(driver().Click(QStringLiteral("loadButton")));
        QTRY_COMPARE(blocks(), places);
        QVERIFY(!driver().IsVisible(QStringLiteral("saveButton")));
        verifyLastPlaceOfMap(places);

        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("resultsTable")));
        QTRY_COMPARE(driver().Find(QStringLiteral("resultsTable"))->property("rowCount").toInt(), places);
        QVERIFY(driver().Click(QStringLiteral("plotTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("filterBox")));
        QVERIFY(driver().Click(QStringLiteral("vectorTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("vectorsChart3D")));
        QVERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
        QVERIFY(driver().Click(QStringLiteral("numericTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("mappingNumeric")));

        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
        QTRY_VERIFY_WITH_TIMEOUT(!scenario().Flag("IsPlayingBack"), 20000);
        verifyLastPlaceOfMap(places);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void theObservatoryDay()
    {
        const QDir data(QStringLiteral(KESTRIX_SHARED_DATA "/iaga-wic-1hz-day"));
        if (!data.exists())
            QSKIP("the real recordings are not at hand");
        Scenario::WriteReplaySettings(
            QStringLiteral("[Replay]\nFolder=%1\nSpeed=0\nLoop=false\n").arg(data.absolutePath()));
        // Blocks of 100 samples: a block for each sample would measure the painting.
        Scenario::WriteMeasureSettings(QStringLiteral(
            "<Units>nT</Units><AcquisitionRate>1</AcquisitionRate><DisplayRate>0.01</DisplayRate>"
            "<TriggerMode>Continuous</TriggerMode>"));
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton1")));
        // The list is that of the plug-ins in the order in which they were loaded.
        QString button;
        for (int row = 0; row < 2; ++row) {
            const QQuickItem* item = driver().Find(QStringLiteral("instrumentRow%1").arg(row));
            QVERIFY(item);
            if (driver()
                    .Text(item->objectName(), QStringLiteral("instrumentLabel"))
                    .contains(QStringLiteral("wic20220810")))
                button = QStringLiteral("connectButton%1").arg(row);
        }
        QVERIFY(driver().Click(button));
        QTRY_VERIFY(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")) !=
                    QStringLiteral("--"));
        openMeter();
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QObject* dataset = scenario().RecordingManager()->property("DataSet").value<QObject*>();
        QTRY_COMPARE_WITH_TIMEOUT(dataset->property("ResultsCount").toULongLong(), 86400ULL, 120000);
        QVERIFY(driver().Click(QStringLiteral("stopButton")));
        const QString path = saveRecord(QStringLiteral("observatory-day.qdr.xml"));
        QVERIFY(!path.isEmpty());

        // An independent reader compares every sample with the observatory's file.
        QProcess python;
        // What is preloaded for this process is not meant for another program.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LD_PRELOAD"));
        python.setProcessEnvironment(environment);
        python.start(QStringLiteral("/usr/bin/python3"),
                     {QStringLiteral(KESTRIX_E2E_SOURCE_DIR "/compare_observatory_day.py"), path,
                      data.filePath(QStringLiteral("wic20220810vsec.sec"))});
        QVERIFY(python.waitForFinished(120000));
        const QByteArray report = python.readAllStandardOutput() + python.readAllStandardError();
        QVERIFY2(python.exitCode() == 0, report.constData());
        qInfo("%s", report.constData());
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndRecords)
#include "tst_EndToEndRecords.moc"
