// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioPartsTest.h"

#include "CDetachableThread.h"
#include "CIioClock.h"
#include "CSamplingRates.h"
#include "IioDevice.h"
#include "IioSettings.h"
#include "IioText.h"
#include "PluginDriver.h"
#include "SampleFormat.h"
#include "SteadyTime.h"

#include <QSemaphore>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

constexpr qint64 kMs = 1000000;

QVector<BoardReading> readingsAt(const QVector<double>& times)
{
    QVector<BoardReading> readings;
    for (const double time : times) {
        BoardReading reading;
        reading.deviceTime = time;
        readings.append(reading);
    }
    return readings;
}

} // namespace

void IioPartsTest::samples_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("storageBits");
    QTest::addColumn<int>("shift");
    QTest::addColumn<bool>("isSigned");
    QTest::addColumn<bool>("isBigEndian");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("value");
    const auto row = [](const char* format, int bits, int storageBits, int shift, bool isSigned,
                        bool isBigEndian, const char* hex, qint64 value) {
        QTest::newRow(format) << bits << storageBits << shift << isSigned << isBigEndian
                              << QByteArray::fromHex(hex) << value;
    };
    row("le:s16/16>>0", 16, 16, 0, true, false, "2efb", -1234); // 0xFB2E = 65536 - 1234
    row("be:s16/16>>0", 16, 16, 0, true, true, "fb2e", -1234);
    row("le:u16/16>>0", 16, 16, 0, false, false, "2efb", 64302);
    row("least", 16, 16, 0, true, false, "0080", -32768);
    row("be:s12/16>>4", 12, 16, 4, true, true, "b2e7", -1234); // 0xB2E = 4096 - 1234, 7 is noise
    row("be:u12/16>>4", 12, 16, 4, false, true, "b2e7", 2862);
    row("le:s12/16>>0", 12, 16, 0, true, false, "2e5b", -1234); // bits above are noise
    row("le:s24/32>>8", 24, 32, 8, true, false, "ff2efbff", -1234);
    row("be:s24/24>>0", 24, 24, 0, true, true, "fffb2e", -1234);
    row("le:s32/32>>0", 32, 32, 0, true, false, "2efbffff", -1234);
    row("le:u32/32>>0", 32, 32, 0, false, false, "2efbffff", 4294966062);
    row("s8/8", 8, 8, 0, true, false, "85", -123);
    row("u8/8>>4", 4, 8, 4, false, false, "9a", 9);
    row("s4/8>>4", 4, 8, 4, true, false, "9a", -7);
    row("s1/8", 1, 8, 0, true, false, "01", -1);
    row("le:s64/64>>0", 64, 64, 0, true, false, "2efbffffffffffff", -1234);
    row("be:s64/64>>0", 64, 64, 0, true, true, "17979cfe362a0000", 1700000000000000000);
    row("le:s32X2, the first", 32, 32, 0, true, false, "2efbffff01000000", -1234);
}

void IioPartsTest::samples()
{
    QFETCH(int, bits);
    QFETCH(int, storageBits);
    QFETCH(int, shift);
    QFETCH(bool, isSigned);
    QFETCH(bool, isBigEndian);
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, value);
    SampleFormat format;
    format.bits = bits;
    format.storageBits = storageBits;
    format.shift = shift;
    format.repeat = bytes.size() * 8 / storageBits;
    format.isSigned = isSigned;
    format.isBigEndian = isBigEndian;
    QVERIFY(format.IsValid());
    QCOMPARE(format.StorageBytes(), bytes.size());
    QCOMPARE(decodedSample(format, reinterpret_cast<const uchar*>(bytes.constData())), value);
}

void IioPartsTest::formatsThatCannotBe()
{
    const auto isValid = [](int bits, int storageBits, int shift, int repeat) {
        SampleFormat format;
        format.bits = bits;
        format.storageBits = storageBits;
        format.shift = shift;
        format.repeat = repeat;
        return format.IsValid();
    };
    QVERIFY(isValid(16, 16, 0, 1));
    QVERIFY(!isValid(0, 16, 0, 1));
    QVERIFY(!isValid(16, 0, 0, 1));
    QVERIFY(!isValid(12, 12, 0, 1));
    QVERIFY(!isValid(16, 16, 1, 1));
    QVERIFY(!isValid(16, 128, 0, 1));
    QVERIFY(!isValid(16, 16, -1, 1));
    QVERIFY(!isValid(16, 16, 0, 0));
}

void IioPartsTest::numbers()
{
    QCOMPARE(numberOfAttribute("0.000146\n"), std::optional<double>(0.000146));
    QCOMPARE(numberOfAttribute(QByteArray("-1234\0\n", 7)), std::optional<double>(-1234));
    QCOMPARE(numberOfAttribute(" 1e-3 "), std::optional<double>(0.001));
    for (const char* garbage : {"", "\n", "abc", "1,5", "12 uT", "nan", "inf", "0x10"})
        QVERIFY2(!numberOfAttribute(garbage), garbage);
}

void IioPartsTest::rates_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("list") << QByteArray("10 20 40 80\n") << 10.0 << 80.0;
    QTest::newRow("falling list") << QByteArray("100.000000 6.250000") << 6.25 << 100.0;
    QTest::newRow("one") << QByteArray("75") << 75.0 << 75.0;
    QTest::newRow("range") << QByteArray("[1.000000 0.500000 100.000000]\n") << 1.0 << 100.0;
    QTest::newRow("list with garbage") << QByteArray("off 10 x -5 0 20") << 10.0 << 20.0;
    QTest::newRow("nothing") << QByteArray() << 0.0 << 0.0;
    QTest::newRow("garbage") << QByteArray("fast slow") << 0.0 << 0.0;
    QTest::newRow("half a range") << QByteArray("[1 2]") << 0.0 << 0.0;
    QTest::newRow("range upside down") << QByteArray("[100 1 10]") << 0.0 << 0.0;
    QTest::newRow("range of garbage") << QByteArray("[a b c]") << 0.0 << 0.0;
}

void IioPartsTest::rates()
{
    QFETCH(QByteArray, text);
    QFETCH(double, min);
    QFETCH(double, max);
    const CSamplingRates rates = CSamplingRates::Parse(text);
    QCOMPARE(rates.IsEmpty(), max == 0);
    QCOMPARE(rates.Min(), min);
    QCOMPARE(rates.Max(), max);
}

void IioPartsTest::rateThatIsPicked()
{
    const CSamplingRates list = CSamplingRates::Parse("10 20 40 80");
    QCOMPARE(list.Pick(1), 10.0);
    QCOMPARE(list.Pick(20), 20.0);
    QCOMPARE(list.Pick(20.0001), 20.0); // rounded on its way
    QCOMPARE(list.Pick(20.1), 40.0);
    QCOMPARE(list.Pick(81), 80.0);
    QCOMPARE(list.Pick(std::numeric_limits<double>::quiet_NaN()), 10.0);
    const CSamplingRates range = CSamplingRates::Parse("[1 0.5 10]");
    QCOMPARE(range.Pick(0.2), 1.0);
    QCOMPARE(range.Pick(2.5), 2.5);
    QCOMPARE(range.Pick(2.6), 3.0);
    QCOMPARE(range.Pick(9.9), 10.0);
    QCOMPARE(range.Pick(12), 10.0);
    const CSamplingRates any = CSamplingRates::Between(0.1, 100);
    QCOMPARE(any.Pick(33.3), 33.3);
    QCOMPARE(any.Pick(0.01), 0.1);
    QCOMPARE(CSamplingRates::Fixed(75).Pick(20), 75.0);
    QVERIFY(CSamplingRates::Fixed(0).IsEmpty());
}

// Times that the kernel told are kept, whatever the arrivals are, and so is a gap.
void IioPartsTest::timesOfThisComputer()
{
    CIioClock clock(CLOCK_MONOTONIC);
    const qint64 firstNs = steadyNs();
    QVector<TimedReading> timed;
    qint64 timeMs = 0;
    for (int i = 0; i < 150; ++i) {
        timeMs += i == 120 ? 1234 : 10;
        const qint64 lateNs = (i * 7 % 20) * kMs;
        timed += clock.Arrive(readingsAt({timeMs * 1e-3}), firstNs + timeMs * kMs + lateNs, firstNs);
    }
    QVERIFY(clock.IsSettled());
    QVERIFY(clock.UsesDeviceTime());
    QVERIFY(std::abs(clock.Rate() - 100) < 1);
    QVERIFY(timed.size() > 40);
    for (const TimedReading& reading : qAsConst(timed))
        QVERIFY(std::abs(reading.timeNs - firstNs - std::llround(*reading.reading.deviceTime * 1e9)) < 1000);
}

// A clock that is hours off is brought to this computer's time by the arrivals.
void IioPartsTest::timesOfAnotherComputer()
{
    for (const bool isSaidToBeLocal : {false, true}) {
        CIioClock clock(isSaidToBeLocal ? std::optional<clockid_t>(CLOCK_MONOTONIC) : std::nullopt);
        const qint64 startNs = steadyNs();
        const qint64 firstNs = startNs + 3600000 * kMs;
        QVector<TimedReading> timed;
        for (int i = 0; i < 150; ++i)
            timed += clock.Arrive(readingsAt({i * 0.01}), startNs + (i * 10 + i * 7 % 4) * kMs, firstNs);
        QVERIFY(clock.UsesDeviceTime());
        QVERIFY(timed.size() > 40);
        for (const TimedReading& reading : qAsConst(timed)) {
            const double expectedMs = *reading.reading.deviceTime * 1e3 + 1.5; // the mean delay
            QVERIFY(std::abs(static_cast<double>(reading.timeNs - startNs) / kMs - expectedMs) < 1);
        }
    }
}

void IioPartsTest::clocks()
{
    QCOMPARE(clockOfName({}), std::optional<clockid_t>(CLOCK_REALTIME));
    QCOMPARE(clockOfName(QStringLiteral("realtime")), std::optional<clockid_t>(CLOCK_REALTIME));
    QCOMPARE(clockOfName(QStringLiteral("monotonic")), std::optional<clockid_t>(CLOCK_MONOTONIC));
    QCOMPARE(clockOfName(QStringLiteral("boottime")), std::optional<clockid_t>(CLOCK_BOOTTIME));
    QVERIFY(!clockOfName(QStringLiteral("sundial")));
}

void IioPartsTest::identities()
{
    const auto device = [](const char* uri, const char* id, const char* label, const char* place) {
        IioDevice made;
        made.uri = QString::fromLatin1(uri);
        made.id = QString::fromLatin1(id);
        made.name = QStringLiteral("lis3mdl_magn");
        made.label = QString::fromLatin1(label);
        made.place = QString::fromLatin1(place);
        return made;
    };
    QList<IioDevice> devices{device("local:", "iio:device0", "", "1-001e"),
                             device("local:", "iio:device1", "", "1-001e"),
                             device("local:", "iio:device2", "rear", ""),
                             device("local:", "iio:device3", "", "A/B"),
                             device("ip:pi.local:30432", "iio:device0", "", ""),
                             device("ip:pi.local", "iio:device0", "front - left", "")};
    identify(devices);
    QStringList identities;
    for (const IioDevice& identified : qAsConst(devices))
        identities.append(identified.identity);
    QCOMPARE(identities, QStringList({QStringLiteral("lis3mdl_magn 1-001e"),
                                      QStringLiteral("lis3mdl_magn 1-001e iio-device1"),
                                      QStringLiteral("lis3mdl_magn rear"), QStringLiteral("lis3mdl_magn A-B"),
                                      QStringLiteral("lis3mdl_magn iio-device0@pi.local-30432"),
                                      QStringLiteral("lis3mdl_magn front-left@pi.local")}));

    // The tree of the hardware: a device of an USB bridge is known by the bridge's number.
    QTemporaryDir hardware;
    const auto make = [&hardware](const char* path) {
        const QString full = hardware.filePath(QString::fromLatin1(path));
        QDir().mkpath(full);
        return full;
    };
    const QString bridged = make("usb1/1-2/i2c-7/7-001e/iio:device0");
    const QString wired = make("i2c-1/1-000d/iio:device1");
    for (const auto& [name, text] :
         {std::pair<const char*, const char*>{"idVendor", "10c4"}, {"serial", "00A7\n"}}) {
        QFile file(hardware.filePath(QStringLiteral("usb1/1-2/") + QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
    }
    const QString link = hardware.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(bridged, link));
    IioDevice found;
    findPlace(found, link);
    QCOMPARE(found.place, QStringLiteral("00A7"));
    QVERIFY(found.isUsb);
    QVERIFY(QFile::remove(link) && QFile::link(wired, link));
    found = {};
    findPlace(found, link);
    QCOMPARE(found.place, QStringLiteral("1-000d"));
    QVERIFY(!found.isUsb);
    found = {};
    findPlace(found, hardware.filePath(QStringLiteral("nowhere")));
    QCOMPARE(found.place, QString());
}

void IioPartsTest::settings()
{
    const QString name = QStringLiteral("KestrixIndustrialIo.ini");
    removeSettings(name);
    const IioSettings usual = IioSettings::Load();
    QCOMPARE(usual.Uris(), QStringList(QStringLiteral("local:")));
    QCOMPARE(usual.TimeoutMs(), 3000);
    QVERIFY(usual.mayBuffer);
    QCOMPARE(usual.uncertainty, 0.0);

    writeSettings(
        name, "[Contexts]\nLocal=false\nHosts=192.168.1.20, ip:pi.local:30432 pi.local:30432\nTimeoutS=0.5\n"
              "[Capture]\nBuffered=false\nTrigger=mine\n"
              "[Sensor]\nRange=4\nUncertainty=0.004\nManufacturer=Me\nCalibrationDate=2026-02-03\n");
    const IioSettings told = IioSettings::Load();
    QCOMPARE(told.Uris(),
             QStringList({QStringLiteral("ip:192.168.1.20"), QStringLiteral("ip:pi.local:30432")}));
    QCOMPARE(told.TimeoutMs(), 500);
    QVERIFY(!told.mayBuffer);
    QCOMPARE(told.trigger, QStringLiteral("mine"));
    QCOMPARE(told.range, 4.0);
    QCOMPARE(told.uncertainty, 0.004);
    QCOMPARE(told.manufacturer, QStringLiteral("Me"));
    QCOMPARE(told.calibrationDate, QDate(2026, 2, 3));

    writeSettings(name, "[Contexts]\nTimeoutS=soon\n[Sensor]\nRange=-4\nUncertainty=nan\n");
    const IioSettings garbage = IioSettings::Load();
    QCOMPARE(garbage.TimeoutMs(), 3000);
    QCOMPARE(garbage.range, 0.0);
    QCOMPARE(garbage.uncertainty, 0.0);
    writeSettings(name, "[Contexts]\nTimeoutS=1e9\n");
    QCOMPARE(IioSettings::Load().TimeoutMs(), 60000);
    removeSettings(name);
}

void IioPartsTest::threadLeftBehind()
{
    const auto gate = std::make_shared<QSemaphore>();
    const auto isDone = std::make_shared<QSemaphore>();
    CDetachableThread hanging([gate, isDone] {
        gate->acquire();
        isDone->release();
    });
    QVERIFY(!hanging.Finish(20));
    QVERIFY(hanging.Finish(0)); // nobody waits for it any more
    gate->release();
    QVERIFY(isDone->tryAcquire(1, 30000));

    CDetachableThread ending([isDone] { isDone->release(); });
    QVERIFY(ending.Finish(30000));
    QVERIFY(isDone->tryAcquire());
}
