// SPDX-License-Identifier: GPL-3.0-or-later
// The window and its labels, and the range of the Y axis.
#include "QuietChart.h"

#include <QTest>

#include <cfloat>

class tst_CChart2DFieldsDataAxes : public QObject
{
    Q_OBJECT

private slots:
    void updateAxisX_data();
    void updateAxisX();
    void updateAxisXTakesTheOldRightEnd();
    void resetAxisX_data();
    void resetAxisX();
    void resetAxisXWithoutResults();
    void resetAxisYOrder();
    void refreshLegendData_data();
    void refreshLegendData();
    void timeLabels();
    void timeLabelsTellChangesOnly();
    void refreshYminYmaxMarks();
    void refreshYminYmaxTellsTicksOnChange();
    void yLimitsBySlider();

private:
    CMeasurementParameters m_parameters;
};

void tst_CChart2DFieldsDataAxes::updateAxisX_data()
{
    QTest::addColumn<int>("results");
    QTest::addColumn<double>("spacing");
    QTest::addColumn<double>("oldXmax");
    QTest::addColumn<double>("maxX");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    QTest::newRow("none") << 0 << 1.0 << 30.0 << 50.0 << 0.0 << 1.0;
    QTest::newRow("one") << 1 << 1.0 << 30.0 << 50.0 << 0.0 << 1.0;
    QTest::newRow("start") << 3 << 0.125 << 0.0 << 0.25 << 0.25 << 0.35;
    QTest::newRow("past half a second") << 6 << 0.125 << 3.0 << 1.25 << 0.25 << 1.25;
    QTest::newRow("limit of X not past half a second") << 6 << 0.125 << 3.0 << 0.5 << 0.25 << 0.725;
    QTest::newRow("scrolling") << 31 << 1.0 << 30.0 << 31.5 << 20.0 << 31.5;
    QTest::newRow("old end exactly ten") << 31 << 1.0 << 10.0 << 31.5 << 0.25 << 31.5;
}

void tst_CChart2DFieldsDataAxes::updateAxisX()
{
    QFETCH(int, results);
    QFETCH(double, spacing);
    QFETCH(double, oldXmax);
    QFETCH(double, maxX);
    QFETCH(double, xMin);
    QFETCH(double, xMax);
    QuietChart chart(&m_parameters);
    chart.add(ramp(results, spacing));
    chart.SetMeasureResultMinX(0.25);
    chart.SetMeasureResultMaxX(maxX);
    chart.SetXmin(7.0);
    chart.SetXmax(oldXmax);
    chart.UpdateAxisX(static_cast<unsigned>(results));
    QCOMPARE(chart.Xmin(), xMin);
    QCOMPARE(chart.Xmax(), xMax);
}

void tst_CChart2DFieldsDataAxes::updateAxisXTakesTheOldRightEnd()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(41, 1.0));
    chart.SetXmax(25.0);
    chart.UpdateAxisX(41);
    QCOMPARE(chart.Xmin(), 15.0);
    QCOMPARE(chart.Xmax(), 40.1);
    // No result counted: the first one ends the window
    chart.SetMeasureResultMaxX(0.4);
    chart.UpdateAxisX(0);
    QCOMPARE(chart.Xmax(), 0.1);
    QVERIFY_EXCEPTION_THROWN(chart.UpdateAxisX(43), std::out_of_range);
}

void tst_CChart2DFieldsDataAxes::resetAxisX_data()
{
    QTest::addColumn<bool>("full");
    QTest::addColumn<double>("oldXmax");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    QTest::newRow("full") << true << 12.0 << 0.25 << 30.5;
    QTest::newRow("live window") << false << 12.0 << 2.0 << 12.0;
    QTest::newRow("live window at the start") << false << 9.0 << 0.25 << 9.0;
}

void tst_CChart2DFieldsDataAxes::resetAxisX()
{
    QFETCH(bool, full);
    QFETCH(double, oldXmax);
    QFETCH(double, xMin);
    QFETCH(double, xMax);
    QuietChart chart(&m_parameters);
    chart.add(ramp(31, 1.0));
    chart.SetMeasureResultMinX(0.25);
    chart.SetMeasureResultMaxX(30.5);
    chart.SetXmin(5.0);
    chart.SetXmax(oldXmax);
    QSignalSpy spy(&chart, &CChart2D::refreshLimitSliderX);
    QVERIFY(QMetaObject::invokeMethod(&chart, "resetAxisXDelta", Q_ARG(bool, full)));
    QCOMPARE(chart.Xmin(), xMin);
    QCOMPARE(chart.Xmax(), xMax);
    QCOMPARE(spy.count(), 1);
    // The form without an argument keeps the right end
    chart.SetXmax(28.0);
    QVERIFY(QMetaObject::invokeMethod(&chart, "resetAxisXDelta"));
    QCOMPARE(chart.Xmin(), 18.0);
    QCOMPARE(chart.Xmax(), 28.0);
    QCOMPARE(spy.count(), 2);
}

void tst_CChart2DFieldsDataAxes::resetAxisXWithoutResults()
{
    QuietChart chart(&m_parameters);
    chart.SetXmin(3.0);
    chart.SetXmax(4.0);
    QSignalSpy spy(&chart, &CChart2D::refreshLimitSliderX);
    chart.resetAxisXDelta(true);
    chart.resetAxisXDelta(false);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(chart.Xmin(), 3.0);
    QCOMPARE(chart.Xmax(), 4.0);
}

void tst_CChart2DFieldsDataAxes::resetAxisYOrder()
{
    QuietChart chart(&m_parameters);
    SignalLog log(&chart);
    chart.resetAxisYDelta();
    QCOMPARE(log.lines,
             QStringList({QStringLiteral("YminMaxReseted true"), QStringLiteral("DownsampledSignalLength 0"),
                          QStringLiteral("refreshLimitSliderY")}));
}

void tst_CChart2DFieldsDataAxes::refreshLegendData_data()
{
    QTest::addColumn<int>("results");
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    QTest::newRow("none") << 0 << 2.0 << 3.0 << 0.0 << 1.0;
    QTest::newRow("one") << 1 << 2.0 << 3.0 << 0.0 << 1.0;
    QTest::newRow("inside") << 31 << 2.0 << 3.0 << 2.0 << 3.0;
    QTest::newRow("beyond both limits") << 31 << -2.0 << 300.0 << 0.25 << 30.5;
}

void tst_CChart2DFieldsDataAxes::refreshLegendData()
{
    QFETCH(int, results);
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(double, xMin);
    QFETCH(double, xMax);
    QuietChart chart(&m_parameters);
    chart.add(ramp(results, 1.0));
    chart.SetMeasureResultMinX(0.25);
    chart.SetMeasureResultMaxX(30.5);
    chart.refreshLegendData(from, to);
    QCOMPARE(chart.Xmin(), xMin);
    QCOMPARE(chart.Xmax(), xMax);
    QCOMPARE(chart.XminTime().isEmpty(), results < 2);
}

void tst_CChart2DFieldsDataAxes::timeLabels()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(41, 0.25));
    const QDateTime start = QDateTime::fromSecsSinceEpoch(kBaseSecond);
    const auto time = [&](int ms, const char* format) {
        return start.addMSecs(ms).toString(QLatin1String(format));
    };
    chart.SetXmin(0.3); // lower index 1
    chart.SetXmax(1.2); // upper index 5, 1000 ms later
    chart.UpdateTimeLabels();
    QCOMPARE(chart.XminDate(), time(250, "yyyy.MM.dd"));
    QCOMPARE(chart.XminTime(), time(250, "HH:mm:ss"));
    QCOMPARE(chart.XmaxDate(), time(1250, "yyyy.MM.dd"));
    QCOMPARE(chart.XmaxTime(), time(1250, "HH:mm:ss"));
    chart.SetXmax(0.9); // upper index 4, 750 ms later
    chart.UpdateTimeLabels();
    QCOMPARE(chart.XminTime(), time(250, "HH:mm:ss.zzz"));
    QCOMPARE(chart.XmaxTime(), time(1000, "HH:mm:ss.zzz"));
    // Window on one result, and inverted: the old texts stay
    chart.SetXmin(5.0);
    chart.SetXmax(5.0);
    chart.UpdateTimeLabels();
    chart.SetXmin(8.0);
    chart.UpdateTimeLabels();
    QCOMPARE(chart.XmaxTime(), time(1000, "HH:mm:ss.zzz"));
}

void tst_CChart2DFieldsDataAxes::timeLabelsTellChangesOnly()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(41, 0.25));
    chart.SetXmin(0.0);
    chart.SetXmax(5.0);
    SignalLog log(&chart);
    chart.UpdateTimeLabels();
    QCOMPARE(log.lines.size(), 4);
    log.lines.clear();
    chart.UpdateTimeLabels();
    QCOMPARE(log.lines, QStringList());
    chart.SetXmax(6.0);
    log.lines.clear();
    chart.UpdateTimeLabels();
    QCOMPARE(log.lines.size(), 1);
    QVERIFY(log.lines.first().startsWith(QStringLiteral("XmaxTime ")));
}

void tst_CChart2DFieldsDataAxes::refreshYminYmaxMarks()
{
    QuietChart chart(&m_parameters);
    SignalLog log(&chart);
    chart.refreshYminYmax(DBL_MIN, 5.0);
    chart.refreshYminYmax(DBL_MAX, 5.0);
    chart.refreshYminYmax(1.0, DBL_MIN);
    chart.refreshYminYmax(1.0, DBL_MAX);
    QCOMPARE(log.lines, QStringList());
    // The switch for auto scaling is not asked
    chart.SetAutoScaling(false);
    chart.refreshYminYmax(1.0, 5.0);
    QCOMPARE(chart.Ymin(), 1.0);
    QCOMPARE(chart.Ymax(), 5.0);
}

void tst_CChart2DFieldsDataAxes::refreshYminYmaxTellsTicksOnChange()
{
    QuietChart chart(&m_parameters);
    SignalLog log(&chart);
    chart.refreshYminYmax(0.0, 1.0); // 11 ticks as before
    QCOMPARE(log.lines, QStringList({QStringLiteral("Ymin 0"), QStringLiteral("Ymax 1")}));
    log.lines.clear();
    chart.refreshYminYmax(0.0, 1.6);
    QCOMPARE(log.lines, QStringList({QStringLiteral("YTickCount 9"), QStringLiteral("Ymin 0"),
                                     QStringLiteral("Ymax 1.6")}));
}

void tst_CChart2DFieldsDataAxes::yLimitsBySlider()
{
    QuietChart chart(&m_parameters);
    chart.SetYminAllSignal(-2.0);
    chart.SetYmaxAllSignal(8.0);
    chart.refreshYmin(1.0);
    chart.refreshYmax(5.0);
    QCOMPARE(chart.Ymin(), 0.001);
    QCOMPARE(chart.Ymax(), 10.0);
    chart.SetMeasureResultCount(1);
    chart.refreshYmin(1.0);
    chart.refreshYmax(5.0);
    QCOMPARE(chart.Ymin(), 1.0);
    QCOMPARE(chart.Ymax(), 5.0);
    chart.refreshYmin(-9.0);
    chart.refreshYmax(9.0);
    QCOMPARE(chart.Ymin(), -2.0);
    QCOMPARE(chart.Ymax(), 8.0);
    QCOMPARE(chart.YTickCount(), 11);
}

QTEST_GUILESS_MAIN(tst_CChart2DFieldsDataAxes)
#include "tst_CChart2DFieldsDataAxes.moc"
