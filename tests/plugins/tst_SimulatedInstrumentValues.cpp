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

double standardDeviation(const QVector<QSharedPointer<CFieldIntensityResult>>& samples)
{
    double sum = 0;
    double squares = 0;
    for (const auto& sample : samples) {
        sum += static_cast<double>(sample->Bx());
        squares += static_cast<double>(sample->Bx()) * static_cast<double>(sample->Bx());
    }
    const double mean = sum / samples.size();
    return std::sqrt(squares / samples.size() - mean * mean);
}

bool isClose(double value, double expected, double relative = 1e-6)
{
    return std::abs(value - expected) <= relative * std::abs(expected);
}

} // namespace

class tst_SimulatedInstrumentValues : public QObject
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

    // Waits for some samples in CONTINUOUS mode.
    static QVector<QSharedPointer<CFieldIntensityResult>> take(Session& session, int count)
    {
        session.blocks.clear();
        session.instrument->StartMeasurement();
        [&] { QTRY_VERIFY_WITH_TIMEOUT(session.Samples().size() >= count, 20000); }();
        session.instrument->StopMeasurement();
        return session.Samples();
    }

private slots:
    void cleanup()
    {
        m_instrument.reset();
        m_driver.reset();
        removeSettings(kSettings);
    }

    // Factors from tesla, and what a constant field must read in each unit.
    void units_data()
    {
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("factor");
        QTest::newRow("T") << int(CUnits::TESLA) << 1.0;
        QTest::newRow("mT") << int(CUnits::MILLI_TESLA) << 1e3;
        QTest::newRow("uT") << int(CUnits::MICRO_TESLA) << 1e6;
        QTest::newRow("nT") << int(CUnits::NANO_TESLA) << 1e9;
        QTest::newRow("G") << int(CUnits::GAUSS) << 1e4;
        QTest::newRow("kG") << int(CUnits::KILO_GAUSS) << 10.0;
        QTest::newRow("mG") << int(CUnits::MILLI_GAUSS) << 1e7;
        QTest::newRow("MHzp") << int(CUnits::MEGA_HERTZ_PROTON) << 42.576385;
        QTest::newRow("A/m") << int(CUnits::AMPERE_PER_METER) << 795.7747;
        QTest::newRow("kA/m") << int(CUnits::KILO_AMPERE_PER_METER) << 795774.7;
        QTest::newRow("mA/m") << int(CUnits::MILLI_AMPERE_PER_METER) << 7.957747e7;
        // 18 bits with sign over the range of 100 uT that holds the field
        QTest::newRow("ADC") << int(CUnits::ADC) << 131072 / 1e-4;
    }

    void units()
    {
        QFETCH(int, unit);
        QFETCH(double, factor);
        start(kQuietField + kQuietSensor);
        Session session(m_instrument);
        session.parameters.SetAutoRange(true);
        session.parameters.SetUnits(static_cast<CUnits::UnitType>(unit));
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        const auto samples = take(session, 10);
        const double tolerance = unit == CUnits::ADC ? 1e-4 : 1e-6;
        const double norm = std::sqrt(20e-6 * 20e-6 + 3e-6 * 3e-6 + 40e-6 * 40e-6);
        for (const auto& sample : samples) {
            QVERIFY(isClose(static_cast<double>(sample->Bx()), 20e-6 * factor, tolerance));
            QVERIFY(isClose(static_cast<double>(sample->By()), -3e-6 * factor, tolerance));
            QVERIFY(isClose(static_cast<double>(sample->Bz()), 40e-6 * factor, tolerance));
            QVERIFY(isClose(static_cast<double>(sample->B()), norm * factor, tolerance));
            // B' is (0.6, 0.8, 0)
            QVERIFY(isClose(static_cast<double>(sample->BBprime()), (12e-6 - 2.4e-6) * factor, tolerance));
            const double uncertainty = (0.001 * norm + 0.0002 * 1e-4) * factor;
            QVERIFY(std::abs(static_cast<double>(sample->dB()) - uncertainty) <=
                    (unit == CUnits::ADC ? 0.5 : 1e-6 * uncertainty));
            QVERIFY(std::isnan(sample->dBConverted()));
        }
        const CBprimeResult& bprime = session.blocks.first()->Bprime;
        QVERIFY(isClose(bprime.X(), 0.6) && isClose(bprime.Y(), 0.8) && bprime.Z() == 0);
    }

    void saturatesAtTheRange()
    {
        start(kQuietField + kQuietSensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        QCOMPARE(m_instrument->RangeList().first(), 3e-5F);
        session.parameters.SetRange(3e-5F);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        const auto sample = take(session, 10).first();
        QVERIFY(isClose(static_cast<double>(sample->Bx()), 20));
        QVERIFY(isClose(static_cast<double>(sample->Bz()), 30));
        QVERIFY(isClose(static_cast<double>(sample->B()), std::sqrt(400.0 + 9 + 900)));
        session.parameters.SetRange(1e-4F);
        QVERIFY(isClose(static_cast<double>(take(session, 10).first()->Bz()), 40));
    }

    // With an uncertainty of the range alone, dB tells which range was chosen.
    void autoRangeTakesTheSmallestThatHolds_data()
    {
        QTest::addColumn<double>("fieldMicroTesla");
        QTest::addColumn<double>("rangeTesla");
        QTest::newRow("10 uT") << 10.0 << 3e-5;
        QTest::newRow("-29 uT") << -29.0 << 3e-5;
        QTest::newRow("31 uT") << 31.0 << 1e-4;
        QTest::newRow("500 uT") << 500.0 << 1e-3;
        QTest::newRow("9 mT") << 9000.0 << 1e-2;
        QTest::newRow("50 mT, beyond all") << 50000.0 << 1e-2;
    }

    void autoRangeTakesTheSmallestThatHolds()
    {
        QFETCH(double, fieldMicroTesla);
        QFETCH(double, rangeTesla);
        QByteArray field = kQuietField;
        field.replace("DcX=20", "DcX=" + QByteArray::number(fieldMicroTesla)).replace("DcZ=40", "DcZ=0");
        QByteArray sensor = kQuietSensor;
        sensor.replace("AccuracyOfReading=0.001", "AccuracyOfReading=0");
        start(field + sensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::TESLA);
        session.parameters.SetAutoRange(true);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        const auto sample = take(session, 10).first();
        QVERIFY(isClose(static_cast<double>(sample->dB()), 0.0002 * rangeTesla));
        QVERIFY(isClose(static_cast<double>(sample->Bx()), std::min(fieldMicroTesla * 1e-6, rangeTesla)));
    }

    void noiseFollowsAveragingAndRange()
    {
        QByteArray sensor = kQuietSensor;
        sensor.replace("Noise=0", "Noise=1e-4");
        start(kQuietField + sensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.parameters.SetRange(1e-4F);
        session.Configure(CTrigger::CONTINUOUS, 20000, 1000, 20);
        const double single = standardDeviation(take(session, 8000));
        QVERIFY(isClose(single, 10, 0.1)); // 1e-4 of 100 uT, in nT
        session.parameters.SetAveraging(100);
        QVERIFY(isClose(standardDeviation(take(session, 8000)), 1, 0.1));
        session.parameters.SetRange(1e-3F);
        QVERIFY(isClose(standardDeviation(take(session, 8000)), 10, 0.1));
    }

    // Each part of the field alone, found again in the samples at the times that they bear.
    void alternatingField()
    {
        QByteArray field = kQuietField;
        field.replace("AcX=0", "AcX=5")
            .replace("AcThirdY=0", "AcThirdY=2")
            .replace("AcFifthZ=0", "AcFifthZ=1");
        start(field + kQuietSensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.parameters.SetAutoRange(true);
        session.Configure(CTrigger::CONTINUOUS, 2000, 400, 5);
        const auto samples = take(session, 400);
        const auto amplitude = [&samples](double frequency, auto component) {
            double sine = 0;
            double cosine = 0;
            for (int i = 0; i < 400; ++i) { // whole periods of all three
                const double turn = 2 * M_PI * frequency * i / 2000;
                const double value = static_cast<double>((samples.at(i).data()->*component)());
                sine += value * std::sin(turn) / 200;
                cosine += value * std::cos(turn) / 200;
            }
            return std::hypot(sine, cosine);
        };
        using Result = CFieldIntensityResult;
        QVERIFY(isClose(amplitude(50, &Result::Bx), 5, 1e-3));
        QVERIFY(isClose(amplitude(150, &Result::By), 2, 1e-3));
        QVERIFY(isClose(amplitude(250, &Result::Bz), 1, 1e-3));
        QVERIFY(amplitude(150, &Result::Bx) < 1e-3);
        QVERIFY(amplitude(50, &Result::By) < 1e-3);
        for (const auto& sample : samples) {
            const double x = static_cast<double>(sample->Bx());
            const double y = static_cast<double>(sample->By());
            const double z = static_cast<double>(sample->Bz());
            QVERIFY(isClose(static_cast<double>(sample->B()), std::sqrt(x * x + y * y + z * z)));
        }
    }

    void rotationAndDrift()
    {
        QByteArray field = kQuietField;
        field.replace("RotatingAmplitude=0", "RotatingAmplitude=4\nRotatingFrequency=10")
            .replace("DriftPerHourZ=0", "DriftPerHourZ=3600");
        start(field + kQuietSensor);
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.parameters.SetAutoRange(true);
        session.Configure(CTrigger::CONTINUOUS, 1000, 100, 10);
        const auto samples = take(session, 200);
        double lastAngle = 0;
        for (int i = 0; i < 200; ++i) {
            const double x = static_cast<double>(samples.at(i)->Bx()) - 20;
            const double y = static_cast<double>(samples.at(i)->By()) + 3;
            QVERIFY(isClose(std::hypot(x, y), 4, 1e-3));
            const double angle = std::atan2(y, x);
            if (i > 0) // 10 turns per second are 3.6 degrees per sample
                QVERIFY(isClose(std::remainder(angle - lastAngle, 2 * M_PI), 2 * M_PI / 100, 1e-2));
            lastAngle = angle;
        }
        const double rise =
            static_cast<double>(samples.at(199)->Bz()) - static_cast<double>(samples.at(0)->Bz());
        QVERIFY(isClose(rise, 0.199, 1e-3)); // 1 uT per second
    }

    void estimatedBprimeIsTheDirectionOfTheAlternatingField()
    {
        QByteArray field = kQuietField;
        field.replace("AcX=0", "AcX=3").replace("AcY=0", "AcY=4");
        start(field + kQuietSensor + "EstimateBprime=true\nBprimeX=0\nBprimeY=1\nBprimeZ=0\n");
        Session session(m_instrument);
        session.Configure(CTrigger::CONTINUOUS, 2000, 400, 5);
        take(session, 400);
        const CBprimeResult& bprime = session.blocks.first()->Bprime;
        QVERIFY(isClose(bprime.X(), 0.6, 1e-3));
        QVERIFY(isClose(bprime.Y(), 0.8, 1e-3));
        QVERIFY(std::abs(bprime.Z()) < 1e-3);
    }

    void zeroOffsetCalibration()
    {
        QByteArray sensor = kQuietSensor;
        sensor.replace("OffsetX=0", "OffsetX=2").replace("OffsetY=0", "OffsetY=-1");
        start(kQuietField + sensor + "[Calibration]\nDurationMs=300\n");
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.parameters.SetAutoRange(true);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        const auto reads = [this, &session](double x, double y) {
            const auto sample = take(session, 10).first();
            return isClose(static_cast<double>(sample->Bx()), x) &&
                   isClose(static_cast<double>(sample->By()), y);
        };
        QVERIFY(reads(22, -4));
        QElapsedTimer timer;
        timer.start();
        m_instrument->CalibrateZeroOffset();
        QVERIFY(timer.elapsed() >= 300);
        QVERIFY(reads(20, -3));
        m_instrument->RestoreZeroOffsetToFactory();
        QVERIFY(reads(22, -4));

        // While running, too.
        session.blocks.clear();
        m_instrument->StartMeasurement();
        m_instrument->CalibrateZeroOffset(true);
        QTRY_VERIFY(!session.blocks.isEmpty() &&
                    isClose(static_cast<double>(session.blocks.last()->Results.last()->Bx()), 20));
    }

    // The noise of the blocks is drawn on the acquisition thread, that of the calibration is not.
    void calibrationLeavesTheNoiseOfTheBlocksAlone()
    {
        QByteArray sensor = kQuietSensor;
        sensor.replace("Noise=0", "Noise=1e-4");
        start(kQuietField + sensor + "[Calibration]\nDurationMs=0\n");
        const auto readings = [this](bool isCalibrated) {
            m_instrument->Disconnect();
            m_instrument->Connect();
            if (isCalibrated)
                m_instrument->CalibrateZeroOffset();
            m_instrument->RestoreZeroOffsetToFactory();
            Session session(m_instrument);
            session.parameters.SetUnits(CUnits::NANO_TESLA);
            session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
            QVector<tFlux> values;
            for (const auto& sample : take(session, 10).mid(0, 10))
                values.append(sample->Bx());
            return values;
        };
        const QVector<tFlux> plain = readings(false);
        QVERIFY(plain.first() != plain.last());
        QCOMPARE(readings(true), plain);
    }

    void zeroOffsetOutsideAChamberNeedsForce()
    {
        start(kQuietField + kQuietSensor + "[Calibration]\nDurationMs=0\nChamberFieldX=5\n");
        Session session(m_instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1000, 10, 100);
        QSignalSpy status(m_instrument.data(), &CInstrument::StatusStringChanged);
        m_instrument->CalibrateZeroOffset(false);
        QCOMPARE(status.size(), 1);
        QVERIFY(isClose(static_cast<double>(take(session, 10).first()->Bx()), 20));
        m_instrument->CalibrateZeroOffset(true);
        QVERIFY(isClose(static_cast<double>(take(session, 10).first()->Bx()), 15));
    }
};

QTEST_GUILESS_MAIN(tst_SimulatedInstrumentValues)
#include "tst_SimulatedInstrumentValues.moc"
