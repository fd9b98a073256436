// SPDX-License-Identifier: GPL-3.0-or-later
// Blocks of real recordings, as SciPy analyses them.

#include "AnalysisTestSupport.h"
#include "SignalStatistics.h"
#include "SpectralAnalysis.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <algorithm>

using namespace AnalysisTestSupport;

namespace {

const QString kPython = QStringLiteral("/usr/bin/python3");

struct Recording
{
    const char* file;
    int blockSize; ///< samples of a block
    double rate;   ///< samples a second
};

const std::vector<Recording> kRecordings = {
    {"iaga-wic-1hz-day/wic20220810vsec.sec", 601, 1.0},
    {"iaga-wic-1hz-day/wic20220810vsec.sec", 3600, 1.0},
    {"usgs-llo-10hz-4h/llo_20200105_10hz.csv", 100, 10.0},
    {"usgs-llo-10hz-4h/llo_20200105_10hz.csv", 1022, 10.0},
    {"broad-motion-286hz/30_disturbed_stationary_magnet_C.csv", 1000, 2000.0 / 7.0},
    {"broad-motion-286hz/30_disturbed_stationary_magnet_C.csv", 4096, 2000.0 / 7.0},
};

QString dataPath()
{
    const QByteArray fromEnvironment = qgetenv("KESTRIX_SHARED_DATA");
    return fromEnvironment.isEmpty() ? QStringLiteral(SHARED_DATA_PATH)
                                     : QString::fromLocal8Bit(fromEnvironment);
}

std::vector<double> numbers(const QJsonValue& value)
{
    std::vector<double> result;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& number : array)
        result.push_back(number.toDouble());
    return result;
}

std::vector<float> narrowed(const std::vector<double>& values)
{
    std::vector<float> result;
    for (const double value : values)
        result.push_back(static_cast<float>(value));
    return result;
}

} // namespace

class tst_RecordingsAnalysed : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!QFile::exists(dataPath() + QStringLiteral("/GOLDEN.json")))
            QSKIP("The real recordings are not at hand");
        // One process for all: it takes seconds to load SciPy.
        QStringList arguments{QStringLiteral(SCRIPT_PATH)};
        for (const Recording& recording : kRecordings)
            arguments << dataPath() + QLatin1Char('/') + QLatin1String(recording.file)
                      << QString::number(recording.blockSize) << QString::number(recording.rate, 'g', 17);
        QProcess python;
        python.start(kPython, arguments);
        if (!python.waitForStarted())
            QSKIP("Python is not at hand");
        QVERIFY(python.waitForFinished(60000));
        const QByteArray errors = python.readAllStandardError();
        if (errors.contains("ModuleNotFoundError"))
            QSKIP("SciPy is not at hand");
        QCOMPARE(errors, QByteArray());
        QCOMPARE(python.exitCode(), 0);
        m_analysed = QJsonDocument::fromJson(python.readAllStandardOutput()).array();
    }

    void blocks_data()
    {
        QTest::addColumn<int>("recording");
        for (std::size_t i = 0; i < kRecordings.size(); ++i)
            QTest::addRow("%s, %d samples", kRecordings[i].file, kRecordings[i].blockSize)
                << static_cast<int>(i);
    }
    void blocks()
    {
        QFETCH(const int, recording);
        const auto& [file, size, rate] = kRecordings.at(static_cast<std::size_t>(recording));
        const QJsonArray blocks = m_analysed.at(recording).toArray();
        QCOMPARE(blocks.size(), 20);
        for (const QJsonValue& block : blocks)
            check(block.toObject(), static_cast<std::size_t>(size), rate);
    }

private:
    QJsonArray m_analysed; ///< for each recording its blocks

    /// Differences are shares of the largest sample: the field of the earth is ten thousand times as large as
    /// what is seen in a band, and single precision has seven digits.
    static void check(const QJsonObject& expected, std::size_t size, double rate)
    {
        const std::vector<float> samples = narrowed(numbers(expected.value(QLatin1String("samples"))));
        QCOMPARE(samples.size(), size);
        double scale = 0.0;
        for (const float sample : samples)
            scale = std::max(scale, std::abs(static_cast<double>(sample)));

        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum(samples, spectrum));
        QVERIFY(worstDifference(spectrum, numbers(expected.value(QLatin1String("spectrum"))), scale) < 2e-6);

        float value = 0.0F;
        QVERIFY(ComputeRMSValue(samples, value));
        QVERIFY(differs(value, expected.value(QLatin1String("rms")), scale) < 6e-8);
        QVERIFY(ComputeP2PValue(samples, value));
        QVERIFY(differs(value, expected.value(QLatin1String("p2p")), scale) < 1.2e-7);
        QVERIFY(ComputeStdDevValue(samples, value));
        QCOMPARE(static_cast<double>(value), expected.value(QLatin1String("narrow_std")).toDouble());
        // As far as a sum of so many terms in single precision may be off.
        const double sumTolerance = 6e-8 * static_cast<double>(size);
        QVERIFY(differs(value, expected.value(QLatin1String("std")), scale) < sumTolerance);

        const std::vector<float> limits = narrowed(numbers(expected.value(QLatin1String("limits"))));
        const QJsonArray bands = expected.value(QLatin1String("bands")).toArray();
        for (const int index : {0, 1, 2}) {
            std::vector<float> figures;
            QVERIFY(ComputeACFigureOfMeritPerBand(samples, limits, index, figures, static_cast<float>(rate)));
            QCOMPARE(static_cast<int>(figures.size()), bands.size());
            for (int i = 0; i < bands.size(); ++i) {
                const double difference =
                    differs(figures[static_cast<std::size_t>(i)], bands[i].toArray()[index], scale);
                // The first band has the mean.
                QVERIFY2(difference < (index == 2 && i == 0 ? std::max(5e-6, sumTolerance) : 5e-6),
                         qPrintable(QString::number(difference)));
            }
        }
    }

    static double differs(float found, const QJsonValue& expected, double scale)
    {
        return std::abs(static_cast<double>(found) - expected.toDouble()) / scale;
    }
};

QTEST_GUILESS_MAIN(tst_RecordingsAnalysed)
#include "tst_RecordingsAnalysed.moc"
