// SPDX-License-Identifier: GPL-3.0-or-later
#include "AnalysisTestSupport.h"
#include "ReferenceAnalysis.h"
#include "SpectralAnalysis.h"
#include "SpectralPeaks.h"

#include <QtTest>

#include <limits>

using namespace AnalysisTestSupport;

namespace {

using Values = std::vector<float>;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

} // namespace

Q_DECLARE_METATYPE(Values)

class tst_SpectralPeaks : public QObject
{
    Q_OBJECT

private slots:
    void tooShort()
    {
        for (const Values& spectrum : {Values{}, Values{3.0F}}) {
            Values frequencies{1.0F};
            Values amplitudes{1.0F};
            QCOMPARE(thrownBy([&] { ComputeSpectralPeaks(spectrum, frequencies, amplitudes, 1.0F, 0.0F); }),
                     std::string("ComputeSpectralPeaks : Need spectrum with at least 2 bins\n"));
            QVERIFY(frequencies.empty());
            QVERIFY(amplitudes.empty());
        }
    }

    void handComputed_data()
    {
        QTest::addColumn<Values>("spectrum");
        QTest::addColumn<float>("resolution");
        QTest::addColumn<float>("thresholdDb");
        QTest::addColumn<Values>("frequencies");
        QTest::addColumn<Values>("amplitudes");

        QTest::newRow("zeros") << Values(9, 0.0F) << 1.0F << 0.0F << Values{} << Values{};
        QTest::newRow("two bins") << Values{9.0F, 1.0F} << 1.0F << -40.0F << Values{} << Values{};
        QTest::newRow("three bins") << Values{9.0F, 1.0F, 1.0F} << 1.0F << 0.0F << Values{0.0F}
                                    << Values{9.0F};
        // The bins above are 2, 8 and 4: a = 2, b = 8, c = 4, delta = -1 / -10, peak = 8 + 0.05.
        QTest::newRow("parabola") << Values{1, 1, 1, 2, 8, 4, 1, 1, 1} << 0.5F << 0.0F << Values{2.05F}
                                  << Values{16.1F};
        QTest::newRow("one bin") << Values{1, 1, 1, 1, 8, 1, 1, 1, 1} << 0.5F << 0.0F << Values{2.0F}
                                 << Values{16.0F};
        QTest::newRow("largest at the left edge of its run")
            << Values{1, 1, 1, 1, 8, 4, 1, 1, 1} << 0.5F << 0.0F << Values{2.0F} << Values{16.0F};
        QTest::newRow("largest at the right edge of its run")
            << Values{1, 1, 1, 4, 8, 1, 1, 1, 1} << 0.5F << 0.0F << Values{2.0F} << Values{16.0F};
        // Around the lower one of the two: a = 2, b = c = 8, delta = -3 / -6, peak = 8 + 0.75.
        QTest::newRow("flat top") << Values{1, 1, 1, 2, 8, 8, 1, 1, 1} << 1.0F << 0.0F << Values{4.5F}
                                  << Values{17.5F};
        QTest::newRow("flat top at the left edge")
            << Values{1, 1, 1, 8, 8, 2, 1, 1, 1} << 1.0F << 0.0F << Values{3.0F} << Values{16.0F};
        QTest::newRow("one peak for a run with two tops, in the order of bins")
            << Values{1, 9, 1, 1, 1, 2, 7, 3, 8, 2, 1, 1, 1, 1, 1, 1} << 1.0F << 0.0F
            << Values{1.0F, static_cast<float>(8.0 - 0.5 / -11.0 * -1.0)}
            << Values{18.0F, static_cast<float>(2.0 * (8.0 + 0.25 * 0.5 / 11.0))};
        // A constant reads itself already.
        QTest::newRow("peak at 0 Hz")
            << Values{8, 1, 1, 1, 1, 1} << 1.0F << 0.0F << Values{0.0F} << Values{8.0F};
        QTest::newRow("no width of a bin")
            << Values{1, 1, 1, 1, 8, 1, 1, 1, 1} << 0.0F << 0.0F << Values{0.0F} << Values{8.0F};
        QTest::newRow("run to the last bin")
            << Values{1, 1, 1, 1, 1, 1, 2, 4, 8} << 1.0F << 0.0F << Values{8.0F} << Values{16.0F};
        QTest::newRow("run to the last bin, largest before it")
            << Values{1, 1, 1, 1, 1, 1, 2, 8, 4} << 1.0F << 0.0F << Values{7.1F} << Values{16.1F};
        QTest::newRow("run from the last bin")
            << Values{1, 1, 1, 1, 1, 1, 1, 1, 8} << 1.0F << 0.0F << Values{} << Values{};
        QTest::newRow("run from the last but one")
            << Values{1, 1, 1, 1, 1, 1, 1, 4, 8} << 1.0F << 0.0F << Values{} << Values{};
        QTest::newRow("run from the last but two")
            << Values{1, 1, 1, 1, 1, 1, 4, 1, 1} << 1.0F << 0.0F << Values{6.0F} << Values{8.0F};
        // Strictly above: 20 dB are a factor of ten.
        QTest::newRow("as high as the threshold")
            << Values{1, 1, 1, 10, 1, 1, 1} << 1.0F << 20.0F << Values{} << Values{};
        QTest::newRow("above the threshold")
            << Values{1, 1, 1, 10.00001F, 1, 1, 1} << 1.0F << 20.0F << Values{3.0F} << Values{20.00002F};
        QTest::newRow("negative threshold")
            << Values{4, 4, 1, 4, 4, 1, 4, 4} << 1.0F << -6.0F << Values{0.0F, 3.0F} << Values{4.0F, 8.0F};
    }
    void handComputed()
    {
        QFETCH(const Values, spectrum);
        QFETCH(const float, resolution);
        QFETCH(const float, thresholdDb);
        QFETCH(const Values, frequencies);
        QFETCH(const Values, amplitudes);
        Values foundFrequencies{99.0F};
        Values foundAmplitudes{99.0F, 99.0F};
        QVERIFY(ComputeSpectralPeaks(spectrum, foundFrequencies, foundAmplitudes, resolution, thresholdDb));
        QCOMPARE(foundFrequencies, frequencies);
        QCOMPARE(foundAmplitudes, amplitudes);
    }

    // An even number of bins takes the upper of the two in the middle, an odd number the mean of the one in
    // the middle and the one below.
    void middleBin()
    {
        Values frequencies;
        Values amplitudes;
        // Sorted 1 2 3 4: threshold 3, so that only 4 is above. The textbook's 2.5 would find 3 too.
        QVERIFY(ComputeSpectralPeaks({4.0F, 1.0F, 3.0F, 2.0F}, frequencies, amplitudes, 1.0F, 0.0F));
        QCOMPARE(frequencies, Values{0.0F});
        QVERIFY(ComputeSpectralPeaks({3.0F, 2.0F, 4.0F, 1.0F}, frequencies, amplitudes, 1.0F, 0.0F));
        QCOMPARE(frequencies, Values{});
        // Sorted 1 2 3 4 5: threshold 2.5. The textbook's 3 would not find 3.
        QVERIFY(ComputeSpectralPeaks({3.0F, 1.0F, 4.0F, 2.0F, 5.0F}, frequencies, amplitudes, 1.0F, 0.0F));
        QCOMPARE(frequencies, (Values{0.0F, 2.0F}));
        // The sum of the two is rounded to even, away from the lower one: none is above. In double precision
        // the higher one would be.
        const float lower = 1.0F + 1.1920929e-7F;
        const float higher = 1.0F + 2.3841858e-7F;
        QVERIFY(
            ComputeSpectralPeaks({higher, 1.0F, higher, lower, higher}, frequencies, amplitudes, 1.0F, 0.0F));
        QCOMPARE(frequencies, Values{});
    }

    // 10^(1/20) in double precision lies between two floats; the quotient is a float.
    void widthOfTheThreshold()
    {
        const auto factor = std::pow(10.0, static_cast<double>(1.0F / 20.0F));
        auto above = static_cast<float>(factor);
        if (static_cast<double>(above) <= factor)
            above = std::nextafter(above, 2.0F);
        const float below = std::nextafter(above, 0.0F);
        Values frequencies;
        Values amplitudes;
        QVERIFY(ComputeSpectralPeaks({1, 1, above, 1, below, 1, 1, 1}, frequencies, amplitudes, 1.0F, 1.0F));
        QCOMPARE(frequencies, Values{2.0F});
    }

    // The position, 4000.1 here, is rounded before it is multiplied with the width of a bin, also in single
    // precision.
    void widthOfTheFrequency()
    {
        Values spectrum(5000, 1.0F);
        spectrum[3999] = 2.0F;
        spectrum[4000] = 8.0F;
        spectrum[4001] = 4.0F;
        Values frequencies;
        Values amplitudes;
        QVERIFY(ComputeSpectralPeaks(spectrum, frequencies, amplitudes, 1.1F, 0.0F));
        QCOMPARE(frequencies.size(), std::size_t(1));
        const float expected = 4000.1F * 1.1F;
        QVERIFY(frequencies[0] == expected);
    }

    void againstTheReference_data() { addLengthRows(); }
    void againstTheReference()
    {
        QFETCH(const qulonglong, size);
        Values spectrum;
        ComputeSpectrum(sampleSignal(static_cast<std::size_t>(size)), spectrum);
        for (const float thresholdDb : {-3.0F, 0.0F, 3.0F, 10.0F, 30.0F}) {
            Values frequencies;
            Values amplitudes;
            QVERIFY(ComputeSpectralPeaks(spectrum, frequencies, amplitudes, 0.7F, thresholdDb));
            const auto expected = ReferenceAnalysis::peaks(spectrum, static_cast<double>(0.7F),
                                                           static_cast<double>(thresholdDb));
            QCOMPARE(frequencies.size(), expected.size());
            QCOMPARE(amplitudes.size(), expected.size());
            for (std::size_t i = 0; i < expected.size(); ++i) {
                const auto [frequency, amplitude] = expected[i];
                QVERIFY(std::abs(static_cast<double>(frequencies[i]) - frequency) <= 2e-7 * frequency);
                QVERIFY(std::abs(static_cast<double>(amplitudes[i]) - amplitude) <= 2e-7 * amplitude);
            }
        }
    }

    void notANumber()
    {
        Values frequencies;
        Values amplitudes;
        QVERIFY(ComputeSpectralPeaks(Values(50, kNaN), frequencies, amplitudes, 1.0F, 0.0F));
        QVERIFY(frequencies.empty());
        // It counts as the largest when bins are sorted, and is above no threshold.
        QVERIFY(ComputeSpectralPeaks({1, kNaN, 1, 4, 1, 1, kNaN, 1}, frequencies, amplitudes, 1.0F, 0.0F));
        QCOMPARE(frequencies, Values{3.0F});
        QVERIFY(ComputeSpectralPeaks({1, 1, kInfinity, 1, 1, 1, 1, 1}, frequencies, amplitudes, 1.0F, 0.0F));
        QCOMPARE(amplitudes, Values{kInfinity});
        // Mixed at random, many times: the sort must stay within the spectrum.
        std::mt19937 generator(1);
        for (int round = 0; round < 200; ++round) {
            Values spectrum(20 + generator() % 200);
            for (float& value : spectrum) {
                const auto kind = generator() % 4;
                value = kind == 0 ? kNaN : kind == 1 ? kInfinity : static_cast<float>(generator() % 1000);
            }
            QVERIFY(ComputeSpectralPeaks(spectrum, frequencies, amplitudes, 1.0F, -20.0F));
            QCOMPARE(frequencies.size(), amplitudes.size());
        }
    }
};

QTEST_GUILESS_MAIN(tst_SpectralPeaks)
#include "tst_SpectralPeaks.moc"
