// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginDriver.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

const QString kSettings = QStringLiteral("KestrixSimulatedInstrument.ini");

// A constant field without noise or any other part.
const QByteArray kQuietField = "[Field]\nDcX=20\nDcY=-3\nDcZ=40\nAcX=0\nAcY=0\nAcZ=0\n"
                               "AcThirdX=0\nAcThirdY=0\nAcThirdZ=0\nAcFifthX=0\nAcFifthY=0\nAcFifthZ=0\n"
                               "RotatingAmplitude=0\nDriftPerHourX=0\nDriftPerHourY=0\nDriftPerHourZ=0\n";
const QByteArray kQuietSensor = "[Sensor]\nNoise=0\nOffsetX=0\nOffsetY=0\nOffsetZ=0\nSeed=7\n"
                                "BprimeX=3\nBprimeY=4\nBprimeZ=0\n"
                                "AccuracyOfReading=0.001\nAccuracyOfRange=0.0002\n";

bool isClose(double value, double expected, double relative = 1e-6)
{
    return std::abs(value - expected) <= relative * std::abs(expected);
}

} // namespace

class tst_SimulatedInstrument : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PluginDriver> m_driver;
    QSharedPointer<CInstrument> m_instrument;

    void start(const QByteArray& settings)
    {
        writeSettings(kSettings, settings);
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY2(m_driver->Start(), qPrintable(m_driver->ErrorString()));
        QVERIFY(!m_driver->Instruments().isEmpty());
        m_instrument = m_driver->Instruments().first();
        QVERIFY(m_instrument->Connect());
        QVERIFY(m_instrument->IsConnected());
    }

private slots:
    void cleanup()
    {
        m_instrument.reset();
        m_driver.reset();
        removeSettings(kSettings);
    }

    void identityAndLists()
    {
        start("[Instruments]\nCount=3\nSerialNumber=AB-098\n");
        const auto instruments = m_driver->Instruments();
        QCOMPARE(instruments.size(), 3);
        QCOMPARE(instruments.at(0)->SerialNumber(), QStringLiteral("AB-098"));
        QCOMPARE(instruments.at(1)->SerialNumber(), QStringLiteral("AB-099"));
        QCOMPARE(instruments.at(2)->SerialNumber(), QStringLiteral("AB-100"));
        QCOMPARE(m_driver->Instruments(), instruments); // the same objects
        QVERIFY(!m_instrument->Name().isEmpty());
        QVERIFY(!m_instrument->Name().contains(QStringLiteral(" - ")));
        for (const QString& text :
             {m_instrument->RessourceName(), m_instrument->Manufacturer(), m_instrument->Model(),
              m_instrument->ElectronicsVersion(), m_instrument->ProbeVersion(),
              m_instrument->FirmwareVersion(), m_instrument->StatusString()})
            QVERIFY(!text.isEmpty());
        QVERIFY(m_instrument->CalibrationDate().isValid());
        QVERIFY(m_instrument->CalibrationDate().daysTo(QDateTime::currentDateTime()) <= 365);
        QVERIFY(m_instrument->ManufacturingDate().isValid());

        // Every field unit once, the raw counts last.
        QCOMPARE(m_instrument->UnitList().size(), 12);
        for (int unit = CUnits::TESLA; unit <= CUnits::ADC; ++unit)
            QVERIFY(m_instrument->UnitList().contains(static_cast<CUnits::UnitType>(unit)));
        QCOMPARE(m_instrument->UnitList().last(), CUnits::ADC);
        QCOMPARE(m_instrument->TriggerList(),
                 (QList<CTrigger::TriggerMode>{CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER,
                                               CTrigger::EXTERNAL}));
        QVERIFY(m_instrument->RangeList().size() >= 2);
        for (const tFlux range : m_instrument->RangeList()) {
            // A range survives its way through six digits of text.
            QCOMPARE(QString::number(static_cast<double>(range), 'g', 6).toFloat(), range);
        }
    }

    void everyDefaultOfTheApplicationIsWithinTheBounds()
    {
        start({});
        const auto holds = [](const CBoundedParm* bound, double value) {
            return bound->Min() <= value && value <= bound->Max();
        };
        for (const int averaging : {1, 10, 100, 1000})
            QVERIFY(holds(m_instrument->AveragingBound(), averaging));
        for (const double rate : {1.0, 10.0, 20.0, 200.0, 2000.0}) {
            QVERIFY(holds(m_instrument->AcquisitionRateBound(), rate));
            QVERIFY(holds(m_instrument->KestrixAcquisitionRateBound(), rate));
        }
        for (const double rate : {1.0, 2.0, 10.0}) {
            QVERIFY(holds(m_instrument->DisplayRateBound(), rate));
            QVERIFY(holds(m_instrument->KestrixDisplayRateBound(), rate));
        }
        QVERIFY(holds(m_instrument->FrequencyMinBound(), 0));
        QVERIFY(holds(m_instrument->FrequencyMaxBound(), 1000));
        for (const int size : {1, 2, 100, 2000})
            QVERIFY(holds(m_instrument->BlockSizeBound(), size));
        for (const CBoundedParm* bound :
             {m_instrument->AveragingBound(), m_instrument->BlockSizeBound(),
              m_instrument->AcquisitionRateBound(), m_instrument->DisplayRateBound(),
              m_instrument->FrequencyMinBound(), m_instrument->FrequencyMaxBound()})
            QVERIFY(holds(bound, bound->Default()));
    }

    void continuousStream_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<int>("blockSize");
        QTest::newRow("20 Hz, 2") << 20.0 << 2;
        QTest::newRow("1 kHz, 100") << 1000.0 << 100;
        QTest::newRow("300 Hz, 7") << 300.0 << 7;
        QTest::newRow("2000/7 Hz, 10") << 2000.0 / 7 << 10;
        QTest::newRow("10 kHz, 100") << 10000.0 << 100;
    }

    void continuousStream()
    {
        QFETCH(double, rate);
        QFETCH(int, blockSize);
        start({});
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, rate, blockSize, rate / blockSize);
        QVector<qint64> earlyByNs;
        connect(m_instrument.data(), &CInstrument::OnNewMeasureBlock, &session,
                [&earlyByNs](const QSharedPointer<CMeasureBlock>& block) {
                    earlyByNs.append(epochNs(*block->Results.last()) -
                                     QDateTime::currentMSecsSinceEpoch() * 1000000);
                });
        const QDateTime before = QDateTime::currentDateTime();
        m_instrument->StartMeasurement();
        QVERIFY(m_instrument->IsRunning());
        QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 8, 20000);
        m_instrument->StopMeasurement();
        QVERIFY(!m_instrument->IsRunning());

        const auto samples = session.Samples();
        for (const auto& block : qAsConst(session.blocks))
            QCOMPARE(block->Results.size(), blockSize);
        const qint64 first = epochNs(*samples.first());
        const qint64 toleranceNs = std::fmod(1e9, rate) == 0 ? 0 : 1;
        for (int i = 0; i < samples.size(); ++i) {
            const auto expectedNs = static_cast<qint64>(static_cast<long double>(i) * 1e9L / rate);
            const qint64 offsetNs = epochNs(*samples.at(i)) - first;
            QVERIFY2(std::abs(offsetNs - expectedNs) <= toleranceNs, qPrintable(QString::number(i)));
            QCOMPARE(samples.at(i)->Timestamp.timeSpec(), Qt::LocalTime);
            QCOMPARE(samples.at(i)->Timestamp.time().msec(),
                     static_cast<int>(samples.at(i)->TimestampNanoseconds / 1000000));
        }
        QVERIFY(before.msecsTo(samples.first()->Timestamp) >= -1000);
        QVERIFY(before.msecsTo(samples.first()->Timestamp) < 5000);
        // No block before its last sample is over; two clocks may differ by a millisecond.
        for (const qint64 early : qAsConst(earlyByNs))
            QVERIFY2(early < 2000000, qPrintable(QString::number(early)));
    }

    void immediateGivesOneBlockPerStart()
    {
        start({});
        Session session(m_instrument);
        session.parameters.SetAveraging(100);
        session.Configure(CTrigger::IMMEDIATE, 20, 5, 1);
        QCOMPARE(session.parameters.ImmediateAcquisitionRate(), 1000.0);
        session.parameters.SetAveraging(200);
        QCOMPARE(session.parameters.ImmediateAcquisitionRate(), 500.0);
        for (int run = 1; run <= 3; ++run) {
            m_instrument->StartMeasurement();
            QVERIFY(m_instrument->IsRunning());
            QTRY_VERIFY(!m_instrument->IsRunning());
            QCOMPARE(session.blocks.size(), run);
            const auto& results = session.blocks.last()->Results;
            QCOMPARE(results.size(), 5);
            QCOMPARE(epochNs(*results.at(4)) - epochNs(*results.at(0)), 4 * 2000000LL);
        }
        // Two starts in a row are two blocks.
        session.blocks.clear();
        m_instrument->StartMeasurement();
        m_instrument->StartMeasurement();
        QTRY_VERIFY(!m_instrument->IsRunning());
        QCOMPARE(session.blocks.size(), 2);
    }

    void timerGivesABlockAtEveryTick()
    {
        start({});
        Session session(m_instrument);
        session.Configure(CTrigger::TIMER, 1000, 10, 20);
        m_instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() >= 5);
        m_instrument->StopMeasurement();
        for (int i = 0; i < 5; ++i) {
            const auto& results = session.blocks.at(i)->Results;
            QCOMPARE(results.size(), 10);
            QCOMPARE(epochNs(*results.at(9)) - epochNs(*results.at(0)), 9000000LL);
            QCOMPARE(epochNs(*results.at(0)) - epochNs(*session.blocks.at(0)->Results.at(0)), i * 50000000LL);
        }
    }

    void externalWaitsForTriggers()
    {
        start({});
        FakeTrigger trigger;
        Session session(m_instrument);
        session.parameters.SetTriggerPlugin(&trigger);
        session.Configure(CTrigger::EXTERNAL, 1000, 4, 1);
        m_instrument->StartMeasurement();
        QTest::qWait(100);
        QCOMPARE(session.blocks.size(), 0);
        QVERIFY(m_instrument->IsRunning());
        emit trigger.Trigger();
        QTRY_COMPARE(session.blocks.size(), 1);
        QCOMPARE(session.blocks.first()->Results.size(), 4);
        QVERIFY(m_instrument->IsRunning());
        m_instrument->SendTrigger();
        QTRY_COMPARE(session.blocks.size(), 2);
        // Another plug-in, chosen while running.
        FakeTrigger other;
        session.parameters.SetTriggerPlugin(&other);
        emit other.Trigger();
        QTRY_COMPARE(session.blocks.size(), 3);
        emit trigger.Trigger();
        QTest::qWait(50);
        QCOMPARE(session.blocks.size(), 3);
        m_instrument->StopMeasurement();
        emit other.Trigger();
        m_instrument->SendTrigger();
        QTest::qWait(50);
        QCOMPARE(session.blocks.size(), 3);
        session.parameters.SetTriggerPlugin(nullptr);
    }

    void parametersAreTakenOverWhenTheyAreComplete()
    {
        start(kQuietField + kQuietSensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        m_instrument->StartMeasurement();
        const auto lastBx = [&session] {
            return static_cast<double>(session.blocks.last()->Results.last()->Bx());
        };
        QTRY_VERIFY(session.blocks.size() > 2);
        QVERIFY(isClose(lastBx(), 20));

        session.parameters.SetApplyConfiguration(false);
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        int seen = session.blocks.size();
        QTRY_VERIFY(session.blocks.size() > seen + 5);
        QVERIFY(isClose(lastBx(), 20));
        session.parameters.SetApplyConfiguration(true);
        QTRY_VERIFY(isClose(lastBx(), 20000));
        // A unit is no part of a cascade: the flag stays up.
        session.parameters.SetUnits(CUnits::TESLA);
        QTRY_VERIFY(isClose(lastBx(), 20e-6));

        // A new rate goes on without an overlap in time.
        session.parameters.SetAcquisitionRate(500);
        QTRY_COMPARE(session.blocks.last()->Results.size(), 5);
        QVERIFY(m_instrument->IsRunning());
        m_instrument->StopMeasurement();
        const auto samples = session.Samples();
        for (int i = 1; i < samples.size(); ++i)
            QVERIFY(epochNs(*samples.at(i)) > epochNs(*samples.at(i - 1)));
    }

    void noBlockOfTheOldUnitFollowsTheNewOne()
    {
        start(kQuietField + kQuietSensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        m_instrument->StartMeasurement();
        QTRY_VERIFY(!session.blocks.isEmpty());
        // Busy, as while a page is being redrawn: blocks queue up for the main thread.
        QThread::msleep(100);
        session.blocks.clear();
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        QTRY_VERIFY(session.blocks.size() > 20);
        m_instrument->StopMeasurement();
        for (const auto& sample : session.Samples())
            QVERIFY(isClose(static_cast<double>(sample->Bx()), 20000));
    }

    void parametersBeyondTheBoundsAreClipped()
    {
        start({});
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, 1e9, 0, 1);
        m_instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() > 2);
        m_instrument->StopMeasurement();
        QCOMPARE(session.blocks.first()->Results.size(), 1);
        const auto samples = session.Samples();
        QCOMPARE(epochNs(*samples.at(1)) - epochNs(*samples.at(0)), 10000LL);
    }

    void runsWithoutParametersAndAfterTheirEnd()
    {
        start({});
        QSignalSpy blocks(m_instrument.data(), &CInstrument::OnNewMeasureBlock);
        m_instrument->StartMeasurement();
        QTRY_VERIFY(!blocks.isEmpty());
        m_instrument->StopMeasurement();
        {
            CMeasurementParameters shortLived;
            m_instrument->SetMeasurementParameters(&shortLived);
        }
        QVERIFY(!m_instrument->MeasurementParameters());
        m_instrument->StartMeasurement();
        blocks.clear();
        QTRY_VERIFY(!blocks.isEmpty());
        m_instrument->StopMeasurement();
    }

    void nothingComesAfterStop()
    {
        start({});
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, 10000, 10, 1000);
        for (int run = 0; run < 100; ++run) {
            m_instrument->StartMeasurement();
            if (run % 10 == 0)
                QTRY_VERIFY(!session.blocks.isEmpty());
            else
                QTest::qSleep(1);
            m_instrument->StopMeasurement();
            m_instrument->StopMeasurement();
            session.blocks.clear();
            QCoreApplication::processEvents();
            QCOMPARE(session.blocks.size(), 0);
        }
    }

    void stopFromWithinABlock()
    {
        start({});
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, 10000, 10, 1000);
        connect(m_instrument.data(), &CInstrument::OnNewMeasureBlock, &session,
                [this] { m_instrument->StopMeasurement(); });
        m_instrument->StartMeasurement();
        QTRY_COMPARE(session.blocks.size(), 1);
        QTest::qWait(50);
        QCOMPARE(session.blocks.size(), 1);
    }

    void destructionWhileRunningLeavesNoThread()
    {
        start({});
        const int threads = threadCount();
        {
            CMeasurementParameters parameters;
            m_instrument->SetMeasurementParameters(&parameters);
            m_instrument->StartMeasurement();
            QTRY_VERIFY(threads < 0 || threadCount() == threads + 1);
            m_instrument.reset();
            m_driver.reset(); // the list held the last reference
        }
        QTRY_COMPARE(threadCount(), threads);
        QCoreApplication::processEvents();
    }

    void pluginStopsTwice()
    {
        start({});
        m_instrument->StartMeasurement();
        m_driver->Plugin()->Stop();
        QVERIFY(!m_instrument->IsRunning());
        m_driver->Plugin()->Stop();
        QCOMPARE(m_driver->Instruments().size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedInstrument)
#include "tst_SimulatedInstrument.moc"
