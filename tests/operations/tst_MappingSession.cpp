// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPlugin.h"
#include "COperationMapping.h"
#include "FakeOptions.h"
#include "LogRecorder.h"
#include "OperationFixture.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

const QString kOnePoint = QStringLiteral("0 0 0 0 0 0");

} // namespace

/// Whole mapping sessions with mappers, instruments and triggers that come out of libraries, well-behaved or
/// not.
class tst_MappingSession : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<OperationFixture>();
        m_operation = std::make_unique<COperationMapping>(&m_fixture->settings, &m_fixture->plugins,
                                                          &m_fixture->supervisor);
        m_log = std::make_unique<LogRecorder>();
    }

    void cleanup()
    {
        m_operation.reset();
        m_fixture->plugins.Terminate();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_log.reset();
        m_fixture.reset();
        qunsetenv("KESTRIX_FAKE");
    }

    void visitsTheWholeGrid_data()
    {
        QTest::addColumn<QString>("ready");
        QTest::addColumn<bool>("isInstrumentThreaded");
        QTest::newRow("at once") << QStringLiteral("once") << false;
        QTest::newRow("from threads") << QStringLiteral("thread") << true;
    }

    void visitsTheWholeGrid()
    {
        QFETCH(const QString, ready);
        QFETCH(const bool, isInstrumentThreaded);
        prepare("mapper");
        m_mapper->setProperty("ready", ready);
        instrument().setProperty("threaded", isInstrumentThreaded);
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress() && manager().NumBlocks() == 8);
        QCOMPARE(placesOfBlocks(), m_mapper->property("places").toStringList());
        QCOMPARE(placesOfBlocks(),
                 QStringList({QStringLiteral("0 0 0 0 0 0"), QStringLiteral("0 0 1 0 0 0"),
                              QStringLiteral("0 1 0 0 0 0"), QStringLiteral("0 1 1 0 0 0"),
                              QStringLiteral("1 0 0 0 0 0"), QStringLiteral("1 0 1 0 0 0"),
                              QStringLiteral("1 1 0 0 0 0"), QStringLiteral("1 1 1 0 0 0")}));
        expectAFinishedRecord();
    }

    void visitsTheFile()
    {
        prepare("mapper");
        useFile("<point><X>5</X></point><point/><point><Roll>90</Roll></point><point><X>-5</X></point>");
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress() && manager().NumBlocks() == 4);
        QCOMPARE(placesOfBlocks(),
                 QStringList({QStringLiteral("5 0 0 0 0 0"), QStringLiteral("5 0 0 0 0 0"),
                              QStringLiteral("5 0 0 90 0 0"), QStringLiteral("-5 0 0 90 0 0")}));
        expectAFinishedRecord();
    }

    void visitsFiftyThousandPoints()
    {
        prepare("mapper");
        QByteArray points;
        for (int i = 0; i < 50000; ++i)
            points += "<point><X>" + QByteArray::number(i) + "</X></point>";
        useFile(points);
        m_fixture->settings.SetMappingMaxMeasurementCount(1000000);
        parameters().SetBlockSize(1);
        m_mapper->setProperty("ready", QStringLiteral("never"));
        m_operation->StartSession();
        for (int i = 0; i < 49999; ++i) {
            m_operation->OnNewMeasure(m_block);
            // The fake keeps a list of its calls, which must not be what takes the time.
            m_mapper->setProperty("calls", QVariant());
            m_mapper->setProperty("places", QVariant());
        }
        QVERIFY(m_operation->SessionInProgress());
        m_operation->OnNewMeasure(m_block);
        QVERIFY(!m_operation->SessionInProgress());
        QCOMPARE(manager().NumBlocks(), 50000);
        for (size_t i = 0; i < 50000; ++i)
            QCOMPARE(manager().DataSet()->MeasureBlocks()->at(i)->Position.X(), static_cast<double>(i));
    }

    void emptyFile()
    {
        prepare("mapper");
        useFile({});
        record();
        QVERIFY(!m_operation->SessionInProgress());
        QVERIFY(!manager().IsRecording());
        QVERIFY(!m_mapper->property("places").isValid());
    }

    // What was read before the error is visited.
    void fileWithAnErrorInTheMiddle()
    {
        prepare("mapper");
        useFile("<point><X>1</X></point><point><X>2</X></point><point></X></point><point><X>3</X></point>");
        QVERIFY(m_operation->MappingParameters()->MapperSourceFile()->MappingFile()->FileError());
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress() && manager().NumBlocks() == 2);
    }

    void aMapperThatNeverReports()
    {
        prepare("mapper");
        m_mapper->setProperty("ready", QStringLiteral("never"));
        record();
        settle();
        QVERIFY(m_operation->SessionInProgress());
        QCOMPARE(manager().NumBlocks(), 0);
        QCOMPARE(calls(instrument()).count(QStringLiteral("StartMeasurement")), 0);
        stop();
        // The next session is as good as any.
        m_mapper->setProperty("ready", QStringLiteral("once"));
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress() && manager().NumBlocks() == 8);
    }

    void aMapperThatReportsTwice()
    {
        prepare("mapper");
        m_mapper->setProperty("ready", QStringLiteral("twice"));
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress());
        settle();
        QCOMPARE(m_mapper->property("places").toStringList().size(), 8);
        QVERIFY(manager().NumBlocks() >= 8);
        QVERIFY(!manager().IsRecording());
        QCOMPARE(m_log->Texts(QtWarningMsg), QStringList());
    }

    void aMapperThatLiesAboutItsType_data()
    {
        QTest::addColumn<QByteArray>("library");
        QTest::addColumn<int>("type");
        QTest::newRow("flies and says it stops") << QByteArray("flying-mapper") << 2;
        QTest::newRow("stops and says it flies") << QByteArray("mapper") << 1;
        QTest::newRow("stops and says nothing that is known") << QByteArray("mapper") << 0;
    }

    void aMapperThatLiesAboutItsType()
    {
        QFETCH(const QByteArray, library);
        QFETCH(const int, type);
        qputenv("KESTRIX_FAKE", "mapperType=" + QByteArray::number(type));
        prepare(library.constData());
        QCOMPARE(m_mapper->MapperType, type);
        record();
        settle();
        QVERIFY(m_operation->SessionInProgress());
        QVERIFY(!m_mapper->property("places").isValid());
        // Blocks come nevertheless, and are kept where the mapper says it is.
        m_operation->OnNewMeasure(m_block);
        QCOMPARE(placesOfBlocks(), QStringList(kOnePoint));
        QVERIFY(m_operation->SessionInProgress());
        stop();
    }

    void aMapperThatVanishes()
    {
        prepare("mapper");
        m_mapper->setProperty("ready", QStringLiteral("vanish"));
        record();
        QTRY_VERIFY(!m_operation->MappingParameters()->SelectedMapper());
        QVERIFY(m_fixture->plugins.MapperPlugins().isEmpty());
        QVERIFY(m_operation->SessionInProgress());
        m_operation->OnNewMeasure(m_block);
        QCOMPARE(manager().NumBlocks(), 1);
        stop();
        QCOMPARE(m_log->Texts(QtWarningMsg), QStringList({QStringLiteral("SelectedMapper is not set"),
                                                          QStringLiteral("Mapper is null")}));
        m_operation->StartSession();
        QVERIFY(!m_operation->SessionInProgress());
    }

    void anInstrumentThatVanishes()
    {
        prepare("mapper");
        m_mapper->setProperty("ready", QStringLiteral("never"));
        record();
        m_fixture->provider.RemoveInstrument(QStringLiteral("1"));
        m_fixture->supervisor.RefreshAvailableInstruments();
        QVERIFY(!m_operation->ActiveInstrument());
        QVERIFY(QMetaObject::invokeMethod(m_mapper, "EmitReady"));
        settle();
        QCOMPARE(manager().NumBlocks(), 0);
        QVERIFY(m_operation->SessionInProgress());
        stop();
    }

    void stopWhileAReportIsOnItsWay()
    {
        prepare("mapper");
        m_mapper->setProperty("ready", QStringLiteral("never"));
        record();
        QVERIFY(QMetaObject::invokeMethod(m_mapper, "EmitReady"));
        stop();
        settle();
        // The block that the report led to is kept; it leads to no further one.
        QVERIFY(!m_operation->SessionInProgress());
        QVERIFY(manager().NumBlocks() <= 1);
        QVERIFY(!manager().HasUnsavedData());
    }

    void stopsInTheMiddle()
    {
        prepare("mapper");
        m_operation->MappingParameters()->MapperSourceCartesian()->X()->SetStop(1e6);
        record();
        QTRY_VERIFY(manager().NumBlocks() >= 5);
        stop();
        settle();
        const int blocks = manager().NumBlocks();
        settle();
        QCOMPARE(manager().NumBlocks(), blocks);
        QVERIFY(manager().HasUnsavedData());
        QVERIFY(manager().IsIdleWithData());
    }

    void followsAFlyingMapper()
    {
        prepare("flying-mapper");
        record();
        for (int x = 1; x <= 3; ++x) {
            QVERIFY(QMetaObject::invokeMethod(m_mapper, "EmitAcquire", Q_ARG(double, x)));
            QTRY_COMPARE(manager().NumBlocks(), x);
        }
        QVERIFY(m_operation->SessionInProgress());
        stop();
        QCOMPARE(placesOfBlocks(),
                 QStringList({QStringLiteral("1 2 3 4 5 6"), QStringLiteral("2 4 6 8 10 12"),
                              QStringLiteral("3 6 9 12 15 18")}));
        QVERIFY(QMetaObject::invokeMethod(m_mapper, "EmitAcquire", Q_ARG(double, 4)));
        settle();
        QCOMPARE(manager().NumBlocks(), 3);
        QVERIFY(manager().HasUnsavedData());
    }

    // The trigger plug-in is started at each point, and stopped before each move.
    void externalTrigger()
    {
        prepare("mapper");
        parameters().SetTriggerMode(CTrigger::EXTERNAL);
        parameters().SetTriggerPlugin(m_fixture->plugins.TriggerPlugins().first());
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress() && manager().NumBlocks() == 8);
        const QStringList triggerCalls = calls(*m_fixture->plugins.TriggerPlugins().first());
        QCOMPARE(triggerCalls.count(QStringLiteral("Start")), 8);
        QCOMPARE(triggerCalls.count(QStringLiteral("Stop")), 7);
        expectAFinishedRecord();
        parameters().SetTriggerPlugin(nullptr);
    }

    void timerModeGoesOnByItself()
    {
        prepare("mapper");
        parameters().SetTriggerMode(CTrigger::TIMER);
        instrument().setProperty("blockCount", -1);
        record();
        QTRY_VERIFY(!m_operation->SessionInProgress() && manager().NumBlocks() >= 8);
        QCOMPARE(m_mapper->property("places").toStringList().size(), 8);
        instrument().StopMeasurement();
    }

private:
    CRecordingManagerMapping& manager() { return *m_operation->RecordingManager(); }
    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }
    CInstrument& instrument() { return *m_fixture->supervisor.Instrument().toStrongRef(); }
    static QStringList calls(const QObject& fake) { return fake.property("calls").toStringList(); }

    /// An active operation with the plug-ins of a library and an instrument that gives one block at a start.
    void prepare(const char* mapperLibrary)
    {
        const QString directory = QStringLiteral(KESTRIX_TEST_PLUGINS_DIR "/");
        m_fixture->settings.SetInstrumentDriverPluginsPath(QString());
        m_fixture->settings.SetMapperPluginsPath(directory + QLatin1String(mapperLibrary));
        m_fixture->settings.SetTriggerPluginsPath(directory + QStringLiteral("trigger"));
        {
            m_log.reset();
            const LogRecorder unheard;
            m_fixture->plugins.LoadAll();
        }
        m_log = std::make_unique<LogRecorder>();
        QCOMPARE(m_operation->GetMapperPlugins().size(), 1);
        m_mapper = m_operation->GetMapperPlugins().first();
        m_operation->MappingParameters()->SetSelectedMapper(m_mapper);
        m_fixture->connectInstrument(0);
        instrument().setProperty("blockCount", 1);
        instrument().setProperty("blockIntervalMs", 1);
        m_operation->Activate();
    }

    void useFile(const QByteArray& points)
    {
        CMappingParameters& mapping = *m_operation->MappingParameters();
        mapping.SetMapperSource(mapping.MapperSourceFile());
        mapping.MapperSourceFile()->MappingFile()->SetFilePath(m_fixture->write(
            QStringLiteral("p.xml"), "<NorvaneMappingFile ver=\"1.0\">" + points + "</NorvaneMappingFile>"));
        mapping.MapperSourceFile()->loadMappingFile();
    }

    // As the page does it.
    void record()
    {
        manager().ResetRecord();
        m_operation->StartSession();
    }

    void stop()
    {
        m_operation->StopSession();
        manager().StopRecord();
        QVERIFY(!m_operation->SessionInProgress());
        QVERIFY(!manager().IsRecording());
    }

    /// Lets everything happen that is under way.
    static void settle() { QTest::qWait(60); }

    void expectAFinishedRecord()
    {
        QVERIFY(manager().HasUnsavedData());
        QVERIFY(manager().IsIdleWithData());
        QVERIFY(!manager().IsRecording());
        QCOMPARE(calls(*m_mapper).first(), QStringLiteral("Start"));
        QCOMPARE(calls(*m_mapper).last(), QStringLiteral("Stop"));
        QVERIFY(m_log->Texts(QtWarningMsg).isEmpty());
        QCOMPARE(m_log->Texts(QtDebugMsg).count(QStringLiteral("End of the MapperSource list")), 1);
    }

    QStringList placesOfBlocks()
    {
        QStringList places;
        for (const auto& block : *manager().DataSet()->MeasureBlocks())
            places.append(FakeOptions::placeText(block->Position, block->Orientation));
        return places;
    }

    std::unique_ptr<LogRecorder> m_log;
    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMapping> m_operation;
    CMapperPlugin* m_mapper = nullptr;
    const QSharedPointer<CMeasureBlock> m_block = CFakeInstrument::MakeBlock(1);
};

QTEST_MAIN(tst_MappingSession)
#include "tst_MappingSession.moc"
