// SPDX-License-Identifier: GPL-3.0-or-later
// The window itself: start, menus, dialogs of the frame, keyboard.
#include "CApplication.h"
#include "EndToEndTest.h"
#include "KeyboardWalk.h"
#include "PatientWait.h"

#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickWindow>
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
        startWithDefaultInstrument();
        QCOMPARE(driver().Text(QStringLiteral("statusSerial"), QStringLiteral("value")), kSimulated);
        QVERIFY(driver().IsVisible(QStringLiteral("resumeButton")));
        QVERIFY(scenario().CloseWindow());
    }

    void logDialog()
    {
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().Click(QStringLiteral("openLogButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("logMessageList")));
        QQuickItem* list = driver().Find(QStringLiteral("logMessageList"));
        QTRY_VERIFY(list->property("count").toInt() > 3);
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
        startWithDefaultInstrument();
        driver().Window()->resize(954, 698);
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
