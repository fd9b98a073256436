// SPDX-License-Identifier: GPL-3.0-or-later
#include "AnalysisTestSupport.h"
#include "ChirpTransform.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <vector>

using namespace AnalysisTestSupport;

namespace {

using Bins = std::vector<std::complex<float>>;

/// Straight from the definition.
std::vector<std::complex<double>> sums(const std::vector<std::complex<double>>& values, double sign)
{
    const double turn = sign * 2.0 * std::acos(-1.0) / static_cast<double>(values.size());
    std::vector<std::complex<double>> result(values.size());
    for (std::size_t k = 0; k < values.size(); ++k) {
        for (std::size_t n = 0; n < values.size(); ++n)
            result[k] += values[n] * std::polar(1.0, turn * static_cast<double>(n * k % values.size()));
    }
    return result;
}

std::vector<std::complex<double>> widened(const std::vector<float>& signal)
{
    return {signal.begin(), signal.end()};
}

} // namespace

class tst_ChirpTransform : public QObject
{
    Q_OBJECT

private slots:
    void isFasterForLargePrimes();
    void againstTheDefinition_data();
    void againstTheDefinition();
    void mirrorImagesAreNotRead();
    void largeSteadyField();
    void notANumber();
};

void tst_ChirpTransform::isFasterForLargePrimes()
{
    for (const std::size_t size : {101, 202, 404, 5003, 65521, 2 * 32749, 65520 / 13 * 101})
        QVERIFY2(ChirpTransform::isFasterFor(size), qPrintable(QString::number(size)));
    for (const std::size_t size : {1, 2, 64, 97, 100, 65520, 65536, 97 * 97, 1000000})
        QVERIFY2(!ChirpTransform::isFasterFor(size), qPrintable(QString::number(size)));
}

void tst_ChirpTransform::againstTheDefinition_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {2, 3, 4, 5, 101, 127, 128, 202, 257, 404, 514, 997})
        QTest::addRow("%d", size) << size;
}

/// Forward, and back from a part of the bins, as a band has them.
void tst_ChirpTransform::againstTheDefinition()
{
    QFETCH(int, size);
    const std::vector<float> signal = sampleSignal(static_cast<std::size_t>(size));
    ChirpTransform transform(signal.size());
    Bins bins;
    transform.forward(bins, signal);
    const auto expected = sums(widened(signal), -1.0);
    QCOMPARE(bins.size(), signal.size());
    for (std::size_t k = 0; k < bins.size(); ++k) {
        const double difference = std::abs(std::complex<double>(bins[k]) - expected[k]);
        // Half a unit of the last place of each part
        QVERIFY2(difference < 1e-7 * std::abs(expected[k]) + 1e-11 * size,
                 qPrintable(QStringLiteral("%1: %2").arg(k).arg(difference)));
    }

    std::fill(bins.begin() + size / 3, bins.end(), 0.0F);
    std::vector<std::complex<double>> mirrored(bins.size());
    for (std::size_t k = 0; k <= bins.size() / 2; ++k) {
        mirrored[k] = bins[k];
        mirrored[(bins.size() - k) % bins.size()] = std::conj(std::complex<double>(bins[k]));
    }
    const auto samples = sums(mirrored, 1.0);
    std::vector<float> rebuilt{1.0F};
    transform.inverse(rebuilt, bins);
    QCOMPARE(rebuilt.size(), signal.size());
    for (std::size_t n = 0; n < rebuilt.size(); ++n) {
        const double sample = samples[n].real() / size;
        QVERIFY(std::abs(static_cast<double>(rebuilt[n]) - sample) < 2e-7 * std::abs(sample) + 1e-7);
    }
}

void tst_ChirpTransform::mirrorImagesAreNotRead()
{
    for (const std::size_t size : {101, 202, 404}) {
        ChirpTransform transform(size);
        Bins bins;
        transform.forward(bins, sampleSignal(size));
        std::vector<float> expected;
        transform.inverse(expected, bins);
        for (std::size_t k = size / 2 + 1; k < size; ++k)
            bins[k] = 99.0F;
        // Nor is the part that no real signal has.
        bins[0] += std::complex<float>(0.0F, 7.0F);
        std::vector<float> rebuilt;
        transform.inverse(rebuilt, bins);
        QCOMPARE(rebuilt, expected);
        if (size % 2 == 0) {
            bins[size / 2] += std::complex<float>(0.0F, 7.0F);
            transform.inverse(rebuilt, bins);
            QVERIFY(worstDifference(rebuilt, {expected.begin(), expected.end()}, 1.0) < 1e-6);
        }
    }
}

/// A small wave on a large constant keeps the digits that a single precision sum would lose.
void tst_ChirpTransform::largeSteadyField()
{
    constexpr std::size_t kSize = 65521;
    std::vector<float> signal = sine(kSize, 1.0, 1234.0, 0.0);
    for (float& sample : signal)
        sample += 4096.0F;
    ChirpTransform transform(kSize);
    Bins bins;
    transform.forward(bins, signal);
    QVERIFY(std::abs(bins[0].real() / kSize - 4096.0F) < 1e-3F);
    QVERIFY(std::abs(std::abs(bins[1234]) * 2.0F / kSize - 1.0F) < 1e-4F);
    std::vector<float> rebuilt;
    transform.inverse(rebuilt, bins);
    QVERIFY(worstDifference(rebuilt, {signal.begin(), signal.end()}, 4096.0) < 3e-7);
}

void tst_ChirpTransform::notANumber()
{
    for (const float odd :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        std::vector<float> signal = sampleSignal(101);
        signal[50] = odd;
        ChirpTransform transform(signal.size());
        Bins bins;
        transform.forward(bins, signal);
        const auto isNaN = [](const std::complex<float>& bin) { return std::isnan(bin.real()); };
        QVERIFY(std::all_of(bins.begin(), bins.end(), isNaN));
        // The next one is not the worse for it.
        transform.forward(bins, sampleSignal(101));
        QVERIFY(std::none_of(bins.begin(), bins.end(), isNaN));
    }
}

QTEST_GUILESS_MAIN(tst_ChirpTransform)
#include "tst_ChirpTransform.moc"
