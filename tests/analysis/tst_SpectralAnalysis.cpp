// SPDX-License-Identifier: GPL-3.0-or-later
#include "AnalysisTestSupport.h"
#include "ReferenceAnalysis.h"
#include "SpectralAnalysis.h"
#include "SpectralPeaks.h"

#include <QtTest>

#include <algorithm>
#include <limits>

using namespace AnalysisTestSupport;

class tst_SpectralAnalysis : public QObject
{
    Q_OBJECT

private slots:
    void tooShort()
    {
        for (const std::vector<float>& signal : {std::vector<float>{}, std::vector<float>{3.0F}}) {
            std::vector<float> spectrum(5, 1.0F);
            QCOMPARE(thrownBy([&] { ComputeSpectrum(signal, spectrum); }),
                     std::string("ComputeSpectrum : Need signal with at least 2 samples\n"));
            QVERIFY(spectrum.empty());
            QVERIFY(spectrum.capacity() >= 5);
        }
    }

    // The last weight is the square of sin(3.1415927), which is -8.7422777e-8 since the constant is that much
    // above pi. It shows the width of the arithmetic and the symmetry of the window.
    void twoSamples()
    {
        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum({1.0F, 1.0F}, spectrum));
        QCOMPARE(spectrum.size(), std::size_t(2));
        const double weight = 8.74227765734758e-8 * 8.74227765734758e-8;
        for (const float amplitude : spectrum)
            QVERIFY(std::abs(static_cast<double>(amplitude) / weight - 1.0) < 1e-6);
    }

    // Weights 0, 1, about 0: one sample is left, whose bins are all as large as itself.
    void threeSamples()
    {
        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum({5.0F, 7.5F, 9.0F}, spectrum));
        QCOMPARE(spectrum.size(), std::size_t(2));
        for (const float amplitude : spectrum)
            QVERIFY(std::abs(amplitude - 5.0F) < 1e-6F);
    }

    void numberOfBins()
    {
        std::vector<float> spectrum;
        for (const auto& [size, bins] : std::vector<std::pair<std::size_t, std::size_t>>{
                 {2, 2}, {3, 2}, {8, 5}, {9, 5}, {1023, 512}, {1024, 513}}) {
            QVERIFY(ComputeSpectrum(sampleSignal(size), spectrum));
            QCOMPARE(spectrum.size(), bins);
        }
    }

    void zeros()
    {
        for (const std::size_t size : {2, 7, 8, 9, 100, 101}) {
            std::vector<float> spectrum(3, 1.0F);
            QVERIFY(ComputeSpectrum(std::vector<float>(size), spectrum));
            QCOMPARE(spectrum, std::vector<float>(size / 2 + 1));
        }
    }

    // The weights add up to (N - 1) / 2, so that a constant reads (N - 1) / N of itself, and half of that
    // one bin further.
    void constant()
    {
        for (const std::size_t size : {10, 1000, 1024, 1023}) {
            std::vector<float> spectrum;
            QVERIFY(ComputeSpectrum(std::vector<float>(size, -40.0F), spectrum));
            const double expected = 40.0 * static_cast<double>(size - 1) / static_cast<double>(size);
            QVERIFY(std::abs(static_cast<double>(spectrum[0]) - expected) < 1e-5 * expected);
            QVERIFY(std::abs(spectrum[1] / spectrum[0] - 0.5F) < 1.0F / static_cast<float>(size));
            QVERIFY(spectrum[4] < 1e-1F * spectrum[1]);
        }
    }

    // The bin of the Nyquist frequency is scaled as all others.
    void alternatingSigns()
    {
        std::vector<float> signal(1000, 3.0F);
        for (std::size_t i = 1; i < signal.size(); i += 2)
            signal[i] = -3.0F;
        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum(signal, spectrum));
        QVERIFY(std::abs(spectrum.back() - 3.0F * 0.999F) < 1e-5F);
    }

    void againstTheReference_data() { addLengthRows(); }
    void againstTheReference()
    {
        QFETCH(const qulonglong, size);
        const std::vector<float> signal = sampleSignal(static_cast<std::size_t>(size));
        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum(signal, spectrum));
        const std::vector<double> expected = ReferenceAnalysis::spectrum(signal);
        // The largest amplitudes are about 3. The generic stage adds up as many products in single precision
        // as the length has in its largest factor.
        const double worst = worstDifference(spectrum, expected, 3.0);
        QVERIFY2(worst < kTolerance, qPrintable(QString::number(worst)));
    }

    void sines_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("periods");
        for (const int size : {100, 256, 1000, 1001, 1023, 1024, 4096, 5000}) {
            for (const int periods : {4, size / 10, size / 3, size / 2 - 4})
                QTest::addRow("%d periods in %d", periods, size) << size << periods;
        }
    }

    // Half of the amplitude in the spectrum, the amplitude in the table of peaks, at the frequency of the
    // sine. The symmetric window takes away a share of 1 / N.
    void sines()
    {
        QFETCH(const int, size);
        QFETCH(const int, periods);
        const double amplitude = 12.5;
        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum(sine(static_cast<std::size_t>(size), amplitude, periods), spectrum));
        const double tolerance = 1.5 * amplitude / size;
        QVERIFY(std::abs(static_cast<double>(spectrum[static_cast<std::size_t>(periods)]) - amplitude / 2.0) <
                tolerance);

        const float resolution = 0.25F;
        std::vector<float> frequencies;
        std::vector<float> amplitudes;
        // 20 dB below the sine, as far above the middle bin as that is.
        std::vector<float> sorted = spectrum;
        std::sort(sorted.begin(), sorted.end());
        const auto middle = static_cast<double>(sorted[sorted.size() / 2]);
        const auto threshold = static_cast<float>(20.0 * std::log10(amplitude / 20.0 / middle));
        QVERIFY(ComputeSpectralPeaks(spectrum, frequencies, amplitudes, resolution, threshold));
        QCOMPARE(amplitudes.size(), std::size_t(1));
        QCOMPARE(frequencies.size(), std::size_t(1));
        QVERIFY2(std::abs(static_cast<double>(amplitudes[0]) - amplitude) < tolerance,
                 qPrintable(QString::number(static_cast<double>(amplitudes[0]))));
        QVERIFY(std::abs(static_cast<double>(frequencies[0]) - 0.25 * periods) < 0.25 / size * 2.0);
    }

    void notANumber()
    {
        for (const float odd : {std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max()}) {
            for (const std::size_t size : {2, 8, 9, 100, 101, 1000}) {
                std::vector<float> signal = sampleSignal(size);
                for (std::size_t i = 0; i < size; i += 3)
                    signal[i] = odd;
                std::vector<float> spectrum;
                QVERIFY(ComputeSpectrum(signal, spectrum));
                QCOMPARE(spectrum.size(), size / 2 + 1);
                std::vector<float> frequencies;
                std::vector<float> amplitudes;
                QVERIFY(ComputeSpectralPeaks(spectrum, frequencies, amplitudes, 1.0F, 3.0F));
                QCOMPARE(frequencies.size(), amplitudes.size());
            }
        }
        std::vector<float> signal = sampleSignal(100);
        signal[50] = std::numeric_limits<float>::quiet_NaN();
        std::vector<float> spectrum;
        QVERIFY(ComputeSpectrum(signal, spectrum));
        QVERIFY(std::all_of(spectrum.begin(), spectrum.end(), [](float value) { return std::isnan(value); }));
    }

private:
    static constexpr double kTolerance = 2e-6;
};

QTEST_GUILESS_MAIN(tst_SpectralAnalysis)
#include "tst_SpectralAnalysis.moc"
