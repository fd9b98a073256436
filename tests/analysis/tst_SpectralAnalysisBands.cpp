// SPDX-License-Identifier: GPL-3.0-or-later
#include "AnalysisTestSupport.h"
#include "ReferenceAnalysis.h"
#include "SignalStatistics.h"
#include "SpectralAnalysis.h"

#include <QtTest>

#include <limits>

using namespace AnalysisTestSupport;

namespace {

using Values = std::vector<float>;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

enum FigureOfMerit { Rms, PeakToPeak, StandardDeviation };

Values figuresOf(const Values& signal, const Values& frequencies, int index, float samplingRate)
{
    Values figures{99.0F};
    if (!ComputeACFigureOfMeritPerBand(signal, frequencies, index, figures, samplingRate))
        figures = {-1.0F};
    return figures;
}

bool isNear(float value, double expected, double tolerance)
{
    return std::abs(static_cast<double>(value) - expected) <= tolerance;
}

/// The sum of two signals of equal length.
Values added(Values left, const Values& right)
{
    for (std::size_t i = 0; i < left.size(); ++i)
        left[i] += right[i];
    return left;
}

} // namespace

class tst_SpectralAnalysisBands : public QObject
{
    Q_OBJECT

private slots:
    void refused_data()
    {
        QTest::addColumn<int>("samples");
        QTest::addColumn<QVector<float>>("frequencies");
        QTest::addColumn<QString>("message");
        const QString few = QStringLiteral("Need signal with at least 2 samples");
        const QString none = QStringLiteral("Need at least one frequency range");
        const QString order = QStringLiteral("Frequencies ust be in ascending order");
        QTest::newRow("no sample") << 0 << QVector<float>{1.0F} << few;
        QTest::newRow("one sample") << 1 << QVector<float>{1.0F} << few;
        QTest::newRow("the signal first") << 1 << QVector<float>{} << few;
        QTest::newRow("no band") << 2 << QVector<float>{} << none;
        QTest::newRow("zero first") << 2 << QVector<float>{0.0F, 1.0F} << order;
        QTest::newRow("negative") << 2 << QVector<float>{-1.0F, 1.0F} << order;
        QTest::newRow("equal") << 2 << QVector<float>{1.0F, 2.0F, 2.0F} << order;
        QTest::newRow("descending") << 2 << QVector<float>{1.0F, 3.0F, 2.0F} << order;
        QTest::newRow("not a number") << 2 << QVector<float>{1.0F, kNaN, 2.0F} << order;
        QTest::newRow("not a number alone") << 2 << QVector<float>{kNaN} << order;
    }
    void refused()
    {
        QFETCH(const int, samples);
        QFETCH(const QVector<float>, frequencies);
        QFETCH(const QString, message);
        const Values signal(static_cast<std::size_t>(samples), 1.0F);
        for (const int index : {0, 1, 2, 3}) {
            Values figures{9.0F, 9.0F};
            QCOMPARE(thrownBy([&] {
                         ComputeACFigureOfMeritPerBand(signal, {frequencies.begin(), frequencies.end()},
                                                       index, figures, 10.0F);
                     }),
                     "ComputeACFigureOfMeritPerBand : " + message.toStdString() + "\n");
            QVERIFY(figures.empty());
        }
    }

    void oneBandIsTheWholeSignal_data() { addLengthRows(); }
    void oneBandIsTheWholeSignal()
    {
        QFETCH(const qulonglong, size);
        const Values signal = sampleSignal(static_cast<std::size_t>(size));
        const std::vector<double> wide = ReferenceAnalysis::widened(signal);
        const double norm = ReferenceAnalysis::rms(wide);
        QVERIFY(isNear(figuresOf(signal, {500.0F}, Rms, 1000.0F).at(0), norm, 2e-5));
        // The generic stage is slow without optimisation.
        if (size > 2100)
            return;
        QVERIFY(isNear(figuresOf(signal, {kInfinity}, Rms, 1000.0F).at(0), norm, 2e-5));
        QVERIFY(isNear(figuresOf(signal, {501.0F}, PeakToPeak, 1000.0F).at(0),
                       ReferenceAnalysis::peakToPeak(wide), 6e-5));
        QVERIFY(isNear(figuresOf(signal, {1e9F}, StandardDeviation, 1000.0F).at(0),
                       ReferenceAnalysis::standardDeviation(wide), 6e-5));
    }

    void againstTheReference_data()
    {
        QTest::addColumn<int>("size");
        for (const std::size_t size : kLengths) {
            if (size >= 60 && size <= 2500)
                QTest::addRow("%zu", size) << static_cast<int>(size);
        }
    }
    void againstTheReference()
    {
        QFETCH(const int, size);
        const auto length = static_cast<std::size_t>(size);
        const Values signal = sampleSignal(length);
        const float samplingRate = 1000.0F;
        const double binWidth = 1000.0 / size;
        // The first bin of each further band; the last band ends above half of the sampling rate.
        const std::vector<std::size_t> starts{0, 1, length / 8, length / 8 + 3, length / 3, length / 2 - 1};
        Values frequencies;
        for (std::size_t i = 1; i < starts.size(); ++i)
            frequencies.push_back(static_cast<float>((static_cast<double>(starts[i]) - 0.2) * binWidth));
        frequencies.push_back(600.0F);

        const Values rms = figuresOf(signal, frequencies, Rms, samplingRate);
        const Values peakToPeak = figuresOf(signal, frequencies, PeakToPeak, samplingRate);
        const Values deviation = figuresOf(signal, frequencies, StandardDeviation, samplingRate);
        QCOMPARE(rms.size(), frequencies.size());
        QCOMPARE(peakToPeak.size(), frequencies.size());
        QCOMPARE(deviation.size(), frequencies.size());
        for (std::size_t i = 0; i < frequencies.size(); ++i) {
            const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : length;
            const std::vector<double> band = ReferenceAnalysis::bandPass(signal, starts[i], end);
            QVERIFY(isNear(rms[i], ReferenceAnalysis::rms(band), 2e-5));
            QVERIFY(isNear(peakToPeak[i], ReferenceAnalysis::peakToPeak(band), 6e-5));
            // The mean of the first band is a sum in single precision.
            QVERIFY(isNear(deviation[i], ReferenceAnalysis::standardDeviation(band), 2e-4));
        }
    }

    // A sine reads its amplitude over √2 in its band and nothing in the others.
    void sines()
    {
        for (const std::size_t size : {100, 1000, 1001, 1023, 1024}) {
            const auto rate = static_cast<float>(size); // bins of 1 Hz
            const Values signal = added(sine(size, 12.5, 20.0), sine(size, 3.0, 33.0));
            const Values limits{10.0F, 19.0F, 25.0F, 40.0F, rate};
            const std::vector<double> amplitudes{0.0, 0.0, 12.5, 3.0, 0.0};
            const std::vector<double> periods{0.0, 0.0, 20.0, 33.0, 0.0};
            const Values rms = figuresOf(signal, limits, Rms, rate);
            const Values peakToPeak = figuresOf(signal, limits, PeakToPeak, rate);
            for (std::size_t i = 0; i < limits.size(); ++i) {
                QVERIFY(isNear(rms[i], amplitudes[i] / std::sqrt(2.0), 1e-5));
                // A sample may miss the top of the sine by half of its period.
                const double missed =
                    1.0 - std::cos(std::acos(-1.0) * periods[i] / static_cast<double>(size));
                QVERIFY(isNear(peakToPeak[i], 2.0 * amplitudes[i], 2.0 * amplitudes[i] * missed + 1e-4));
            }
        }
    }

    void constant()
    {
        for (const std::size_t size : {2, 3, 8, 9, 10, 1000, 1001}) {
            const Values signal(size, -40.0F);
            const Values limits{150.0F, 300.0F, 450.0F, 600.0F};
            Values figures = figuresOf(signal, limits, Rms, 1000.0F);
            // With 2 or 3 samples a bin is 500 or 333 Hz wide.
            const std::size_t first = size == 2 ? 1 : size == 3 ? 1 : 0;
            for (std::size_t i = 0; i < limits.size(); ++i)
                QVERIFY(isNear(figures[i], i == first ? 40.0 : 0.0, 1e-4));
            for (const int index : {PeakToPeak, StandardDeviation}) {
                for (const float figure : figuresOf(signal, limits, index, 1000.0F))
                    QVERIFY(isNear(figure, 0.0, 1e-4));
            }
        }
    }

    // Bins of 1 Hz: an edge half-way between two goes to the higher one, whether it is odd or even.
    void edgesAreRoundedAwayFromZero()
    {
        for (const int bin : {2, 3, 17, 18}) {
            const Values signal = sine(100, 2.0, bin);
            const auto edge = static_cast<float>(bin);
            for (const float limit : {edge + 0.5F, edge + 0.9F, edge + 1.4F})
                QVERIFY(isNear(figuresOf(signal, {limit, 50.0F}, Rms, 100.0F).at(0), std::sqrt(2.0), 1e-5));
            for (const float limit : {edge + 0.4F, edge, edge - 0.4F, edge - 1.0F})
                QVERIFY(isNear(figuresOf(signal, {limit, 50.0F}, Rms, 100.0F).at(1), std::sqrt(2.0), 1e-5));
        }
    }

    void narrowBands()
    {
        Values signal = added(Values(100, 7.0F), sine(100, 2.0, 5.0));
        // No bin below 0.5 Hz: the mean is in the next band.
        Values figures = figuresOf(signal, {0.4F, 1.0F, 50.0F}, Rms, 100.0F);
        QCOMPARE(figures[0], 0.0F);
        QVERIFY(isNear(figures[1], 7.0, 1e-5));
        QVERIFY(isNear(figures[2], std::sqrt(2.0), 1e-5));
        // 4.6 to 5.4 Hz is the bin of 5 Hz, 5.4 to 5.45 Hz none.
        figures = figuresOf(signal, {4.4F, 4.6F, 5.4F, 5.45F, 5.6F, 50.0F}, Rms, 100.0F);
        QVERIFY(isNear(figures[0], 7.0, 1e-5));
        QVERIFY(isNear(figures[1], 0.0, 1e-5));
        QCOMPARE(figures[2], 0.0F);
        QCOMPARE(figures[3], 0.0F);
        QVERIFY(isNear(figures[4], std::sqrt(2.0), 1e-5));
        QVERIFY(isNear(figures[5], 0.0, 1e-5));
    }

    void bandsAboveHalfOfTheRate()
    {
        const Values signal = sampleSignal(100);
        const Values figures = figuresOf(signal, {10.0F, 49.0F, 50.0F, 51.0F, 60.0F, 1e30F}, Rms, 100.0F);
        QCOMPARE(figures.size(), std::size_t(6));
        QVERIFY(figures[0] > 0.0F);
        QVERIFY(figures[1] > 0.0F);
        QVERIFY(figures[2] > 0.0F);
        QCOMPARE(Values(figures.begin() + 3, figures.end()), Values(3, 0.0F));
        QCOMPARE(figuresOf(signal, {60.0F, 70.0F}, PeakToPeak, 100.0F).at(1), 0.0F);
    }

    // The bin at half of the sampling rate is its own mirror image, and belongs to the band that ends there.
    void alternatingSigns()
    {
        for (const std::size_t size : {10, 100, 1000}) {
            Values signal(size, 3.0F);
            for (std::size_t i = 1; i < size; i += 2)
                signal[i] = -3.0F;
            for (const float last : {50.0F, 80.0F}) {
                const Values figures = figuresOf(signal, {20.0F, 44.0F, last}, Rms, 100.0F);
                QVERIFY(isNear(figures[0], 0.0, 1e-5));
                QVERIFY(isNear(figures[1], 0.0, 1e-5));
                QVERIFY(isNear(figures[2], 3.0, 1e-5));
            }
        }
    }

    // The bands share out the mean square among them.
    void squaresAddUp()
    {
        for (const std::size_t size : {33, 100, 101, 1000, 1022}) {
            const Values signal = sampleSignal(size);
            double sum = 0.0;
            for (const float figure :
                 figuresOf(signal, {0.3F, 7.7F, 11.0F, 11.2F, 30.0F, 50.0F, 70.0F}, Rms, 100.0F))
                sum += static_cast<double>(figure) * static_cast<double>(figure);
            const double rms = ReferenceAnalysis::rms(ReferenceAnalysis::widened(signal));
            QVERIFY(std::abs(std::sqrt(sum) - rms) < 2e-5);
        }
    }

    void otherFigureOfMerit()
    {
        for (const int index : {-1, 3, 1000})
            QCOMPARE(figuresOf(sampleSignal(100), {10.0F, 20.0F, 90.0F}, index, 100.0F), Values(3, 0.0F));
    }

    // Both ends of a band, the one in the lower and the one in the upper half of the bins, must have moved.
    void halfMovedBands()
    {
        // 33 bins of 100/33 Hz: 49 Hz ends at bins 16 and 17, 50 Hz at 17 and 17.
        Values figures = figuresOf(sine(33, 2.0, 16.0), {49.0F, 50.0F}, Rms, 100.0F);
        QVERIFY(isNear(figures[0], 0.0, 1e-5));
        QCOMPARE(figures[1], 0.0F);
        QVERIFY(
            isNear(figuresOf(sine(33, 2.0, 16.0), {46.0F, 50.0F}, Rms, 100.0F).at(1), std::sqrt(2.0), 1e-5));
        // Bins of 1 Hz at 100 samples: 2.5 Hz ends at bins 3 and 98, where 2 Hz ended at 2 and 98.
        figures = figuresOf(sine(100, 2.0, 2.0), {2.0F, 2.5F, 3.0F, 50.0F}, Rms, 100.0F);
        QVERIFY(isNear(figures[0], 0.0, 1e-5));
        QCOMPARE(figures[1], 0.0F);
        QCOMPARE(figures[2], 0.0F);
        QVERIFY(isNear(figures[3], 0.0, 1e-5));
    }

    // Bins at 0 and 1 Hz: mean 3 and difference 2. A band has both, or none.
    void twoSamples()
    {
        QCOMPARE(figuresOf({5.0F, 1.0F}, {0.6F, 1.0F}, Rms, 2.0F), (Values{std::sqrt(13.0F), 0.0F}));
        QCOMPARE(figuresOf({5.0F, 1.0F}, {0.4F, 1.0F}, Rms, 2.0F), (Values{0.0F, std::sqrt(13.0F)}));
        QCOMPARE(figuresOf({5.0F, 1.0F}, {1.0F}, PeakToPeak, 2.0F), Values{4.0F});
        QCOMPARE(figuresOf({5.0F, 1.0F}, {1.0F}, StandardDeviation, 2.0F), Values{std::sqrt(8.0F)});
    }

    void oddValues()
    {
        const Values limits{10.0F, 20.0F, 90.0F};
        for (const float rate : {0.0F, -100.0F, kNaN, kInfinity, -kInfinity, 1e-44F, 3e38F}) {
            for (const std::size_t size : {2, 3, 100})
                QCOMPARE(figuresOf(sampleSignal(size), limits, Rms, rate).size(), limits.size());
        }
        QCOMPARE(figuresOf(sampleSignal(100), limits, Rms, kNaN), Values(3, 0.0F));
        QCOMPARE(figuresOf(sampleSignal(100), limits, Rms, 0.0F), Values(3, 0.0F));
        Values signal = sampleSignal(100);
        signal[7] = kNaN;
        for (const int index : {Rms, PeakToPeak, StandardDeviation}) {
            for (const float figure : figuresOf(signal, limits, index, 100.0F))
                QVERIFY(std::isnan(figure));
        }
    }
};

QTEST_GUILESS_MAIN(tst_SpectralAnalysisBands)
#include "tst_SpectralAnalysisBands.moc"
