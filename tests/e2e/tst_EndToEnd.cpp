// SPDX-License-Identifier: GPL-3.0-or-later
#include "CApplication.h"
#include "CInstrument.h"
#include "CInstrumentSupervisor.h"
#include "InitResources.h"
#include "Scenario.h"
#include "SettingsDirectoryPath.h"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QSurfaceFormat>
#include <QTest>
#include <QThread>
#include <QXmlStreamReader>

namespace {

const QString kQuitQuestion = QStringLiteral("Are you sure you want to quit the current operation?");
const QString kSimulated = QStringLiteral("SIM-0001");

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

/// Each test function is one run of the program, in a process of its own.
class tst_EndToEnd : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Scenario> m_scenario;

    WindowDriver& driver() { return m_scenario->Driver(); }
    DialogAnswers& answers() { return m_scenario->Answers(); }
    int blocks() { return m_scenario->RecordingManager()->property("NumBlocks").toInt(); }

    void connectFirstInstrument()
    {
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
        QVERIFY(driver().Click(QStringLiteral("connectButton0")));
        QVERIFY(driver().WaitFor(QStringLiteral("disconnectButton0")));
    }

    CInstrumentSupervisor* supervisor()
    {
        return m_scenario->Application()
            ->QmlEngine()
            ->rootContext()
            ->contextProperty(QStringLiteral("InstrumentSupervisor"))
            .value<CInstrumentSupervisor*>();
    }

    void openZeroOffset()
    {
        QVERIFY(driver().Click(QStringLiteral("zeroOffsetButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("zeroOffsetStartButton")));
    }

    void openMeter()
    {
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
    }

    void startWithDefaultInstrument()
    {
        Scenario::WriteDefaultInstrument(QStringLiteral("Simulated instrument"), kSimulated);
        m_scenario->Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("meterPage")));
    }

    /// Records until there are blocks, and stops.
    void makeRecord()
    {
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 5);
        QVERIFY(driver().Click(QStringLiteral("stopButton")));
        QVERIFY(m_scenario->Flag("IsIdleWithData"));
    }

    QString saveRecord(const QString& name)
    {
        const QString path = QDir::current().filePath(name);
        answers().ExpectFileDialog(QStringLiteral("Save File"), path);
        if (!driver().Click(QStringLiteral("saveButton")))
            return {};
        return QTest::qWaitFor([&] { return answers().IsDone(); }) ? path : QString();
    }

private slots:
    void init()
    {
        // What an earlier run of the test left in its directories.
        QDir(SettingsDirectoryPath).removeRecursively();
        const QStringList leftovers =
            QDir::current().entryList({QStringLiteral("*.xml"), QStringLiteral("*.csv")}, QDir::Files);
        for (const QString& file : leftovers)
            QFile::remove(file);
        m_scenario = std::make_unique<Scenario>();
    }

    void cleanup()
    {
        const QStringList problems = m_scenario->Problems();
        const bool hasWaitingAnswer = !answers().IsDone();
        m_scenario.reset();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
        QVERIFY2(!hasWaitingAnswer, "a dialog that was expected did not come");
    }

    void launchWithoutPlugins()
    {
        const qint64 elapsedMs = m_scenario->Start(Scenario::None);
        QVERIFY(elapsedMs >= 2000);
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")), QStringLiteral("--"));
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("loadButton")));
        for (const char* name :
             {"resumeButton", "recordButton", "saveButton", "zeroOffsetButton", "stopButton"})
            QVERIFY2(!driver().IsVisible(QLatin1String(name)), name);
        QVERIFY(m_scenario->LogText().contains(QStringLiteral("Unable to load any instrument plugins")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void launchWithDefaultInstrument()
    {
        startWithDefaultInstrument();
        QCOMPARE(driver().Text(QStringLiteral("statusSerial"), QStringLiteral("value")), kSimulated);
        QVERIFY(driver().IsVisible(QStringLiteral("resumeButton")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void connectMeasureRecordSaveLoad()
    {
        m_scenario->Start(Scenario::Shipped);
        connectFirstInstrument();
        QCOMPARE(driver().Text(QStringLiteral("statusSerial"), QStringLiteral("value")), kSimulated);
        openMeter();
        QCOMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")), QStringLiteral("--"));

        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 3);
        QVERIFY(!driver().IsVisible(QStringLiteral("resumeButton")));
        QVERIFY(!driver().IsVisible(QStringLiteral("loadButton")));
        QVERIFY(!m_scenario->Flag("HasUnsavedData"));
        const double magnitude =
            driver().Text(QStringLiteral("bDisplayer"), QStringLiteral("value")).toDouble();
        QVERIFY2(magnitude > 40 && magnitude < 60, qPrintable(QString::number(magnitude)));

        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
        QVERIFY(m_scenario->Flag("IsHolding"));

        makeRecord();
        QVERIFY(m_scenario->Flag("HasUnsavedData"));
        const int recorded = blocks();
        const QString path = saveRecord(QStringLiteral("first.qdr.xml"));
        QVERIFY(!path.isEmpty());
        QVERIFY(answers().LastProposal().endsWith(QStringLiteral("_measurement.qdr.xml")));
        QVERIFY(answers().LastProposal().startsWith(QStringLiteral("1000_SIM-0001_")));
        QVERIFY(!m_scenario->Flag("HasUnsavedData"));
        QCOMPARE(samplesInRecord(path), recorded * 2);

        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("endButton")));
        QTRY_COMPARE(blocks(), 0);

        answers().ExpectFileDialog(QStringLiteral("Open File"), path);
        QVERIFY(driver().Click(QStringLiteral("loadButton")));
        QTRY_COMPARE(blocks(), recorded);
        QVERIFY(m_scenario->Flag("IsDataLoaded"));
        QVERIFY(!driver().IsVisible(QStringLiteral("saveButton")));
        QCOMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")),
                 QString::number(recorded));

        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("resultsTable")));
        QTRY_COMPARE(driver().Find(QStringLiteral("resultsTable"))->property("rowCount").toInt(), 2);
        QVERIFY(!driver().IsVisible(QStringLiteral("bMaxDisplayer")));
        QVERIFY(driver().Click(QStringLiteral("componentTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("bMaxDisplayer")));

        // A loaded record counts as data that leaving would lose.
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(!m_scenario->CloseWindow());
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(m_scenario->CloseWindow());
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
        QVERIFY(m_scenario->CloseWindow());
    }

    void quitQuestionIsDueInASession()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 1);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(!m_scenario->CloseWindow());
        QVERIFY(m_scenario->ActiveOperation()->property("SessionInProgress").toBool());
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(m_scenario->CloseWindow());
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
        QVERIFY(m_scenario->CloseWindow());
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
        QVERIFY(m_scenario->CloseWindow());
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
        QVERIFY(!m_scenario->Flag("IsDataLoaded"));
        QVERIFY(driver().IsVisible(QStringLiteral("loadButton")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void zeroOffset()
    {
        Scenario::WriteSimulationSettings(QStringLiteral("[Calibration]\nDurationMs=50\nChamberFieldX=5\n"));
        startWithDefaultInstrument();
        QStringList reports;
        connect(supervisor()->AvailableInstruments().constFirst().data(), &CInstrument::StatusStringChanged,
                this, [&reports](const QString& text) { reports << text; });
        const QString refused =
            QStringLiteral("Zero offset not calibrated: the probe is not in a zero-field chamber");
        const QString start = QStringLiteral("zeroOffsetStartButton");
        const QString overrideBox = QStringLiteral("overrideWarningsBoxBox");
        QObject* busyPopup = driver().FindPopup(QStringLiteral("busyPopup"));
        QVERIFY(busyPopup);
        QSignalSpy busy(busyPopup, SIGNAL(visibleChanged()));

        openZeroOffset();
        QVERIFY(driver().Click(start));
        QTRY_VERIFY(!driver().IsVisible(start));
        QCOMPARE(reports, QStringList{refused});
        QCOMPARE(busy.count(), 2);
        QVERIFY(!busyPopup->property("visible").toBool());

        openZeroOffset();
        QVERIFY(driver().Click(overrideBox));
        QVERIFY(driver().Find(overrideBox)->property("checked").toBool());
        QVERIFY(driver().Click(start));
        QTRY_VERIFY(!driver().IsVisible(start));
        const QString calibrated = QStringLiteral("Zero offset calibrated");
        QCOMPARE(reports, (QStringList{refused, calibrated}));
        QCOMPARE(driver().Text(QStringLiteral("statusStatus"), QStringLiteral("value")), calibrated);

        // The override held for one calibration, and Cancel does nothing.
        openZeroOffset();
        QVERIFY(!driver().Find(overrideBox)->property("checked").toBool());
        QVERIFY(driver().Click(QStringLiteral("zeroOffsetCancelButton")));
        QTRY_VERIFY(!driver().IsVisible(start));
        QCOMPARE(busy.count(), 4);

        openZeroOffset();
        const QPoint startPoint = WindowDriver::Middle(driver().Find(start));
        QTest::mousePress(driver().Window(), Qt::LeftButton, {}, startPoint);
        QTRY_VERIFY(!driver().IsVisible(start));
        QTest::mouseRelease(driver().Window(), Qt::LeftButton, {}, startPoint);
        const QString restored = QStringLiteral("Factory zero offset restored");
        QCOMPARE(reports, (QStringList{refused, calibrated, restored}));
        // Had the release started a calibration, it would have ended by the time the dialog is opened and
        // shut.
        openZeroOffset();
        QVERIFY(driver().Click(QStringLiteral("zeroOffsetCancelButton")));
        QTRY_VERIFY(!driver().IsVisible(start));
        QCOMPARE(reports, (QStringList{refused, calibrated, restored}));
        QCOMPARE(busy.count(), 6);
        QVERIFY(m_scenario->CloseWindow());
    }

    void failedConnection()
    {
        Scenario::WriteSimulationSettings(QStringLiteral("[Misbehaviour]\nConnect=fail\n"));
        m_scenario->Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
        const QSharedPointer<CInstrument> instrument = supervisor()->AvailableInstruments().constFirst();
        QVERIFY(instrument->StatusString() != QStringLiteral("Connection failed"));
        QObject* busyPopup = driver().FindPopup(QStringLiteral("busyPopup"));
        QVERIFY(busyPopup);
        QSignalSpy busy(busyPopup, SIGNAL(visibleChanged()));
        QVERIFY(driver().Click(QStringLiteral("connectButton0")));
        QTRY_COMPARE(busy.count(), 2);
        QVERIFY(!busyPopup->property("visible").toBool());
        QCOMPARE(instrument->StatusString(), QStringLiteral("Connection failed"));
        QVERIFY(driver().IsVisible(QStringLiteral("connectButton0")));
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")), QStringLiteral("--"));
        QVERIFY(m_scenario->CloseWindow());
    }

    void throwingConnection()
    {
        Scenario::WriteSimulationSettings(
            QStringLiteral("[Misbehaviour]\nConnect=throw\nDisconnect=throw\n"));
        Scenario::WriteDefaultInstrument(QStringLiteral("Simulated instrument"), kSimulated);
        m_scenario->Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QVERIFY(
            m_scenario->LogText().contains(QStringLiteral("Error occured when connecting the instrument.")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void instrumentLostInASession()
    {
        Scenario::WriteSimulationSettings(QStringLiteral("[Misbehaviour]\nVanishAfterS=2\n"));
        startWithDefaultInstrument();
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(answers().IsDone(), 10000);
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")), QStringLiteral("--"));
        QVERIFY(m_scenario->CloseWindow());
    }

    void instrumentLostAndTheQuestionCancelled()
    {
        Scenario::WriteSimulationSettings(QStringLiteral("[Misbehaviour]\nVanishAfterS=2\n"));
        startWithDefaultInstrument();
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(answers().IsDone(), 10000);
        QVERIFY(driver().IsVisible(QStringLiteral("meterPage")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("holdButton")));
        QVERIFY(driver().Click(QStringLiteral("stopButton")));
        QVERIFY(blocks() > 0);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(m_scenario->CloseWindow());
    }

    void logDialog()
    {
        m_scenario->Start(Scenario::Shipped);
        QVERIFY(driver().Click(QStringLiteral("openLogButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("logMessageList")));
        QQuickItem* list = driver().Find(QStringLiteral("logMessageList"));
        QTRY_VERIFY(list->property("count").toInt() > 3);
        QVERIFY(driver().Find(QStringLiteral("logSearchField"))->width() > 300);
        QVERIFY(driver().Click(QStringLiteral("logSearchField")));
        for (const char character : "oxygen mono")
            if (character != '\0')
                QTest::keyClick(driver().Window(), character);
        QTRY_COMPARE(list->property("count").toInt(), 1);
        QVERIFY(driver().Click(QStringLiteral("logCloseButton")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("logMessageList")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void toolTipColour()
    {
        m_scenario->Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("openLogButton")));
        QQuickItem* button = driver().Find(QStringLiteral("openLogButton"));
        const auto ofToolTip = [button](const QString& expression) {
            return QQmlExpression(qmlContext(button), button, QStringLiteral("ToolTip.toolTip.") + expression)
                .evaluate();
        };
        QTest::mouseMove(driver().Window(), QPoint(300, 300));
        QTest::mouseMove(driver().Window(), WindowDriver::Middle(button));
        QTRY_VERIFY(ofToolTip(QStringLiteral("opened")).toBool());
        const QPointF corner = ofToolTip(QStringLiteral("background.mapToItem(null, 3, 3)")).toPointF();
        const QImage image = driver().Window()->grabWindow();
        QCOMPARE(image.pixelColor((corner * image.devicePixelRatio()).toPoint()),
                 QColor(QStringLiteral("#ffffe0")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void keyboardAlone()
    {
        m_scenario->Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
        QVERIFY(QTest::qWaitForWindowActive(driver().Window()));
        QVERIFY(driver().TabTo(QStringLiteral("connectButton0")));
        driver().Key(Qt::Key_Space);
        QVERIFY(driver().WaitFor(QStringLiteral("disconnectButton0")));
        QVERIFY(driver().TabTo(QStringLiteral("meterMenuButton")));
        driver().Key(Qt::Key_Space);
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
        QVERIFY(driver().TabTo(QStringLiteral("resumeButton")));
        driver().Key(Qt::Key_Space);
        QTRY_VERIFY(blocks() >= 2);
        QVERIFY(driver().TabTo(QStringLiteral("holdButton")));
        driver().Key(Qt::Key_Space);
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));

        // The dialogs keep the keyboard to themselves, and Escape closes them.
        QVERIFY(driver().TabTo(QStringLiteral("zeroOffsetButton")));
        driver().Key(Qt::Key_Space);
        QVERIFY(driver().WaitFor(QStringLiteral("overrideWarningsBoxBox")));
        QTRY_VERIFY(driver().Find(QStringLiteral("overrideWarningsBoxBox"))->hasActiveFocus());
        QCOMPARE(driver().TabAround(), (QSet<QString>{QStringLiteral("overrideWarningsBoxBox"),
                                                      QStringLiteral("zeroOffsetCancelButton"),
                                                      QStringLiteral("zeroOffsetStartButton")}));
        driver().Key(Qt::Key_Escape);
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("zeroOffsetStartButton")));

        QVERIFY(driver().TabTo(QStringLiteral("openLogButton")));
        driver().Key(Qt::Key_Space);
        QVERIFY(driver().WaitFor(QStringLiteral("logSearchField")));
        QTRY_VERIFY(driver().Find(QStringLiteral("logSearchField"))->hasActiveFocus());
        QCOMPARE(driver().TabAround(),
                 (QSet<QString>{QStringLiteral("logSearchField"), QStringLiteral("logLevelBoxBox"),
                                QStringLiteral("logMessageList"), QStringLiteral("logCloseButton")}));
        QVERIFY(driver().TabTo(QStringLiteral("logMessageList")));
        QQuickItem* list = driver().Find(QStringLiteral("logMessageList"));
        driver().Key(Qt::Key_Home);
        QVERIFY(list->property("atYBeginning").toBool());
        if (list->property("contentHeight").toReal() > list->height()) {
            driver().Key(Qt::Key_Down);
            QVERIFY(!list->property("atYBeginning").toBool());
        }
        driver().Key(Qt::Key_Escape);
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("logMessageList")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void smallLayout()
    {
        const auto drawerWidth = [this] {
            QObject* drawer = driver().FindPopup(QStringLiteral("menuDrawer"));
            return drawer ? drawer->property("width").toReal() : -1;
        };
        startWithDefaultInstrument();
        driver().Window()->resize(954, 698);
        QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
        QVERIFY(!driver().IsVisible(QStringLiteral("meterMenuButton")));
        driver().Window()->resize(1025, 768);
        QVERIFY(driver().WaitFor(QStringLiteral("meterMenuButton")));
        driver().Window()->resize(1024, 768);
        QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
        QVERIFY(driver().Click(QStringLiteral("smallMenuToggle")));
        QTRY_VERIFY(m_scenario->Application()->MainViewModel()->PageMenuExpanded());
        QTRY_COMPARE(drawerWidth(), 180.0);
        // A press on the page folds the menu again.
        QTest::mouseClick(driver().Window(), Qt::LeftButton, {}, QPoint(600, 600));
        QTRY_VERIFY(!m_scenario->Application()->MainViewModel()->PageMenuExpanded());
        QTRY_COMPARE(drawerWidth(), 60.0);
        QVERIFY(driver().IsVisible(QStringLiteral("smallHelpButton")));
        QVERIFY(driver().IsVisible(QStringLiteral("smallInstrumentSelectionButton")));
        QVERIFY(m_scenario->CloseWindow());
    }

    void quitDuringASession()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 1);
        // The tray's "Quit" asks nothing.
        m_scenario->Quit();
    }

    void quitDuringAReplay()
    {
        startWithDefaultInstrument();
        makeRecord();
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(m_scenario->Flag("IsPlayingBack"));
        m_scenario->Quit();
    }

    void aReplayEndsWhereItBegan()
    {
        startWithDefaultInstrument();
        makeRecord();
        const int recorded = blocks();
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(m_scenario->Flag("IsPlayingBack"));
        QTRY_VERIFY_WITH_TIMEOUT(!m_scenario->Flag("IsPlayingBack"), 10000);
        QVERIFY(m_scenario->Flag("IsIdleWithData"));
        QCOMPARE(m_scenario->RecordingManager()->property("ReplayIndex").toInt(), recorded - 1);
        QVERIFY(!saveRecord(QStringLiteral("replayed.qdr.xml")).isEmpty());
        QVERIFY(m_scenario->CloseWindow());
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
        m_scenario->Start(Scenario::Shipped);
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
        QObject* dataset = m_scenario->RecordingManager()->property("DataSet").value<QObject*>();
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
        QVERIFY(m_scenario->CloseWindow());
    }
};

int main(int argc, char* argv[])
{
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, true);
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    InitResources();
    QApplication application(argc, argv);
    // The window closes in the middle of a test function.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    tst_EndToEnd test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_EndToEnd.moc"
