// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingFixture.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"
#include "SettingsDirectoryPath.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

namespace {

QString settingsPath()
{
    return SettingsDirectoryPath + QStringLiteral("/KestrixMappingSettings.xml");
}

} // namespace

class tst_COperationMapping : public QObject, private MappingFixture
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void surface();
    void construction();
    void firstStart();
    void firstStartTakesAUnitOfTheInstrument();
    void laterStartLoadsTheSettings();
    void activationListensOnce();
    void deactivationStopsListening();
    void copiesTheBlock();
    void takesThePlaceFromTheMapper();
    void blockWithoutMapper();
    void blockWithoutSource();
    void blockOfAMapperThatLies();
    void movesBeforeItStores();
    void storesTheLastBlockAfterTheEnd();
    void recordOfOnePoint();
    void nullBlockIsDropped();
    void resets();
    void replayReachesTheView();
    void answersForItsRecordingManager();
};

void tst_COperationMapping::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& meta = COperationMapping::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"RecordingManager", "CRecordingManagerMapping*", Constant},
                                                  {"MappingParameters", "CMappingParameters*", Constant}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Signal, {"NewMeasure(QSharedPointer<CMeasureBlockMapping>)"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot,
                       {"OnNewMeasure(QSharedPointer<CMeasureBlock>)",
                        "OnReplayMeasure(QSharedPointer<CMeasureBlockMapping>)", "OnAcquire()"}));
}

void tst_COperationMapping::construction()
{
    QCOMPARE(m_operation->Name(), QStringLiteral("Mapping"));
    QVERIFY(!m_operation->SessionInProgress());
    QCOMPARE(parameters().AcquisitionRate(), 0.0);
    QCOMPARE(manager().DataSet()->MeasurementParameters(), &parameters());
    QCOMPARE(m_operation->MappingParameters(), m_operation->OperationParameters()->MappingParameters());
    QCOMPARE(mapping().SelectedMapper(), nullptr);
}

void tst_COperationMapping::firstStart()
{
    QVector<bool> applied;
    connect(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged, this,
            [&](bool value) { applied.append(value); });
    const LogRecorder log;
    m_operation->Activate();
    QVERIFY(log.Messages().isEmpty());
    QCOMPARE(parameters().AcquisitionRate(), 10.0);
    QCOMPARE(parameters().DisplayRate(), 1.0);
    QCOMPARE(parameters().Averaging(), 100);
    QCOMPARE(parameters().TriggerMode(), CTrigger::IMMEDIATE);
    QCOMPARE(parameters().BlockSize(), 10);
    QCOMPARE(applied, QVector<bool>({false, true}));
    QVERIFY(!m_operation->SessionInProgress());
}

void tst_COperationMapping::firstStartTakesAUnitOfTheInstrument()
{
    instrument()->setProperty("units", QStringLiteral("G,mT"));
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    QCOMPARE(parameters().Units(), CUnits::GAUSS);
    QCOMPARE(parameters().DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::MILLI_GAUSS);
}

void tst_COperationMapping::laterStartLoadsTheSettings()
{
    m_operation->Activate();
    parameters().SetAveraging(33);
    mapping().MapperSourceCartesian()->Y()->SetStop(12.5);
    QVERIFY(!QFileInfo::exists(settingsPath()));
    m_operation->Deactivate();
    QVERIFY(QFileInfo::exists(settingsPath()));

    COperationMapping next(&m_fixture->settings, &m_fixture->plugins, &m_fixture->supervisor);
    next.Activate();
    QCOMPARE(next.OperationParameters()->MeasurementParameters()->Averaging(), 33);
    QCOMPARE(next.OperationParameters()->MeasurementParameters()->TriggerMode(), CTrigger::IMMEDIATE);
    QCOMPARE(next.MappingParameters()->MapperSourceCartesian()->Y()->Stop(), 12.5);
}

void tst_COperationMapping::activationListensOnce()
{
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    m_operation->Activate();
    const LogRecorder log;
    instrument()->EmitBlock();
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMapping::deactivationStopsListening()
{
    prepare(m_mapper.get());
    m_operation->Deactivate();
    instrument()->EmitBlock();
    QCOMPARE(manager().NumBlocks(), 0);
}

void tst_COperationMapping::copiesTheBlock()
{
    QSignalSpy spy(m_operation.get(), &COperationMapping::NewMeasure);
    const auto block = CFakeInstrument::MakeBlock(3);
    block->SetComment(QStringLiteral("c"));
    block->Bprime.SetX(0.1);
    block->Bprime.SetY(0.2);
    block->Bprime.SetZ(0.3);
    const LogRecorder log;
    m_operation->OnNewMeasure(block);
    QCOMPARE(log.Texts(QtDebugMsg), QStringList(QStringLiteral("OnNewMeasure with 3 acquisition")));
    QCOMPARE(spy.count(), 1);
    const auto copy = spy[0][0].value<QSharedPointer<CMeasureBlockMapping>>();
    QCOMPARE(copy, manager().DataSet()->MeasureBlocks()->back());
    QCOMPARE(copy->Comment(), QStringLiteral("c"));
    QCOMPARE(copy->Bprime.X(), 0.1);
    QCOMPARE(copy->Bprime.Y(), 0.2);
    QCOMPARE(copy->Bprime.Z(), 0.3);
    QVERIFY(!copy->RotAppliedOnMeasBlock());
    QCOMPARE(copy->Results.size(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(copy->Results[i].data(), block->Results[i].data());
    // The comment of the record goes to the copy.
    manager().SetMeasComment(QStringLiteral("m"));
    m_operation->OnNewMeasure(block);
    QCOMPARE(manager().DataSet()->MeasureBlocks()->back()->Comment(), QStringLiteral("mc"));
    QCOMPARE(block->Comment(), QStringLiteral("c"));
    m_operation->OnNewMeasure(QSharedPointer<CMeasureBlock>::create());
    QCOMPARE(log.Texts(QtDebugMsg).last(), QStringLiteral("OnNewMeasure with 0 acquisition"));
    QCOMPARE(manager().NumBlocks(), 3);
}

void tst_COperationMapping::takesThePlaceFromTheMapper()
{
    prepare(m_flyingMapper.get());
    m_operation->StartSession();
    m_flyingMapper->EmitAcquire(1);
    const LogRecorder log;
    instrument()->EmitBlock();
    const CMeasureBlockMapping& block = *manager().DataSet()->MeasureBlocks()->back();
    QCOMPARE(FakeOptions::placeText(block.Position, block.Orientation), QStringLiteral("1 2 3 4 5 6"));
    QCOMPARE(mapping().MapperSourceCartesian()->PositionIndex(), 0);
    QVERIFY(m_operation->SessionInProgress());
}

void tst_COperationMapping::blockWithoutMapper()
{
    const LogRecorder log;
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QCOMPARE(log.Texts(QtWarningMsg), QStringList(QStringLiteral("SelectedMapper is not set")));
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMapping::blockWithoutSource()
{
    mapping().SetSelectedMapper(m_mapper.get());
    mapping().SetMapperSource(nullptr);
    const LogRecorder log;
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QCOMPARE(log.Texts(QtWarningMsg), QStringList(QStringLiteral("MapperSource is not set")));
    QCOMPARE(manager().NumBlocks(), 1);
    // The flying mapper needs none, and the absence is told as well.
    mapping().SetSelectedMapper(m_flyingMapper.get());
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QCOMPARE(log.Texts(QtWarningMsg).size(), 2);
    QCOMPARE(manager().NumBlocks(), 2);
}

void tst_COperationMapping::blockOfAMapperThatLies()
{
    m_flyingMapper->MapperType = CMapperPlugin::kStopAndGo;
    mapping().SetSelectedMapper(m_flyingMapper.get());
    mapping().MapperSourceCartesian()->Reset();
    const LogRecorder log;
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QCOMPARE(log.Messages().last(), QStringLiteral("DEBUG Fail to casting to CMapperPluginStopAndGo"));
    QCOMPARE(mapping().MapperSourceCartesian()->PositionIndex(), 0);
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMapping::movesBeforeItStores()
{
    prepare(m_mapper.get());
    setRow(2);
    m_operation->StartSession();
    QStringList events;
    connect(&manager(), &CRecordingManager::NumBlocksChanged, this,
            [&] { events.append(QStringLiteral("stored, moves %1").arg(placesOf(*m_mapper).size())); });
    connect(m_operation.get(), &COperationMapping::NewMeasure, this,
            [&] { events.append(QStringLiteral("shown, blocks %1").arg(manager().NumBlocks())); });
    const LogRecorder log;
    instrument()->EmitBlock();
    QCOMPARE(events, QStringList({QStringLiteral("stored, moves 2"), QStringLiteral("shown, blocks 1")}));
    const CMeasureBlockMapping& block = *manager().DataSet()->MeasureBlocks()->back();
    QCOMPARE(block.Position.X(), 1.0);
    QVERIFY(m_operation->SessionInProgress());
}

void tst_COperationMapping::storesTheLastBlockAfterTheEnd()
{
    prepare(m_mapper.get());
    setRow(2);
    manager().ResetRecord();
    m_operation->StartSession();
    QStringList events;
    const LogRecorder log;
    instrument()->EmitBlock();
    QVERIFY(manager().HasUnsavedData());
    connect(m_operation.get(), &COperation::SessionInProgressChanged, this,
            [&] { events.append(QStringLiteral("session ends")); });
    connect(&manager(), &CRecordingManager::IsRecordingChanged, this,
            [&] { events.append(QStringLiteral("record ends")); });
    connect(&manager(), &CRecordingManager::NumBlocksChanged, this,
            [&] { events.append(QStringLiteral("stored")); });
    instrument()->EmitBlock();
    QCOMPARE(events, QStringList({QStringLiteral("session ends"), QStringLiteral("record ends"),
                                  QStringLiteral("stored")}));
    QCOMPARE(log.Messages().last(), endOfList());
    QCOMPARE(manager().NumBlocks(), 2);
    QVERIFY(manager().HasUnsavedData());
    QVERIFY(manager().IsIdleWithData());
    QVERIFY(!manager().IsRecording());
    QCOMPARE(callsOf(*m_mapper).last(), QStringLiteral("Stop"));
}

void tst_COperationMapping::recordOfOnePoint()
{
    prepare(m_mapper.get());
    setRow(1);
    manager().ResetRecord();
    m_operation->StartSession();
    const LogRecorder log;
    instrument()->EmitBlock();
    QCOMPARE(placesOf(*m_mapper).size(), 1);
    QVERIFY(!m_operation->SessionInProgress());
    QVERIFY(!manager().IsRecording());
    QVERIFY(!manager().HasUnsavedData());
    QVERIFY(!manager().IsIdleWithData());
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMapping::nullBlockIsDropped()
{
    prepare(m_mapper.get());
    QSignalSpy spy(m_operation.get(), &COperationMapping::NewMeasure);
    const LogRecorder log;
    m_operation->OnNewMeasure({});
    QVERIFY(log.Messages().isEmpty());
    QCOMPARE(spy.count(), 0);
    QCOMPARE(manager().NumBlocks(), 0);
}

void tst_COperationMapping::resets()
{
    const LogRecorder log;
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    manager().SetHasUnsavedData(true);
    manager().SetIsPlayingBack(true);
    manager().SetIsRecording(true);
    manager().SetIsIdleWithData(true);
    manager().SetIsDataLoaded(true);
    manager().SetIsHolding(false);
    manager().SetBodyComment(QStringLiteral("b"));
    manager().SetMeasComment(QStringLiteral("m"));
    PropertyLog changes(&manager());
    m_operation->Reset();
    QCOMPARE(changes.take(),
             QStringList({QStringLiteral("HasUnsavedData=false"), QStringLiteral("IsPlayingBack=false"),
                          QStringLiteral("IsRecording=false"), QStringLiteral("IsIdleWithData=false"),
                          QStringLiteral("IsDataLoaded=false"), QStringLiteral("IsHolding=true"),
                          QStringLiteral("BodyComment="), QStringLiteral("MeasComment="),
                          QStringLiteral("IsDataSetEmpty=true"), QStringLiteral("NumBlocks=0")}));
    QVERIFY(manager().DataSet()->MeasureBlocks()->empty());
}

void tst_COperationMapping::replayReachesTheView()
{
    const LogRecorder log;
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    const auto block = manager().DataSet()->MeasureBlocks()->back();
    QSignalSpy spy(m_operation.get(), &COperationMapping::NewMeasure);
    emit manager().ReplayMeasureBlock(block);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].value<QSharedPointer<CMeasureBlockMapping>>(), block);
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMapping::answersForItsRecordingManager()
{
    QVERIFY(!m_operation->GetUnsavedData());
    QVERIFY(m_operation->GetDataSetEmpty());
    manager().SetHasUnsavedData(true);
    manager().SetIsDataSetEmpty(false);
    QVERIFY(m_operation->GetUnsavedData());
    QVERIFY(!m_operation->GetDataSetEmpty());
    m_fixture->settings.SetMappingMaxMeasurementCount(321);
    QCOMPARE(m_operation->GetMaxMeasurementCount(), quint64(321));
    QCOMPARE(&m_operation->GetTriggerPlugins(), &m_fixture->plugins.TriggerPlugins());
    QCOMPARE(&m_operation->GetMapperPlugins(), &m_fixture->plugins.MapperPlugins());
}

QTEST_GUILESS_MAIN(tst_COperationMapping)
#include "tst_COperationMapping.moc"
