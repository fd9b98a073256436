// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPlugin.h"
#include "CInstrumentSupervisor.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "LogRecorder.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

/// Instruments that come out of a library, from the load to the end.
class tst_InstrumentPlugins : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void listsItsInstruments();
    void takesItsOptionsFromTheEnvironment();
    void connectsAndDelivers();
    void failsToConnect_data();
    void failsToConnect();
    void failsToDisconnect();
    void reportsFromAnotherThread();
    void deliversFromAnotherThread();
    void renewsItsObjects();
    void vanishes();
    void vanishesByItself();

private:
    void start();
    void tell(const char* method, const QString& serialNumber) const;
    QSharedPointer<CInstrument> first() const { return m_supervisor->AvailableInstruments().value(0); }
    QStringList calls() const { return m_plugin->property("calls").toStringList(); }

    QTemporaryDir m_directory;
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_manager;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    CInstrumentPlugin* m_plugin = nullptr;
};

void tst_InstrumentPlugins::init()
{
    m_settings = std::make_unique<CSettings>(QString());
    m_settings->SetInstrumentParameterPath(m_directory.path());
    m_settings->SetInstrumentDriverPluginsPath(QStringLiteral(KESTRIX_TEST_PLUGINS_DIR "/instrument"));
    m_manager = std::make_unique<CPluginsManager>(*m_settings);
    m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
    const LogRecorder log;
    m_manager->LoadAll();
    QCOMPARE(m_manager->InstrumentPlugins().size(), 1);
    m_plugin = m_manager->InstrumentPlugins().first();
}

void tst_InstrumentPlugins::cleanup()
{
    m_manager->Terminate();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_supervisor.reset();
    qunsetenv("KESTRIX_FAKE");
}

/// As the application does at its start.
void tst_InstrumentPlugins::start()
{
    QSignalSpy updated(m_supervisor.get(), &CInstrumentSupervisor::AvailableInstrumentUpdated);
    m_plugin->Start();
    m_supervisor->AddInstrumentListProvider(m_plugin->GetInstrumentListProvider());
    QCOMPARE(updated.count(), 0);
    QTRY_COMPARE(updated.count(), 1);
}

void tst_InstrumentPlugins::tell(const char* method, const QString& serialNumber) const
{
    QVERIFY(QMetaObject::invokeMethod(m_plugin, method, Q_ARG(QString, serialNumber)));
}

void tst_InstrumentPlugins::listsItsInstruments()
{
    m_plugin->setProperty("serialNumbers", QStringLiteral("A,B"));
    start();
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 2);
    QCOMPARE(first()->SerialNumber(), QStringLiteral("A"));
    QVERIFY(!first()->IsConnected());
}

void tst_InstrumentPlugins::takesItsOptionsFromTheEnvironment()
{
    m_manager->Terminate();
    qputenv("KESTRIX_FAKE", "serialNumbers=X,Y,Z;connect=false");
    {
        const LogRecorder log;
        m_manager->LoadAll();
    }
    m_plugin = m_manager->InstrumentPlugins().first();
    start();
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 3);
    m_supervisor->SetActiveInstrument(first());
    QVERIFY(!m_supervisor->HasActiveInstrument());
}

void tst_InstrumentPlugins::connectsAndDelivers()
{
    start();
    m_supervisor->SetActiveInstrument(first());
    QVERIFY(m_supervisor->HasActiveInstrument());
    QCOMPARE(first()->Model(), QStringLiteral("FM2040"));
    QCOMPARE(first()->UnitList().size(), 12);

    m_plugin->setProperty("blockCount", 3);
    m_plugin->setProperty("samplesPerBlock", 7);
    QSignalSpy blocks(first().data(), &CInstrument::OnNewMeasureBlock);
    first()->StartMeasurement();
    QTRY_COMPARE(blocks.count(), 3);
    QCOMPARE(blocks.first().first().value<QSharedPointer<CMeasureBlock>>()->Results.size(), 7);
    first()->StopMeasurement();
    QCOMPARE(calls(), QStringList({QStringLiteral("Start"), QStringLiteral("FAKE-1 Connect"),
                                   QStringLiteral("FAKE-1 StartMeasurement"),
                                   QStringLiteral("FAKE-1 StopMeasurement")}));
}

void tst_InstrumentPlugins::failsToConnect_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<int>("numWarnings");
    QTest::newRow("false") << QStringLiteral("false") << 0;
    QTest::newRow("exception") << QStringLiteral("throw") << 1;
    QTest::newRow("other exception") << QStringLiteral("throwInt") << 1;
}

void tst_InstrumentPlugins::failsToConnect()
{
    QFETCH(const QString, behaviour);
    QFETCH(const int, numWarnings);
    m_plugin->setProperty("connect", behaviour);
    start();
    const LogRecorder log;
    m_supervisor->SetActiveInstrument(first());
    QCOMPARE(log.Texts(QtWarningMsg).count(QStringLiteral("Error occured when connecting the instrument.")),
             numWarnings);
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->Instrument().isNull());
}

void tst_InstrumentPlugins::failsToDisconnect()
{
    start();
    m_supervisor->SetActiveInstrument(first());
    m_plugin->setProperty("disconnect", QStringLiteral("throw"));
    const LogRecorder log;
    m_supervisor->ClearActiveInstrument();
    QCOMPARE(log.Texts(QtWarningMsg),
             QStringList(QStringLiteral("Error occured when disconnecting the instrument.")));
    QVERIFY(!m_supervisor->HasActiveInstrument());
}

void tst_InstrumentPlugins::reportsFromAnotherThread()
{
    start();
    m_plugin->setProperty("threaded", true);
    QThread* refreshThread = nullptr;
    connect(m_supervisor.get(), &CInstrumentSupervisor::AvailableInstrumentUpdated, this,
            [&refreshThread] { refreshThread = QThread::currentThread(); });
    tell("appear", QStringLiteral("B"));
    // The thread has emitted and ended, and the refresh waits for the event loop.
    QVERIFY(!refreshThread);
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 1);
    QTRY_COMPARE(m_supervisor->AvailableInstruments().size(), 2);
    QCOMPARE(refreshThread, QThread::currentThread());
}

void tst_InstrumentPlugins::deliversFromAnotherThread()
{
    m_plugin->setProperty("threaded", true);
    m_plugin->setProperty("blockCount", 50);
    m_plugin->setProperty("blockIntervalMs", 0);
    start();
    m_supervisor->SetActiveInstrument(first());
    int numBlocks = 0;
    bool isAlwaysMainThread = true;
    QObject receiver;
    connect(first().data(), &CInstrument::OnNewMeasureBlock, &receiver, [&] {
        ++numBlocks;
        isAlwaysMainThread =
            isAlwaysMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
    });
    first()->StartMeasurement();
    QTRY_COMPARE(numBlocks, 50);
    QVERIFY(isAlwaysMainThread);
}

void tst_InstrumentPlugins::renewsItsObjects()
{
    start();
    m_supervisor->SetActiveInstrument(first());
    m_plugin->setProperty("renewObjects", true);
    m_supervisor->RefreshAvailableInstruments();
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QCOMPARE(calls().last(), QStringLiteral("FAKE-1 Disconnect"));
    QCOMPARE(first()->SerialNumber(), QStringLiteral("FAKE-1"));
    QVERIFY(!first()->IsConnected());
}

void tst_InstrumentPlugins::vanishes()
{
    start();
    m_supervisor->SetActiveInstrument(first());
    first()->StartMeasurement();
    tell("vanish", QStringLiteral("FAKE-1"));
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->AvailableInstruments().isEmpty());
    QCOMPARE(calls().last(), QStringLiteral("FAKE-1 Disconnect"));
}

void tst_InstrumentPlugins::vanishesByItself()
{
    m_plugin->setProperty("vanishAfterMs", 1);
    m_plugin->setProperty("threaded", true);
    m_plugin->setProperty("blockCount", -1);
    m_plugin->setProperty("blockIntervalMs", 1);
    start();
    m_supervisor->SetActiveInstrument(first());
    first()->StartMeasurement();
    QTRY_VERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->AvailableInstruments().isEmpty());
    QCOMPARE(calls().last(), QStringLiteral("FAKE-1 Disconnect"));
}

QTEST_GUILESS_MAIN(tst_InstrumentPlugins)

#include "tst_InstrumentPlugins.moc"
