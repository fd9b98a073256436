// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPlugin.h"
#include "COperationMeasure.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

class tst_COperationMeasure : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void surface();
    void construction();
    void firstStart();
    void firstStartTakesAUnitOfTheInstrument_data();
    void firstStartTakesAUnitOfTheInstrument();
    void firstStartAnnouncesTheUnits();
    void laterStartLoadsTheSettings();
    void activationListensOnce();
    void activationWithoutInstrumentListensToNone();
    void deactivationStores();
    void deactivationStopsListening();
    void deactivationWithoutInstrument();
    void startsNoSession();
    void keepsABlockBeforeItShowsIt();
    void holdingIsNoGate();
    void showsAReplayedBlock();
    void replayReachesTheView();
    void blocksOfAnotherThread();
    void emptyBlock();
    void nullBlockIsDropped();
    void resets();
    void resetOrder();
    void resetOfNothing();
    void answersForItsRecordingManager();
    void offersTheTriggerPlugins();
    void answersTheLimitOfTheSettings();
    void addsNothingToTheParameterFile();

private:
    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }
    CRecordingManagerMeasure& manager() { return *m_operation->RecordingManager(); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMeasure> m_operation;
};

void tst_COperationMeasure::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_operation = std::make_unique<COperationMeasure>(&m_fixture->settings, &m_fixture->plugins,
                                                      &m_fixture->supervisor);
}

void tst_COperationMeasure::cleanup()
{
    m_operation.reset();
    m_fixture.reset();
}

void tst_COperationMeasure::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& meta = COperationMeasure::staticMetaObject;
    VERIFY_NO_DIFFERENCE(
        compareProperties(meta, {
                                    {"RecordingManager", "CRecordingManagerMeasure*", Constant},
                                    {"LimitsFile", "LimitsXmlFile*", Constant},
                                    {"LimitsFileLoaded", "bool", ReadOnly},
                                }));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Signal,
                       {"LimitsFileLoadedChanged(bool)", "NewMeasure(QSharedPointer<CMeasureBlock>)"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot,
                       {"OnNewMeasure(QSharedPointer<CMeasureBlock>)",
                        "OnReplayMeasure(QSharedPointer<CMeasureBlock>)", "OnLimitsFilePathChanged()"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Method,
                                        {"clearLimitsFile()", "getLimitsCount()", "getFrequency(int)",
                                         "getMaxFrequency()", "getExposure(int)"}));
}

void tst_COperationMeasure::construction()
{
    QCOMPARE(m_operation->Name(), QStringLiteral("MeterSpectrumAc"));
    QVERIFY(!m_operation->LimitsFileLoaded());
    QVERIFY(!m_operation->SessionInProgress());
    QCOMPARE(parameters().AcquisitionRate(), 0.0);
    QCOMPARE(manager().DataSet()->MeasurementParameters(), &parameters());
}

void tst_COperationMeasure::firstStart()
{
    parameters().SetEnableAdcUnit(true);
    QVector<bool> applied;
    connect(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged, this,
            [&](bool value) { applied.append(value); });
    const LogRecorder log;
    m_operation->Activate();
    QVERIFY(log.Messages().isEmpty());
    QCOMPARE(parameters().AcquisitionRate(), 20.0);
    QCOMPARE(parameters().DisplayRate(), 10.0);
    QCOMPARE(parameters().Averaging(), 10);
    QVERIFY(!parameters().EnableAdcUnit());
    QCOMPARE(parameters().TriggerMode(), CTrigger::CONTINUOUS);
    QCOMPARE(parameters().BlockSize(), 2);
    QCOMPARE(parameters().FrequencyMax(), 10.0);
    QCOMPARE(parameters().NumberOfBins(), 1.0);
    QCOMPARE(applied, QVector<bool>({false, true}));
    QCOMPARE(parameters().Units(), CUnits::UNKNOWN);
    QCOMPARE(parameters().DisplayUnits(), CUnits::UNKNOWN);
}

void tst_COperationMeasure::firstStartTakesAUnitOfTheInstrument_data()
{
    QTest::addColumn<QString>("units");
    QTest::addColumn<CUnits::UnitType>("expected");
    QTest::addColumn<CUnits::UnitType>("uncertainty");
    QTest::newRow("first of two") << QStringLiteral("G,mT") << CUnits::GAUSS << CUnits::MILLI_GAUSS;
    QTest::newRow("empty list") << QStringLiteral("none") << CUnits::UNKNOWN << CUnits::UNKNOWN;
}

void tst_COperationMeasure::firstStartTakesAUnitOfTheInstrument()
{
    QFETCH(const QString, units);
    QFETCH(const CUnits::UnitType, expected);
    QFETCH(const CUnits::UnitType, uncertainty);
    m_fixture->instrument(0)->setProperty("units", units);
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    QCOMPARE(parameters().Units(), expected);
    QCOMPARE(parameters().DisplayUnits(), expected);
    QCOMPARE(parameters().UncertaintyUnits(), uncertainty);
}

void tst_COperationMeasure::firstStartAnnouncesTheUnits()
{
    m_fixture->connectInstrument(0);
    QStringList events;
    connect(&parameters(), &CMeasurementParameters::UnitsChanged, this,
            [&] { events.append(QStringLiteral("Units")); });
    connect(&parameters(), &CMeasurementParameters::DisplayUnitsChanged, this,
            [&] { events.append(QStringLiteral("DisplayUnits")); });
    connect(&parameters(), &CMeasurementParameters::UncertaintyUnitsChanged, this,
            [&] { events.append(QStringLiteral("UncertaintyUnits")); });
    connect(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged, this, [&](bool value) {
        if (value)
            events.append(QStringLiteral("apply"));
    });
    m_operation->Activate();
    QCOMPARE(events, QStringList({QStringLiteral("Units"), QStringLiteral("DisplayUnits"),
                                  QStringLiteral("UncertaintyUnits"), QStringLiteral("apply")}));
    QCOMPARE(parameters().UncertaintyUnitList(),
             QList<CUnits::UnitType>({CUnits::MILLI_TESLA, CUnits::PERCENT}));
}

void tst_COperationMeasure::laterStartLoadsTheSettings()
{
    m_operation->Activate();
    parameters().SetAveraging(33);
    m_operation->Deactivate();

    COperationMeasure next(&m_fixture->settings, &m_fixture->plugins, &m_fixture->supervisor);
    CMeasurementParameters& loaded = *next.OperationParameters()->MeasurementParameters();
    next.Activate();
    QCOMPARE(loaded.Averaging(), 33);
    QCOMPARE(loaded.AcquisitionRate(), 20.0);
    QCOMPARE(loaded.DisplayRate(), 10.0);
    QCOMPARE(loaded.BlockSize(), 2);
    QCOMPARE(loaded.TriggerMode(), CTrigger::CONTINUOUS);

    // A settings file that cannot be parsed counts as none.
    QFile file(OperationFixture::settingsFilePath());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("<OPERATION_PARAMETERS>");
    file.close();
    const LogRecorder log;
    next.Activate();
    QCOMPARE(loaded.Averaging(), 10);
    QCOMPARE(log.Texts(QtWarningMsg).size(), 1);
}

void tst_COperationMeasure::activationListensOnce()
{
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    m_operation->Activate();
    QSignalSpy measureSpy(m_operation.get(), &COperationMeasure::NewMeasure);
    m_fixture->instrument(0)->EmitBlock();
    QCOMPARE(measureSpy.count(), 1);
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMeasure::activationWithoutInstrumentListensToNone()
{
    m_operation->Activate();
    m_fixture->connectInstrument(0);
    m_fixture->instrument(0)->EmitBlock();
    QCOMPARE(manager().NumBlocks(), 0);
    m_operation->Activate();
    m_fixture->instrument(0)->EmitBlock();
    QCOMPARE(manager().NumBlocks(), 1);
}

void tst_COperationMeasure::deactivationStores()
{
    QVERIFY(!QFileInfo::exists(OperationFixture::settingsFilePath()));
    m_operation->Deactivate();
    QVERIFY(
        OperationFixture::readFile(OperationFixture::settingsFilePath()).contains("</OPERATION_PARAMETERS>"));
}

void tst_COperationMeasure::deactivationStopsListening()
{
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    m_operation->Activate();
    m_operation->Deactivate();
    m_fixture->instrument(0)->EmitBlock();
    QCOMPARE(manager().NumBlocks(), 0);
}

void tst_COperationMeasure::deactivationWithoutInstrument()
{
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    m_fixture->provider.RemoveInstrument(QStringLiteral("1"));
    m_fixture->provider.Announce();
    const LogRecorder log;
    m_operation->StopSession();
    m_operation->Deactivate();
    QVERIFY(log.Messages().isEmpty());
}

void tst_COperationMeasure::startsNoSession()
{
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    QVERIFY(!m_operation->SessionInProgress());
    QVERIFY(!m_fixture->instrument(0)->IsRunning());
}

void tst_COperationMeasure::keepsABlockBeforeItShowsIt()
{
    int numKept = -1;
    QSharedPointer<CMeasureBlock> shown;
    connect(m_operation.get(), &COperationMeasure::NewMeasure, this,
            [&](const QSharedPointer<CMeasureBlock>& block) {
                numKept = manager().NumBlocks();
                shown = block;
            });
    const QSharedPointer<CMeasureBlock> block = CFakeInstrument::MakeBlock(3);
    m_operation->OnNewMeasure(block);
    QCOMPARE(numKept, 1);
    QCOMPARE(shown, block);
    QCOMPARE(manager().DataSet()->ResultsCount(), 3ULL);
}

void tst_COperationMeasure::holdingIsNoGate()
{
    QVERIFY(manager().IsHolding());
    QSignalSpy measureSpy(m_operation.get(), &COperationMeasure::NewMeasure);
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QCOMPARE(manager().NumBlocks(), 1);
    QCOMPARE(measureSpy.count(), 1);
    QVERIFY(!manager().HasUnsavedData());
}

void tst_COperationMeasure::showsAReplayedBlock()
{
    QSignalSpy measureSpy(m_operation.get(), &COperationMeasure::NewMeasure);
    const QSharedPointer<CMeasureBlock> block = CFakeInstrument::MakeBlock(2);
    m_operation->OnReplayMeasure(block);
    QCOMPARE(measureSpy.count(), 1);
    QCOMPARE(measureSpy.first().first().value<QSharedPointer<CMeasureBlock>>(), block);
    QCOMPARE(manager().NumBlocks(), 0);
    QVERIFY(manager().IsDataSetEmpty());
}

void tst_COperationMeasure::replayReachesTheView()
{
    QSignalSpy measureSpy(m_operation.get(), &COperationMeasure::NewMeasure);
    const QSharedPointer<CMeasureBlock> block = CFakeInstrument::MakeBlock(2);
    emit manager().ReplayMeasureBlock(block);
    QCOMPARE(measureSpy.count(), 1);
    QCOMPARE(manager().NumBlocks(), 0);
}

void tst_COperationMeasure::blocksOfAnotherThread()
{
    m_fixture->settings.SetInstrumentDriverPluginsPath(
        QStringLiteral(KESTRIX_TEST_PLUGINS_DIR "/instrument"));
    {
        const LogRecorder log;
        m_fixture->plugins.LoadAll();
    }
    CInstrumentPlugin* plugin = m_fixture->plugins.InstrumentPlugins().value(0);
    QVERIFY(plugin);
    plugin->setProperty("serialNumbers", QStringLiteral("L"));
    plugin->setProperty("threaded", true);
    plugin->setProperty("blockCount", 100);
    plugin->setProperty("blockIntervalMs", 0);
    plugin->setProperty("announceAtStart", false);
    plugin->Start();
    m_fixture->supervisor.AddInstrumentListProvider(plugin->GetInstrumentListProvider());
    m_fixture->supervisor.RefreshAvailableInstruments();
    m_fixture->supervisor.SetActiveInstrument(m_fixture->supervisor.AvailableInstruments().last());

    bool isAlwaysMainThread = true;
    connect(m_operation.get(), &COperationMeasure::NewMeasure, m_operation.get(), [&] {
        isAlwaysMainThread =
            isAlwaysMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
    });
    m_operation->Activate();
    m_operation->Activate();
    m_operation->StartSession();
    QTRY_COMPARE(manager().NumBlocks(), 100);
    QVERIFY(isAlwaysMainThread);
    QCOMPARE(manager().DataSet()->ResultsCount(), 1000ULL);
    m_operation->StopSession();

    m_fixture->supervisor.ClearActiveInstrument();
    m_operation.reset();
    m_fixture->plugins.Terminate();
    // The supervisor forgets the provider's instruments before their plug-in goes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_COperationMeasure::emptyBlock()
{
    QSignalSpy measureSpy(m_operation.get(), &COperationMeasure::NewMeasure);
    m_operation->OnNewMeasure(QSharedPointer<CMeasureBlock>::create());
    QCOMPARE(measureSpy.count(), 1);
    QCOMPARE(manager().NumBlocks(), 1);
    QCOMPARE(manager().DataSet()->ResultsCount(), 0ULL);
}

void tst_COperationMeasure::nullBlockIsDropped()
{
    QSignalSpy measureSpy(m_operation.get(), &COperationMeasure::NewMeasure);
    m_operation->OnNewMeasure(QSharedPointer<CMeasureBlock>());
    QCOMPARE(measureSpy.count(), 0);
    QCOMPARE(manager().NumBlocks(), 0);
    QVERIFY(manager().IsDataSetEmpty());
}

void tst_COperationMeasure::resets()
{
    manager().SetIsRecording(true);
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(3));
    manager().SetIsPlayingBack(true);
    manager().SetIsIdleWithData(true);
    manager().SetIsDataLoaded(true);
    manager().SetIsHolding(false);
    manager().SetBodyComment(QStringLiteral("body"));
    manager().SetMeasComment(QStringLiteral("measurement"));
    QVERIFY(manager().HasUnsavedData());

    m_operation->Reset();
    QVERIFY(!manager().HasUnsavedData());
    QVERIFY(!manager().IsPlayingBack());
    QVERIFY(!manager().IsRecording());
    QVERIFY(!manager().IsIdleWithData());
    QVERIFY(!manager().IsDataLoaded());
    QVERIFY(manager().IsHolding());
    QVERIFY(manager().BodyComment().isEmpty());
    QVERIFY(manager().MeasComment().isEmpty());
    QVERIFY(manager().IsDataSetEmpty());
    QCOMPARE(manager().NumBlocks(), 0);
    QCOMPARE(manager().DataSet()->ResultsCount(), 0ULL);
}

void tst_COperationMeasure::resetOrder()
{
    manager().SetHasUnsavedData(true);
    manager().SetIsPlayingBack(true);
    manager().SetIsRecording(true);
    manager().SetIsIdleWithData(true);
    manager().SetIsDataLoaded(true);
    manager().SetIsHolding(false);
    manager().SetBodyComment(QStringLiteral("body"));
    manager().SetMeasComment(QStringLiteral("measurement"));
    QStringList events;
    using Manager = CRecordingManager;
    const auto note = [&events](const char* name) {
        return [&events, name] { events.append(QLatin1String(name)); };
    };
    connect(&manager(), &Manager::HasUnsavedDataChanged, this, note("HasUnsavedData"));
    connect(&manager(), &Manager::IsPlayingBackChanged, this, note("IsPlayingBack"));
    connect(&manager(), &Manager::IsRecordingChanged, this, note("IsRecording"));
    connect(&manager(), &Manager::IsIdleWithDataChanged, this, note("IsIdleWithData"));
    connect(&manager(), &Manager::IsDataLoadedChanged, this, note("IsDataLoaded"));
    connect(&manager(), &Manager::IsHoldingChanged, this, note("IsHolding"));
    connect(&manager(), &Manager::BodyCommentChanged, this, note("BodyComment"));
    connect(&manager(), &Manager::MeasCommentChanged, this, note("MeasComment"));
    connect(manager().DataSet(), &CDataset::ClearedChanged, this, note("Cleared"));
    m_operation->Reset();
    QCOMPARE(events, QStringList({QStringLiteral("HasUnsavedData"), QStringLiteral("IsPlayingBack"),
                                  QStringLiteral("IsRecording"), QStringLiteral("IsIdleWithData"),
                                  QStringLiteral("IsDataLoaded"), QStringLiteral("IsHolding"),
                                  QStringLiteral("BodyComment"), QStringLiteral("MeasComment"),
                                  QStringLiteral("Cleared")}));
}

void tst_COperationMeasure::resetOfNothing()
{
    QSignalSpy recordingSpy(&manager(), &CRecordingManager::IsRecordingChanged);
    QSignalSpy unsavedSpy(&manager(), &CRecordingManager::HasUnsavedDataChanged);
    QSignalSpy clearedSpy(manager().DataSet(), &CDataset::ClearedChanged);
    m_operation->Reset();
    QCOMPARE(recordingSpy.count(), 1);
    QCOMPARE(unsavedSpy.count(), 0);
    QCOMPARE(clearedSpy.count(), 1);
}

void tst_COperationMeasure::answersForItsRecordingManager()
{
    QVERIFY(!m_operation->GetUnsavedData());
    QVERIFY(m_operation->GetDataSetEmpty());
    manager().SetIsRecording(true);
    m_operation->OnNewMeasure(CFakeInstrument::MakeBlock(1));
    QVERIFY(m_operation->GetUnsavedData());
    QVERIFY(!m_operation->GetDataSetEmpty());
}

void tst_COperationMeasure::offersTheTriggerPlugins()
{
    QVERIFY(m_operation->GetTriggerPlugins().isEmpty());
    m_fixture->settings.SetTriggerPluginsPath(QStringLiteral(KESTRIX_TEST_PLUGINS_DIR "/trigger"));
    {
        const LogRecorder log;
        m_fixture->plugins.LoadAll();
    }
    QCOMPARE(m_operation->GetTriggerPlugins().size(), 1);
    CTriggerPlugin* plugin = m_operation->GetTriggerPlugins().first();
    m_fixture->connectInstrument(0);
    m_operation->Activate();
    parameters().SetTriggerMode(CTrigger::EXTERNAL);
    parameters().SetTriggerPlugin(plugin);
    m_operation->StartSession();
    m_operation->StopSession();
    m_operation->Deactivate();
    QCOMPARE(plugin->property("calls").toStringList(),
             QStringList({QStringLiteral("Start"), QStringLiteral("Stop")}));

    COperationMeasure next(&m_fixture->settings, &m_fixture->plugins, &m_fixture->supervisor);
    next.Activate();
    QCOMPARE(next.OperationParameters()->MeasurementParameters()->TriggerPlugin(), plugin);
    m_fixture->plugins.Terminate();
}

void tst_COperationMeasure::answersTheLimitOfTheSettings()
{
    m_fixture->settings.SetMeasurementMaxMeasurementCount(12345678901ULL);
    QCOMPARE(m_operation->GetMaxMeasurementCount(), 12345678901ULL);
}

void tst_COperationMeasure::addsNothingToTheParameterFile()
{
    const QString path = m_fixture->directory.filePath(QStringLiteral("p.xml"));
    m_operation->SaveParameters(path);
    QVERIFY(OperationFixture::readFile(path).endsWith("    </ALARM_MAPPING_PARAMETERS>\n"
                                                      "</OPERATION_PARAMETERS>\n"));
    QVERIFY(m_operation->LoadParameters(m_fixture->write(
        QStringLiteral("q.xml"), "<A><MAPPING_PARAMETERS><Mapper>M</Mapper></MAPPING_PARAMETERS></A>")));
}

QTEST_GUILESS_MAIN(tst_COperationMeasure)

#include "tst_COperationMeasure.moc"
