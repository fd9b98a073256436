// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "CSettingsPageViewModel.h"
#include "MainViewModelFixture.h"
#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

const char kPageQuestion[] =
    "Are you sure you want to quit the current page ?|All unsaved settings will be lost";

} // namespace

/// The settings page among the others, and the version that is ignored.
class tst_CMainViewModelSettings : public QObject, private MainViewModelFixture
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(SettingsDirectoryPath));
        // What an earlier run has left.
        QFile::remove(SettingsDirectoryPath + QStringLiteral("/KestrixApplicationSettings.xml"));
        ApplicationDirPath = QStringLiteral("/opt/app");
        CApplication::Instance();
    }
    void cleanupTestCase()
    {
        CApplication::Instance()->onAboutToQuit();
        deleteDeferred();
    }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void settingsPage();
    void endsTheOperation();
    void asksAboutUnsavedConnectionChoices();
    void asksAboutUnsavedData();
    void isMadeAnewWithoutAQuestion();
    void unsavedSettingsAreAskedAbout_data();
    void unsavedSettingsAreAskedAbout();
    void instrumentLostWhileABoxIsOpen();
    void ignoresAVersion();
};

void tst_CMainViewModelSettings::settingsPage()
{
    m_main->displayInstrumentSelectionPage();
    QStringList changes;
    connect(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged, this,
            [&](bool value) { changes << (value ? QStringLiteral("unload") : QStringLiteral("load")); });
    connect(m_main.get(), &CMainViewModel::LoaderSourceChanged, this,
            [&](const QString& value) { changes << value; });
    const QPointer<CPageViewModel> old = m_main->pActivePageViewModel();
    m_main->displaySettingsPage();
    QCOMPARE(changes, (QStringList{QStringLiteral("unload"), QStringLiteral("Pages/SettingsPage.qml"),
                                   QStringLiteral("load")}));
    auto* page = qobject_cast<CSettingsPageViewModel*>(m_main->pActivePageViewModel());
    QVERIFY(page);
    QCOMPARE(contextObject("ActivePageViewModel"), page);
    QCOMPARE(contextObject("SettingsPageViewModel"), page);
    QVERIFY(old);
    deleteDeferred();
    QVERIFY(!old);
}

void tst_CMainViewModelSettings::endsTheOperation()
{
    m_main->displayMeterPage();
    QVERIFY(m_operations->GetActiveOperation());
    m_main->displaySettingsPage();
    QVERIFY(!m_operations->GetActiveOperation());
}

void tst_CMainViewModelSettings::asksAboutUnsavedConnectionChoices()
{
    m_main->displayInstrumentSelectionPage();
    m_main->pActivePageViewModel()->SetHasUnsavedParameter(true);
    BoxAnswers answers({QMessageBox::Cancel, QMessageBox::Ok});
    m_main->displaySettingsPage();
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    m_main->displaySettingsPage();
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Settings"));
    QCOMPARE(answers.texts, (QStringList{QLatin1String(kPageQuestion), QLatin1String(kPageQuestion)}));
}

void tst_CMainViewModelSettings::asksAboutUnsavedData()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    operation()->StartSession();
    BoxAnswers answers({QMessageBox::Cancel, QMessageBox::Ok});
    m_main->displaySettingsPage();
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("MeterOperation"));
    m_main->displaySettingsPage();
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Settings"));
    QCOMPARE(answers.texts, (QStringList{QLatin1String(kQuitQuestion), QLatin1String(kQuitQuestion)}));
}

void tst_CMainViewModelSettings::isMadeAnewWithoutAQuestion()
{
    m_main->displaySettingsPage();
    CSettings* const settings = CApplication::Instance()->Settings();
    settings->WriteToFile();
    const QPointer<CPageViewModel> old = m_main->pActivePageViewModel();
    static_cast<CSettingsPageViewModel*>(old.data())->SetLogMaxHistoryCount(3);
    BoxAnswers answers;
    m_main->displaySettingsPage();
    QCOMPARE(answers.texts, QStringList());
    QVERIFY(m_main->pActivePageViewModel() != old);
    QCOMPARE(m_main->pActivePageViewModel()->property("LogMaxHistoryCount").toUInt(), 200U);
}

void tst_CMainViewModelSettings::unsavedSettingsAreAskedAbout_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("to the meter") << QByteArray("displayMeterPage");
    QTest::newRow("to the instruments") << QByteArray("displayInstrumentSelectionPage");
}

void tst_CMainViewModelSettings::unsavedSettingsAreAskedAbout()
{
    QFETCH(QByteArray, slot);
    m_main->displaySettingsPage();
    m_main->pActivePageViewModel()->setProperty("SaveRecordingsAsCsv", true);
    QVERIFY(!m_main->pActivePageViewModel()->HasUnsavedParameter());
    m_main->pActivePageViewModel()->setProperty("LogMaxHistoryCount", 5);
    BoxAnswers answers({QMessageBox::Cancel, QMessageBox::Ok});
    QVERIFY(QMetaObject::invokeMethod(m_main.get(), slot.constData()));
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Settings"));
    QVERIFY(QMetaObject::invokeMethod(m_main.get(), slot.constData()));
    QVERIFY(m_main->pActivePageViewModel()->Name() != QLatin1String("Settings"));
    QCOMPARE(answers.texts, (QStringList{QLatin1String(kPageQuestion), QLatin1String(kPageQuestion)}));
    // What was not saved stays until the page is visited again.
    QCOMPARE(CApplication::Instance()->Settings()->LogMaxHistoryCount(), 5U);
}

void tst_CMainViewModelSettings::instrumentLostWhileABoxIsOpen()
{
    connectInstrument("1");
    m_main->displaySettingsPage();
    QPointer<CPageViewModel> page = m_main->pActivePageViewModel();
    BoxAnswers answers({QMessageBox::Ok});
    answers.whileOpen = [this] { m_supervisor->ClearActiveInstrument(); };
    QVERIFY(QMetaObject::invokeMethod(page, "save"));
    QVERIFY(page);
    QTRY_COMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
}

void tst_CMainViewModelSettings::ignoresAVersion()
{
    QSignalSpy changed(m_settings.get(), &CSettings::IgnoreSpecificVersionChanged);
    for (int i = 0; i < 2; ++i)
        QVERIFY(QMetaObject::invokeMethod(m_main.get(), "ignoreSoftwareUpdate",
                                          Q_ARG(QString, QStringLiteral("1.3"))));
    QCOMPARE(m_settings->IgnoreSpecificVersion(), QStringLiteral("1.3"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(CSettings(QStringLiteral("/nowhere")).IgnoreSpecificVersion(), QStringLiteral("1.3"));
}

QTEST_MAIN(tst_CMainViewModelSettings)
#include "tst_CMainViewModelSettings.moc"
