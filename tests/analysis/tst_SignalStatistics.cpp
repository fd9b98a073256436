// SPDX-License-Identifier: GPL-3.0-or-later
#include "AnalysisTestSupport.h"
#include "ReferenceAnalysis.h"
#include "SignalStatistics.h"

#include <QtTest>

#include <limits>

using namespace AnalysisTestSupport;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

} // namespace

class tst_SignalStatistics : public QObject
{
    Q_OBJECT

private slots:
    void exceptionTexts()
    {
        const ComputeError error("what went wrong", "where");
        QCOMPARE(error.Message(), std::string("what went wrong"));
        QCOMPARE(error.Place(), std::string("where"));
        QCOMPARE(error.what(), "where : what went wrong\n");
        const std::exception& base = error;
        QCOMPARE(base.what(), "where : what went wrong\n");
    }

    void tooShort()
    {
        float value = 7.0F;
        QCOMPARE(thrownBy([&] { ComputeRMSValue({}, value); }), std::string("ComputeRMSValue : No signal\n"));
        QCOMPARE(value, 0.0F);
        value = 7.0F;
        QCOMPARE(thrownBy([&] { ComputeP2PValue({}, value); }), std::string("ComputeP2PValue : No signal\n"));
        QCOMPARE(value, 0.0F);
        for (const std::vector<float>& signal : {std::vector<float>{}, std::vector<float>{3.0F}}) {
            value = 7.0F;
            QCOMPARE(thrownBy([&] { ComputeStdDevValue(signal, value); }),
                     std::string("ComputeStdDevValue : Need a signal with at least 2 samples\n"));
            QCOMPARE(value, 0.0F);
        }
    }

    void oneSample()
    {
        float value = 7.0F;
        QVERIFY(ComputeRMSValue({-3.5F}, value));
        QCOMPARE(value, 3.5F);
        QVERIFY(ComputeP2PValue({-3.5F}, value));
        QCOMPARE(value, 0.0F);
    }

    void handComputed()
    {
        float value = 0.0F;
        QVERIFY(ComputeRMSValue({1.0F, -7.0F, 5.0F, 5.0F}, value)); // √(100 / 4)
        QCOMPARE(value, 5.0F);
        QVERIFY(ComputeP2PValue({1.0F, -7.0F, 5.0F, 5.0F}, value));
        QCOMPARE(value, 12.0F);
        QVERIFY(ComputeStdDevValue({1.0F, -7.0F, 5.0F, 5.0F}, value)); // mean 1, √(96 / 3)
        QCOMPARE(value, std::sqrt(32.0F));
        QVERIFY(ComputeStdDevValue({4.0F, 4.0F}, value));
        QCOMPARE(value, 0.0F);
    }

    // 2^24 and one more are the same float: sums in single and in double precision part here.
    void widthOfTheSums()
    {
        // Exactly: QCOMPARE of floats is not.
        float value = 0.0F;
        // Squares 2^24, 1, 1, 1, ...: a float sum would stay at 2^24.
        std::vector<float> signal(1025, 1.0F);
        signal.front() = 4096.0F;
        QVERIFY(ComputeRMSValue(signal, value));
        QVERIFY(value == static_cast<float>(std::sqrt((16777216.0 + 1024.0) / 1025.0)));

        // The float sum stays at 2^24, so that the mean of the 4 samples is 2^22 and not 2^22 + 0.75, and the
        // squares (3 * 2^22)² = 9 * 2^44 and three times (2^22 - 1)² = 2^44 - 2^23 + 1. The rounded value of
        // each of these squares is 2^44 - 2^23, and they add up to 12 * 2^44 - 3 * 2^23, which rounds to a
        // multiple of 2^24.
        QVERIFY(ComputeStdDevValue({16777216.0F, 1.0F, 1.0F, 1.0F}, value));
        float squares = 9.0F * 17592186044416.0F;
        for (int i = 0; i < 3; ++i)
            squares += 17592186044416.0F - 8388608.0F;
        QVERIFY(value == std::sqrt(squares / 3.0F));

        // Samples in their order: with the large one last, the small ones count.
        QVERIFY(ComputeStdDevValue({1.0F, 1.0F, 1.0F, 16777216.0F}, value));
        // The sum is 16777219, in single precision 16777220; the mean is 4194305.
        const float small = 4194304.0F;
        const float large = 16777216.0F - 4194305.0F;
        squares = small * small;
        squares += small * small;
        squares += small * small;
        squares += large * large;
        QVERIFY(value == std::sqrt(squares / 3.0F));
    }

    void notANumber()
    {
        float value = 0.0F;
        QVERIFY(ComputeRMSValue({1.0F, kNaN}, value));
        QVERIFY(std::isnan(value));
        QVERIFY(ComputeStdDevValue({1.0F, kNaN}, value));
        QVERIFY(std::isnan(value));
        // Both extremes start anew behind it.
        QVERIFY(ComputeP2PValue({9.0F, -9.0F, kNaN, 1.0F, 3.0F}, value));
        QCOMPARE(value, 2.0F);
        QVERIFY(ComputeP2PValue({kNaN, 1.0F, 3.0F}, value));
        QCOMPARE(value, 2.0F);
        QVERIFY(ComputeP2PValue({1.0F, 3.0F, kNaN}, value));
        QVERIFY(std::isnan(value));
        QVERIFY(ComputeP2PValue({1.0F, kInfinity}, value));
        QCOMPARE(value, kInfinity);
        QVERIFY(ComputeRMSValue({1.0F, -kInfinity}, value));
        QCOMPARE(value, kInfinity);
    }

    void againstTheReference_data() { addLengthRows(); }
    void againstTheReference()
    {
        QFETCH(const qulonglong, size);
        const std::vector<float> signal = sampleSignal(static_cast<std::size_t>(size));
        const std::vector<double> wide = ReferenceAnalysis::widened(signal);
        float value = 0.0F;
        QVERIFY(ComputeRMSValue(signal, value));
        QVERIFY(value == static_cast<float>(ReferenceAnalysis::rms(wide)));
        QVERIFY(ComputeP2PValue(signal, value));
        QVERIFY(std::abs(static_cast<double>(value) - ReferenceAnalysis::peakToPeak(wide)) < 1e-6);
        // Float sums of up to 5,000 terms.
        QVERIFY(ComputeStdDevValue(signal, value));
        const double expected = ReferenceAnalysis::standardDeviation(wide);
        QVERIFY2(std::abs(static_cast<double>(value) - expected) < 1e-5 * expected,
                 qPrintable(QStringLiteral("%1 %2").arg(static_cast<double>(value)).arg(expected)));
    }
};

QTEST_GUILESS_MAIN(tst_SignalStatistics)
#include "tst_SignalStatistics.moc"
