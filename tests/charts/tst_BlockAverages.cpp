// SPDX-License-Identifier: GPL-3.0-or-later
#include "BlockAverages.h"

#include <QTest>

#include <cmath>
#include <random>

using FieldSeries::Values;
using Samples = std::vector<Values>;

namespace {

/// One series rises as told, the next is its double, and so on.
Samples samplesOf(const std::vector<float>& first)
{
    Samples samples;
    for (const float value : first) {
        Values values{};
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = value * static_cast<float>(i + 1);
        samples.push_back(values);
    }
    return samples;
}

Samples randomSamples(std::mt19937& engine, int count)
{
    std::uniform_real_distribution<float> value(-100.0F, 100.0F);
    Samples samples(static_cast<std::size_t>(count));
    for (Values& values : samples) {
        for (float& field : values)
            field = value(engine);
    }
    return samples;
}

/// The mean of the last n samples by its definition, in 80 bits.
double meanBefore(const Samples& samples, std::size_t series, int j, int n)
{
    long double sum = 0.0L;
    for (int k = j - n + 1; k <= j; ++k)
        sum += static_cast<long double>(samples[static_cast<std::size_t>(k < 0 ? 0 : k)][series]);
    return static_cast<double>(sum / n);
}

} // namespace

class tst_BlockAverages : public QObject
{
    Q_OBJECT

private slots:
    void exponentialByHand();
    void movingByHand();
    void movingLongerThanTheBlock();
    void movingIsTheMean();
    void movingCarriesItsRounding();
    void exponentialIsTheWeightedSum();
    void exponentialRoundsEachAverage();
    void oneSampleEachLeavesAll();
    void nothingToAverage();
};

void tst_BlockAverages::exponentialByHand()
{
    // n = 4: y0 = x0 (1/4 + 3/4); y1 = 8/4 + 3 * 4/4; y2 = 0/4 + 3 * 5/4
    Samples samples = samplesOf({4.0F, 8.0F, 0.0F});
    BlockAverages::makeExponential(samples, 4);
    QVERIFY(samples == samplesOf({4.0F, 5.0F, 3.75F}));
}

void tst_BlockAverages::movingByHand()
{
    // n = 2, with a 4 before the first: (4+4)/2, (4+8)/2, (8+0)/2, (0+2)/2
    Samples samples = samplesOf({4.0F, 8.0F, 0.0F, 2.0F});
    BlockAverages::makeMoving(samples, 2);
    QVERIFY(samples == samplesOf({4.0F, 6.0F, 4.0F, 1.0F}));
}

void tst_BlockAverages::movingLongerThanTheBlock()
{
    // n = 8: 8 * 4 / 8; (7 * 4 + 12) / 8; (6 * 4 + 12 + 20) / 8
    Samples samples = samplesOf({4.0F, 12.0F, 20.0F});
    BlockAverages::makeMoving(samples, 8);
    QVERIFY(samples == samplesOf({4.0F, 5.0F, 7.0F}));
}

void tst_BlockAverages::movingIsTheMean()
{
    std::mt19937 engine(11);
    for (const int n : {1, 2, 3, 10, 99, 100, 101, 500}) {
        const Samples raw = randomSamples(engine, 100);
        Samples samples = raw;
        BlockAverages::makeMoving(samples, static_cast<unsigned>(n));
        for (int j = 0; j < 100; ++j) {
            for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
                const double expected = meanBefore(raw, i, j, n);
                QVERIFY(std::fabs(static_cast<double>(samples[static_cast<std::size_t>(j)][i]) - expected) <
                        1e-2);
            }
        }
    }
}

void tst_BlockAverages::movingCarriesItsRounding()
{
    // 1e8 + 1 is 1e8 in single precision, so the 1 is lost for good: 2e8, then 2e8 + (1 - 1e8) = 1e8, then
    // 1e8 + (1 - 1e8) = 0, where the mean of the last two is 1.
    Samples samples = samplesOf({1e8F, 1.0F, 1.0F});
    BlockAverages::makeMoving(samples, 2);
    QCOMPARE(samples[0][0], 1e8F);
    QCOMPARE(samples[1][0], 5e7F);
    QCOMPARE(samples[2][0], 0.0F);
}

void tst_BlockAverages::exponentialIsTheWeightedSum()
{
    std::mt19937 engine(12);
    for (const int n : {1, 2, 3, 10, 1000}) {
        const Samples raw = randomSamples(engine, 60);
        Samples samples = raw;
        BlockAverages::makeExponential(samples, static_cast<unsigned>(n));
        // y[j] = q^(j+1) x[0] + sum of q^(j-k) x[k] / n, with q = (n - 1) / n
        const long double q = (n - 1.0L) / n;
        for (int j = 0; j < 60; ++j) {
            for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
                long double sum = powl(q, j + 1) * static_cast<long double>(raw[0][i]);
                for (int k = 0; k <= j; ++k)
                    sum += powl(q, j - k) * static_cast<long double>(raw[static_cast<std::size_t>(k)][i]) / n;
                QVERIFY(std::fabs(static_cast<double>(samples[static_cast<std::size_t>(j)][i]) -
                                  static_cast<double>(sum)) < 2e-4);
            }
        }
    }
}

void tst_BlockAverages::exponentialRoundsEachAverage()
{
    // 16777216 is 2^24: its upper neighbour in single precision is 2 away. With n = 2 the averages are
    // 2^24, then 2^24 + 1, which rounds to the even 2^24, then from there again.
    Samples samples = samplesOf({16777216.0F, 16777218.0F, 16777218.0F});
    BlockAverages::makeExponential(samples, 2);
    QCOMPARE(samples[1][0], 16777216.0F);
    QCOMPARE(samples[2][0], 16777216.0F);
}

void tst_BlockAverages::oneSampleEachLeavesAll()
{
    std::mt19937 engine(13);
    const Samples raw = randomSamples(engine, 20);
    Samples samples = raw;
    BlockAverages::makeExponential(samples, 1);
    QVERIFY(samples == raw);
}

void tst_BlockAverages::nothingToAverage()
{
    Samples samples;
    BlockAverages::makeExponential(samples, 5);
    BlockAverages::makeMoving(samples, 5);
    QVERIFY(samples.empty());
}

QTEST_GUILESS_MAIN(tst_BlockAverages)
#include "tst_BlockAverages.moc"
