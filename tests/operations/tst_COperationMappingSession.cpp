// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingFixture.h"

#include <QSignalSpy>
#include <QtTest>

/// Start and end of a session, and what happens when the mapper reports.
class tst_COperationMappingSession : public QObject, private MappingFixture
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void startNeedsAMapper();
    void startNeedsAnInstrument();
    void startMovesToTheFirstPoint();
    void startRestartsTheList();
    void startWithoutSource();
    void startWithAnEmptyList();
    void startWithAnOnTheFlyMapper();
    void startWithAMapperThatLies_data();
    void startWithAMapperThatLies();
    void readyIsHeardOnceAndQueued();
    void acquireIsHeardQueued();
    void acquireStartsTheTriggerPlugin_data();
    void acquireStartsTheTriggerPlugin();
    void acquireWithoutInstrument();
    void stopsTheMapper();
    void stopWithoutMapper();
};

void tst_COperationMappingSession::startNeedsAMapper()
{
    prepare(nullptr);
    const LogRecorder log;
    m_operation->StartSession();
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("WARN Mapper is null")));
    QVERIFY(!m_operation->SessionInProgress());
    QVERIFY(callsOf(*instrument()).isEmpty());
}

void tst_COperationMappingSession::startNeedsAnInstrument()
{
    m_operation->Activate();
    mapping().SetSelectedMapper(m_mapper.get());
    const LogRecorder log;
    m_operation->StartSession();
    QVERIFY(log.Messages().isEmpty());
    QVERIFY(!m_operation->SessionInProgress());
    QVERIFY(callsOf(*m_mapper).isEmpty());
}

void tst_COperationMappingSession::startMovesToTheFirstPoint()
{
    prepare(m_mapper.get());
    setRow(3);
    mapping().MapperSourceCartesian()->Orientation()->SetPitch(45);
    QSignalSpy spy(m_operation.get(), &COperation::SessionInProgressChanged);
    m_operation->StartSession();
    QCOMPARE(spy.count(), 1);
    QVERIFY(m_operation->SessionInProgress());
    QCOMPARE(callsOf(*m_mapper), QStringList({QStringLiteral("Start"), QStringLiteral("MoveTo")}));
    QCOMPARE(placesOf(*m_mapper), QStringList(QStringLiteral("1 0 0 0 45 0")));
    // The instrument waits for the mapper.
    QCoreApplication::processEvents();
    QVERIFY(callsOf(*instrument()).isEmpty());
}

void tst_COperationMappingSession::startRestartsTheList()
{
    prepare(m_mapper.get());
    setRow(3);
    const LogRecorder log;
    m_operation->StartSession();
    instrument()->EmitBlock();
    m_operation->StopSession();
    m_operation->StartSession();
    QCOMPARE(placesOf(*m_mapper), QStringList({QStringLiteral("1 0 0 0 0 0"), QStringLiteral("2 0 0 0 0 0"),
                                               QStringLiteral("1 0 0 0 0 0")}));
}

void tst_COperationMappingSession::startWithoutSource()
{
    prepare(m_mapper.get());
    mapping().SetMapperSource(nullptr);
    m_operation->StartSession();
    QVERIFY(m_operation->SessionInProgress());
    QCOMPARE(callsOf(*m_mapper), QStringList(QStringLiteral("Start")));
    // The mapper is heard nevertheless.
    m_mapper->EmitReady();
    QCoreApplication::processEvents();
    QCOMPARE(callsOf(*instrument()), QStringList(QStringLiteral("StartMeasurement")));
}

void tst_COperationMappingSession::startWithAnEmptyList()
{
    prepare(m_mapper.get());
    {
        const LogRecorder unheard;
        mapping().MapperSourceCartesian()->X()->SetStepSize(0.001);
    }
    QSignalSpy sessionSpy(m_operation.get(), &COperation::SessionInProgressChanged);
    QSignalSpy recordingSpy(&manager(), &CRecordingManager::IsRecordingChanged);
    const LogRecorder log;
    m_operation->StartSession();
    QCOMPARE(log.Messages(), QStringList({QStringLiteral("DEBUG X.StepSize is too small"), endOfList()}));
    QCOMPARE(sessionSpy.count(), 2);
    QVERIFY(!m_operation->SessionInProgress());
    QCOMPARE(recordingSpy.count(), 1);
    QCOMPARE(callsOf(*m_mapper), QStringList({QStringLiteral("Start"), QStringLiteral("Stop")}));
    m_mapper->EmitReady();
    QCoreApplication::processEvents();
    QVERIFY(callsOf(*instrument()).isEmpty());
    QCOMPARE(manager().NumBlocks(), 0);
}

void tst_COperationMappingSession::startWithAnOnTheFlyMapper()
{
    prepare(m_flyingMapper.get());
    m_operation->StartSession();
    QVERIFY(m_operation->SessionInProgress());
    QCOMPARE(callsOf(*m_flyingMapper), QStringList(QStringLiteral("Start")));
    QCOMPARE(mapping().MapperSourceCartesian()->PositionIndex(), 0);
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QCOMPARE(mapping().MapperSourceCartesian()->PositionIndex(), 0);
}

void tst_COperationMappingSession::startWithAMapperThatLies_data()
{
    QTest::addColumn<bool>("isFlying");
    QTest::newRow("calls itself stop-and-go") << true;
    QTest::newRow("calls itself on-the-fly") << false;
}

void tst_COperationMappingSession::startWithAMapperThatLies()
{
    QFETCH(const bool, isFlying);
    CMapperPlugin* mapper = m_mapper.get();
    if (isFlying)
        mapper = m_flyingMapper.get();
    mapper->MapperType = isFlying ? CMapperPlugin::kStopAndGo : CMapperPlugin::kOnTheFly;
    prepare(mapper);
    const LogRecorder log;
    m_operation->StartSession();
    QVERIFY(log.Messages().isEmpty());
    QVERIFY(m_operation->SessionInProgress());
    QCOMPARE(callsOf(*mapper), QStringList(QStringLiteral("Start")));
    m_mapper->EmitReady();
    m_flyingMapper->EmitAcquire(1);
    QCoreApplication::processEvents();
    QVERIFY(callsOf(*instrument()).isEmpty());
    m_operation->StopSession();
    QVERIFY(!m_operation->SessionInProgress());
    QCOMPARE(callsOf(*mapper).last(), QStringLiteral("Stop"));
}

void tst_COperationMappingSession::readyIsHeardOnceAndQueued()
{
    prepare(m_mapper.get());
    m_operation->StartSession();
    m_operation->StartSession();
    m_mapper->EmitReady();
    QVERIFY(callsOf(*instrument()).isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(callsOf(*instrument()), QStringList(QStringLiteral("StartMeasurement")));
}

void tst_COperationMappingSession::acquireIsHeardQueued()
{
    prepare(m_flyingMapper.get());
    m_operation->StartSession();
    m_flyingMapper->EmitAcquire(1);
    QVERIFY(callsOf(*instrument()).isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(callsOf(*instrument()), QStringList(QStringLiteral("StartMeasurement")));
    // An instrument that runs is started again: in IMMEDIATE mode every start means one block.
    QVERIFY(instrument()->IsRunning());
    m_flyingMapper->EmitAcquire(2);
    QCoreApplication::processEvents();
    QCOMPARE(callsOf(*instrument()).size(), 2);
    // Each session hears the mapper once.
    m_operation->StopSession();
    m_operation->StartSession();
    m_flyingMapper->EmitAcquire(3);
    QCoreApplication::processEvents();
    QCOMPARE(callsOf(*instrument()).size(), 3);
}

void tst_COperationMappingSession::acquireStartsTheTriggerPlugin_data()
{
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::addColumn<bool>("isStarted");
    QTest::newRow("immediate") << CTrigger::IMMEDIATE << false;
    QTest::newRow("timer") << CTrigger::TIMER << false;
    QTest::newRow("external") << CTrigger::EXTERNAL << true;
}

void tst_COperationMappingSession::acquireStartsTheTriggerPlugin()
{
    QFETCH(const CTrigger::TriggerMode, mode);
    QFETCH(const bool, isStarted);
    prepare(m_mapper.get());
    setRow(2);
    parameters().SetTriggerPlugin(&m_trigger);
    parameters().SetTriggerMode(mode);
    QCoreApplication::instance()->setProperty("journal", QStringList());
    m_operation->StartSession();
    m_operation->OnAcquire();
    const LogRecorder log;
    instrument()->EmitBlock();
    m_operation->OnAcquire();
    instrument()->EmitBlock();

    QStringList expected{QStringLiteral("fakeMapperPlugin Start"), QStringLiteral("fakeMapperPlugin MoveTo"),
                         QStringLiteral("fakeInstrument StartMeasurement")};
    if (isStarted)
        expected << QStringLiteral("fakeTriggerPlugin Start") << QStringLiteral("fakeTriggerPlugin Stop");
    expected << QStringLiteral("fakeMapperPlugin MoveTo")
             << QStringLiteral("fakeInstrument StartMeasurement");
    if (isStarted)
        expected << QStringLiteral("fakeTriggerPlugin Start");
    // The end of the list stops neither the trigger plug-in nor the instrument.
    expected << QStringLiteral("fakeMapperPlugin Stop");
    QCOMPARE(QCoreApplication::instance()->property("journal").toStringList(), expected);
    parameters().SetTriggerPlugin(nullptr);
}

void tst_COperationMappingSession::acquireWithoutInstrument()
{
    parameters().SetTriggerMode(CTrigger::EXTERNAL);
    parameters().SetTriggerPlugin(&m_trigger);
    m_operation->OnAcquire();
    QCOMPARE(callsOf(m_trigger), QStringList(QStringLiteral("Start")));
    parameters().SetTriggerPlugin(nullptr);
    const LogRecorder log;
    m_operation->OnAcquire();
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("WARN Trigger plugin is not set")));
}

void tst_COperationMappingSession::stopsTheMapper()
{
    prepare(m_mapper.get());
    m_operation->StartSession();
    m_operation->OnAcquire();
    bool wasInProgress = true;
    connect(m_operation.get(), &COperation::SessionInProgressChanged, this,
            [&] { wasInProgress = callsOf(*m_mapper).contains(QStringLiteral("Stop")); });
    m_operation->StopSession();
    QVERIFY(!wasInProgress);
    QCOMPARE(callsOf(*m_mapper).last(), QStringLiteral("Stop"));
    m_mapper->EmitReady();
    QCoreApplication::processEvents();
    QCOMPARE(callsOf(*instrument()), QStringList(QStringLiteral("StartMeasurement")));
    m_operation->StopSession();
    QCOMPARE(callsOf(*m_mapper).count(QStringLiteral("Stop")), 2);
}

void tst_COperationMappingSession::stopWithoutMapper()
{
    prepare(m_mapper.get());
    m_operation->StartSession();
    m_mapper.reset();
    const LogRecorder log;
    m_operation->StopSession();
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("WARN Mapper is null")));
    QVERIFY(!m_operation->SessionInProgress());
}

QTEST_GUILESS_MAIN(tst_COperationMappingSession)
#include "tst_COperationMappingSession.moc"
