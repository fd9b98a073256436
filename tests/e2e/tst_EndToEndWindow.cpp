// SPDX-License-Identifier: GPL-3.0-or-later
// The window itself: start, menus, dialogs of the frame, keyboard.
#include "CApplication.h"
#include "CConnectionPageSettings.h"
#include "EndToEndTest.h"
#include "KeyboardWalk.h"
#include "PatientWait.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

class tst_EndToEndWindow : public EndToEndTest
{
    Q_OBJECT

private:
    /// Notes what is wrong with all that the window shows now, or with what is within one item of it.
    void walk(const char* where, QQuickWindow* window, QQuickItem* within = nullptr)
    {
        // Positioners place their items when the next frame is made; what follows them takes another.
        QSignalSpy frame(window, &QQuickWindow::frameSwapped);
        for (int i = 0; i < 2; ++i) {
            window->update();
            QVERIFY(frame.wait(kLongWaitMs));
        }
        const QStringList problems = KeyboardWalk(window, within).Problems();
        for (const QString& problem : problems)
            qCritical().noquote() << where << problem;
        m_problems += problems;
    }
    void walk(const char* where) { walk(where, driver().Window()); }
    void walkTab(const char* page, const char* tab)
    {
        QVERIFY2(driver().Click(QLatin1String(tab)), tab);
        walk(qPrintable(QLatin1String(page) + QLatin1Char('/') + QLatin1String(tab)));
    }
    void openPage(const char* button, const char* page)
    {
        QVERIFY2(driver().Click(QLatin1String(button)), button);
        QVERIFY2(driver().WaitFor(QLatin1String(page)), page);
    }

    /// Tells all programs that the desktop has this size, as a window manager does.
    static bool setWorkArea(int width, int height)
    {
        // The X server counts in pixels of the device, and its resolution is rounded to millimetres.
        const QScreen* const screen = QGuiApplication::primaryScreen();
        const QString area = QStringLiteral("0, 0, %1, %2")
                                 .arg(qRound(width * screen->devicePixelRatio()))
                                 .arg(qRound(height * screen->devicePixelRatio()));
        const auto texts = [](const char* list) { return QString::fromLatin1(list).split(QLatin1Char(' ')); };
        QProcess xprop;
        // What sanitizers load into the test would look for leaks in that program, too.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LD_PRELOAD"));
        xprop.setProcessEnvironment(environment);
        xprop.start(QStringLiteral("xprop"), texts("-root -f _NET_WORKAREA 32c -set _NET_WORKAREA") << area);
        return xprop.waitForFinished() && xprop.exitCode() == 0 &&
               QTest::qWaitFor([&] { return screen->availableVirtualSize() == QSize(width, height); },
                               kLongWaitMs);
    }

    /// What a row of the log dialog shows: level, message, background, image, its colour.
    QStringList logRow(int row)
    {
        const auto item = [&](const char* part) {
            return driver().Find(QLatin1String(part) + QString::number(row));
        };
        QQuickItem* const icon = item("logIcon");
        if (!icon)
            return {};
        auto* const image = icon->property("source").value<QQuickItem*>();
        return {item("logLevel")->property("text").toString(),
                item("logMessage")->property("text").toString(),
                item("logRow")->property("color").value<QColor>().name(),
                image->property("source").toUrl().fileName(), icon->property("color").value<QColor>().name()};
    }

    QStringList m_problems;

private slots:
    void launchWithoutPlugins()
    {
        const qint64 elapsedMs = scenario().Start(Scenario::None);
        QVERIFY(elapsedMs >= 2000);
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")), QStringLiteral("--"));
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("loadButton")));
        for (const char* name :
             {"resumeButton", "recordButton", "saveButton", "zeroOffsetButton", "stopButton"})
            QVERIFY2(!driver().IsVisible(QLatin1String(name)), name);
        QVERIFY(scenario().LogText().contains(QStringLiteral("Unable to load any instrument plugins")));
        QVERIFY(scenario().CloseWindow());
    }

    void launchWithDefaultInstrument()
    {
        Scenario::WriteSimulationSettings(
            QStringLiteral("[Instruments]\nCount=2\nCalibrationDate=2020-02-29\n"));
        // A real port that is chosen below must bring no board into the list.
        Scenario::WriteSerialBoardSettings(QStringLiteral("[Port]\nName=/nowhere/port\n"));
        startWithDefaultInstrument();
        QCOMPARE(driver().Text(QStringLiteral("statusSerial"), QStringLiteral("value")), kSimulated);
        QVERIFY(driver().IsVisible(QStringLiteral("resumeButton")));

        QVERIFY(driver().Click(QStringLiteral("instrumentSelectionButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("calibrationDate")));
        const auto dateColour = [this] {
            return driver().Find(QStringLiteral("calibrationDate"))->property("valueColor").value<QColor>();
        };
        QCOMPARE(driver().Text(QStringLiteral("calibrationDate"), QStringLiteral("value")),
                 QStringLiteral("2020-02-29"));
        QCOMPARE(dateColour(), QColor(Qt::red));
        QVERIFY(driver().Click(QStringLiteral("disconnectButton0")));
        QTRY_COMPARE(driver().Text(QStringLiteral("calibrationDate"), QStringLiteral("value")), QString());
        QVERIFY(dateColour() != QColor(Qt::red));

        // The page's three choices; looking at them is no edit.
        QObject* const page = scenario().PageViewModel();
        QVERIFY(driver().Click(QStringLiteral("serialSettingsTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("baudRateBoxBox")));
        QVERIFY(!page->property("HasUnsavedParameter").toBool());
        QVERIFY(driver().Choose(QStringLiteral("baudRateBox"), 6));
        QCOMPARE(page->property("SelectedBaudrateIndex").toInt(), 6);
        QVERIFY(page->property("HasUnsavedParameter").toBool());
        QVERIFY(page->setProperty("SelectedBaudrateIndex", 4));
        QCOMPARE(driver().Find(QStringLiteral("baudRateBoxBox"))->property("currentText").toString(),
                 QStringLiteral("2400"));
        QVERIFY(driver().Choose(QStringLiteral("baudRateBox"), 11));
        // The machine need not have ports.
        QVERIFY(driver()
                    .Find(QStringLiteral("serialPortBox"))
                    ->setProperty("model", QStringList{QStringLiteral("portA"), QStringLiteral("portB")}));
        QVERIFY(driver().Choose(QStringLiteral("serialPortBox"), 1));
        QCOMPARE(page->property("SelectedSerialPortNameIndex").toInt(), 1);
        QVERIFY(page->setProperty("SelectedSerialPortNameIndex", 0));
        QCOMPARE(driver().Find(QStringLiteral("serialPortBoxBox"))->property("currentText").toString(),
                 QStringLiteral("portA"));
        QVERIFY(driver().Click(QStringLiteral("instrumentTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("defaultInstrumentBoxBox")));
        QCOMPARE(page->property("SelectedDefaultInstrumentIndex").toInt(), 1);
        QVERIFY(driver().Choose(QStringLiteral("defaultInstrumentBox"), 2));
        QCOMPARE(page->property("SelectedDefaultInstrumentIndex").toInt(), 2);
        QVERIFY(driver().Click(QStringLiteral("saveConnectionButton")));
        QVERIFY(!page->property("HasUnsavedParameter").toBool());
        CSettings settings(QStringLiteral("/nowhere"));
        const CConnectionPageSettings stored(&settings);
        QCOMPARE(stored.BaudRate(), QStringLiteral("115200"));
        QCOMPARE(stored.InstrumentName(), QStringLiteral("Simulated instrument"));
        QCOMPARE(stored.InstrumentSerialNumber(), QStringLiteral("SIM-0002"));
        QVERIFY(scenario().CloseWindow());
    }

    void logDialog()
    {
        // The dialogs must not burst with the font of the desktop.
        QFont desktopFont = QGuiApplication::font();
        desktopFont.setPointSize(18);
        QGuiApplication::setFont(desktopFont);
        scenario().Start(Scenario::Shipped);
        CMainViewModel& shell = *scenario().Application()->MainViewModel();
        CLogFilterProxyModel* const proxy = shell.LogMessageProxy();
        // More than the dialog can show, and a line of each level.
        for (int i = 0; i < 30; ++i)
            qDebug("filler");
        qDebug("of debug");
        qInfo("of info");
        qWarning("of warning");
        qCritical("of critical");
        // Through the handler it would end the program.
        const auto fatal = QSharedPointer<CLogMessage>::create();
        fatal->SetLevel(CLogMessage::FATAL);
        fatal->SetMessage(QStringLiteral("of fatal"));
        shell.LogMessageList()->Append(fatal);

        // The status bar's line is the last message at or above the level.
        const auto info = [this] {
            return driver().Text(QStringLiteral("statusInfo"), QStringLiteral("value"));
        };
        QVERIFY2(
            QRegularExpression(QStringLiteral("^\\[CRIT\\] \\d{4}-\\d\\d-\\d\\dT[\\d:.]{12} - of critical$"))
                .match(info())
                .hasMatch(),
            qPrintable(info()));

        QVERIFY(driver().Click(QStringLiteral("openLogButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("logMessageList")));
        QQuickItem* list = driver().Find(QStringLiteral("logMessageList"));
        QTRY_VERIFY(list->property("count").toInt() > 35);
        QTRY_VERIFY(driver().FindPopup(QStringLiteral("logDialog"))->property("opened").toBool());
        const auto* const header =
            driver().FindPopup(QStringLiteral("logDialog"))->property("header").value<QQuickItem*>();
        QVERIFY(header);
        QCOMPARE(header->property("font").value<QFont>().pointSize(), 9);
        QVERIFY(list->property("contentHeight").toReal() > list->height());
        QVERIFY(list->property("atYEnd").toBool());

        const int last = list->property("count").toInt() - 1;
        QCOMPARE(proxy->index(last, 0).data(CLogMessageList::MessageRole).toString(),
                 QStringLiteral("of fatal"));
        const auto line = [](const char* text) { return QString::fromLatin1(text).split(QLatin1Char(',')); };
        QTRY_COMPARE(logRow(last), line("Fatal,of fatal,#a9a9a9,Error.svg,#ff0000"));
        QCOMPARE(logRow(last - 1), line("Critical,of critical,#c0c0c0,Error.svg,#ff0000"));
        QCOMPARE(logRow(last - 2), line("Warning,of warning,#d3d3d3,Warning.svg,#ffff00"));
        QCOMPARE(logRow(last - 3), line("Info,of info,#dcdcdc,Info.svg,#000000"));
        QCOMPARE(logRow(last - 4), line("Debug,of debug,#ffffff,Info.svg,#808080"));

        // The level goes both ways.
        QCOMPARE(proxy->MinLevel(), 0);
        QVERIFY(driver().Choose(QStringLiteral("logLevelBox"), 3));
        QCOMPARE(proxy->MinLevel(), 3);
        QTRY_COMPARE(list->property("count").toInt(), 2);
        qWarning("below the level");
        QVERIFY(info().endsWith(QStringLiteral("of critical")));
        proxy->SetMinLevel(2);
        QCOMPARE(driver().Find(QStringLiteral("logLevelBoxBox"))->property("currentText").toString(),
                 QStringLiteral("Warning"));
        QTRY_VERIFY(list->property("count").toInt() >= 4);
        proxy->SetMinLevel(0);
        QCOMPARE(driver().Find(QStringLiteral("logLevelBoxBox"))->property("currentIndex").toInt(), 0);

        QVERIFY(driver().Find(QStringLiteral("logSearchField"))->width() > 300);
        QVERIFY(driver().Click(QStringLiteral("logSearchField")));
        driver().Type(QStringLiteral("oxygen mono"));
        QTRY_COMPARE(list->property("count").toInt(), 1);
        QVERIFY(driver().Click(QStringLiteral("logCloseButton")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("logMessageList")));
        QVERIFY(scenario().CloseWindow());
    }

    void toolTipColour()
    {
        scenario().Start(Scenario::Shipped);
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

        // With the mouse over an item the page goes: once its tool tip is open, and once while it is due.
        // Then the tool tip must not seek a window for an item that has none.
        constexpr int kPastTheDelayMs = 1200;
        CMainViewModel& shell = *scenario().Application()->MainViewModel();
        for (const bool isOpen : {true, false}) {
            shell.displaySettingsPage();
            QVERIFY(driver().WaitFor(QStringLiteral("storagePathSelectorText")));
            QQuickItem* const field = driver().Find(QStringLiteral("storagePathSelectorText"));
            QTest::mouseMove(driver().Window(), QPoint(300, 5));
            QTRY_VERIFY(!ofToolTip(QStringLiteral("visible")).toBool());
            QTest::mouseMove(driver().Window(), WindowDriver::Middle(field));
            QTRY_VERIFY(field->property("hovered").toBool());
            if (isOpen)
                QTRY_VERIFY(ofToolTip(QStringLiteral("opened")).toBool());
            shell.displayInstrumentSelectionPage();
            // As on a busy machine the page is out of the window, and not yet deleted.
            QElapsedTimer clock;
            clock.start();
            while (!isOpen && clock.elapsed() < kPastTheDelayMs)
                QCoreApplication::processEvents(QEventLoop::AllEvents, kPastTheDelayMs);
            QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        }
        QVERIFY(!ofToolTip(QStringLiteral("visible")).toBool());
        QVERIFY(scenario().CloseWindow());
    }

    void keyboardAlone()
    {
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
        QVERIFY(QTest::qWaitForWindowActive(driver().Window(), kLongWaitMs));
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
        QVERIFY(scenario().CloseWindow());
    }

    void keyboardReachesEverything()
    {
        startWithDefaultInstrument();
        QVERIFY(QTest::qWaitForWindowActive(driver().Window(), kLongWaitMs));
        for (const char* title : {"alarmBoxTitle", "saveImportParametersBoxTitle"})
            QVERIFY2(driver().Click(QLatin1String(title)), title);
        walk("meter/componentTab");
        QVERIFY(driver().Click(QStringLiteral("plotTab")));
        QVERIFY(driver().Click(QStringLiteral("filterBoxTitle")));
        QVERIFY(driver().Click(QStringLiteral("autoScalingButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("yRangeSlider")));
        walk("meter/plotTab");
        makeRecord(2);
        walk("meter/plotTab with a record");
        walkTab("meter", "tableTab");
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("endButton")));

        openPage("spectrumMenuButton", "spectrumPage");
        walkTab("spectrum", "plotTab");
        walkTab("spectrum", "tableTab");
        openPage("acAnalysisMenuButton", "acAnalysisPage");
        walkTab("AC analysis", "plotTab");
        walkTab("AC analysis", "tableTab");
        openPage("mappingMenuButton", "mappingPage");
        for (const char* tab : {"numericTab", "plotTab", "tableTab", "vectorTab"})
            walkTab("mapping", tab);
        openPage("settingsButton", "settingsPage");
        walk("settings");
        openPage("instrumentSelectionButton", "instrumentSelectionPage");
        walkTab("selection", "instrumentTab");
        walkTab("selection", "serialSettingsTab");
        QCOMPARE(m_problems, QStringList());
        QVERIFY(scenario().CloseWindow());
    }

    void keyboardReachesDialogsAndDrawers()
    {
        startWithDefaultInstrument();
        QVERIFY(QTest::qWaitForWindowActive(driver().Window(), kLongWaitMs));
        const auto walkDialog = [this](const char* button, const char* dialog) {
            QVERIFY2(driver().Click(QLatin1String(button)), button);
            QObject* popup = driver().FindPopup(QLatin1String(dialog));
            QVERIFY2(popup, dialog);
            QTRY_VERIFY2(popup->property("opened").toBool(), dialog);
            walk(dialog, driver().Window(),
                 qvariant_cast<QQuickItem*>(popup->property("contentItem"))->parentItem());
            driver().Key(Qt::Key_Escape);
            QTRY_VERIFY2(!popup->property("visible").toBool(), dialog);
        };
        walkDialog("zeroOffsetButton", "zeroOffsetDialog");
        walkDialog("openLogButton", "logDialog");

        CApplication* const application = scenario().Application();
        application->OnNewVersionAvailable(QStringLiteral("9.9"));
        auto* const news = qobject_cast<QQuickWindow*>(application->QmlEngine()->rootObjects().last());
        QVERIFY(news && news != driver().Window());
        news->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(news, kLongWaitMs));
        walk("newSoftwareVersionDialog", news);
        news->close();

        driver().Window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(driver().Window(), kLongWaitMs));
        driver().Window()->resize(954, 698);
        QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
        walk("meter in the small window");
        // The drawer folds when the keyboard leaves it, so its way is one to and fro.
        QVERIFY(driver().TabTo(QStringLiteral("parametersMenuToggle")));
        driver().Key(Qt::Key_Space);
        QVERIFY(driver().WaitFor(QStringLiteral("measurementBoxTitle")));
        QStringList inDrawer;
        while (application->MainViewModel()->ParameterMenuExpanded() && inDrawer.size() < 30) {
            driver().Key(Qt::Key_Tab);
            const QQuickItem* item = driver().Window()->activeFocusItem();
            inDrawer << (item ? item->objectName() : QString());
        }
        for (const char* name : {"measurementBoxTitle", "unitsComboBoxBox", "averagingFieldText",
                                 "defaultButton", "alarmBoxTitle", "saveImportParametersBoxTitle"})
            QVERIFY2(inDrawer.contains(QLatin1String(name)), name);
        QVERIFY(!driver().IsVisible(QStringLiteral("measurementBoxTitle")));
        QCOMPARE(m_problems, QStringList());
        QVERIFY(scenario().CloseWindow());
    }

    void smallLayout()
    {
        const auto drawerWidth = [this] {
            QObject* drawer = driver().FindPopup(QStringLiteral("menuDrawer"));
            return drawer ? drawer->property("width").toReal() : -1;
        };
        QVERIFY(setWorkArea(1094, 837));
        startWithDefaultInstrument();
        QQuickWindow* const window = driver().Window();
        QTRY_COMPARE(window->visibility(), QWindow::Maximized);
        const auto startOn = [&](int width, int height) {
            window->showNormal();
            QVERIFY(QTest::qWaitFor([&] { return window->visibility() == QWindow::Windowed; }));
            QVERIFY(setWorkArea(width, height));
            window->resize(1024, 768);
            window->setProperty("initialize", false);
            QVERIFY(QMetaObject::invokeMethod(window, "isSmallWindowSize"));
        };
        startOn(1093, 838);
        QCOMPARE(window->visibility(), QWindow::Maximized);
        startOn(1094, 838);
        QCOMPARE(window->visibility(), QWindow::Windowed);
        QCOMPARE(window->size(), QSize(1094, 838));
        // Only the start counts.
        window->resize(1024, 768);
        QCOMPARE(window->visibility(), QWindow::Windowed);

        window->resize(954, 698);
        QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
        QVERIFY(!driver().IsVisible(QStringLiteral("meterMenuButton")));
        driver().Window()->resize(1025, 768);
        QVERIFY(driver().WaitFor(QStringLiteral("meterMenuButton")));
        driver().Window()->resize(1024, 768);
        QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
        QVERIFY(driver().Click(QStringLiteral("smallMenuToggle")));
        QTRY_VERIFY(scenario().Application()->MainViewModel()->PageMenuExpanded());
        QTRY_COMPARE(drawerWidth(), 180.0);
        // A press on the page folds the menu again.
        QTest::mouseClick(driver().Window(), Qt::LeftButton, {}, QPoint(600, 600));
        QTRY_VERIFY(!scenario().Application()->MainViewModel()->PageMenuExpanded());
        QTRY_COMPARE(drawerWidth(), 60.0);
        QVERIFY(driver().IsVisible(QStringLiteral("smallHelpButton")));
        QVERIFY(driver().IsVisible(QStringLiteral("smallInstrumentSelectionButton")));
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndWindow)
#include "tst_EndToEndWindow.moc"
