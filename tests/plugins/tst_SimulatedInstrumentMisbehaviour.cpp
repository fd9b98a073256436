// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginDriver.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

const QString kSettings = QStringLiteral("KestrixSimulatedInstrument.ini");

} // namespace

class tst_SimulatedInstrumentMisbehaviour : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PluginDriver> m_driver;
    QSharedPointer<CInstrument> m_instrument;

    void start(const QByteArray& misbehaviour)
    {
        writeSettings(kSettings, "[Misbehaviour]\n" + misbehaviour);
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY2(m_driver->Start(), qPrintable(m_driver->ErrorString()));
        m_instrument = m_driver->Instruments().first();
    }

private slots:
    void cleanup()
    {
        m_instrument.reset();
        m_driver.reset();
        removeSettings(kSettings);
    }

    void slowConnect()
    {
        start("ConnectDelayMs=300\n");
        QElapsedTimer timer;
        timer.start();
        QVERIFY(m_instrument->Connect());
        QVERIFY(timer.elapsed() >= 300);
    }

    void failedConnect()
    {
        start("Connect=fail\n");
        QVERIFY(!m_instrument->Connect());
        QVERIFY(!m_instrument->IsConnected());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("not connected")));
        m_instrument->StartMeasurement();
        QVERIFY(!m_instrument->IsRunning());
        // The file is read anew at each connection.
        writeSettings(kSettings, {});
        QVERIFY(m_instrument->Connect());
    }

    void throwingConnect()
    {
        start("Connect=throw\n");
        QVERIFY_EXCEPTION_THROWN(m_instrument->Connect(), std::exception);
        QVERIFY(!m_instrument->IsConnected());
    }

    void failedReconnectEndsTheRun_data()
    {
        QTest::addColumn<QByteArray>("outcome");
        QTest::newRow("fail") << QByteArray("fail");
        QTest::newRow("throw") << QByteArray("throw");
    }
    void failedReconnectEndsTheRun()
    {
        QFETCH(QByteArray, outcome);
        start({});
        Session session(m_instrument);
        QVERIFY(m_instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        m_instrument->StartMeasurement();
        QTRY_VERIFY(!session.blocks.isEmpty());
        writeSettings(kSettings, "[Misbehaviour]\nConnect=" + outcome + '\n');
        if (outcome == "throw")
            QVERIFY_EXCEPTION_THROWN(m_instrument->Connect(), std::exception);
        else
            QVERIFY(!m_instrument->Connect());
        QVERIFY(!m_instrument->IsRunning());
        QVERIFY(!m_instrument->IsConnected());
        const int seen = session.blocks.size();
        QTest::qWait(50);
        QCOMPARE(session.blocks.size(), seen);
    }

    void throwingDisconnect()
    {
        start("Disconnect=throw\n");
        QVERIFY(m_instrument->Connect());
        m_instrument->StartMeasurement();
        QVERIFY_EXCEPTION_THROWN(m_instrument->Disconnect(), std::exception);
        QVERIFY(!m_instrument->IsRunning());
    }

    void vanishesAndReturns()
    {
        start("VanishAfterS=0.5\nReturnAfterS=0.2\n");
        Session session(m_instrument);
        QVERIFY(m_instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        m_instrument->StartMeasurement();
        QSignalSpy listed(m_driver->Provider(), &CInstrumentListProvider::InstrumentListUpdated);
        QTRY_COMPARE(listed.size(), 1);
        QVERIFY(m_driver->Instruments().isEmpty());
        QVERIFY(!m_instrument->IsRunning());
        QVERIFY(!m_instrument->IsConnected());
        const int seen = session.blocks.size();
        QVERIFY(seen > 0);
        QTRY_COMPARE(listed.size(), 2);
        QCOMPARE(session.blocks.size(), seen);
        QCOMPARE(m_driver->Instruments().size(), 1);
        QVERIFY(m_driver->Instruments().first() != m_instrument);
        QCOMPARE(m_driver->Instruments().first()->SerialNumber(), m_instrument->SerialNumber());
        m_instrument->Disconnect(); // as the application does with one that is gone
    }

    void emptyAndNanBlocks()
    {
        start("EmptyBlockEvery=3\nNanBlockEvery=4\n");
        QVERIFY(m_instrument->Connect());
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        m_instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() >= 9);
        m_instrument->StopMeasurement();
        for (int i = 0; i < 9; ++i) {
            const int number = i + 1;
            const auto& results = session.blocks.at(i)->Results;
            QCOMPARE(results.size(), number % 3 == 0 ? 0 : 10);
            for (const auto& result : results) {
                QCOMPARE(bool(std::isnan(result->Bx())), number % 4 == 0);
                QCOMPARE(bool(std::isnan(result->B())), number % 4 == 0);
            }
        }
        // An empty block is a gap in time.
        QCOMPARE(epochNs(*session.blocks.at(3)->Results.first()) -
                     epochNs(*session.blocks.at(1)->Results.last()),
                 11000000LL);
    }

    void bursts()
    {
        start("BurstIntervalS=0.4\nBurstLengthS=0.2\n");
        QVERIFY(m_instrument->Connect());
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, 1000, 20, 50);
        m_instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 115, 20000); // 10, then 100 in the burst, then on
        m_instrument->StopMeasurement();
        const auto samples = session.Samples();
        int slow = 0;
        int fast = 0;
        for (int i = 1; i < 2300; ++i) {
            const qint64 stepNs = epochNs(*samples.at(i)) - epochNs(*samples.at(i - 1));
            QVERIFY(stepNs == 1000000 || stepNs == 100000);
            (stepNs == 1000000 ? slow : fast) += 1;
        }
        QVERIFY(std::abs(fast - 2000) <= 20);
        QVERIFY(slow >= 200);
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedInstrumentMisbehaviour)
#include "tst_SimulatedInstrumentMisbehaviour.moc"
