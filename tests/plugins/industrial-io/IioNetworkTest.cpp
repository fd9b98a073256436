// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioNetworkTest.h"

#include "FakeMagnetometer.h"
#include "IioBench.h"
#include "TcpRelay.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QtTest>

#include <cmath>
#include <csignal>

#include <sys/prctl.h>

namespace {

constexpr quint16 kPort = 30431;
// What must not hang comes back within a second or two; this is for busy machines, and far below a hang.
constexpr int kBoundMs = 15000;

QByteArray settingsFor(quint16 port, const QByteArray& rest)
{
    return "[Contexts]\nLocal=false\nHosts=127.0.0.1:" + QByteArray::number(port) + '\n' + rest;
}

} // namespace

void BoundProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

IioNetworkTest::IioNetworkTest(const QString& refused) : m_refused(refused) {}

IioNetworkTest::~IioNetworkTest() = default;

void IioNetworkTest::initTestCase()
{
    if (!m_refused.isEmpty())
        QSKIP(qPrintable(QStringLiteral("No private namespace: ") + m_refused));
    const QString program = QStandardPaths::findExecutable(
        QStringLiteral("iiod"),
        {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin"), QStringLiteral("/usr/bin")});
    if (program.isEmpty())
        QSKIP("The library's daemon, iiod, is not installed");
    m_device = std::make_unique<FakeMagnetometer>(0);
    m_device->Start(countingScan);
    m_device->Plug();
    m_daemon.setStandardOutputFile(QProcess::nullDevice());
    m_daemon.setStandardErrorFile(QProcess::nullDevice());
    m_daemon.start(program, QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(isListening(kPort), kLongWaitMs);
}

void IioNetworkTest::cleanupTestCase()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
    m_device.reset();
}

void IioNetworkTest::buffered()
{
    IioBench bench("[Contexts]\nLocal=false\nHosts=127.0.0.1\n");
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QCOMPARE(instrument->Interface(), CInstrumentInterface::Ethernet);
    QCOMPARE(instrument->SerialNumber(), QStringLiteral("lis3mdl_magn iio-device0@127.0.0.1"));
    QCOMPARE(instrument->RessourceName(), QStringLiteral("ip:127.0.0.1 iio:device0"));
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    QVERIFY2(bench.HasLogged("ip:127.0.0.1 iio:device0 is read through its buffer at 400 Hz"),
             qPrintable(bench.Log()));
    QCOMPARE(instrument->AcquisitionRateBound()->Max(), 800.0);

    Session session(instrument);
    session.parameters.SetUnits(CUnits::MICRO_TESLA);
    session.Configure(CTrigger::CONTINUOUS, 400, 20, 20);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 5, kLongWaitMs);
    instrument->StopMeasurement();
    const auto samples = session.Samples();
    QVERIFY(firstCountingScan(samples) >= 0);
    const double periodMs = static_cast<double>(epochNs(*samples.last()) - epochNs(*samples.first())) * 1e-6 /
                            (samples.size() - 1);
    QVERIFY2(std::abs(periodMs / 2.5 - 1) < 0.35, qPrintable(QString::number(periodMs)));
    instrument->Disconnect();
    QTRY_COMPARE_WITH_TIMEOUT(m_device->Text("buffer/enable"), QByteArray("0"), kLongWaitMs);
}

void IioNetworkTest::polled()
{
    IioBench bench("[Contexts]\nLocal=false\nHosts=127.0.0.1\n[Capture]\nBuffered=false\n");
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    Session session(instrument);
    session.parameters.SetUnits(CUnits::MICRO_TESLA);
    session.Configure(CTrigger::CONTINUOUS, 50, 5, 10);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 2, kLongWaitMs);
    const auto samples = session.Samples();
    for (const auto& sample : samples) {
        QVERIFY(isNear(static_cast<double>(sample->Bx()), -18.0164));
        QVERIFY(isNear(static_cast<double>(sample->By()), 7.4752));
        QVERIFY(isNear(static_cast<double>(sample->Bz()), 42.34));
    }
}

void IioNetworkTest::refused()
{
    IioBench bench(settingsFor(1, {}));
    QTRY_VERIFY_WITH_TIMEOUT(
        bench.HasLogged("The context ip:127.0.0.1:1 cannot be opened: Connection refused"), kLongWaitMs);
    QVERIFY(bench.Driver().Instruments().isEmpty());
}

void IioNetworkTest::wayThatFreezes_data()
{
    QTest::addColumn<bool>("isBuffered");
    QTest::newRow("buffer") << true;
    QTest::newRow("polling") << false;
}

// A call that never returns holds up neither Stop nor the end of the plug-in.
void IioNetworkTest::wayThatFreezes()
{
    QFETCH(bool, isBuffered);
    const int numThreads = threadCount();
    auto relay = std::make_unique<TcpRelay>(kPort);
    {
        IioBench bench(settingsFor(relay->Port(), isBuffered ? "TimeoutS=60\n"
                                                             : "TimeoutS=60\n[Capture]\nBuffered=false\n"));
        auto instrument = bench.Listed();
        QVERIFY(instrument);
        QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
        auto session = std::make_unique<Session>(instrument);
        session->Configure(CTrigger::CONTINUOUS, 100, 10, 10);
        instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!session->blocks.isEmpty(), kLongWaitMs);
        relay->SetFrozen(true);
        // What was on its way arrives; then nothing does.
        const auto hasDried = [&session] {
            const int count = session->blocks.size();
            QTest::qWait(250);
            return session->blocks.size() == count;
        };
        QTRY_VERIFY_WITH_TIMEOUT(hasDried(), kLongWaitMs);

        QElapsedTimer elapsed;
        elapsed.start();
        instrument->StopMeasurement();
        QVERIFY(!instrument->IsRunning());
        session.reset();
        bench.Driver().Plugin()->Stop();
        QVERIFY(!instrument->IsConnected());
        instrument.reset();
        bench.Unload();
        QVERIFY2(elapsed.elapsed() < kBoundMs, qPrintable(QString::number(elapsed.elapsed())));
        QVERIFY(isBuffered || bench.HasLogged("hangs, and is left behind"));
    }
    // What was left behind ends when the way is cut.
    relay.reset();
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(), numThreads, kLongWaitMs);
}

// Without a Stop the silence is noticed, the magnetometer is taken out of the list, and it comes back.
void IioNetworkTest::freezesUnnoticed()
{
    TcpRelay relay(kPort);
    IioBench bench(settingsFor(relay.Port(), "TimeoutS=1.5\n"));
    auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    const QString identity = instrument->SerialNumber();
    relay.SetFrozen(true);
    QTRY_VERIFY_WITH_TIMEOUT(bench.Driver().Instruments().isEmpty(), kLongWaitMs);
    QVERIFY(!instrument->IsConnected());
    QCOMPARE(
        instrument->StatusString(),
        QStringLiteral("The magnetometer ip:127.0.0.1:%1 iio:device0 does not answer").arg(relay.Port()));
    QVERIFY(bench.HasLogged("does not answer"));

    relay.SetFrozen(false);
    const auto again = bench.Listed();
    QVERIFY(again);
    QVERIFY(again != instrument);
    QCOMPARE(again->SerialNumber(), identity);
}
