// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumChartFixture.h"

#include <QTest>

#include <algorithm>

class tst_CChart2DSpectrumDataDrawing : public QObject, private SpectrumChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void curveLagsBehindItsFrequency();
    void tableEqualsReference_data();
    void tableEqualsReference();
    void windowOfOneBin();
    void endBeyondTheLastBin();
    void startBelowZero();
    void spanAtTheLimit_data();
    void spanAtTheLimit();
    void peaksSurvive();
    void windowBehindTheSpectrum();
    void invertedWindow();
    void noResolutionPublishesNothing();
    void rangeIsStoredSilently();
    void seenRangeOnlyWidens();
    void oddWindowsDoNotCrash();

private:
    void showWindow(double xMin, double xMax);
    void compareWithReference();
};

/// Draws a window that need not be of whole hertz, as a new block does.
void tst_CChart2DSpectrumDataDrawing::showWindow(double xMin, double xMax)
{
    m_chart->SetMinFrequency(xMin);
    m_chart->SetMaxFrequency(xMax);
    m_chart->refreshAxisX(-2000000000, 2000000000);
}

void tst_CChart2DSpectrumDataDrawing::compareWithReference()
{
    const ReferenceSpectrumDrawing reference(m_chart->GetSpectrum(), m_chart->Xmin(), m_chart->Xmax(),
                                             m_record->FrequencyResolution(), m_chart->NbPointsAxeX());
    QCOMPARE(m_chart->DownsampledSignalLength(), static_cast<int>(reference.length));
    for (std::size_t row = 0; row < reference.x.size(); ++row) {
        const double x = xValue(*m_chart, static_cast<int>(row));
        const float y = seriesValue(*m_chart, static_cast<int>(row), 0);
        if (x != reference.x[row] || y != reference.y[row])
            QFAIL(qPrintable(QStringLiteral("row %1 is %2, %3").arg(row).arg(x).arg(y)));
    }
    if (reference.hasRange) {
        QCOMPARE(m_chart->MinSpectrum(), static_cast<double>(reference.min));
        QCOMPARE(m_chart->MaxSpectrum(), static_cast<double>(reference.max));
        QCOMPARE(m_chart->Ymin(), m_chart->MinSpectrum() * 0.2);
        QCOMPARE(m_chart->Ymax(), m_chart->MaxSpectrum() * 2.0);
    }
}

/// The first bin has two rows; the last one of a window without shared rows has none.
void tst_CChart2DSpectrumDataDrawing::curveLagsBehindItsFrequency()
{
    showRandom(9);
    const std::vector<float> spectrum = m_chart->GetSpectrum();
    QCOMPARE(m_chart->DownsampledSignalLength(), 9);
    for (int row = 0; row < 9; ++row) {
        QCOMPARE(xValue(*m_chart, row), static_cast<double>(row));
        QCOMPARE(seriesValue(*m_chart, row, 0), spectrum[static_cast<std::size_t>(std::max(0, row - 1))]);
    }
}

void tst_CChart2DSpectrumDataDrawing::tableEqualsReference_data()
{
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("mostPoints");
    for (const int samples : {2, 3, 17, 800, 802, 804, 1607, 4096, 5000, 9000}) {
        for (const int mostPoints : {401, 50, 1})
            QTest::addRow("%d samples, %d points", samples, mostPoints) << samples << mostPoints;
    }
}

void tst_CChart2DSpectrumDataDrawing::tableEqualsReference()
{
    QFETCH(int, samples);
    QFETCH(int, mostPoints);
    const double rate = 1234.5;
    recordParameters(rate, samples, 0.0, rate / 2.0);
    m_chart->SetNbPointsAxeX(mostPoints);
    m_chart->UpdateSpectrum(makeBlock(samples), 2);
    compareWithReference();
    std::uniform_real_distribution<double> frequency(-rate * 0.1, rate * 0.6);
    for (int i = 0; i < 50 && !QTest::currentTestFailed(); ++i) {
        double ends[] = {frequency(m_engine), frequency(m_engine)};
        std::sort(std::begin(ends), std::end(ends));
        showWindow(ends[0], ends[1]);
        compareWithReference();
    }
}

void tst_CChart2DSpectrumDataDrawing::windowOfOneBin()
{
    showRandom(101);
    showWindow(40.0, 40.0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 1);
    QCOMPARE(xValue(*m_chart, 0), 40.0);
    QCOMPARE(seriesValue(*m_chart, 0, 0), m_chart->GetSpectrum()[40]);
    QCOMPARE(m_chart->MinSpectrum(), m_chart->MaxSpectrum());
}

void tst_CChart2DSpectrumDataDrawing::endBeyondTheLastBin()
{
    showRandom(101);
    showWindow(95.0, 1e6);
    QCOMPARE(m_chart->DownsampledSignalLength(), 6);
    QCOMPARE(xValue(*m_chart, 5), 100.0);
    QCOMPARE(m_chart->Xmax(), 1e6);
}

void tst_CChart2DSpectrumDataDrawing::startBelowZero()
{
    showRandom(101);
    showWindow(-5.0, 3.0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 4);
    QCOMPARE(xValue(*m_chart, 0), 0.0);
}

void tst_CChart2DSpectrumDataDrawing::spanAtTheLimit_data()
{
    QTest::addColumn<int>("span");
    QTest::addColumn<int>("rows");
    QTest::addColumn<double>("lastX");
    QTest::newRow("below") << 400 << 401 << 400.0;
    QTest::newRow("at") << 401 << 402 << 401.0;
    // 400 steps of 402 / 401 bins: 400.9975, up to 401
    QTest::newRow("above") << 402 << 401 << 402.0 - 1.0;
    // 400 steps of 1000 / 401 bins: 997.5, up to 998
    QTest::newRow("far above") << 1000 << 401 << 998.0;
}

void tst_CChart2DSpectrumDataDrawing::spanAtTheLimit()
{
    QFETCH(int, span);
    QFETCH(int, rows);
    QFETCH(double, lastX);
    showRandom(2001);
    m_chart->refreshAxisX(0, span);
    QCOMPARE(m_chart->DownsampledSignalLength(), rows);
    QCOMPARE(xValue(*m_chart, rows - 1), lastX);
    QVERIFY(m_chart->data(m_chart->index(rows - 1, 1)).isValid());
    QVERIFY(!m_chart->data(m_chart->index(rows, 1)).isValid());
    compareWithReference();
}

void tst_CChart2DSpectrumDataDrawing::peaksSurvive()
{
    constexpr int kSamples = 20000;
    recordParameters(kSamples, kSamples, 0.0, kSamples / 2.0);
    const double pi = std::acos(-1.0);
    // Lines inside of their buckets of 24.94 bins; what lies behind the last row, from 9976 Hz on, is not
    // drawn
    for (const int line : {60, 777, 4001, 9970}) {
        std::vector<float> signal;
        for (int i = 0; i < kSamples; ++i)
            signal.push_back(static_cast<float>(3.0 * std::sin(2.0 * pi * line * i / kSamples)));
        m_chart->UpdateSpectrum(blockOf(signal), 0);
        float highest = 0.0F;
        for (int row = 0; row < m_chart->DownsampledSignalLength(); ++row)
            highest = std::max(highest, seriesValue(*m_chart, row, 0));
        // Half of the amplitude is the window's
        QVERIFY2(std::abs(highest - 1.5F) < 1e-3F,
                 qPrintable(QStringLiteral("line at %1 Hz reads %2").arg(line).arg(highest)));
    }
}

void tst_CChart2DSpectrumDataDrawing::windowBehindTheSpectrum()
{
    showRandom(101);
    const double min = m_chart->MinSpectrum();
    const double max = m_chart->MaxSpectrum();
    showWindow(101.0, 200.0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 0);
    QCOMPARE(m_chart->MinSpectrum(), min);
    QCOMPARE(m_chart->MaxSpectrum(), max);
    QVERIFY(!m_chart->data(m_chart->index(0, 0)).isValid());
    showWindow(151.0, 200.0);
    QCOMPARE(m_chart->DownsampledSignalLength(), -50);
}

void tst_CChart2DSpectrumDataDrawing::invertedWindow()
{
    showRandom(101);
    m_chart->refreshAxisX(60, 40);
    QCOMPARE(m_chart->DownsampledSignalLength(), -19);
    QCOMPARE(m_chart->MinSpectrum(), static_cast<double>(FLT_MAX));
    QVERIFY(m_chart->MaxSpectrum() == static_cast<double>(FLT_MIN));
    QVERIFY(!m_chart->data(m_chart->index(0, 0)).isValid());
}

void tst_CChart2DSpectrumDataDrawing::noResolutionPublishesNothing()
{
    QSignalSpy lengths(m_chart.get(), &CChart2DSpectrumData::DownsampledSignalLengthChanged);
    for (const double rate : {0.0, -1.0}) {
        recordParameters(rate, 20, 0.0, 10.0);
        m_chart->UpdateSpectrum(makeBlock(20), 0);
    }
    recordParameters(20.0, 0, 0.0, 10.0);
    QSignalSpy resets(m_chart.get(), &QAbstractItemModel::modelReset);
    m_chart->UpdateSpectrum(makeBlock(20), 0);
    QCOMPARE(resets.count(), 1);
    QCOMPARE(lengths.count(), 0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 0);
    QCOMPARE(m_chart->rowCount(), 11);
    QVERIFY(!m_chart->data(m_chart->index(0, 0)).isValid());
    QCOMPARE(m_chart->MinSpectrum(), 1.0);
    QCOMPARE(m_chart->MaxSpectrum(), 1.0);
    QCOMPARE(m_chart->Visible(), true);
}

void tst_CChart2DSpectrumDataDrawing::rangeIsStoredSilently()
{
    QSignalSpy minima(m_chart.get(), &CChart2DSpectrumData::MinSpectrumChanged);
    QSignalSpy maxima(m_chart.get(), &CChart2DSpectrumData::MaxSpectrumChanged);
    showRandom(101);
    QVERIFY(m_chart->MaxSpectrum() != 1.0);
    QCOMPARE(minima.count(), 0);
    QCOMPARE(maxima.count(), 0);
}

void tst_CChart2DSpectrumDataDrawing::seenRangeOnlyWidens()
{
    recordParameters(20.0, 20, 0.0, 10.0);
    double lowest = 0.01;
    double highest = 10.0;
    for (const float level : {0.5F, 50.0F, 0.5F, 20.0F, 0.0F}) {
        m_chart->UpdateSpectrum(blockOf(std::vector<float>(20, level)), 0);
        lowest = std::min(lowest, m_chart->MinSpectrum());
        highest = std::max(highest, m_chart->MaxSpectrum());
        QCOMPARE(m_chart->YminAllSignal(), lowest);
        QCOMPARE(m_chart->YmaxAllSignal(), highest);
    }
    QCOMPARE(lowest, 0.0);
    QVERIFY(highest > 40.0);
}

void tst_CChart2DSpectrumDataDrawing::oddWindowsDoNotCrash()
{
    showRandom(1001);
    const double nan = std::nan("");
    for (const double xMin : {-1e300, 0.0, 1e300, nan}) {
        for (const double xMax : {-1e300, 0.0, 1e300, nan}) {
            for (const int mostPoints : {401, 0, -5, 2000000000}) {
                m_chart->SetNbPointsAxeX(mostPoints);
                showWindow(xMin, xMax);
                QVERIFY(m_chart->DownsampledSignalLength() <= 1001);
            }
        }
    }
}

QTEST_GUILESS_MAIN(tst_CChart2DSpectrumDataDrawing)
#include "tst_CChart2DSpectrumDataDrawing.moc"
