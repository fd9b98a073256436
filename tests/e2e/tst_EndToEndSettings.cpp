// SPDX-License-Identifier: GPL-3.0-or-later
// The settings page, and the dialog about a new version.
#include "CApplication.h"
#include "CurlDetour.h"
#include "EndToEndTest.h"
#include "VersionServer.h"

#include <QDesktopServices>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

class tst_EndToEndSettings : public EndToEndTest
{
    Q_OBJECT

public slots:
    void takeUrl(const QUrl& url) { m_openedUrls << url.toString(); }

private slots:
    void settingsPageShowsAndSaves()
    {
        openSettings();
        CSettings* const settings = scenario().Application()->Settings();
        // The CSV side file counts at once, and is nothing that could be lost: the page is left without a
        // question.
        click("saveCsvBox");
        QVERIFY(settings->SaveRecordingsAsCsv());
        QVERIFY(!scenario().PageViewModel()->property("HasUnsavedParameter").toBool());
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("meterPage")));
        QVERIFY(!CSettings(QStringLiteral("/nowhere")).SaveRecordingsAsCsv());
        QVERIFY(driver().Click(QStringLiteral("settingsButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("settingsPage")));

        QCOMPARE(fieldText("logLinesField"), QStringLiteral("200"));
        QCOMPARE(fieldText("measurementPointsField"), QStringLiteral("120000"));
        QCOMPARE(driver().Text(QStringLiteral("storagePathSelectorText")), settings->DefaultStoragePath());

        // Opening the page is no edit.
        QVERIFY(!scenario().PageViewModel()->property("HasUnsavedParameter").toBool());
        type("logLinesField", "300");
        QCOMPARE(settings->LogMaxHistoryCount(), 300U);
        type("measurementPointsField", "5000");
        QCOMPARE(settings->MeasurementMaxMeasurementCount(), quint64(5000));
        type("mappingPointsField", "-7");
        QCOMPARE(settings->MappingMaxMeasurementCount(), quint64(1000000));
        click("checkForUpdatesBox");
        QVERIFY(!settings->CheckForNewVersion());

        // The page is not left without a question.
        answers().ExpectMessage(QStringLiteral("Are you sure you want to quit the current page ?"),
                                QMessageBox::Cancel);
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QTRY_VERIFY(answers().IsDone());
        QVERIFY(driver().IsVisible(QStringLiteral("settingsPage")));

        answers().ExpectMessage(QStringLiteral("Restart application"), QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("saveSettingsButton")));
        QTRY_VERIFY(answers().IsDone());
        const CSettings stored(QStringLiteral("/nowhere"));
        QCOMPARE(stored.LogMaxHistoryCount(), 300U);
        QCOMPARE(stored.MeasurementMaxMeasurementCount(), quint64(5000));
        QVERIFY(!stored.CheckForNewVersion());
        QVERIFY(stored.SaveRecordingsAsCsv());

        answers().ExpectMessage(QStringLiteral("Are you sure you want to restore the factory settings ?"),
                                QMessageBox::Ok);
        answers().ExpectMessage(QStringLiteral("Restart application"), QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("restoreDefaultsButton")));
        QTRY_VERIFY(answers().IsDone());
        QTRY_COMPARE(fieldText("logLinesField"), QStringLiteral("200"));
        QVERIFY(settings->CheckForNewVersion());
        QVERIFY(settings->SaveRecordingsAsCsv());
        QVERIFY(driver().Click(QStringLiteral("instrumentSelectionButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QVERIFY(scenario().CloseWindow());
    }

    void settingsPageChangesTheRunningProgram()
    {
        openSettings();
        CSettings* const settings = scenario().Application()->Settings();
        QVERIFY(driver().IsVisible(QStringLiteral("meterMenuButton")));
        click("enableMeterBox");
        QVERIFY(!settings->EnableMeterMode());
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("meterMenuButton")));
        QVERIFY(!driver().IsVisible(QStringLiteral("meterZoomField")));
        click("enableMeterBox");
        QTRY_VERIFY(driver().IsVisible(QStringLiteral("meterMenuButton")));

        // In the menu of the small window as well.
        const QSize wide = driver().Window()->size();
        for (const char* mode : {"Meter", "Spectrum", "AcAnalysis", "Mapping"}) {
            const QString wideButton =
                QString::fromLatin1(mode).replace(0, 1, QChar::fromLatin1(*mode).toLower()) +
                QStringLiteral("MenuButton");
            const QString smallButton = QStringLiteral("small%1MenuButton").arg(QLatin1String(mode));
            const QByteArray property = QByteArray("Enable") + mode + "Mode";
            QVERIFY(settings->setProperty(property, false));
            QTRY_VERIFY2(!driver().IsVisible(wideButton), mode);
            driver().Window()->resize(954, 698);
            QTRY_VERIFY(driver().IsVisible(QStringLiteral("smallMenuToggle")));
            QVERIFY2(!driver().IsVisible(smallButton), mode);
            QVERIFY(settings->setProperty(property, true));
            QTRY_VERIFY2(driver().IsVisible(smallButton), mode);
            driver().Window()->resize(wide);
            QTRY_VERIFY2(driver().IsVisible(wideButton), mode);
        }

        settings->SetMapping3DZoomLevel(45);
        QTRY_COMPARE(fieldText("mappingZoomField"), QStringLiteral("45.000"));
        type("meterZoomField", "70");
        QCOMPARE(settings->Meter3DZoomLevel(), 70.0);
        type("mappingZoomField", "80");
        QCOMPARE(settings->Meter3DZoomLevel(), 80.0);
        QCOMPARE(settings->Mapping3DZoomLevel(), 45.0);
        click("meterOrthoBox");
        QVERIFY(settings->Meter3DOrthoProjection());
        QVERIFY(!settings->Mapping3DOrthoProjection());
        click("mappingOrthoBox");
        QVERIFY(settings->Mapping3DOrthoProjection());
        choose("meterCameraBox", Qt::Key_Down);
        QCOMPARE(int(settings->Meter3DCameraPreset()), 15);
        choose("mappingCameraBox", Qt::Key_Up);
        QCOMPARE(int(settings->Mapping3DCameraPreset()), 13);
        choose("mappingAxisBox", Qt::Key_Up);
        QCOMPARE(int(settings->Mapping2DPlotHorizontalAxisType()), 2);

        click("enableMappingBox");
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("mappingZoomField")));
        // Nothing of this is asked about when the page is left.
        QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("meterPage")));
        QVERIFY(scenario().CloseWindow());
    }

    void folderIsChosenAndShortened()
    {
        openSettings();
        QQuickItem* const selector = driver().Find(QStringLiteral("storagePathSelector"));
        QVERIFY(selector);
        const QString folder = QStringLiteral("/data/") + QString(80, QLatin1Char('x'));
        for (int i = 0; i < 2; ++i) {
            QVERIFY(QMetaObject::invokeMethod(selector, "acceptUrl",
                                              Q_ARG(QVariant, QUrl::fromLocalFile(folder))));
            QCOMPARE(scenario().Application()->Settings()->DefaultStoragePath(), folder);
            QCOMPARE(driver().Text(QStringLiteral("storagePathSelectorText")),
                     QStringLiteral(".../") + QString(80, QLatin1Char('x')));
            QVERIFY(QMetaObject::invokeMethod(scenario().PageViewModel(), "restore"));
            // There is no file yet: what was chosen stays.
            scenario().Application()->Settings()->SetDefaultStoragePath(QStringLiteral("/data"));
            scenario().PageViewModel()->setProperty("DefaultStoragePath", QStringLiteral("/data"));
        }
        answers().ExpectMessage(QStringLiteral("Are you sure you want to quit the current page ?"),
                                QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("instrumentSelectionButton")));
        QTRY_VERIFY(answers().IsDone());
        QVERIFY(scenario().CloseWindow());
    }

    void settingsByKeyboard()
    {
        openSettings();
        driver().Window()->resize(954, 698);
        QTRY_VERIFY(driver().IsVisible(QStringLiteral("smallSettingsButton")));
        QQuickItem* const view = driver().Find(QStringLiteral("settingsView"));
        for (const char* name : {"storagePathSelectorButton", "checkForUpdatesBox", "logLinesFieldText",
                                 "mappingOrthoBox", "websiteLink", "saveSettingsButton"}) {
            QVERIFY2(driver().TabTo(QLatin1String(name)), name);
            QQuickItem* const item = driver().Find(QLatin1String(name));
            if (qstrcmp(name, "saveSettingsButton") == 0)
                break;
            // What has the focus is in view.
            const QRectF seen = item->mapRectToItem(view, QRectF(0, 0, item->width(), item->height()));
            QVERIFY2(seen.top() >= 0 && seen.bottom() <= view->height(), name);
        }
        QVERIFY(scenario().CloseWindow());
    }

    void linksOfTheProgram()
    {
        openSettings();
        QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "takeUrl");
        QDesktopServices::setUrlHandler(QStringLiteral("mailto"), this, "takeUrl");
        for (const char* name : {"contactLink", "websiteLink"}) {
            QVERIFY2(driver().TabTo(QLatin1String(name)), name);
            driver().Key(Qt::Key_Return);
        }
        QCOMPARE(m_openedUrls, (QStringList{QStringLiteral("mailto:contact@norvane.invalid"),
                                            QStringLiteral("https://www.norvane.invalid")}));

        // Beside them is who the program is.
        QCOMPARE(driver().Text(QStringLiteral("aboutText")), QStringLiteral("Norvane Kestrix v1.2.4"));
        QVERIFY(driver().Text(QStringLiteral("legalText")).contains(QStringLiteral("without any warranty")));
        QQuickItem* const logo = driver().Find(QStringLiteral("aboutLogo"));
        QVERIFY(logo);
        QCOMPARE(logo->property("source").toUrl(),
                 QUrl(QStringLiteral("qrc:///Resources/Images/Norvane.svg")));
        QCOMPARE(logo->width(), 140.0);
        QCOMPARE(logo->property("paintedWidth").toReal(), 140.0);
        QVERIFY(logo->property("paintedHeight").toReal() > 10);
        QVERIFY(scenario().CloseWindow());
    }

    void newVersionIsSkipped()
    {
        startWithNewVersion("1.3");
        WindowDriver dialog(newVersionWindow());
        QCOMPARE(dialog.Window()->title(), QStringLiteral("Software update available"));
        QCOMPARE(dialog.Window()->width(), 400);
        QVERIFY(dialog.Window()->height() >= 150);
        QVERIFY(dialog.WaitFor(QStringLiteral("newVersionText")));
        QCOMPARE(dialog.Text(QStringLiteral("newVersionText")),
                 QStringLiteral("The new version 1.3 of this software is available."));
        QCOMPARE(dialog.Find(QStringLiteral("newVersionLink"))->property("text").toString(),
                 QStringLiteral("Please visit <a href=\"https://www.norvane.invalid/download\">"
                                "norvane.invalid</a> to get the latest version."));
        QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "takeUrl");
        QVERIFY(dialog.TabTo(QStringLiteral("newVersionLink")));
        dialog.Key(Qt::Key_Return);
        QCOMPARE(m_openedUrls, QStringList{QStringLiteral("https://www.norvane.invalid/download")});

        QVERIFY(dialog.Click(QStringLiteral("skipVersionButton")));
        QTRY_VERIFY(!dialog.Window()->isVisible());
        QCOMPARE(CSettings(QStringLiteral("/nowhere")).IgnoreSpecificVersion(), QStringLiteral("1.3"));

        // From now on only a later one is told.
        CApplication* const application = scenario().Application();
        const int numWindows = application->QmlEngine()->rootObjects().size();
        application->OnNewVersionAvailable(QStringLiteral("1.3"));
        QCOMPARE(application->QmlEngine()->rootObjects().size(), numWindows);
        application->OnNewVersionAvailable(QStringLiteral("1.4"));
        QCOMPARE(application->QmlEngine()->rootObjects().size(), numWindows + 1);
        QVERIFY(scenario().CloseWindow());
    }

    void newVersionIsIgnored()
    {
        startWithNewVersion("1.3");
        WindowDriver dialog(newVersionWindow());
        QVERIFY(dialog.Click(QStringLiteral("ignoreVersionButton")));
        QTRY_VERIFY(!dialog.Window()->isVisible());
        QCOMPARE(scenario().Application()->Settings()->IgnoreSpecificVersion(), QString());
        QVERIFY(scenario().CloseWindow());
    }

    void ignoredVersionIsNotTold()
    {
        Scenario::WriteApplicationSettings(
            QStringLiteral("<IgnoreSpecificVersion>1.3</IgnoreSpecificVersion>"));
        startWithNewVersion("1.3");
        QCOMPARE(CurlDetour::NumTransfers(), 1);
        QVERIFY(!newVersionWindow());
        QVERIFY(!newVersion().isValid());
        QVERIFY(scenario().CloseWindow());
    }

    void checkThatIsOff()
    {
        Scenario::WriteApplicationSettings(QStringLiteral("<CheckForNewVersion>0</CheckForNewVersion>"));
        startWithNewVersion("1.3");
        QCOMPARE(CurlDetour::NumHandles(), 0);
        QVERIFY(!newVersionWindow());
        QVERIFY(scenario().CloseWindow());
    }

    void checkThatFails()
    {
        scenario().Start(Scenario::Shipped);
        QCOMPARE(CurlDetour::NumTransfers(), 1);
        QVERIFY(!newVersionWindow());
        QVERIFY(scenario().LogText().contains(QStringLiteral("VersionChecker: CURL error: ")));
        QVERIFY(scenario().CloseWindow());
    }

private:
    void openSettings()
    {
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().Click(QStringLiteral("settingsButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("settingsPage")));
    }

    QString fieldText(const char* field) const
    {
        return const_cast<tst_EndToEndSettings*>(this)->driver().Text(QLatin1String(field) +
                                                                      QLatin1String("Text"));
    }

    /// Enters a number in a field that need not be in view.
    void type(const char* field, const char* text)
    {
        const QString name = QLatin1String(field) + QLatin1String("Text");
        QVERIFY2(driver().TabTo(name), field);
        driver().Type(QLatin1String(text));
        driver().Key(Qt::Key_Return);
    }

    void click(const char* box)
    {
        QVERIFY2(driver().TabTo(QLatin1String(box)), box);
        driver().Key(Qt::Key_Space);
    }

    void choose(const char* box, Qt::Key key)
    {
        QVERIFY2(driver().TabTo(QLatin1String(box)), box);
        driver().Key(key);
    }

    void startWithNewVersion(const QByteArray& version)
    {
        QVERIFY2(m_server.IsRunning(), m_server.Error().constData());
        QVERIFY(m_server.Write("list", "<Root><Header><Version>1.0</Version></Header><Products><Kestrix>"
                                       "<Software>" +
                                           version + "</Software></Kestrix></Products></Root>"));
        CurlDetour::TrustAuthority(m_server.AuthorityPath());
        CurlDetour::SendTo(m_server.Url("good", "/file/list"));
        scenario().Start(Scenario::Shipped);
    }

    QVariant newVersion()
    {
        return scenario().Application()->QmlEngine()->rootContext()->contextProperty(
            QStringLiteral("NewVersion"));
    }

    QQuickWindow* newVersionWindow()
    {
        const QList<QObject*> roots = scenario().Application()->QmlEngine()->rootObjects();
        return roots.size() < 2 ? nullptr : qobject_cast<QQuickWindow*>(roots.at(1));
    }

    VersionServer m_server;
    QStringList m_openedUrls;
};

END_TO_END_MAIN(tst_EndToEndSettings)
#include "tst_EndToEndSettings.moc"
