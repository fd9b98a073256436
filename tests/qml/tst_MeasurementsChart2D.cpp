// SPDX-License-Identifier: GPL-3.0-or-later
// What the time plot draws, and its legend.
#include "MeasurementsChartTest.h"

#include <QApplication>
#include <QScatterSeries>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using QtCharts::QScatterSeries;
using QtCharts::QValueAxis;
using QtCharts::QXYSeries;

class tst_MeasurementsChart2D : public MeasurementsChartTest
{
    Q_OBJECT

private slots:
    void withoutModel();
    void seriesOfTheTable();
    void pointsFollowTheModel();
    void scatterOnAPositionAxis();
    void zeroLineSpansTheAxis();
    void flatSignalKeepsTheAxis();
    void gapsArePrintedNever();
    void axisFormats();
    void legendButton();
    void legendSwitchesSeries();
    void legendHover();
    void selectNoneAndAll();
    void clearingMakesNewSeries();
    void timeLabels();
};

void tst_MeasurementsChart2D::withoutModel()
{
    load(Model::Missing);
    QCOMPARE(axis("axisX")->min(), 0.0);
    QCOMPARE(axis("axisX")->max(), 1.0);
    QCOMPARE(axis("axisY")->min(), 0.0);
    QCOMPARE(axis("axisY")->max(), 1.0);
    QCOMPARE(item("yRangeSlider")->property("from").toDouble(), 0.0);
    QCOMPARE(item("yRangeSlider")->property("to").toDouble(), 10.0);
    // A call of a model that is not there would be told as a warning.
    for (const char* button : {"zoomInButton", "zoomOutButton", "zoomResetButton", "autoScalingButton",
                               "legendSelectNoneButton", "legendSelectAllButton", "legendRow0", "legendRow5"})
        click(button);
    QTest::mouseClick(view(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    QTest::mouseClick(view(), Qt::RightButton, {}, inPlot(0.5, 0.5));
    drag(inPlot(0.2, 0.2), inPlot(0.8, 0.8));
    wheel(120);
    const QPoint handle =
        middle(qvariant_cast<QQuickItem*>(object(item("xRangeSlider"), "second")->property("handle")));
    drag(handle, handle - QPoint(100, 0));
    QTest::mouseMove(view(), middle(item("legendRow2")));
    settle();
    QCOMPARE(axis("axisX")->max(), 1.0);
}

void tst_MeasurementsChart2D::seriesOfTheTable()
{
    load();
    QCOMPARE(chartView()->property("seriesCount").toInt(), 7);
    const QStringList names{QStringLiteral("B"),       QStringLiteral("B·B'"), QStringLiteral("Bx"),
                            QStringLiteral("By"),      QStringLiteral("Bz"),   QStringLiteral("B ± ε(B)"),
                            QStringLiteral("B + ε(B)")};
    const QVector<double> hues{0, 60, 120, 180, 240, 0, 0};
    for (int i = 0; i < 7; ++i) {
        QCOMPARE(series(i)->name(), names[i]);
        QCOMPARE(series(i)->color(), QColor::fromHsvF(hues[i] / 360.0, 1.0, 0.9, 1.0));
        QVERIFY(!series(i)->pointsVisible());
        QVERIFY(series(i)->useOpenGL());
        QCOMPARE(series(i)->type(), i < 5 ? QXYSeries::SeriesTypeLine : QXYSeries::SeriesTypeScatter);
        const QObject* mapper = object(sprites().at(i), "mapper");
        QCOMPARE(mapper->property("xColumn").toInt(), 0);
        QCOMPARE(mapper->property("yColumn").toInt(), 1 + i);
        QCOMPARE(mapper->property("firstRow").toInt(), 0);
        // The mapper's own series is in no chart
        QVERIFY(!qobject_cast<QXYSeries*>(object(sprites().at(i), "buffer"))->chart());
    }
}

void tst_MeasurementsChart2D::pointsFollowTheModel()
{
    load();
    addSamples(1000, 0.1, [](int i) { return static_cast<float>(std::sin(i * 0.1)); });
    settle();
    // New data scroll to the last 10 s before the end of the axis, which is 0.6 s past the last result
    QCOMPARE(model().rowCount(), 95);
    model().resetAxisXDelta(true);
    settle();
    QCOMPARE(model().rowCount(), 401);
    for (int i = 0; i < 7; ++i) {
        QTRY_COMPARE(series(i)->count(), 401);
        for (const int row : {0, 200, 400}) {
            QCOMPARE(series(i)->at(row).x(), model().data(model().index(row, 0)).toDouble());
            QCOMPARE(series(i)->at(row).y(), model().data(model().index(row, i + 1)).toDouble());
        }
        QCOMPARE(object(sprites().at(i), "mapper")->property("rowCount").toInt(), 401);
    }
    QCOMPARE(axis("axisX")->max(), model().Xmax());
    QCOMPARE(axis("axisY")->max(), model().Ymax());
    QCOMPARE(axis("axisY")->tickCount(), model().YTickCount());
}

void tst_MeasurementsChart2D::scatterOnAPositionAxis()
{
    load();
    view()->rootObject()->setProperty("xAxisType", 2);
    QMetaObject::invokeMethod(chartView(), "createAllSeries");
    for (int i = 0; i < 7; ++i) {
        QCOMPARE(series(i)->type(), QXYSeries::SeriesTypeScatter);
        QCOMPARE(series(i)->property("markerSize").toDouble(), i < 5 ? 5.0 : 3.0);
        QCOMPARE(qobject_cast<QScatterSeries*>(series(i))->markerShape(),
                 QScatterSeries::MarkerShapeRectangle);
    }
    QCOMPARE(item("horizontalAxisLabel")->property("text").toString(), QStringLiteral("Y"));
}

void tst_MeasurementsChart2D::zeroLineSpansTheAxis()
{
    load();
    addSamples(1000, 0.1, [](int i) { return static_cast<float>(i % 50 - 25); });
    settle();
    model().resetAxisXDelta(true);
    settle();
    const auto* zero = qobject_cast<QXYSeries*>(object(chartView(), "yZeroSeries"));
    QCOMPARE(zero->name(), QStringLiteral("Yzero"));
    QCOMPARE(zero->count(), 2);
    QVERIFY(zero->at(0).x() <= axis("axisX")->min());
    QVERIFY(zero->at(1).x() >= axis("axisX")->max());
    QCOMPARE(zero->at(0).y(), 0.0);
    QCOMPARE(zero->at(1).y(), 0.0);
    QCOMPARE(zero->pen().style(), Qt::DashLine);
    QCOMPARE(zero->pen().widthF(), 1.0);
    QCOMPARE(zero->color(), QColor(Qt::black));
}

void tst_MeasurementsChart2D::flatSignalKeepsTheAxis()
{
    load();
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    const double top = axis("axisY")->max();
    model().SetYmin(std::numeric_limits<double>::quiet_NaN());
    model().SetYmax(std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(axis("axisY")->max(), top);
    model().SetYmax(50.0);
    QCOMPARE(axis("axisY")->max(), 50.0);
}

namespace {
int messageCount = 0;
QtMessageHandler previousHandler = nullptr;
void countMessages(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    ++messageCount;
    previousHandler(type, context, message);
}
} // namespace

void tst_MeasurementsChart2D::gapsArePrintedNever()
{
    load();
    messageCount = 0;
    previousHandler = qInstallMessageHandler(countMessages);
    addSamples(50, 0.1, [](int i) {
        return i >= 20 && i < 30 ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(i);
    });
    for (int i = 0; i < 5; ++i) {
        model().SetXmin(0.01 * i);
        settle();
    }
    qInstallMessageHandler(previousHandler);
    QCOMPARE(messageCount, 0);
    QTRY_COMPARE(series(0)->count(), model().rowCount());
    int gaps = 0;
    for (const QPointF& point : series(0)->pointsVector())
        gaps += std::isnan(point.y()) ? 1 : 0;
    QCOMPARE(gaps, 10);
}

void tst_MeasurementsChart2D::axisFormats()
{
    const struct
    {
        const char* axis;
        double min;
        double max;
        const char* format;
        double precision;
        double range;
    } rows[] = {
        {"axisX", 1.0, 1.0625, "%.4f", 1e4, 0.001},   {"axisX", 1.0, 2.0, "%.3f", 1e3, 0.01},
        {"axisX", 1.0, 11.0, "%.2f", 1e2, 0.01},      {"axisX", 1.0, 101.0, "%.1f", 1e1, 0.1},
        {"axisX", 1.0, 101.5, "%.0f", 1, 0.1},        {"axisY", 2000.0, 2000.0078125, "%.7E", 1e7, 1e-6},
        {"axisY", 2000.0, 2000.5, "%.6E", 1e6, 1e-5}, {"axisY", 2000.0, 2001.0, "%.5E", 1e5, 1e-4},
        {"axisY", 2000.0, 2010.0, "%.4E", 1e4, 1e-3}, {"axisY", -2000.0, -1900.0, "%.3E", 1e3, 1e-2},
        {"axisY", 0.0, 0.00005, "%.7f", 1e7, 1e-6},   {"axisY", 0.0, 0.0005, "%.6f", 1e6, 1e-5},
        {"axisY", 0.0, 0.005, "%.5f", 1e5, 1e-4},     {"axisY", 0.0, 0.5, "%.4f", 1e4, 1e-3},
        {"axisY", 0.0, 1.0, "%.3f", 1e3, 1e-2},       {"axisY", 0.0, 10.0, "%.2f", 1e2, 1e-2},
        {"axisY", 900.0, 1000.0, "%.1f", 1e1, 1e-1},
    };
    load();
    for (const auto& row : rows) {
        const bool horizontal = qstrcmp(row.axis, "axisX") == 0;
        // Back to a range that every other one lies within.
        model().setProperty(horizontal ? "Xmin" : "Ymin", -1e4);
        model().setProperty(horizontal ? "Xmax" : "Ymax", 1e4);
        model().setProperty(horizontal ? "Xmin" : "Ymin", row.min);
        model().setProperty(horizontal ? "Xmax" : "Ymax", row.max);
        const QByteArray what =
            QByteArray(row.axis) + ' ' + QByteArray::number(row.min) + " to " + QByteArray::number(row.max);
        const QValueAxis* shown = axis(row.axis);
        QVERIFY2(shown->min() == row.min && shown->max() == row.max, what.constData());
        QVERIFY2(shown->labelFormat() == QLatin1String(row.format), what.constData());
        QVERIFY2(shown->property("precisionIntValue").toDouble() == row.precision, what.constData());
        QVERIFY2(shown->property("minAxisRange").toDouble() == row.range, what.constData());
    }
}

void tst_MeasurementsChart2D::legendButton()
{
    load();
    QVERIFY(item("chartLegend")->isVisible());
    const double width = chartView()->width();
    click("legendButton");
    QVERIFY(!item("chartLegend")->isVisible());
    QTRY_COMPARE(chartView()->width(), width + 100.0);
    click("legendButton");
    QVERIFY(item("chartLegend")->isVisible());
    QTRY_COMPARE(chartView()->width(), width);
}

void tst_MeasurementsChart2D::legendSwitchesSeries()
{
    load();
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QSignalSpy length(&model(), &CChart2DFieldsData::DownsampledSignalLengthChanged);
    click("legendRow2");
    QVERIFY(!sprites().at(2)->property("masterVisible").toBool());
    QCOMPARE(length.count(), 1);
    click("legendRow0");
    for (const int index : {0, 5, 6})
        QVERIFY(!sprites().at(index)->property("masterVisible").toBool());
    click("legendRow5");
    QVERIFY(sprites().at(5)->property("masterVisible").toBool());
    QVERIFY(sprites().at(6)->property("masterVisible").toBool());
    QVERIFY(!sprites().at(0)->property("masterVisible").toBool());
    QTest::mouseMove(view(), inPlot(0.5, 0.5));
    settle();
    QVERIFY(!series(0)->isVisible() && !series(2)->isVisible());
    QVERIFY(series(5)->isVisible() && series(6)->isVisible());
}

void tst_MeasurementsChart2D::legendHover()
{
    load();
    const auto hover = [this](const char* name) {
        QTest::mouseMove(view(), middle(item(name)));
        settle();
    };
    hover("legendRow5");
    for (int i = 0; i < 7; ++i)
        QCOMPARE(series(i)->isVisible(), i >= 5);
    QCOMPARE(series(1)->color(), QColor::fromHslF(0, 0, 0.8, 1));
    hover("legendRow3");
    for (int i = 0; i < 7; ++i)
        QCOMPARE(series(i)->isVisible(), i == 3);
    QTest::mouseMove(view(), inPlot(0.5, 0.5));
    settle();
    for (int i = 0; i < 7; ++i)
        QVERIFY(series(i)->isVisible());
    QCOMPARE(series(1)->color(), QColor::fromHsvF(60.0 / 360.0, 1.0, 0.9, 1.0));
}

void tst_MeasurementsChart2D::selectNoneAndAll()
{
    load();
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QSignalSpy length(&model(), &CChart2DFieldsData::DownsampledSignalLengthChanged);
    click("legendSelectNoneButton");
    QCOMPARE(length.count(), 1);
    QCOMPARE(model().Ymin(), 0.001);
    QCOMPARE(model().Ymax(), 10.0);
    for (int i = 0; i < 7; ++i)
        QVERIFY(!series(i)->isVisible());
    click("legendSelectAllButton");
    QCOMPARE(length.count(), 2);
    for (int i = 0; i < 7; ++i)
        QVERIFY(series(i)->isVisible());
}

void tst_MeasurementsChart2D::clearingMakesNewSeries()
{
    load();
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    click("legendSelectNoneButton");
    model().ClearData();
    settle();
    QCOMPARE(chartView()->property("seriesCount").toInt(), 7);
    for (int i = 0; i < 7; ++i) {
        QVERIFY(series(i)->isVisible());
        QCOMPARE(series(i)->count(), 0);
        QVERIFY(sprites().at(i)->property("masterVisible").toBool());
    }
    addSamples(30, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QTRY_COMPARE(series(0)->count(), 30);
    // -0.5 to 13 lies on ticks of 1
    QCOMPARE(model().YmaxAllSignal(), 13.0);
}

void tst_MeasurementsChart2D::timeLabels()
{
    load();
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QVERIFY(!model().XminTime().isEmpty());
    QCOMPARE(item("xMinTimeLabel")->property("text").toString(), model().XminTime());
    QCOMPARE(item("xMinDateLabel")->property("text").toString(), model().XminDate());
    QCOMPARE(item("xMaxTimeLabel")->property("text").toString(), model().XmaxTime());
    QCOMPARE(item("xMaxDateLabel")->property("text").toString(), model().XmaxDate());
    QCOMPARE(item("horizontalAxisLabel")->property("text").toString(), QStringLiteral("Time [s]"));
    QCOMPARE(axis("axisY")->titleText(), QStringLiteral("Field strength [µT]"));
}

int main(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    const QApplication application(argc, argv);
    tst_MeasurementsChart2D drawing;
    const std::unique_ptr<QObject> zoom = makeMeasurementsChart2DZoomTest();
    // A function that is asked for by name belongs to one of the two.
    const bool isDrawing = argc < 2 || drawing.metaObject()->indexOfSlot(QByteArray(argv[1]) + "()") >= 0;
    const bool isZoom = argc < 2 || !isDrawing;
    return (isDrawing ? QTest::qExec(&drawing, argc, argv) : 0) +
           (isZoom ? QTest::qExec(zoom.get(), argc, argv) : 0);
}

#include "tst_MeasurementsChart2D.moc"
