// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPlotTable.h"
#include "ChartFixtures.h"

#include <QAbstractItemModelTester>
#include <QLineSeries>
#include <QTest>
#include <QVXYModelMapper>

#include <limits>

using QtCharts::QLineSeries;

class tst_CPlotTable : public QObject
{
    Q_OBJECT

private slots:
    void showsTheModelAsItIs();
    void gapsComeBackWithTheHandOver();
    void pointsForALogAxis();
    void otherObjectsAreLeftAlone();

private:
    CMeasurementParameters m_parameters;
};

void tst_CPlotTable::showsTheModelAsItIs()
{
    PlainChart chart(&m_parameters);
    CPlotTable table;
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    table.setSourceModel(&chart);
    chart.add({makeResult(0, {1, 2, 3, 4, 5, 0.5F}), makeResult(100000000, {6, 7, 8, 9, 10, 0.5F})});
    chart.UpdatePlot();
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(table.columnCount(), 8);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 8; ++column)
            QCOMPARE(table.data(table.index(row, column)), chart.data(chart.index(row, column)));
    }
    QVERIFY(!table.data(table.index(0, 1), Qt::EditRole).isValid());
    chart.ClearData();
    QCOMPARE(table.rowCount(), 0);
}

void tst_CPlotTable::gapsComeBackWithTheHandOver()
{
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    PlainChart chart(&m_parameters);
    CPlotTable table;
    table.setSourceModel(&chart);
    QLineSeries buffer;
    QLineSeries visible;
    QtCharts::QVXYModelMapper mapper;
    mapper.setXColumn(0);
    mapper.setYColumn(1);
    mapper.setSeries(&buffer);
    mapper.setModel(&table);
    chart.add({makeResult(0, {1, 0, 0, 0, 0, 0}), makeResult(100000000, {kNan, 0, 0, 0, 0, 0}),
               makeResult(200000000, {kInfinity, 0, 0, 0, 0, 0}), makeResult(300000000, {4, 0, 0, 0, 0, 0})});
    chart.UpdatePlot();
    QCOMPARE(buffer.count(), 4);
    table.handOver(&buffer, &visible, 1);
    QCOMPARE(visible.count(), 4);
    QCOMPARE(visible.at(0).y(), 1.0);
    QVERIFY(std::isnan(visible.at(1).y()));
    QVERIFY(std::isnan(visible.at(2).y()));
    QCOMPARE(visible.at(3).y(), 4.0);
    QCOMPARE(visible.at(2).x(), xValue(chart, 2));
}

void tst_CPlotTable::pointsForALogAxis()
{
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    PlainChart chart(&m_parameters);
    CPlotTable table;
    table.setSourceModel(&chart);
    QLineSeries buffer;
    QLineSeries visible;
    QtCharts::QVXYModelMapper mapper;
    mapper.setXColumn(0);
    mapper.setYColumn(1);
    mapper.setSeries(&buffer);
    mapper.setModel(&table);
    qint64 ns = 0;
    for (const float b : {1.0F, 0.0F, kNan, 1e-30F, -2.0F, kInfinity, 4.0F})
        chart.add({makeResult(ns += 100000000, {b, 0, 0, 0, 0, 0})});
    chart.UpdatePlot();
    table.handOverPositive(&buffer, &visible);
    QCOMPARE(visible.count(), 3);
    QCOMPARE(visible.at(0).y(), 1.0);
    QVERIFY(visible.at(1).y() > 0.0 && visible.at(1).y() < 1e-29);
    QCOMPARE(visible.at(1).x(), xValue(chart, 3));
    QCOMPARE(visible.at(2).y(), 4.0);
}

void tst_CPlotTable::otherObjectsAreLeftAlone()
{
    const CPlotTable table;
    QLineSeries visible;
    visible.append(1.0, 2.0);
    QObject other;
    table.handOver(&other, &visible, 1);
    table.handOver(nullptr, &visible, 1);
    table.handOver(&visible, nullptr, 1);
    table.handOverPositive(&other, &visible);
    table.handOverPositive(nullptr, &visible);
    table.handOverPositive(&visible, nullptr);
    QCOMPARE(visible.count(), 1);
}

QTEST_MAIN(tst_CPlotTable)
#include "tst_CPlotTable.moc"
