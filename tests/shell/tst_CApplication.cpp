// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "CConnectionPageSettings.h"
#include "CUtils.h"
#include "MetaObjectTable.h"
#include "SettingsDirectoryPath.h"
#include "ShellTestSupport.h"

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QMenu>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace MetaObjectTable;

/// Start, context, default instrument and end of the whole application, without its window.
class tst_CApplication : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void surface();
    void accessorKeepsOneObject();
    void firstRunWithoutPluginDirectory();
    void contextProperties();
    void typesForQml();
    void trayIcon();
    void startsAtOnceWithInstruments();
    void waitsForAPluginThatNeverReports();
    void connectsTheDefaultInstrument();
    void defaultInstrumentThatFails_data();
    void defaultInstrumentThatFails();
    void defaultInstrumentThatIsAbsent();
    void secondStartInTheSameProcess();

    void quitsInEveryState_data();
    void quitsInEveryState();
    void quitSavesTheParameters();
    void quitStopsThePlugins();
    void quitFromTheTray();
    void quitDuringTheStart();
    void windowsGoBeforeTheModels();
    void goneAfterQuit();

private:
    void usePlugins(const char* options)
    {
        QVERIFY(QFile::link(QStringLiteral(KESTRIX_TEST_PLUGINS_DIR),
                            m_folder->filePath(QStringLiteral("kestrix"))));
        qputenv("KESTRIX_FAKE", options);
    }

    static void storeDefaultInstrument(const char* serialNumber)
    {
        QVERIFY(QDir().mkpath(SettingsDirectoryPath));
        CSettings settings(ApplicationDirPath);
        CConnectionPageSettings(&settings).SaveConnectionSettings(
            QString(), QStringLiteral("9600"), QStringLiteral("Fake"), QString::fromLatin1(serialNumber));
    }

    void start()
    {
        m_application = CApplication::Instance();
        QElapsedTimer time;
        time.start();
        m_application->Initialize();
        m_startMs = time.elapsed();
    }

    void quit()
    {
        if (!m_application)
            return;
        m_application->onAboutToQuit();
        deleteDeferred();
    }

    QVariant context(const char* name) const
    {
        return m_application->QmlEngine()->rootContext()->contextProperty(QString::fromLatin1(name));
    }

    CInstrumentSupervisor* supervisor() const
    {
        return qobject_cast<CInstrumentSupervisor*>(context("InstrumentSupervisor").value<QObject*>());
    }

    COperationMeasure* operation() const
    {
        return qobject_cast<COperationMeasure*>(context("ActiveOperation").value<QObject*>());
    }

    QString pageName() const { return m_application->MainViewModel()->pActivePageViewModel()->Name(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QPointer<CApplication> m_application;
    qint64 m_startMs = 0;
};

void tst_CApplication::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    ApplicationDirPath = m_folder->path();
    // A fresh account: not even the parent of the settings directory exists.
    QVERIFY(QDir(QFileInfo(SettingsDirectoryPath).path()).removeRecursively());
    qunsetenv("KESTRIX_FAKE");
}

void tst_CApplication::cleanup()
{
    quit();
    m_folder.reset();
}

void tst_CApplication::surface()
{
    const QMetaObject& meta = CApplication::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"Settings", "CSettings*", Constant}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot,
                       {"onAboutToQuit()", "messageHandler(QtMsgType,QMessageLogContext,QString)",
                        "OnNewVersionAvailable(QString)"}));
}

void tst_CApplication::accessorKeepsOneObject()
{
    m_application = CApplication::Instance();
    QCOMPARE(CApplication::Instance(), m_application.data());
    QVERIFY(!m_application->parent());
    QCOMPARE(m_application->Settings()->InstrumentDriverPluginsPath(),
             m_folder->path() + QLatin1String("/kestrix/instrument"));
}

// The one start that waits for a list of instruments serves both questions.
void tst_CApplication::firstRunWithoutPluginDirectory()
{
    QVERIFY(!QFileInfo::exists(SettingsDirectoryPath));
    start();
    QVERIFY2(m_startMs >= 1990, qPrintable(QString::number(m_startMs)));
    QCOMPARE(pageName(), QStringLiteral("Connection"));
    QCOMPARE(m_application->MainViewModel()->LoaderSource(),
             QStringLiteral("Pages/InstrumentSelectionPage.qml"));
    QVERIFY(!supervisor()->HasActiveInstrument());

    QFile log(SettingsDirectoryPath + QLatin1String("/Kestrix.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll());
    QVERIFY(text.contains(QLatin1String(" - Unable to load any instrument plugins (")));
    for (const char* font : {"[DEBUG] ", " - Load font Oxygen. ID : ", " - Load font Oxygen Bold. ID : ",
                             " - Load font Oxygen Light. ID : ", " - Load font Oxygen Mono Regular. ID : "})
        QVERIFY2(text.contains(QLatin1String(font)), font);
    // The handler is installed by the second stage only.
    QVERIFY(!text.contains(QLatin1String("CApplication::CApplication() // thread")));
}

void tst_CApplication::contextProperties()
{
    usePlugins("");
    start();
    QCOMPARE(context("QtVerSix"), QVariant(false));
    QCOMPARE(context("QtVersion"), QVariant(QString::fromLatin1(qVersion())));
    QVERIFY(supervisor());
    QCOMPARE(context("OrganizationName"), QVariant(QStringLiteral("Norvane")));
    QCOMPARE(context("OrganizationLogo"), QVariant(QStringLiteral("qrc:///Resources/Images/Norvane.svg")));
    QCOMPARE(context("AppName"), QVariant(QStringLiteral("Kestrix")));
    QCOMPARE(context("Version"), QVariant(QStringLiteral("1.2.4")));
    for (const char* name : {"OrganizationWebsite", "OrganizationEmail", "SoftwareUpdateWebsite"})
        QVERIFY2(context(name).toString().contains(QLatin1Char('.')), name);
    QVERIFY(qobject_cast<CUtils*>(context("Utils").value<QObject*>()));
    QVERIFY(!context("Utils").value<QObject*>()->parent());
    QCOMPARE(context("Settings").value<QObject*>(), m_application->Settings());
    QVERIFY(context("debug").isValid());
    QVERIFY(context("debug").canConvert<QObject*>());
    QVERIFY(!context("debug").value<QObject*>());
    QCOMPARE(context("MainViewModel").value<QObject*>(), m_application->MainViewModel());
    QCOMPARE(context("ActivePageViewModel"), context("ConnectionPageViewModel"));
    for (const char* name : {"NewVersion", "ActiveOperation"})
        QVERIFY2(!context(name).isValid(), name);
}

void tst_CApplication::typesForQml()
{
    usePlugins("");
    start();
    QQmlComponent component(m_application->QmlEngine());
    component.setData("import QtQml 2.15\n"
                      "import Kestrix.CUnit 1.0\n"
                      "import Kestrix.CLogMessage 1.0\n"
                      "QtObject {\n"
                      "    property int unit: Unit.MICRO_TESLA\n"
                      "    property int level: LogMessageLevel.CRITICAL\n"
                      "    property Unit creatable: Unit {}\n"
                      "}\n",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("unit").toInt(), 3);
    QCOMPARE(object->property("level").toInt(), 3);

    QQmlComponent uncreatable(m_application->QmlEngine());
    uncreatable.setData("import Kestrix.CLogMessage 1.0\nLogMessageLevel {}\n", QUrl());
    QVERIFY(uncreatable.isError());
    QVERIFY(uncreatable.errorString().contains(QLatin1String("Cannot create LogMessageLevel in QML")));
}

void tst_CApplication::trayIcon()
{
    m_application = CApplication::Instance();
    const auto icons = m_application->findChildren<QSystemTrayIcon*>();
    QCOMPARE(icons.size(), 1);
    QCOMPARE(icons.first()->toolTip(), QStringLiteral("Kestrix"));
    QVERIFY(icons.first()->contextMenu());
    QVERIFY(!icons.first()->contextMenu()->parent());
    const QList<QAction*> actions = icons.first()->contextMenu()->actions();
    QCOMPARE(actions.size(), 1);
    QCOMPARE(actions.first()->text(), QStringLiteral("&Quit"));
    QCOMPARE(actions.first()->parent(), m_application.data());
}

void tst_CApplication::startsAtOnceWithInstruments()
{
    usePlugins("serialNumbers=A,B");
    start();
    QVERIFY2(m_startMs < 1500, qPrintable(QString::number(m_startMs)));
    QCOMPARE(pageName(), QStringLiteral("Connection"));
    QCOMPARE(supervisor()->AvailableInstruments().size(), 2);
    QVERIFY(!supervisor()->HasActiveInstrument());
}

void tst_CApplication::waitsForAPluginThatNeverReports()
{
    usePlugins("announceAtStart=0");
    storeDefaultInstrument("FAKE-1");
    start();
    QVERIFY(m_startMs >= 1990);
    QCOMPARE(pageName(), QStringLiteral("Connection"));
}

void tst_CApplication::connectsTheDefaultInstrument()
{
    usePlugins("serialNumbers=A,B");
    storeDefaultInstrument("B");
    start();
    QVERIFY2(m_startMs < 1500, qPrintable(QString::number(m_startMs)));
    QVERIFY(supervisor()->HasActiveInstrument());
    const QSharedPointer<CInstrument> instrument = supervisor()->Instrument().toStrongRef();
    QCOMPARE(instrument->SerialNumber(), QStringLiteral("B"));
    QCOMPARE(instrument->property("calls").toStringList(), QStringList{QStringLiteral("Connect")});
    QCOMPARE(pageName(), QStringLiteral("MeterOperation"));
    const CMainViewModel* main = m_application->MainViewModel();
    QCOMPARE(main->LoaderSource(), QStringLiteral("Pages/MeterPage.qml"));
    QCOMPARE(main->InstrumentModel(), QStringLiteral("FM2040"));
    QCOMPARE(main->InstrumentSerialNumber(), QStringLiteral("B"));
    QCOMPARE(main->InstrumentStatus(), QStringLiteral("Ready"));
    QCOMPARE(main->CurrentInstrument(), instrument.data());
    QVERIFY(operation());
    QCOMPARE(instrument->MeasurementParameters(),
             operation()->OperationParameters()->MeasurementParameters());
}

void tst_CApplication::defaultInstrumentThatFails_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::newRow("false") << QByteArray("connect=false");
    QTest::newRow("exception") << QByteArray("connect=throw");
}

void tst_CApplication::defaultInstrumentThatFails()
{
    QFETCH(QByteArray, options);
    usePlugins(options.constData());
    storeDefaultInstrument("FAKE-1");
    start();
    QVERIFY(!supervisor()->HasActiveInstrument());
    QCOMPARE(pageName(), QStringLiteral("Connection"));
    QCOMPARE(m_application->MainViewModel()->InstrumentModel(), QStringLiteral("--"));
}

void tst_CApplication::defaultInstrumentThatIsAbsent()
{
    usePlugins("serialNumbers=A");
    storeDefaultInstrument("B");
    start();
    QCOMPARE(pageName(), QStringLiteral("Connection"));
    QVERIFY(supervisor()->AvailableInstruments().first()->property("calls").toStringList().isEmpty());
}

void tst_CApplication::secondStartInTheSameProcess()
{
    usePlugins("");
    for (int i = 0; i < 2; ++i) {
        start();
        // With the handler installed on itself this would not come back.
        qInfo("in run %d", i);
        QFile log(SettingsDirectoryPath + QLatin1String("/Kestrix.log"));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray text = log.readAll();
        QCOMPARE(text.contains("in run 0"), i == 0);
        QCOMPARE(text.contains("in run 1"), i == 1);
        quit();
        QVERIFY(!m_application);
    }
}

void tst_CApplication::quitsInEveryState_data()
{
    QTest::addColumn<QByteArray>("options");
    QTest::addColumn<QString>("state");
    for (const char* state : {"created", "selection", "meter", "session", "held", "recording", "stopped",
                              "cleared instrument", "lost instrument"}) {
        for (const char* threaded : {"0", "1"}) {
            QTest::addRow("%s, threaded %s", state, threaded)
                << QByteArray("blockCount=-1;blockIntervalMs=1;threaded=") + threaded +
                       (qstrcmp(state, "lost instrument") == 0 ? ";vanishAfterMs=100" : "")
                << QString::fromLatin1(state);
        }
    }
}

void tst_CApplication::quitsInEveryState()
{
    QFETCH(QByteArray, options);
    QFETCH(QString, state);
    usePlugins(options.constData());
    if (state == QLatin1String("created")) {
        m_application = CApplication::Instance();
        quit();
        QVERIFY(!m_application);
        return;
    }
    if (state != QLatin1String("selection"))
        storeDefaultInstrument("FAKE-1");
    start();
    QPointer<CMainViewModel> main = m_application->MainViewModel();
    const QPointer<CPageViewModel> page = main->pActivePageViewModel();
    QPointer<CInstrument> instrument = main->CurrentInstrument();

    const auto call = [&](const char* method) { QVERIFY(QMetaObject::invokeMethod(page, method)); };
    const bool measures = state != QLatin1String("selection") && state != QLatin1String("meter");
    if (measures) {
        call("resume");
        QTRY_VERIFY(!operation()->GetDataSetEmpty());
    }
    if (state == QLatin1String("held"))
        call("hold");
    if (state == QLatin1String("recording") || state == QLatin1String("stopped")) {
        call("record");
        QTRY_VERIFY(operation()->GetUnsavedData());
    }
    if (state == QLatin1String("stopped"))
        call("stop");
    BoxAnswers answers({QMessageBox::Ok});
    if (state == QLatin1String("cleared instrument"))
        supervisor()->ClearActiveInstrument();
    if (state == QLatin1String("lost instrument"))
        QTRY_COMPARE(main->InstrumentModel(), QStringLiteral("--"));
    const int asked = answers.texts.size();

    quit();
    QCOMPARE(answers.texts.size(), asked);
    QVERIFY(!m_application);
    QVERIFY(!main);
    QVERIFY(!page);
    QVERIFY(!instrument);
}

void tst_CApplication::quitSavesTheParameters()
{
    usePlugins("");
    storeDefaultInstrument("FAKE-1");
    start();
    const QString file = SettingsDirectoryPath + QLatin1String("/KestrixMeasureSettings.xml");
    QFile::remove(file);
    quit();
    QVERIFY(QFile::exists(file));
    // The application's settings are written on request only.
    QVERIFY(!QFile::exists(SettingsDirectoryPath + QLatin1String("/KestrixApplicationSettings.xml")));
}

void tst_CApplication::quitStopsThePlugins()
{
    usePlugins("blockCount=-1;blockIntervalMs=1");
    storeDefaultInstrument("FAKE-1");
    start();
    QVERIFY(QMetaObject::invokeMethod(m_application->MainViewModel()->pActivePageViewModel(), "resume"));
    const QSharedPointer<CInstrument> instrument = supervisor()->Instrument().toStrongRef();
    QVERIFY(instrument->IsRunning());
    m_application->onAboutToQuit();
    QVERIFY(!instrument->IsRunning());
    QVERIFY(instrument->property("calls").toStringList().contains(QLatin1String("StopMeasurement")));
    // Nothing is deleted before the event loop: signals still on their way find their receivers.
    QVERIFY(m_application);
    deleteDeferred();
    QVERIFY(!m_application);
}

void tst_CApplication::quitFromTheTray()
{
    usePlugins("");
    start();
    connect(qApp, &QCoreApplication::aboutToQuit, m_application, &CApplication::onAboutToQuit);
    QPointer<QSystemTrayIcon> tray = m_application->findChild<QSystemTrayIcon*>();
    QPointer<QMenu> menu = tray->contextMenu();
    QPointer<QAction> action = menu->actions().first();
    QTimer::singleShot(0, action, &QAction::trigger);
    BoxAnswers answers;
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(answers.texts.isEmpty());
    QVERIFY(!m_application);
    QVERIFY(!tray);
    QVERIFY(!menu);
    QVERIFY(!action);
}

void tst_CApplication::quitDuringTheStart()
{
    // No plug-in: the start waits for a list of instruments the whole time, if nobody quits.
    m_application = CApplication::Instance();
    QTimer::singleShot(0, m_application->findChild<QSystemTrayIcon*>()->contextMenu()->actions().first(),
                       &QAction::trigger);
    start();
    QVERIFY(m_startMs < 2000);
    connect(qApp, &QCoreApplication::aboutToQuit, m_application, &CApplication::onAboutToQuit);
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!m_application);
}

void tst_CApplication::windowsGoBeforeTheModels()
{
    usePlugins("");
    start();
    QStringList warnings;
    connect(m_application->QmlEngine(), &QQmlEngine::warnings, this, [&](const QList<QQmlError>& errors) {
        for (const QQmlError& error : errors)
            warnings << error.toString();
    });
    m_application->QmlEngine()->loadData(
        "import QtQml 2.15\n"
        "QtObject {\n"
        "    property string line: MainViewModel.LastLogMessages\n"
        "    property string page: ActivePageViewModel.Name\n"
        "    property bool active: InstrumentSupervisor.HasActiveInstrument\n"
        "    property bool meter: Settings.EnableMeterMode\n"
        "}\n");
    const QPointer<QObject> root = m_application->QmlEngine()->rootObjects().value(0);
    QVERIFY(root);
    QCOMPARE(root->property("page").toString(), QStringLiteral("Connection"));
    quit();
    QVERIFY(!root);
    QCOMPARE(warnings, QStringList());
}

void tst_CApplication::goneAfterQuit()
{
    usePlugins("");
    start();
    QAbstractItemModel* list = m_application->MainViewModel()->LogMessageList();
    QSignalSpy inserted(list, &QAbstractItemModel::rowsInserted);
    QSignalSpy line(m_application->MainViewModel(), &CMainViewModel::LastLogMessagesChanged);
    m_application->onAboutToQuit();
    inserted.clear();
    line.clear();
    QFile log(SettingsDirectoryPath + QLatin1String("/Kestrix.log"));
    const qint64 size = log.size();
    qCritical("too late");
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(line.count(), 0);
    deleteDeferred();
    qCritical("too late again");
    QVERIFY(!m_application);
    QCOMPARE(log.size(), size);
}

QTEST_MAIN(tst_CApplication)
#include "tst_CApplication.moc"
