// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioDeviceTest.h"

#include "FakeMagnetometer.h"
#include "IioBench.h"
#include "PrivateNamespace.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>

namespace {

const QByteArray kPolling = "[Capture]\nBuffered=false\n";

qint64 wallNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

QByteArray littleEndian(qint64 value)
{
    char stored[8];
    qToLittleEndian(value, stored);
    return QByteArray(stored, 8);
}

double field(const CMeasureBlock& block, double (*component)(const CFieldIntensityResult&))
{
    return component(*block.Results.first());
}

double bx(const CFieldIntensityResult& result)
{
    return static_cast<double>(result.Bx());
}

double by(const CFieldIntensityResult& result)
{
    return static_cast<double>(result.By());
}

double bz(const CFieldIntensityResult& result)
{
    return static_cast<double>(result.Bz());
}

} // namespace

void IioDeviceTest::initTestCase()
{
    if (!m_refused.isEmpty())
        QSKIP(qPrintable(QStringLiteral("No private namespace: ") + m_refused));
}

void IioDeviceTest::noDevice()
{
    IioBench bench;
    QVERIFY(bench.Driver().Instruments().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(bench.HasLogged("There is no magnetometer of three axes at local:"),
                             kLongWaitMs);

    // A device of two axes is none, and one that comes later is found.
    FakeMagnetometer flat(1, QStringLiteral("1-000e"));
    flat.Remove("in_magn_z_raw");
    QDir(QStringLiteral("/sys/bus/hardware/i2c-1/1-000e/iio:device1/scan_elements")).removeRecursively();
    flat.Plug();
    FakeMagnetometer late(0);
    late.Plug();
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QCOMPARE(instrument->SerialNumber(), QStringLiteral("lis3mdl_magn 1-001e"));
    QCOMPARE(instrument->RessourceName(), QStringLiteral("local: iio:device0"));
    QCOMPARE(instrument->Interface(), CInstrumentInterface::USB);
}

// Through the buffer: no scan is lost, and a change of rate reaches the device without mixing blocks.
void IioDeviceTest::buffered()
{
    FakeMagnetometer device(0);
    device.Start(countingScan);
    device.Plug();
    IioBench bench;
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    QVERIFY2(bench.HasLogged("local: iio:device0 is read through its buffer at 400 Hz"),
             qPrintable(bench.Log()));
    QCOMPARE(instrument->Model(), QStringLiteral("lis3mdl_magn"));
    QCOMPARE(instrument->AcquisitionRateBound()->Min(), 100.0);
    QCOMPARE(instrument->AcquisitionRateBound()->Max(), 800.0);
    QCOMPARE(instrument->KestrixAcquisitionRateBound()->Max(), 800.0);
    QCOMPARE(instrument->FrequencyMaxBound()->Max(), 400.0);

    Session session(instrument);
    session.parameters.SetUnits(CUnits::MICRO_TESLA);
    // Blocks that end in the midst of what is fetched at once.
    session.Configure(CTrigger::CONTINUOUS, 400, 37, 10);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 3, kLongWaitMs);
    auto samples = session.Samples();
    QVERIFY(firstCountingScan(samples) >= 0);
    QVERIFY(isNear(static_cast<double>(samples.first()->dB()), kCount / 2));
    double periodMs = static_cast<double>(epochNs(*samples.last()) - epochNs(*samples.first())) * 1e-6 /
                      (samples.size() - 1);
    QVERIFY2(std::abs(periodMs / 2.5 - 1) < 0.35, qPrintable(QString::number(periodMs)));
    QVERIFY(std::abs(static_cast<double>(epochNs(*samples.last()) - wallNs())) < 10e9);

    // 150 Hz there is not.
    session.blocks.clear();
    session.Configure(CTrigger::CONTINUOUS, 150, 37, 4);
    QTRY_COMPARE_WITH_TIMEOUT(session.parameters.AcquisitionRate(), 200.0, kLongWaitMs);
    QTRY_COMPARE_WITH_TIMEOUT(device.Text("sampling_frequency"), QByteArray("200"), kLongWaitMs);
    const int former = session.blocks.size();
    QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= former + 4, kLongWaitMs);
    instrument->StopMeasurement();
    for (const auto& block : qAsConst(session.blocks))
        QVERIFY(firstCountingScan(block->Results) >= 0);
    QVERIFY(!instrument->IsRunning());
    samples.clear();
    for (int i = session.blocks.size() - 3; i < session.blocks.size(); ++i)
        samples += session.blocks.at(i)->Results;
    QVERIFY(firstCountingScan(samples) >= 0);
    periodMs = static_cast<double>(epochNs(*samples.last()) - epochNs(*samples.first())) * 1e-6 /
               (samples.size() - 1);
    QVERIFY2(std::abs(periodMs / 5 - 1) < 0.35, qPrintable(QString::number(periodMs)));

    // The mean of two: half of the rate.
    session.parameters.SetAveraging(2);
    QCOMPARE(instrument->AcquisitionRateBound()->Max(), 400.0);
    instrument->Disconnect();
    QVERIFY(!instrument->IsConnected());
    QTRY_COMPARE_WITH_TIMEOUT(device.Text("buffer/enable"), QByteArray("0"), kLongWaitMs);
}

// The kernel's own times, with a gap that stays one; big-endian counts of 24 bits.
void IioDeviceTest::scansWithTimes()
{
    std::mutex mutex;
    QVector<qint64> times;
    FakeMagnetometer device(0);
    device.SetType("be:s24/32>>8");
    device.AddTimestamps();
    device.Set("sampling_frequency", "800");
    std::atomic<bool> mustPause{false};
    device.Start([&mutex, &times, &mustPause](int number) {
        const bool isPause = mustPause.exchange(false);
        if (isPause)
            std::this_thread::sleep_for(std::chrono::milliseconds(400));
        const std::lock_guard<std::mutex> lock(mutex);
        // When the sensor was ready, not when a busy machine gets to write it down.
        times.append(times.isEmpty() ? wallNs() : times.last() + 1250000 + (isPause ? 400000000 : 0));
        QByteArray bytes;
        for (const int count : {number, -number, 1000 + number}) {
            char stored[4];
            qToBigEndian(static_cast<qint32>(count * 256 + 77), stored); // below the counts there is noise
            bytes.append(stored, 4);
        }
        return bytes + QByteArray(4, '\xEE') + littleEndian(times.last());
    });
    device.Plug();
    IioBench bench;
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    QVERIFY2(bench.HasLogged("timed by its scans"), qPrintable(bench.Log()));
    Session session(instrument);
    session.parameters.SetUnits(CUnits::MICRO_TESLA);
    session.Configure(CTrigger::CONTINUOUS, 800, 50, 16);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(!session.blocks.isEmpty(), kLongWaitMs);
    mustPause = true;
    QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 8, kLongWaitMs);
    instrument->StopMeasurement();
    const auto samples = session.Samples();
    const int first = firstCountingScan(samples);
    QVERIFY(first > 0);
    const std::lock_guard<std::mutex> lock(mutex);
    bool hasGap = false;
    for (int i = 0; i < samples.size(); ++i) {
        const qint64 errorNs = epochNs(*samples.at(i)) - times.at(first + i);
        QVERIFY2(std::abs(errorNs) < 20000000, qPrintable(QString::number(errorNs)));
        hasGap = hasGap || (i > 0 && epochNs(*samples.at(i)) - epochNs(*samples.at(i - 1)) > 350000000);
    }
    QVERIFY(hasGap);
}

// A device that needs a trigger gets its own; without one its buffer is of no use.
void IioDeviceTest::ownTrigger()
{
    FakeMagnetometer device(0);
    device.Start(countingScan);
    QDir().mkpath(QStringLiteral("/sys/bus/hardware/i2c-1/1-001e/iio:device0/trigger"));
    device.Set("trigger/current_trigger", "");
    device.Plug();
    {
        IioBench bench("[Capture]\nTrigger=absent\n");
        const auto instrument = bench.Listed();
        QVERIFY(instrument);
        QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
        QVERIFY2(bench.HasLogged("(there is no trigger absent): it is polled instead"),
                 qPrintable(bench.Log()));
    }
    const QString trigger = QStringLiteral("/sys/bus/iio/devices/trigger0");
    QDir().mkpath(trigger);
    QFile name(trigger + QStringLiteral("/name"));
    QVERIFY(name.open(QIODevice::WriteOnly) && name.write("lis3mdl_magn-trigger\n") > 0);
    name.close();
    IioBench bench;
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    QVERIFY2(bench.HasLogged("is read through its buffer"), qPrintable(bench.Log()));
    QCOMPARE(device.Text("trigger/current_trigger"), QByteArray("lis3mdl_magn-trigger"));
    QDir(trigger).removeRecursively();
}

// Any rate up to that of the device, and all modes of triggering.
void IioDeviceTest::polled()
{
    FakeMagnetometer device(0);
    device.Plug();
    IioBench bench(kPolling);
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    QVERIFY2(bench.HasLogged("is read by polling at 20 Hz"), qPrintable(bench.Log()));
    QCOMPARE(instrument->AcquisitionRateBound()->Min(), 1.0);
    QVERIFY(instrument->AcquisitionRateBound()->Max() <= 800);
    QCOMPARE(instrument->TriggerList().size(), 4);

    Session session(instrument);
    session.parameters.SetUnits(CUnits::MICRO_TESLA);
    session.Configure(CTrigger::CONTINUOUS, 50, 5, 10);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 3, kLongWaitMs);
    instrument->StopMeasurement();
    // -1234, 512 and 2900 counts of 0.000146 gauss, a gauss being 100 microtesla.
    const auto samples = session.Samples();
    for (const auto& sample : samples) {
        QVERIFY(isNear(bx(*sample), -18.0164));
        QVERIFY(isNear(by(*sample), 7.4752));
        QVERIFY(isNear(bz(*sample), 42.34));
        QVERIFY(isNear(static_cast<double>(sample->B()),
                       std::sqrt(18.0164 * 18.0164 + 7.4752 * 7.4752 + 42.34 * 42.34)));
    }
    for (int i = 1; i < samples.size(); ++i)
        QVERIFY(epochNs(*samples.at(i)) > epochNs(*samples.at(i - 1)));
    QCOMPARE(device.Text("sampling_frequency"),
             QByteArray("100")); // the least that is not slower than the polling

    const auto blocksOf = [&session, &instrument](CTrigger::TriggerMode mode,
                                                  const std::function<void()>& act, int count) {
        session.blocks.clear();
        session.Configure(mode, 50, 5, 5);
        instrument->StartMeasurement();
        act();
        const bool hasCome =
            QTest::qWaitFor([&session, count] { return session.blocks.size() >= count; }, kLongWaitMs);
        instrument->StopMeasurement();
        return hasCome && session.blocks.first()->Results.size() == 5;
    };
    QVERIFY(blocksOf(
        CTrigger::IMMEDIATE, [] {}, 1));
    QVERIFY(blocksOf(
        CTrigger::TIMER, [] {}, 2));
    FakeTrigger trigger;
    session.parameters.SetTriggerPlugin(&trigger);
    QVERIFY(blocksOf(
        CTrigger::EXTERNAL, [&trigger] { emit trigger.Trigger(); }, 1));
    session.parameters.SetTriggerPlugin(nullptr);

    session.parameters.SetUnits(CUnits::MILLI_GAUSS);
    QVERIFY(blocksOf(
        CTrigger::IMMEDIATE, [] {}, 1));
    QVERIFY(isNear(field(*session.blocks.first(), bx), -180.164));
}

void IioDeviceTest::values_data()
{
    using Attributes = QVector<QPair<QByteArray, QByteArray>>;
    QTest::addColumn<Attributes>("attributes");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("z");
    // Counts -1234, 512 and 2900; all in microtesla.
    QTest::newRow("scale of all") << Attributes{{"in_magn_scale", "0.001"}} << -123.4 << 51.2 << 290.0;
    QTest::newRow("scale of each") << Attributes{{"in_magn_scale", ""},
                                                 {"in_magn_x_scale", "0.001"},
                                                 {"in_magn_y_scale", "0.002"},
                                                 {"in_magn_z_scale", "-0.0005"}}
                                   << -123.4 << 102.4 << -145.0;
    QTest::newRow("offset of all") << Attributes{{"in_magn_offset", "100"}} << -16.5564 << 8.9352 << 43.8;
    QTest::newRow("offset of each") << Attributes{{"in_magn_x_offset", "1234"},
                                                  {"in_magn_y_offset", "-512.5"},
                                                  {"in_magn_z_offset", "-3000"}}
                                    << 0.0 << -0.0073 << -1.46;
    QTest::newRow("values that are in gauss already")
        << Attributes{{"in_magn_x_raw", ""},     {"in_magn_y_raw", ""},       {"in_magn_z_raw", ""},
                      {"in_magn_scale", ""},     {"in_magn_x_input", "0.25"}, {"in_magn_y_input", "-0.125"},
                      {"in_magn_z_input", "0.5"}}
        << 25.0 << -12.5 << 50.0;
    QTest::newRow("no rates") << Attributes{{"sampling_frequency", ""}, {"sampling_frequency_available", ""}}
                              << -18.0164 << 7.4752 << 42.34;
    QTest::newRow("rates of garbage")
        << Attributes{{"sampling_frequency", "fast"}, {"sampling_frequency_available", "!"}} << -18.0164
        << 7.4752 << 42.34;
}

void IioDeviceTest::values()
{
    using Attributes = QVector<QPair<QByteArray, QByteArray>>;
    QFETCH(Attributes, attributes);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(double, z);
    FakeMagnetometer device(0);
    device.RemoveBuffer();
    for (const auto& [name, text] : qAsConst(attributes)) {
        if (text.isEmpty())
            device.Remove(name.constData());
        else
            device.Set(name.constData(), text);
    }
    device.Plug();
    IioBench bench;
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    Session session(instrument);
    session.parameters.SetUnits(CUnits::MICRO_TESLA);
    session.Configure(CTrigger::IMMEDIATE, 50, 1, 50);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(!session.blocks.isEmpty(), kLongWaitMs);
    QVERIFY(isNear(field(*session.blocks.first(), bx), x));
    QVERIFY(isNear(field(*session.blocks.first(), by), y));
    QVERIFY(isNear(field(*session.blocks.first(), bz), z));
}

void IioDeviceTest::unusable_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("no scale")
        << QByteArray("in_magn_scale") << QByteArray()
        << "The magnetometer local: iio:device0 cannot be used: channel magn_x has no scale";
    QTest::newRow("scale of garbage") << QByteArray("in_magn_scale") << QByteArray("large")
                                      << "The magnetometer local: iio:device0 cannot be used: the scale of "
                                         "channel magn_x is no number: \"large\"";
    QTest::newRow("offset of garbage") << QByteArray("in_magn_y_offset") << QByteArray("1,5")
                                       << "The magnetometer local: iio:device0 cannot be used: the offset of "
                                          "channel magn_y is no number: \"1,5\"";
    QTest::newRow("values of garbage")
        << QByteArray("in_magn_z_raw") << QByteArray("?")
        << "The magnetometer local: iio:device0 cannot be read: Input/output error";
}

void IioDeviceTest::unusable()
{
    QFETCH(QByteArray, attribute);
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    FakeMagnetometer device(0);
    device.RemoveBuffer();
    if (text.isEmpty())
        device.Remove(attribute.constData());
    else
        device.Set(attribute.constData(), text);
    device.Plug();
    IioBench bench("[Contexts]\nTimeoutS=0.2\n");
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY(!instrument->Connect());
    QCOMPARE(instrument->StatusString(), message);
    QVERIFY(bench.HasLogged(qPrintable(message)));
    QVERIFY(!instrument->IsConnected());
}

void IioDeviceTest::bufferRefused_data()
{
    QTest::addColumn<bool>("hasNode");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no node") << false << "No such file or directory";
    QTest::newRow("no permission") << true << "Permission denied";
}

// Who may not open the buffer gets polled values all the same, and the log tells why.
void IioDeviceTest::bufferRefused()
{
    QFETCH(bool, hasNode);
    QFETCH(QString, reason);
    FakeMagnetometer device(0);
    if (hasNode)
        QFile::setPermissions(device.Node(), {});
    else
        QFile::remove(device.Node());
    device.Plug();
    const WithoutOverride asUser;
    IioBench bench;
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    const QString expected =
        QStringLiteral("The buffer of local: iio:device0 cannot be used (%1): it is polled instead");
    QVERIFY2(bench.HasLogged(qPrintable(expected.arg(reason))), qPrintable(bench.Log()));
    QVERIFY(bench.HasLogged("is read by polling"));
}

// As with a trigger that nothing fires.
void IioDeviceTest::bufferStaysEmpty()
{
    FakeMagnetometer device(0);
    device.Plug();
    IioBench bench("[Contexts]\nTimeoutS=0.2\n");
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    QVERIFY2(bench.HasLogged("The buffer of local: iio:device0 stays empty: it is polled instead"),
             qPrintable(bench.Log()));
}

void IioDeviceTest::twoDevicesOneVanishes()
{
    FakeMagnetometer first(0);
    FakeMagnetometer second(1, QStringLiteral("1-000e"));
    first.Start(countingScan);
    second.Set("in_magn_scale", "0.001");
    second.Start(countingScan);
    first.Plug();
    second.Plug();
    IioBench bench;
    QVERIFY(bench.Listed(2));
    auto one = bench.Driver().Instrument(QStringLiteral("lis3mdl_magn 1-001e"));
    auto other = bench.Driver().Instrument(QStringLiteral("lis3mdl_magn 1-000e"));
    QVERIFY(one && other);
    QVERIFY2(one->Connect() && other->Connect(), qPrintable(bench.Log()));
    Session sessionOfOne(one);
    Session sessionOfOther(other);
    for (Session* session : {&sessionOfOne, &sessionOfOther}) {
        session->parameters.SetUnits(CUnits::MICRO_TESLA);
        session->Configure(CTrigger::CONTINUOUS, 400, 20, 20);
        session->instrument->StartMeasurement();
    }
    QTRY_VERIFY_WITH_TIMEOUT(sessionOfOne.blocks.size() >= 2 && sessionOfOther.blocks.size() >= 2,
                             kLongWaitMs);

    // The buffer itself tells nothing: the tree of devices does.
    first.Unplug();
    QTRY_COMPARE_WITH_TIMEOUT(bench.Driver().Instruments().size(), 1, kLongWaitMs);
    QVERIFY(!one->IsConnected());
    QCOMPARE(one->StatusString(), QStringLiteral("The magnetometer local: iio:device0 is gone"));
    QVERIFY(bench.HasLogged("The magnetometer local: iio:device0 is gone"));
    QVERIFY(firstCountingScan(sessionOfOne.Samples()) >= 0);
    sessionOfOther.blocks.clear();
    QTRY_VERIFY_WITH_TIMEOUT(sessionOfOther.blocks.size() >= 2, kLongWaitMs);
    QVERIFY(firstCountingScan(sessionOfOther.Samples(), 0.1) >= 0);

    // It comes back as what it was, and the other one is still the same object.
    first.Plug();
    QVERIFY(bench.Listed(2));
    QVERIFY(bench.Driver().Instrument(QStringLiteral("lis3mdl_magn 1-001e")) != one);
    QCOMPARE(bench.Driver().Instrument(QStringLiteral("lis3mdl_magn 1-000e")), other);
    QVERIFY(other->IsRunning());
}

void IioDeviceTest::vanishesWhilePolled()
{
    FakeMagnetometer device(0);
    device.Plug();
    IioBench bench(kPolling);
    const auto instrument = bench.Listed();
    QVERIFY(instrument);
    QVERIFY2(instrument->Connect(), qPrintable(bench.Log()));
    Session session(instrument);
    session.Configure(CTrigger::CONTINUOUS, 50, 5, 10);
    instrument->StartMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(!session.blocks.isEmpty(), kLongWaitMs);
    device.Unplug();
    QTRY_VERIFY_WITH_TIMEOUT(bench.Driver().Instruments().isEmpty(), kLongWaitMs);
    QVERIFY(!instrument->IsConnected());
    QVERIFY(!instrument->IsRunning());
    QCOMPARE(instrument->StatusString(), QStringLiteral("The magnetometer local: iio:device0 is gone"));
}
