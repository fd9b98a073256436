// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogRecorder.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"
#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFileInfo>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QtTest>

namespace {

QStringList callsOf(const QObject& fake)
{
    return fake.property("calls").toStringList();
}

} // namespace

class tst_COperation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void surface();
    void initialValues();
    void startsASession();
    void startsNoRunningInstrument();
    void startsNoSessionWithoutInstrument();
    void stopsASession();
    void stopsWithoutInstrument();
    void startsTheTriggerPluginInExternalModeOnly_data();
    void startsTheTriggerPluginInExternalModeOnly();
    void startsTheTriggerPluginWithoutInstrument();
    void warnsWithoutTriggerPlugin();
    void instrumentFollowsTheSupervisor();
    void instrumentIsNullInsideTheSignalOfAFailedReconnect();
    void instrumentFollowsDeath();
    void bindingFollowsTheInstrument();
    void settingsFileGoesToTheSettingsDirectory();
    void settingsDirectoryIsMadeWithoutParents();

private:
    void connectInstrument(int index) { m_fixture->connectInstrument(index); }
    QSharedPointer<CFakeInstrument> instrument(int index) const { return m_fixture->instrument(index); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<CTestOperation> m_operation;
    CFakeTriggerPlugin m_trigger;
};

void tst_COperation::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_operation = std::make_unique<CTestOperation>(&m_fixture->supervisor);
    m_trigger.setProperty("calls", QVariant());
}

void tst_COperation::cleanup()
{
    m_operation.reset();
    m_fixture.reset();
}

void tst_COperation::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& meta = COperation::staticMetaObject;
    VERIFY_NO_DIFFERENCE(
        compareProperties(meta, {
                                    {"Name", "QString", ReadOnly},
                                    {"SessionInProgress", "bool", ReadOnly},
                                    {"OperationParameters", "COperationParameters*", Constant},
                                    {"Instrument", "CInstrument*", ReadOnly},
                                }));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Signal,
                                        {"NameChanged(QString)", "SessionInProgressChanged(bool)",
                                         "InstrumentChanged(CInstrument*)", "OnLoadMeasParametersDone()"}));
}

void tst_COperation::initialValues()
{
    QVERIFY(!m_operation->SessionInProgress());
    QCOMPARE(m_operation->Instrument(), nullptr);
    QVERIFY(!m_operation->ActiveInstrument());
    QVERIFY(!m_operation->COperation::GetUnsavedData());
    QCOMPARE(m_operation->Name(), QStringLiteral("Test"));
}

void tst_COperation::startsASession()
{
    connectInstrument(0);
    QSignalSpy sessionSpy(m_operation.get(), &COperation::SessionInProgressChanged);
    bool wasInProgressAtStart = false;
    connect(instrument(0).data(), &CInstrument::IsRunningChanged, this,
            [&] { wasInProgressAtStart = m_operation->SessionInProgress(); });
    m_operation->StartSession();
    QVERIFY(m_operation->SessionInProgress());
    QVERIFY(wasInProgressAtStart);
    QCOMPARE(sessionSpy.count(), 1);
    QCOMPARE(callsOf(*instrument(0)),
             QStringList({QStringLiteral("Connect"), QStringLiteral("StartMeasurement")}));
    m_operation->StartSession();
    QCOMPARE(sessionSpy.count(), 1);
    QCOMPARE(callsOf(*instrument(0)).count(QStringLiteral("StartMeasurement")), 1);
}

void tst_COperation::startsNoRunningInstrument()
{
    connectInstrument(0);
    instrument(0)->SetIsRunning(true);
    m_operation->StartSession();
    QVERIFY(m_operation->SessionInProgress());
    QCOMPARE(callsOf(*instrument(0)), QStringList(QStringLiteral("Connect")));
}

void tst_COperation::startsNoSessionWithoutInstrument()
{
    QSignalSpy sessionSpy(m_operation.get(), &COperation::SessionInProgressChanged);
    const LogRecorder log;
    m_operation->StartSession();
    QVERIFY(!m_operation->SessionInProgress());
    QCOMPARE(sessionSpy.count(), 0);
    QVERIFY(log.Messages().isEmpty());
}

void tst_COperation::stopsASession()
{
    connectInstrument(0);
    m_operation->StartSession();
    QSignalSpy sessionSpy(m_operation.get(), &COperation::SessionInProgressChanged);
    bool wasInProgressAtStop = false;
    connect(instrument(0).data(), &CInstrument::IsRunningChanged, this,
            [&] { wasInProgressAtStop = m_operation->SessionInProgress(); });
    m_operation->StopSession();
    m_operation->StopSession();
    QVERIFY(!m_operation->SessionInProgress());
    QVERIFY(wasInProgressAtStop);
    QCOMPARE(sessionSpy.count(), 1);
    QCOMPARE(callsOf(*instrument(0)).count(QStringLiteral("StopMeasurement")), 1);
}

void tst_COperation::stopsWithoutInstrument()
{
    connectInstrument(0);
    m_operation->StartSession();
    m_fixture->supervisor.ClearActiveInstrument();
    m_operation->StopSession();
    QVERIFY(!m_operation->SessionInProgress());
    QVERIFY(!callsOf(*instrument(0)).contains(QStringLiteral("StopMeasurement")));
}

void tst_COperation::startsTheTriggerPluginInExternalModeOnly_data()
{
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("continuous") << CTrigger::CONTINUOUS << QStringList();
    QTest::newRow("immediate") << CTrigger::IMMEDIATE << QStringList();
    QTest::newRow("timer") << CTrigger::TIMER << QStringList();
    QTest::newRow("external") << CTrigger::EXTERNAL
                              << QStringList({QStringLiteral("Start"), QStringLiteral("Stop")});
}

void tst_COperation::startsTheTriggerPluginInExternalModeOnly()
{
    QFETCH(const CTrigger::TriggerMode, mode);
    QFETCH(const QStringList, expected);
    connectInstrument(0);
    m_operation->measurement().SetTriggerMode(mode);
    m_operation->measurement().SetTriggerPlugin(&m_trigger);
    m_operation->StartSession();
    m_operation->StopSession();
    QCOMPARE(callsOf(m_trigger), expected);
    m_operation->StartTriggerPlugin();
    m_operation->StopTriggerPlugin();
    QCOMPARE(callsOf(m_trigger), expected + expected);
}

void tst_COperation::startsTheTriggerPluginWithoutInstrument()
{
    m_operation->measurement().SetTriggerMode(CTrigger::EXTERNAL);
    m_operation->measurement().SetTriggerPlugin(&m_trigger);
    m_operation->StartSession();
    QCOMPARE(callsOf(m_trigger), QStringList(QStringLiteral("Start")));
    QVERIFY(!m_operation->SessionInProgress());
}

void tst_COperation::warnsWithoutTriggerPlugin()
{
    m_operation->measurement().SetTriggerMode(CTrigger::EXTERNAL);
    const LogRecorder log;
    m_operation->StartSession();
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("WARN Trigger plugin is not set")));
    m_operation->StopSession();
    QCOMPARE(log.Messages().size(), 1);
}

void tst_COperation::instrumentFollowsTheSupervisor()
{
    QVector<CInstrument*> seen;
    connect(m_operation.get(), &COperation::InstrumentChanged, this, [&](CInstrument* value) {
        QCOMPARE(m_operation->Instrument(), value);
        seen.append(value);
    });
    // While it connects, an instrument is not yet the operation's.
    CInstrument* seenWhileConnecting = instrument(0).data();
    connect(instrument(0).data(), &CInstrument::IsConnectedChanged, this, [&](bool value) {
        if (value)
            seenWhileConnecting = m_operation->Instrument();
    });
    connectInstrument(0);
    QCOMPARE(seenWhileConnecting, nullptr);
    connectInstrument(1);
    m_fixture->supervisor.ClearActiveInstrument();
    QCOMPARE(seen, QVector<CInstrument*>({instrument(0).data(), nullptr, instrument(1).data(), nullptr}));

    instrument(0)->setProperty("connect", QStringLiteral("false"));
    connectInstrument(0);
    QCOMPARE(seen.size(), 4);
    QCOMPARE(m_operation->Instrument(), nullptr);
}

void tst_COperation::instrumentIsNullInsideTheSignalOfAFailedReconnect()
{
    connectInstrument(0);
    instrument(0)->setProperty("connect", QStringLiteral("false"));
    QVector<CInstrument*> seen;
    connect(m_operation.get(), &COperation::InstrumentChanged, this,
            [&] { seen.append(m_operation->Instrument()); });
    connectInstrument(0);
    QCOMPARE(seen, QVector<CInstrument*>({nullptr}));
}

void tst_COperation::instrumentFollowsDeath()
{
    auto unlisted = QSharedPointer<CFakeInstrument>::create(QStringLiteral("9"));
    m_fixture->supervisor.SetActiveInstrument(unlisted);
    QCOMPARE(m_operation->Instrument(), unlisted.data());
    QSignalSpy spy(m_operation.get(), &COperation::InstrumentChanged);
    unlisted.reset();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_operation->Instrument(), nullptr);

    // One that is not active any more may die unnoticed.
    connectInstrument(0);
    m_fixture->supervisor.ClearActiveInstrument();
    spy.clear();
    m_fixture->provider.RemoveInstrument(QStringLiteral("1"));
    m_fixture->provider.Announce();
    QCOMPARE(spy.count(), 0);
}

void tst_COperation::bindingFollowsTheInstrument()
{
    QQmlEngine engine;
    QStringList warnings;
    connect(&engine, &QQmlEngine::warnings, this, [&](const QList<QQmlError>& errors) {
        for (const QQmlError& error : errors)
            warnings.append(error.toString());
    });
    engine.rootContext()->setContextProperty(QStringLiteral("ActiveOperation"), m_operation.get());
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\n"
                      "QtObject {\n"
                      "    property string model: ActiveOperation.Instrument"
                      " ? ActiveOperation.Instrument.SerialNumber : 'none'\n"
                      "}\n",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    const auto model = [&] { return object->property("model").toString(); };

    QCOMPARE(model(), QStringLiteral("none"));
    connectInstrument(0);
    QCOMPARE(model(), QStringLiteral("1"));
    connectInstrument(1);
    QCOMPARE(model(), QStringLiteral("2"));
    m_fixture->supervisor.ClearActiveInstrument();
    QCOMPARE(model(), QStringLiteral("none"));
    connectInstrument(1);
    m_fixture->provider.RemoveInstrument(QStringLiteral("2"));
    m_fixture->provider.Announce();
    QCOMPARE(model(), QStringLiteral("none"));

    auto unlisted = QSharedPointer<CFakeInstrument>::create(QStringLiteral("9"));
    m_fixture->supervisor.SetActiveInstrument(unlisted);
    QCOMPARE(model(), QStringLiteral("9"));
    unlisted.reset();
    QCOMPARE(model(), QStringLiteral("none"));
    // The engine has not taken over what it was shown.
    connectInstrument(0);
    engine.collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_operation->Instrument(), instrument(0).data());
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(QLatin1Char('\n'))));
}

void tst_COperation::settingsFileGoesToTheSettingsDirectory()
{
    QVERIFY(QDir(SettingsDirectoryPath).removeRecursively());
    m_operation->measurement().SetAveraging(17);
    m_operation->SaveSettingsFile(QStringLiteral("Test.xml"));
    QVERIFY(QFileInfo::exists(SettingsDirectoryPath + QStringLiteral("/Test.xml")));

    CTestOperation other(&m_fixture->supervisor);
    QVERIFY(!other.LoadSettingsFile(QStringLiteral("Other.xml")));
    QVERIFY(other.LoadSettingsFile(QStringLiteral("Test.xml")));
    QCOMPARE(other.measurement().Averaging(), 17);
}

void tst_COperation::settingsDirectoryIsMadeWithoutParents()
{
    const QString parent = QFileInfo(SettingsDirectoryPath).path();
    QVERIFY(QDir(parent).removeRecursively());
    const LogRecorder log;
    m_operation->SaveSettingsFile(QStringLiteral("Test.xml"));
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("CRIT Error: Cannot read file : ") +
                                         SettingsDirectoryPath + QStringLiteral("/Test.xml")));
    QVERIFY(!QFileInfo::exists(parent));
}

QTEST_GUILESS_MAIN(tst_COperation)

#include "tst_COperation.moc"
