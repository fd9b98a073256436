// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingChartFixture.h"

#include <QSignalSpy>
#include <QTest>

class tst_CChart2DMappingDataAxes : public QObject, private MappingChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void limitsOfTime();
    void spacingIsSetAfterItsUse();
    void limitsOfPosition();
    void liveWindowOfTime();
    void liveWindowOfPosition();
    void allAtOnePlace();
    void windowOfAnEmptyPlot();
    void legendOnTime();
    void legendOnPosition();
    void fullAxisOfTime();
    void fullAxisOfPosition();
    void emptyPlotIgnoresTheReset();
    void labelsOfTime();
    void labelsWithinASecond();
    void labelsOfPosition_data();
    void labelsOfPosition();
    void loadDataset_data();
    void loadDataset();
    void loadDatasetUpTo_data();
    void loadDatasetUpTo();
    void loadNothing();

private:
    void addAt(const std::vector<double>& places)
    {
        for (const double place : places)
            m_chart->AddMeasureBlock(makeBlock(2, place));
    }
};

namespace {

bool isNear(double actual, double expected)
{
    return std::fabs(actual - expected) < 1e-6;
}

} // namespace

void tst_CChart2DMappingDataAxes::limitsOfTime()
{
    m_chart->AddMeasureBlock(makeBlock(3)); // X up to 0.2, and 0.1 more
    QVERIFY(isNear(m_chart->MeasureResultMaxX(), 0.3));
    m_chart->AddMeasureBlock(makeBlock(3)); // X up to 0.5, 0.6 is above a half
    QVERIFY(isNear(m_chart->MeasureResultMaxX(), 1.1));
    QCOMPARE(m_chart->MeasureResultMinX(), 0.0);
}

void tst_CChart2DMappingDataAxes::spacingIsSetAfterItsUse()
{
    parameters().SetAcquisitionRate(100.0);
    m_chart->AddMeasureBlock(makeBlock(2)); // X up to 0.1, still with 0.1
    QVERIFY(isNear(m_chart->MeasureResultMaxX(), 0.2));
    QCOMPARE(m_chart->MinDeltaAxisX(), 0.01);
    m_chart->AddMeasureBlock(makeBlock(2)); // X up to 0.3
    QVERIFY(isNear(m_chart->MeasureResultMaxX(), 0.31));
}

void tst_CChart2DMappingDataAxes::limitsOfPosition()
{
    start(CSettings::e_HorizAxisIsXPosition);
    addAt({5.0, -2.0, 3.0});
    // The margin is 1 until the axis was chosen.
    QCOMPARE(m_chart->MeasureResultMinX(), -3.0);
    QCOMPARE(m_chart->MeasureResultMaxX(), 6.0);
    QCOMPARE(m_chart->MinDeltaAxisX(), 1.0);
    m_chart->resetAxisXDelta(false); // span 7 is 10, half of it 5
    addAt({0.0});
    QCOMPARE(m_chart->MeasureResultMinX(), -7.0);
    QCOMPARE(m_chart->MeasureResultMaxX(), 10.0);
    QCOMPARE(m_chart->MinDeltaAxisX(), 5.0);
}

void tst_CChart2DMappingDataAxes::liveWindowOfTime()
{
    m_chart->AddMeasureBlock(makeBlock(3));
    m_chart->UpdateAxisX(3);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QVERIFY(isNear(m_chart->Xmax(), 0.3));
    for (int i = 0; i < 20; ++i)
        m_chart->AddMeasureBlock(makeBlock(10)); // X up to 20.2
    m_chart->UpdateAxisX(203);
    QVERIFY(isNear(m_chart->Xmax(), 20.8));
    QCOMPARE(m_chart->Xmin(), 0.0);
    m_chart->UpdateAxisX(203);
    QVERIFY(isNear(m_chart->Xmin(), 10.8));
    // More than there are
    m_chart->UpdateAxisX(1000);
    QVERIFY(isNear(m_chart->Xmax(), 20.8));
    m_chart->UpdateAxisX(0);
    QVERIFY(isNear(m_chart->Xmax(), 0.1));
}

void tst_CChart2DMappingDataAxes::liveWindowOfPosition()
{
    start(CSettings::e_HorizAxisIsXPosition);
    addAt({0.0, 30.0, 10.0});
    m_chart->UpdateAxisX(6); // entry 2 is at 30: 30 is 50, half 25 is 20
    QCOMPARE(m_chart->Xmin(), -20.0);
    QCOMPARE(m_chart->Xmax(), 50.0);
    m_chart->UpdateAxisX(4); // entry 1 is at 10
    QCOMPARE(m_chart->Xmin(), -5.0);
    QCOMPARE(m_chart->Xmax(), 15.0);
    m_chart->UpdateAxisX(0); // entry 0
    QCOMPARE(m_chart->Xmin(), -0.5);
    QCOMPARE(m_chart->Xmax(), 0.5);
    m_chart->UpdateAxisX(999);
    QCOMPARE(m_chart->Xmax(), 50.0);
}

void tst_CChart2DMappingDataAxes::allAtOnePlace()
{
    start(CSettings::e_HorizAxisIsXPosition);
    addAt({4.0, 4.0, 4.0});
    m_chart->UpdatePlot();
    QCOMPARE(m_chart->Xmin(), 3.5);
    QCOMPARE(m_chart->Xmax(), 4.5);
}

void tst_CChart2DMappingDataAxes::windowOfAnEmptyPlot()
{
    m_chart->SetXmin(3.0);
    m_chart->SetXmax(4.0);
    m_chart->UpdateAxisX(7);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QCOMPARE(m_chart->Xmax(), 1.0);
    m_chart->SetXmin(3.0);
    m_chart->refreshLegendData(2.0, 5.0);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QCOMPARE(m_chart->Xmax(), 1.0);
}

void tst_CChart2DMappingDataAxes::legendOnTime()
{
    for (int i = 0; i < 3; ++i)
        m_chart->AddMeasureBlock(makeBlock(10)); // X up to 2.9, limit 3.5
    m_chart->refreshLegendData(1.0, 2.0);
    QCOMPARE(m_chart->Xmin(), 1.0);
    QCOMPARE(m_chart->Xmax(), 2.0);
    m_chart->refreshLegendData(-1.0, 9.0);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QVERIFY(isNear(m_chart->Xmax(), 3.5));
}

void tst_CChart2DMappingDataAxes::legendOnPosition()
{
    start(CSettings::e_HorizAxisIsXPosition);
    addAt({0.0, 30.0});
    m_chart->refreshLegendData(-100.0, 100.0);
    QCOMPARE(m_chart->Xmin(), -1.0);
    QCOMPARE(m_chart->Xmax(), 31.0);
    m_chart->resetAxisXDelta(false);
    m_chart->refreshLegendData(-100.0, 100.0);
    QCOMPARE(m_chart->Xmin(), -20.0);
    QCOMPARE(m_chart->Xmax(), 50.0);
    m_chart->refreshLegendData(3.0, 4.0);
    QCOMPARE(m_chart->Xmin(), 3.0);
    QCOMPARE(m_chart->Xmax(), 4.0);
    QCOMPARE(m_chart->XminDate(), QStringLiteral("3"));
}

void tst_CChart2DMappingDataAxes::fullAxisOfTime()
{
    for (int i = 0; i < 20; ++i)
        m_chart->AddMeasureBlock(makeBlock(10)); // limit 20.5
    QSignalSpy sliderSpy(m_chart.get(), &CChart2DMappingData::refreshLimitSliderX);
    m_chart->SetXmax(15.0);
    m_chart->resetAxisXDelta(false);
    QCOMPARE(m_chart->Xmin(), 5.0);
    QCOMPARE(m_chart->Xmax(), 15.0);
    m_chart->SetXmax(6.0);
    m_chart->resetAxisXDelta(false);
    QCOMPARE(m_chart->Xmin(), 0.0);
    m_chart->resetAxisXDelta(true);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QVERIFY(isNear(m_chart->Xmax(), 20.5));
    QCOMPARE(sliderSpy.count(), 3);
}

void tst_CChart2DMappingDataAxes::fullAxisOfPosition()
{
    start(CSettings::e_HorizAxisIsXPosition);
    addAt({1.0, 2.5});
    for (const bool full : {false, true}) {
        m_chart->SetXmin(1.2);
        m_chart->SetXmax(1.3);
        QSignalSpy sliderSpy(m_chart.get(), &CChart2DMappingData::refreshLimitSliderX);
        m_chart->resetAxisXDelta(full); // 1.5 is 2, half of it 1
        QCOMPARE(m_chart->Xmin(), 0.0);
        QCOMPARE(m_chart->Xmax(), 3.5);
        QCOMPARE(sliderSpy.count(), 1);
    }
}

void tst_CChart2DMappingDataAxes::emptyPlotIgnoresTheReset()
{
    QSignalSpy sliderSpy(m_chart.get(), &CChart2DMappingData::refreshLimitSliderX);
    m_chart->SetXmin(3.0);
    m_chart->resetAxisXDelta(true);
    m_chart->resetAxisXDelta(false);
    QCOMPARE(m_chart->Xmin(), 3.0);
    QCOMPARE(sliderSpy.count(), 0);
}

void tst_CChart2DMappingDataAxes::labelsOfTime()
{
    m_settings->SetMappingMaxMeasurementCount(50);
    MappingBlock first;
    for (int i = 0; i < 7; ++i) {
        const auto block = makeBlock(10);
        if (i == 3)
            first = block;
        m_chart->AddMeasureBlock(block);
    }
    // Two blocks are gone, so second 1 is the begin of the fourth.
    m_chart->refreshLegendData(1.0, 3.05);
    const QDateTime begin = first->Results[0]->Timestamp;
    QCOMPARE(m_chart->XminDate(), begin.toString(QStringLiteral("yyyy.MM.dd")));
    QCOMPARE(m_chart->XminTime(), begin.toString(QStringLiteral("HH:mm:ss")));
    QCOMPARE(m_chart->XmaxTime(), begin.addSecs(2).toString(QStringLiteral("HH:mm:ss")));
    QCOMPARE(m_chart->XmaxDate(), begin.addSecs(2).toString(QStringLiteral("yyyy.MM.dd")));
}

void tst_CChart2DMappingDataAxes::labelsWithinASecond()
{
    const auto block = makeBlock(10);
    m_chart->AddMeasureBlock(block);
    m_chart->refreshLegendData(0.25, 0.65);
    QCOMPARE(m_chart->XminTime(), block->Results[2]->Timestamp.toString(QStringLiteral("HH:mm:ss.zzz")));
    QCOMPARE(m_chart->XmaxTime(), block->Results[7]->Timestamp.toString(QStringLiteral("HH:mm:ss.zzz")));
    // A window without an extent leaves them.
    m_chart->refreshLegendData(1.0, 1.0);
    QCOMPARE(m_chart->XminTime(), block->Results[2]->Timestamp.toString(QStringLiteral("HH:mm:ss.zzz")));
}

void tst_CChart2DMappingDataAxes::labelsOfPosition_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<QString>("low");
    QTest::addColumn<QString>("high");
    QTest::addColumn<QString>("text");
    // The first margin of 1 around 0.123456789, 2.5 and 1234567.5
    QTest::newRow("X") << 1 << "Min X ="
                       << "Max X ="
                       << "1.12346";
    QTest::newRow("Y") << 2 << "Min Y ="
                       << "Max Y ="
                       << "3.5";
    QTest::newRow("Z") << 3 << "Min Z ="
                       << "Max Z ="
                       << "1.23457e+06";
}

void tst_CChart2DMappingDataAxes::labelsOfPosition()
{
    QFETCH(int, axis);
    QFETCH(QString, low);
    QFETCH(QString, high);
    QFETCH(QString, text);
    start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
    m_chart->AddMeasureBlock(makeBlock(2, 0.123456789, 2.5, 1234567.5));
    m_chart->refreshLegendData(-1e12, 1e12);
    QCOMPARE(m_chart->XminTime(), low);
    QCOMPARE(m_chart->XmaxTime(), high);
    QCOMPARE(m_chart->XmaxDate(), text);
}

void tst_CChart2DMappingDataAxes::loadDataset_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    // 25 blocks of a second: X up to 24.9, 25.5 with spacing and half a second
    QTest::newRow("time") << 0 << 0.0 << 25.5;
    // Places from 0 to 24: 50, half 25 is 20; 240: 500; 2400: 5000
    QTest::newRow("X") << 1 << -20.0 << 44.0;
    QTest::newRow("Y") << 2 << -200.0 << 440.0;
    QTest::newRow("Z") << 3 << -2000.0 << 4400.0;
}

void tst_CChart2DMappingDataAxes::loadDataset()
{
    QFETCH(int, axis);
    QFETCH(double, xMin);
    QFETCH(double, xMax);
    start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
    QSignalSpy visibleSpy(m_chart.get(), &CChart2DMappingData::VisibleChanged);
    m_chart->LoadDataset(makeBlocks(25, 10));
    QVERIFY(isNear(m_chart->Xmin(), xMin));
    QVERIFY(isNear(m_chart->Xmax(), xMax));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{250});
    QCOMPARE(visibleSpy.count(), 2);
    QVERIFY(m_chart->Visible());
    QVERIFY(m_chart->findChild<QTimer*>()->isActive());
}

void tst_CChart2DMappingDataAxes::loadDatasetUpTo_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("results");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    QTest::newRow("first") << 0 << 0 << 10 << 0.0 << 0.9;
    QTest::newRow("middle") << 0 << 14 << 150 << 4.9 << 14.9;
    QTest::newRow("last") << 0 << 24 << 250 << 14.9 << 24.9;
    QTest::newRow("past the end") << 0 << 99 << 250 << 14.9 << 24.9;
    // 0 to 14: 20, half 10
    QTest::newRow("position") << 1 << 14 << 150 << -10.0 << 24.0;
}

void tst_CChart2DMappingDataAxes::loadDatasetUpTo()
{
    QFETCH(int, axis);
    QFETCH(int, index);
    QFETCH(int, results);
    QFETCH(double, xMin);
    QFETCH(double, xMax);
    start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
    m_chart->LoadDatasetUpTo(makeBlocks(25, 10), index);
    QCOMPARE(m_chart->MeasureResultCount(), static_cast<qulonglong>(results));
    QVERIFY(isNear(m_chart->Xmin(), xMin));
    QVERIFY(isNear(m_chart->Xmax(), xMax));
}

void tst_CChart2DMappingDataAxes::loadNothing()
{
    m_chart->LoadDataset({});
    m_chart->LoadDatasetUpTo({}, 0);
    m_chart->LoadDatasetUpTo(makeBlocks(3, 2), -1);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
    QVERIFY(m_chart->Visible());
}

QTEST_GUILESS_MAIN(tst_CChart2DMappingDataAxes)
#include "tst_CChart2DMappingDataAxes.moc"
