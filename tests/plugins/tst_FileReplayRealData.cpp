// SPDX-License-Identifier: GPL-3.0-or-later
#include "CpuTimer.h"
#include "PluginDriver.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

const QString kSettings = QStringLiteral("KestrixFileReplay.ini");

QString dataPath()
{
    const QByteArray fromEnvironment = qgetenv("KESTRIX_SHARED_DATA");
    return QDir::cleanPath(fromEnvironment.isEmpty() ? QStringLiteral(SHARED_DATA_PATH)
                                                     : QString::fromLocal8Bit(fromEnvironment));
}

struct Statistics
{
    double sum = 0;
    double squares = 0; ///< about the first value, lest digits be lost
    double first = 0;
    double last = 0;
    double min = std::numeric_limits<double>::infinity();
    double max = -std::numeric_limits<double>::infinity();
    qint64 count = 0;

    void Add(double value)
    {
        if (count == 0)
            first = value;
        last = value;
        ++count;
        sum += value - first;
        squares += (value - first) * (value - first);
        min = std::min(min, value);
        max = std::max(max, value);
    }
    double Mean() const { return first + sum / static_cast<double>(count); }
    double Deviation() const
    {
        const double mean = sum / static_cast<double>(count);
        return std::sqrt(squares / static_cast<double>(count) - mean * mean);
    }
};

} // namespace

class tst_FileReplayRealData : public QObject
{
    Q_OBJECT

private:
    QJsonObject m_golden;

private slots:
    void initTestCase()
    {
        QFile golden(dataPath() + QStringLiteral("/GOLDEN.json"));
        if (!golden.open(QIODevice::ReadOnly))
            QSKIP("The real recordings are not at hand");
        m_golden = QJsonDocument::fromJson(golden.readAll()).object();
        QVERIFY(!m_golden.isEmpty());
        writeSettings(kSettings, "[Replay]\nSpeed=0\nFolder=" + dataPath().toUtf8() + '\n');
    }

    // Only the three series are recordings; maps, limits, dialogues and licences beside them are not.
    void onlyTheSeriesAreListed()
    {
        PluginDriver driver(QStringLiteral(PLUGIN_PATH));
        const CpuTimer timer;
        QVERIFY(driver.Start());
        QVERIFY2(timer.elapsed() < 2000, "Listing must read the heads only");
        QStringList numbers;
        const auto instruments = driver.Instruments();
        for (const auto& instrument : instruments)
            numbers.append(instrument->SerialNumber());
        QCOMPARE(numbers,
                 (QStringList{QStringLiteral("30_disturbed_stationary_magnet_C.csv (broad-motion-286hz)"),
                              QStringLiteral("wic20220810vsec.sec (iaga-wic-1hz-day)"),
                              QStringLiteral("llo_20200105_10hz.csv (usgs-llo-10hz-4h)")}));
    }

    void statistics_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("rate");
        QTest::addColumn<qint64>("firstNs"); // 0: the file has no date
        QTest::newRow("observatory day") << QStringLiteral("iaga-wic-1hz-day/wic20220810vsec.sec")
                                         << int(CUnits::NANO_TESLA) << 1.0 << 1660089600000000000LL;
        QTest::newRow("observatory at 10 Hz") << QStringLiteral("usgs-llo-10hz-4h/llo_20200105_10hz.csv")
                                              << int(CUnits::NANO_TESLA) << 10.0 << 1578268793900000000LL;
        QTest::newRow("motion") << QStringLiteral("broad-motion-286hz/30_disturbed_stationary_magnet_C.csv")
                                << int(CUnits::MICRO_TESLA) << 2000.0 / 7 << 0LL;
    }
    void statistics()
    {
        QFETCH(QString, file);
        QFETCH(int, unit);
        QFETCH(double, rate);
        QFETCH(qint64, firstNs);
        const QJsonObject golden = m_golden.value(file).toObject();
        QVERIFY(!golden.isEmpty());

        PluginDriver driver(QStringLiteral(PLUGIN_PATH));
        QVERIFY(driver.Start());
        Session session(driver.Instrument(file.section(QLatin1Char('/'), 1) + QStringLiteral(" (") +
                                          file.section(QLatin1Char('/'), 0, 0) + QLatin1Char(')')));
        QVERIFY(session.instrument->Connect());
        QCOMPARE(int(session.instrument->UnitList().first()), unit);
        QVERIFY(std::abs(session.instrument->AcquisitionRateBound()->Default() / rate - 1) < 1e-9);
        session.parameters.SetUnits(static_cast<CUnits::UnitType>(unit));
        session.Configure(CTrigger::CONTINUOUS, rate, 1000, rate / 1000);

        std::array<Statistics, 3> axes;
        Statistics norm;
        Statistics stepNs;
        qint64 first = 0;
        qint64 last = 0;
        connect(session.instrument.data(), &CInstrument::OnNewMeasureBlock, &session,
                [&](const QSharedPointer<CMeasureBlock>& block) {
                    for (const auto& result : qAsConst(block->Results)) {
                        axes[0].Add(static_cast<double>(result->Bx()));
                        axes[1].Add(static_cast<double>(result->By()));
                        axes[2].Add(static_cast<double>(result->Bz()));
                        norm.Add(static_cast<double>(result->B()));
                        const qint64 timeNs = epochNs(*result);
                        if (norm.count == 1)
                            first = timeNs;
                        else
                            stepNs.Add(static_cast<double>(timeNs - last));
                        last = timeNs;
                    }
                    session.blocks.clear();
                });
        session.instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!session.instrument->IsRunning(), 120000);

        QCOMPARE(norm.count, static_cast<qint64>(golden.value(QStringLiteral("n")).toInt()));
        const double size = golden.value(QStringLiteral("norm_max")).toDouble();
        // Single values are held as floats; the reference is written to nine digits.
        const double tolerance = 2e-7 * size;
        for (int axis = 0; axis < 3; ++axis) {
            const auto expected = [&golden, axis](const char* key) {
                return golden.value(QLatin1String(key)).toArray().at(axis).toDouble();
            };
            const Statistics& found = axes[static_cast<std::size_t>(axis)];
            QVERIFY(std::abs(found.Mean() - expected("mean")) < tolerance);
            QVERIFY(std::abs(found.Deviation() - expected("std_ddof0")) < tolerance);
            QVERIFY(std::abs(found.min - expected("min")) < tolerance);
            QVERIFY(std::abs(found.max - expected("max")) < tolerance);
            if (golden.contains(QStringLiteral("first"))) {
                QVERIFY(std::abs(found.first - expected("first")) < tolerance);
                QVERIFY(std::abs(found.last - expected("last")) < tolerance);
            }
        }
        QVERIFY(std::abs(norm.Mean() - golden.value(QStringLiteral("norm_mean")).toDouble()) < tolerance);
        QVERIFY(std::abs(norm.min - golden.value(QStringLiteral("norm_min")).toDouble()) < tolerance);
        QVERIFY(std::abs(norm.max - size) < tolerance);

        if (firstNs != 0)
            QCOMPARE(first, firstNs);
        const qint64 periodNs = std::llround(1e9 / rate);
        QCOMPARE(stepNs.min, static_cast<double>(periodNs));
        QCOMPARE(stepNs.max, static_cast<double>(periodNs));
        QCOMPARE(last - first, (norm.count - 1) * periodNs);
    }

    void cleanupTestCase() { removeSettings(kSettings); }
};

QTEST_GUILESS_MAIN(tst_FileReplayRealData)
#include "tst_FileReplayRealData.moc"
