// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingChartFixture.h"
#include "NiceRange.h"
#include "ReferenceMappingPlot.h"

#include <QTest>

class tst_CChart2DMappingDataDrawing : public QObject, private MappingChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void equalsAPlotBuiltAnew_data();
    void equalsAPlotBuiltAnew();
    void changeOfAverageCountsForThePast();
    void chosenRows_data();
    void chosenRows();
    void equalPlacesStaySeparate();
    void singleResultIsDoubled_data();
    void singleResultIsDoubled();
    void averagingOfNothingPlotsNothing_data();
    void averagingOfNothingPlotsNothing();
    void blocksOfSeveralSizes();
    void onlyPublishedValuesCount();
    void hiddenSeriesDoNotCount();
    void nothingVisible();
    void timesThatGoBack();
    void userKeepsTheYAxis();

private:
    void compare(ReferenceMappingPlot& plot);
    void configure(ReferenceMappingPlot& plot, int mode, unsigned n, quint64 limit);
};

void tst_CChart2DMappingDataDrawing::compare(ReferenceMappingPlot& plot)
{
    m_chart->UpdateDownsampling();
    plot.draw();
    QCOMPARE(m_chart->rowCount(), static_cast<int>(plot.rows.size()));
    for (int row = 0; row < m_chart->rowCount(); ++row) {
        const auto at = static_cast<std::size_t>(row);
        QCOMPARE(xValue(*m_chart, row), plot.rowX[at]);
        for (int series = 0; series < 7; ++series)
            QCOMPARE(seriesValue(*m_chart, row, series), plot.rows[at][static_cast<std::size_t>(series)]);
    }
}

void tst_CChart2DMappingDataDrawing::configure(ReferenceMappingPlot& plot, int mode, unsigned n,
                                               quint64 limit)
{
    plot.mode = mode;
    plot.n = n;
    plot.limit = limit;
    m_settings->SetMappingMaxMeasurementCount(limit);
    m_chart->SetAveragingCount(n);
    m_chart->SetAveragingModeIndex(mode);
}

void tst_CChart2DMappingDataDrawing::equalsAPlotBuiltAnew_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<int>("mode");
    QTest::addColumn<uint>("n");
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("blocks");
    QTest::addColumn<int>("limit");
    const char* const modes[] = {"off", "exponential", "moving"};
    for (int axis = 0; axis < 4; ++axis) {
        for (int mode = 0; mode < 3; ++mode) {
            const auto add = [&](const char* what, uint n, int results, int blocks, int limit) {
                QTest::addRow("axis %d, %s, %s", axis, modes[mode], what)
                    << axis << mode << n << results << blocks << limit;
            };
            add("a few", 3U, 7, 30, 100000);
            add("more results than rows", 4U, 50, 30, 100000);
            add("more blocks than rows", 2U, 2, 450, 100000);
            add("oldest drop", 3U, 10, 90, 305);
        }
    }
}

void tst_CChart2DMappingDataDrawing::equalsAPlotBuiltAnew()
{
    QFETCH(int, axis);
    QFETCH(int, mode);
    QFETCH(uint, n);
    QFETCH(int, results);
    QFETCH(int, blocks);
    QFETCH(int, limit);
    start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
    ReferenceMappingPlot plot;
    plot.axis = axis;
    configure(plot, mode, n, static_cast<quint64>(limit));
    std::uniform_int_distribution<int> place(-8, 8);
    for (int i = 0; i < blocks; ++i) {
        const auto block =
            makeBlock(results, place(m_engine), 0.25 * place(m_engine), 1e-3 * place(m_engine));
        block->Orientation.SetPitch(7.0 * i);
        m_chart->AddMeasureBlock(block);
        plot.add(block);
        if (i % 29 == 0 || i < 3 || i > blocks - 4)
            compare(plot);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(m_chart->MeasureResultCount(), static_cast<qulonglong>(plot.stamps.size()));
    // The rebuild itself changes nothing.
    m_chart->RecomputeFullFilter();
    compare(plot);
}

void tst_CChart2DMappingDataDrawing::changeOfAverageCountsForThePast()
{
    ReferenceMappingPlot plot;
    for (int i = 0; i < 5; ++i) {
        const auto block = makeBlock(20, i);
        m_chart->AddMeasureBlock(block);
        plot.add(block);
    }
    for (const auto& [mode, n] : {std::pair{2, 4U}, {1, 4U}, {1, 9U}, {0, 9U}, {2, 0U}, {2, 50U}}) {
        configure(plot, mode, n, 1000000);
        if (n > 0)
            compare(plot);
    }
}

void tst_CChart2DMappingDataDrawing::chosenRows_data()
{
    QTest::addColumn<int>("blocks");
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("mostRows");
    QTest::addColumn<QVector<int>>("samples");
    // Sample number is block * results + result.
    QTest::newRow("all fit") << 2 << 3 << 6 << QVector<int>{0, 1, 2, 3, 4, 5};
    // m / b = 5 / 2 = 2 a block, sr = 1.5: v = 0.5, which rounds away from zero, and 2
    QTest::newRow("two of three results") << 2 << 3 << 5 << QVector<int>{1, 2, 4, 5};
    // 1 a block: the last
    QTest::newRow("one of three results") << 2 << 3 << 3 << QVector<int>{2, 5};
    QTest::newRow("as many rows as blocks") << 3 << 2 << 3 << QVector<int>{1, 3, 5};
    // sb = 5 / 2: u = 1.5, which rounds to 2, and 4
    QTest::newRow("two of five blocks") << 5 << 2 << 2 << QVector<int>{5, 9};
    QTest::newRow("one of four blocks, doubled") << 4 << 1 << 1 << QVector<int>{3, 3};
}

void tst_CChart2DMappingDataDrawing::chosenRows()
{
    QFETCH(int, blocks);
    QFETCH(int, results);
    QFETCH(int, mostRows);
    QFETCH(QVector<int>, samples);
    m_chart->SetNbPointsAxeX(mostRows);
    QVector<float> all;
    for (int i = 0; i < blocks; ++i) {
        const auto block = makeBlock(results);
        m_chart->AddMeasureBlock(block);
        for (const auto& result : qAsConst(block->Results))
            all.append(result->B());
    }
    m_chart->UpdateDownsampling();
    QCOMPARE(m_chart->DownsampledSignalLength(), samples.size());
    for (int row = 0; row < samples.size(); ++row)
        QCOMPARE(seriesValue(*m_chart, row, 0), all[samples[row]]);
}

void tst_CChart2DMappingDataDrawing::equalPlacesStaySeparate()
{
    start(CSettings::e_HorizAxisIsXPosition);
    const auto first = makeBlock(1, 4.0);
    const auto second = makeBlock(1, 4.0);
    m_chart->AddMeasureBlock(first);
    m_chart->AddMeasureBlock(second);
    m_chart->UpdateDownsampling();
    QCOMPARE(m_chart->rowCount(), 2);
    QCOMPARE(xValue(*m_chart, 0), 4.0);
    QCOMPARE(xValue(*m_chart, 1), 4.0);
    QCOMPARE(seriesValue(*m_chart, 0, 0), second->Results[0]->B());
    QCOMPARE(seriesValue(*m_chart, 1, 0), first->Results[0]->B());
}

void tst_CChart2DMappingDataDrawing::singleResultIsDoubled_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<double>("firstX");
    QTest::newRow("time") << 0 << 0.0;
    QTest::newRow("position") << 2 << 50.0;
}

void tst_CChart2DMappingDataDrawing::singleResultIsDoubled()
{
    QFETCH(int, axis);
    QFETCH(double, firstX);
    start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
    m_chart->AddMeasureBlock(makeBlock(1, 40.0, 50.0, 60.0));
    m_chart->UpdateDownsampling();
    QCOMPARE(m_chart->DownsampledSignalLength(), 2);
    QCOMPARE(xValue(*m_chart, 0), firstX);
    QCOMPARE(xValue(*m_chart, 1), 0.1);
    for (int series = 0; series < 7; ++series)
        QCOMPARE(seriesValue(*m_chart, 0, series), seriesValue(*m_chart, 1, series));
    QVERIFY(m_chart->FirstDataInit());
}

void tst_CChart2DMappingDataDrawing::averagingOfNothingPlotsNothing_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("exponential") << 1;
    QTest::newRow("moving") << 2;
}

void tst_CChart2DMappingDataDrawing::averagingOfNothingPlotsNothing()
{
    QFETCH(int, mode);
    m_chart->SetAveragingCount(0);
    m_chart->SetAveragingModeIndex(mode);
    m_chart->AddMeasureBlock(makeBlock(4));
    m_chart->AddMeasureBlock(makeBlock(4));
    m_chart->UpdateDownsampling();
    QCOMPARE(m_chart->DownsampledSignalLength(), 0);
    QVERIFY(!m_chart->FirstDataInit());
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{8});
    m_chart->SetAveragingModeIndex(0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 8);
    // What is drawn stays when there is nothing to draw.
    m_chart->SetAveragingModeIndex(mode);
    QCOMPARE(m_chart->DownsampledSignalLength(), 8);
}

/// The first in key order sets the number of results; the trimming goes by the newest.
void tst_CChart2DMappingDataDrawing::blocksOfSeveralSizes()
{
    for (int axis = 0; axis < 2; ++axis) {
        start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
        ReferenceMappingPlot plot;
        plot.axis = axis;
        configure(plot, 0, 1, 100);
        std::uniform_int_distribution<int> size(1, 9);
        std::uniform_int_distribution<int> place(0, 9);
        for (int i = 0; i < 300; ++i) {
            const auto block = makeBlock(size(m_engine), place(m_engine));
            m_chart->AddMeasureBlock(block);
            plot.add(block);
            QCOMPARE(m_chart->MeasureResultCount(), static_cast<qulonglong>(plot.stamps.size()));
            if (plot.stamps.empty() && axis == 0)
                continue; // no origin
            compare(plot);
            if (QTest::currentTestFailed())
                return;
        }
    }
}

void tst_CChart2DMappingDataDrawing::onlyPublishedValuesCount()
{
    m_chart->SetNbPointsAxeX(2);
    auto block = MappingBlock::create();
    const float values[] = {-500.0F, 1.0F, 900.0F, 2.0F};
    for (int i = 0; i < 4; ++i) {
        const float v = values[i];
        block->Results.append(makeResult(i, {v, v, v, v, v, 0.0F}));
    }
    m_chart->AddMeasureBlock(block);
    m_chart->UpdateDownsampling();
    // sr = 2, v = 1 and 3
    QCOMPARE(seriesValue(*m_chart, 0, 0), 1.0F);
    QCOMPARE(seriesValue(*m_chart, 1, 0), 2.0F);
    QCOMPARE(m_chart->YminAllSignal(), 1.0);
    QCOMPARE(m_chart->YmaxAllSignal(), 2.0);
    const NiceRange range = niceRange(1.0, 2.0, 11);
    QCOMPARE(m_chart->Ymin(), range.min);
    QCOMPARE(m_chart->Ymax(), range.max);
    QCOMPARE(m_chart->YTickCount(), range.tickCount);
}

void tst_CChart2DMappingDataDrawing::hiddenSeriesDoNotCount()
{
    for (int i = 0; i < 2; ++i)
        m_chart->AddMeasureBlock(makeBlock(10));
    for (int series = 0; series < 7; ++series)
        m_chart->setComponantVisibility(series, series == 3, series == 6);
    float low = 1e9F;
    float high = -1e9F;
    for (int row = 0; row < 20; ++row) {
        low = std::min(low, seriesValue(*m_chart, row, 3));
        high = std::max(high, seriesValue(*m_chart, row, 3));
    }
    QVERIFY(m_chart->YminAllSignal() <= static_cast<double>(low));
    QVERIFY(m_chart->Ymin() <= static_cast<double>(low));
    QVERIFY(m_chart->Ymin() > static_cast<double>(low) - 0.1 * static_cast<double>(high - low));
}

void tst_CChart2DMappingDataDrawing::nothingVisible()
{
    m_chart->AddMeasureBlock(makeBlock(10));
    for (int series = 0; series < 7; ++series)
        m_chart->setComponantVisibility(series, false, series == 6);
    QCOMPARE(m_chart->DownsampledSignalLength(), 10);
    QCOMPARE(m_chart->Ymin(), 0.001);
    QCOMPARE(m_chart->Ymax(), 10.0);
    QCOMPARE(m_chart->YTickCount(), 11);
    // The extremes are what nothing has left of them.
    QCOMPARE(m_chart->YminAllSignal(), static_cast<double>(std::numeric_limits<float>::max()));
    QCOMPARE(m_chart->YmaxAllSignal(), -static_cast<double>(std::numeric_limits<float>::max()));
}

/// The plot is in the order of time, its origin the block that came first.
void tst_CChart2DMappingDataDrawing::timesThatGoBack()
{
    m_nextSample = 100;
    const auto first = makeBlock(3);
    m_nextSample = 90;
    const auto second = makeBlock(3);
    m_chart->AddMeasureBlock(first);
    m_chart->AddMeasureBlock(second);
    m_chart->UpdateDownsampling();
    constexpr double kTolerance = 1e-6; // seconds since 1970 have seven decimals
    const double x[] = {-1.0, -0.9, -0.8, 0.0, 0.1, 0.2};
    QCOMPARE(m_chart->DownsampledSignalLength(), 6);
    for (int row = 0; row < 6; ++row) {
        QVERIFY(qAbs(xValue(*m_chart, row) - x[row]) < kTolerance);
        const MappingBlock& block = row < 3 ? second : first;
        QCOMPARE(seriesValue(*m_chart, row, 2), block->Results[row % 3]->Bx());
    }
    // The axis ends behind the sample that came last, wherever that lies.
    QCOMPARE(m_chart->MeasureResultMinX(), 0.0);
    QVERIFY(qAbs(m_chart->MeasureResultMaxX() + 0.7) < kTolerance);
}

void tst_CChart2DMappingDataDrawing::userKeepsTheYAxis()
{
    m_chart->AddMeasureBlock(makeBlock(10));
    m_chart->UpdateDownsampling();
    m_chart->SetAutoScaling(false);
    m_chart->resetAxisYDelta();
    QVERIFY(!m_chart->YminMaxReseted());
    m_chart->SetYmin(-3.0);
    m_chart->AddMeasureBlock(makeBlock(10));
    m_chart->UpdateDownsampling();
    QCOMPARE(m_chart->Ymin(), -3.0);
}

QTEST_GUILESS_MAIN(tst_CChart2DMappingDataDrawing)
#include "tst_CChart2DMappingDataDrawing.moc"
