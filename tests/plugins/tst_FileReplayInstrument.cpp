// SPDX-License-Identifier: GPL-3.0-or-later
// How recordings are played.
#include "FileReplayFixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

class tst_FileReplayInstrument : public QObject, private FileReplayFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void timesOfTheFile()
    {
        write(QStringLiteral("utc.csv"), "time_utc,Bx_nT,By_nT,Bz_nT\n2020-01-05T23:59:59.123456789,1,2,3\n"
                                         "2020-01-06T00:00:00.123456789,1,2,3\n");
        write(QStringLiteral("offset.csv"), "time,Bx_nT,By_nT,Bz_nT\n2020-01-06T01:29:59.5+01:30,1,2,3\n"
                                            "2020-01-06T01:30:00.5+01:30,1,2,3\n");
        write(QStringLiteral("epoch.csv"), "t_us,Bx_nT,By_nT,Bz_nT\n1578268799123456.789,1,2,3\n"
                                           "1578268800123456.789,1,2,3\n");
        write(QStringLiteral("local.csv"), "time,Bx_nT,By_nT,Bz_nT\n2020-01-05T23:59:59,1,2,3\n"
                                           "2020-01-06T00:00:00,1,2,3\n");
        start();
        const auto first = [this](const char* name) {
            Session session(m_driver->Instrument(QLatin1String(name)));
            session.instrument->Connect();
            session.Configure(CTrigger::CONTINUOUS, 1, 10, 0.1);
            play(session);
            return session.Samples().isEmpty() ? 0 : epochNs(*session.Samples().first());
        };
        const qint64 seconds = 1578268799LL * 1000000000; // 2020-01-05 23:59:59 UTC
        QCOMPARE(first("utc.csv"), seconds + 123456789);
        QCOMPARE(first("offset.csv"), seconds + 500000000);
        QCOMPARE(first("epoch.csv"), seconds + 123456789);
        QCOMPARE(first("local.csv"),
                 QDateTime(QDate(2020, 1, 5), QTime(23, 59, 59)).toSecsSinceEpoch() * 1000000000);
    }

    void relativeTimesBeginNow()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n100,1,2,3\n100.5,1,2,3\n102,1,2,3\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 2, 2, 1);
        play(session);
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 3);
        QVERIFY(std::abs(samples.first()->Timestamp.msecsTo(QDateTime::currentDateTime())) < 10000);
        QCOMPARE(epochNs(*samples.at(1)) - epochNs(*samples.at(0)), 500000000LL);
        QCOMPARE(epochNs(*samples.at(2)) - epochNs(*samples.at(0)), 2000000000LL);
    }

    void derivedValues()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT,F_nT\n0,3.00,4.00,12.00,99999.00\n1,0,0,2,7\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1, 1, 1);
        play(session);
        const auto samples = session.Samples();
        QVERIFY(isClose(value(samples.at(0)->B()), 13)); // missing in the file: the norm
        QVERIFY(isClose(value(samples.at(1)->B()), 7));  // as the file has it
        QVERIFY(isClose(value(samples.at(0)->BBprime()), 13));
        QVERIFY(isClose(value(samples.at(0)->dB()), 0.005)); // half of the last digit
        QVERIFY(isClose(session.blocks.at(0)->Bprime.Z(), 12.0 / 13));
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        play(session);
        QVERIFY(isClose(value(session.Samples().at(0)->Bz()), 0.012));
    }

    void recordKeepsItsFields()
    {
        write(QStringLiteral("a.qdr.xml"),
              recordText("1.2", "2024.03.01T10:11:12.123456789;2.75;7.5;1.5;-2.25;0.5;3;0.125\n"
                                "2024.03.01T10:11:12.373456789;4.4;8.5;2.5;-3.25;1.5;4;nan\n"));
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::MILLI_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 4, 10, 0.4);
        play(session);
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 2);
        QCOMPARE(samples.at(0)->Timestamp.toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss.zzz")),
                 QStringLiteral("2024.03.01T10:11:12.123"));
        QCOMPARE(samples.at(0)->TimestampNanoseconds, 123456789U);
        QCOMPARE(samples.at(0)->B(), 2.75F);
        QCOMPARE(samples.at(0)->BBprime(), 7.5F);
        QCOMPARE(int(samples.at(0)->Temperature()), 3);
        QCOMPARE(samples.at(0)->dB(), 0.125F);
        QVERIFY(std::isnan(samples.at(1)->dB()));
        QCOMPARE(session.blocks.first()->Bprime.Z(), 0.0);
    }

    void ownRateRules()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n0.2,1,2,3\n0.4,1,2,3\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        // What the application starts from.
        session.Configure(CTrigger::CONTINUOUS, 20, 2, 10);
        QTRY_COMPARE(session.parameters.AcquisitionRate(), 5.0);
        QCOMPARE(session.parameters.DisplayRate(), 5.0);
        QCOMPARE(session.parameters.BlockSize(), 1);
        QVERIFY(session.parameters.ApplyConfiguration());
        session.parameters.SetDisplayRate(1);
        QCOMPARE(session.parameters.BlockSize(), 5);
        const CBoundedParm* bound = session.instrument->KestrixAcquisitionRateBound();
        QVERIFY(bound->Min() <= 5.0 && 5.0 <= bound->Max());
    }

    void pacing()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 40; ++i)
            text += QByteArray::number(i * 0.01) + ",1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        // 40 samples at 100 Hz are 0.4 s; ten times as fast 40 ms.
        for (const double speed : {1.0, 10.0}) {
            start("Speed=" + QByteArray::number(speed) + '\n');
            Session session(m_driver->Instruments().first());
            QVERIFY(session.instrument->Connect());
            session.Configure(CTrigger::CONTINUOUS, 100, 10, 10);
            QElapsedTimer timer;
            timer.start();
            play(session);
            QVERIFY(timer.elapsed() >= 395 / speed);
            QCOMPARE(session.blocks.size(), 4);
            QCOMPARE(session.instrument->StatusString().isEmpty(), false);
            // Speed does not touch the times.
            const auto samples = session.Samples();
            QCOMPARE(epochNs(*samples.at(39)) - epochNs(*samples.at(0)), 390000000LL);
        }
    }

    void loopGoesOnInTime()
    {
        write(QStringLiteral("a.csv"), "time_utc,Bx_nT,By_nT,Bz_nT\n2020-01-01T00:00:00,1,2,3\n"
                                       "2020-01-01T00:00:01,1,2,3\n2020-01-01T00:00:02,1,2,3\n");
        start("Speed=0\nLoop=true\n");
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 1, 2, 0.5);
        session.instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() >= 20);
        session.instrument->StopMeasurement();
        const auto samples = session.Samples();
        for (int i = 1; i < 40; ++i)
            QCOMPARE(epochNs(*samples.at(i)) - epochNs(*samples.at(i - 1)), 1000000000LL);
    }

    // A main thread that does not keep up holds the reading back.
    void fastReplayDoesNotPileUp()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 1000; ++i)
            text += QByteArray::number(i) + ",1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 1, 1, 1);
        session.instrument->StartMeasurement();
        QTest::qSleep(200); // no event is processed
        QCoreApplication::sendPostedEvents();
        QVERIFY2(session.blocks.size() <= 100, qPrintable(QString::number(session.blocks.size())));
        QVERIFY(session.blocks.size() > 0);
        QTRY_VERIFY_WITH_TIMEOUT(!session.instrument->IsRunning(), 20000);
        QCOMPARE(session.blocks.size(), 1000);
    }

    void singleBlocksFollowOneAnother()
    {
        write(QStringLiteral("a.csv"),
              "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,2,2,3\n2,3,2,3\n3,4,2,3\n4,5,2,3\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.Configure(CTrigger::IMMEDIATE, 1, 2, 1);
        QCOMPARE(session.parameters.ImmediateAcquisitionRate(), 1.0);
        for (int i = 0; i < 3; ++i) {
            session.instrument->StartMeasurement();
            QTRY_VERIFY(!session.instrument->IsRunning());
            QCOMPARE(session.blocks.size(), i + 1);
            QCOMPARE(session.blocks.last()->Results.first()->Bx(), tFlux(2 * i + 1));
        }
        QCOMPARE(session.blocks.last()->Results.size(), 1); // what was left
    }

    void externalTriggerTakesTheNextBlock()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,2,2,3\n2,3,2,3\n3,4,2,3\n");
        start();
        FakeTrigger trigger;
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetTriggerPlugin(&trigger);
        session.Configure(CTrigger::EXTERNAL, 1, 2, 1);
        session.instrument->StartMeasurement();
        QTest::qWait(30);
        QCOMPARE(session.blocks.size(), 0);
        emit trigger.Trigger();
        QTRY_COMPARE(session.blocks.size(), 1);
        session.instrument->SendTrigger();
        QTRY_COMPARE(session.blocks.size(), 2);
        session.instrument->StopMeasurement();
        session.parameters.SetTriggerPlugin(nullptr);
    }

    // No sample is lost when the size of the blocks changes on the way.
    void changeOfBlockSizeLosesNothing()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 2000; ++i)
            text += QByteArray::number(i) + ',' + QByteArray::number(i) + ",2,3\n";
        write(QStringLiteral("a.csv"), text);
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1, 10, 0.1);
        connect(session.instrument.data(), &CInstrument::OnNewMeasureBlock, &session, [&session] {
            if (session.blocks.size() == 10)
                session.parameters.SetDisplayRate(0.25);
            if (session.blocks.size() == 40)
                session.parameters.SetDisplayRate(0.05);
        });
        play(session);
        QVector<int> sizes;
        for (const auto& block : qAsConst(session.blocks)) {
            if (!sizes.contains(block->Results.size()))
                sizes.append(block->Results.size());
        }
        QVERIFY(sizes.contains(10) && sizes.contains(4) && sizes.contains(20));
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 2000);
        for (int i = 0; i < 2000; ++i)
            QCOMPARE(samples.at(i)->Bx(), tFlux(i));
    }

    void startAndStopOften()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 1000; ++i)
            text += QByteArray::number(i) + ",1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        start("Speed=0\nLoop=true\n");
        const int threads = threadCount();
        {
            Session session(m_driver->Instruments().first());
            QVERIFY(session.instrument->Connect());
            session.Configure(CTrigger::CONTINUOUS, 1, 10, 0.1);
            for (int run = 0; run < 100; ++run) {
                session.instrument->StartMeasurement();
                QCoreApplication::processEvents();
                session.instrument->StopMeasurement();
                session.blocks.clear();
                QCoreApplication::processEvents();
                QCOMPARE(session.blocks.size(), 0);
            }
            session.instrument->StartMeasurement();
        }
        m_driver.reset();
        QCOMPARE(threadCount(), threads);
    }
};

QTEST_GUILESS_MAIN(tst_FileReplayInstrument)
#include "tst_FileReplayInstrument.moc"
