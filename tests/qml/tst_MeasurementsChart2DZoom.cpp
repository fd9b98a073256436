// SPDX-License-Identifier: GPL-3.0-or-later
// Zooming and scrolling of the time plot by buttons, sliders, mouse and finger.
#include "ActiveWindow.h"
#include "MeasurementsChartTest.h"

#include <QQmlContext>
#include <QSignalSpy>
#include <QTest>
#include <QTouchDevice>

#include <cmath>

class tst_MeasurementsChart2DZoom : public MeasurementsChartTest
{
    Q_OBJECT

private slots:
    void zoomInButton();
    void zoomInButtonOnBothAxes();
    void zoomOutAtTheLimitsResets();
    void zoomOutAtTheLimitsResetsTheHeight();
    void zoomResetButton();
    void zoomResetOfAnEmptyPlot();
    void rectangleZoom();
    void rectangleZoomWithoutAutoScaling();
    void rectangleOfAFewPixels();
    void clickLeavesTheWindow();
    void rightClickResets();
    void wheelScrolls();
    void wheelStopsAtTheLimits();
    void fingerMovesTheWindow();
    void fingerMovesTheHeightOfTheUser();
    void doubleTapResets();
    void pressCollapsesTheMenus();
    void autoScalingButton();
    void xSliderMovesTheWindow();
    void ySliderMovesTheWindow();
    void ySliderKeepsTheSmallestRange();
    void ySliderFollowsItsLimits();
    void slidersByKeyboard();

private:
    /// Ends the auto scaling, and gives the user's range of the vertical axis.
    void takeHeight(double low, double high);
    QQuickItem* handle(const char* slider, const char* which) const
    {
        return qvariant_cast<QQuickItem*>(object(item(slider), which)->property("handle"));
    }
    double valueOf(const char* slider, const char* which) const
    {
        return object(item(slider), which)->property("value").toDouble();
    }
    void touch(const QVector<QPoint>& way);

    QTouchDevice* const m_screen = QTest::createTouchDevice();
};

void tst_MeasurementsChart2DZoom::takeHeight(double low, double high)
{
    click("autoScalingButton");
    QVERIFY(!model().AutoScaling());
    model().SetYmin(low);
    model().SetYmax(high);
    settle();
    QCOMPARE(axis("axisY")->min(), low);
    QCOMPARE(axis("axisY")->max(), high);
}

/// A finger that comes, goes this way and leaves.
void tst_MeasurementsChart2DZoom::touch(const QVector<QPoint>& way)
{
    QTest::touchEvent(view(), m_screen).press(0, way.first(), view());
    for (const QPoint& at : way.mid(1)) {
        QTest::touchEvent(view(), m_screen).move(0, at, view());
        QVERIFY(!item("zoomSelector")->isVisible());
    }
    QTest::touchEvent(view(), m_screen).release(0, way.last(), view());
    settle();
}

void tst_MeasurementsChart2DZoom::zoomInButton()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    settle();
    click("zoomInButton");
    QVERIFY(std::abs(model().Xmin() - 30.0) < 1e-6);
    QVERIFY(std::abs(model().Xmax() - 50.0) < 1e-6);
    QCOMPARE(axis("axisX")->min(), model().Xmin());
    for (int i = 0; i < 20; ++i)
        click("zoomInButton");
    QVERIFY(model().Xmax() - model().Xmin() >= axis("axisX")->property("minAxisRange").toDouble());
    QVERIFY(model().Xmax() - model().Xmin() < 1.0);
}

void tst_MeasurementsChart2DZoom::zoomInButtonOnBothAxes()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    takeHeight(0.0, 20.8);
    model().SetYTickCount(11);
    click("zoomInButton");
    QVERIFY(std::abs(model().Xmin() - 30.0) < 1e-6);
    QVERIFY(std::abs(model().Xmax() - 50.0) < 1e-6);
    // 5.2 to 15.6 on ticks of 1; of the twelve every second stays
    QCOMPARE(model().Ymin(), 5.0);
    QCOMPARE(model().Ymax(), 16.0);
    QCOMPARE(model().YTickCount(), 6);
    QCOMPARE(axis("axisY")->min(), 5.0);
    // A quarter off each side may not leave less than the smallest range, which is 0.01 up to a span of 10
    model().SetYmin(1.0);
    model().SetYmax(1.000001);
    click("zoomInButton");
    QVERIFY(model().Ymax() - model().Ymin() >= 1e-6);
}

void tst_MeasurementsChart2DZoom::zoomOutAtTheLimitsResets()
{
    loadWithRamp();
    model().refreshLegendData(40.0, 60.0);
    settle();
    click("zoomOutButton");
    QVERIFY(std::abs(model().Xmin() - 30.0) < 1e-6);
    QVERIFY(std::abs(model().Xmax() - 70.0) < 1e-6);
    QSignalSpy slider(&model(), &CChart2D::refreshLimitSliderX);
    for (int i = 0; i < 4; ++i)
        click("zoomOutButton");
    QCOMPARE(model().Xmin(), 0.0);
    QCOMPARE(model().Xmax(), model().MeasureResultMaxX());
    QVERIFY(slider.count() > 0);
}

void tst_MeasurementsChart2DZoom::zoomOutAtTheLimitsResetsTheHeight()
{
    loadWithRamp();
    takeHeight(0.0, 2.0);
    const double lowest = model().YminAllSignal();
    const double highest = model().YmaxAllSignal();
    QVERIFY(lowest <= -0.5 && highest >= 13.0);
    QSignalSpy slider(&model(), &CChart2D::refreshLimitSliderY);
    // Half of the height on each side, as far as there were values, on round ticks
    click("zoomOutButton");
    QVERIFY2(model().Ymin() <= std::max(lowest, -1.0) && model().Ymin() > -2.5, "bottom");
    QVERIFY2(model().Ymax() >= 3.0 && model().Ymax() < 4.5, "top");
    const auto isAtLimits = [&] {
        return axis("axisY")->min() <= model().YminAllSignal() &&
               axis("axisY")->max() >= model().YmaxAllSignal();
    };
    for (int i = 0; i < 6 && !isAtLimits(); ++i)
        click("zoomOutButton");
    QVERIFY(isAtLimits());
    QCOMPARE(slider.count(), 0);
    click("zoomOutButton");
    QCOMPARE(slider.count(), 1);
    QCOMPARE(model().Ymin(), model().YminAllSignal());
    QCOMPARE(model().Ymax(), model().YmaxAllSignal());
    QCOMPARE(valueOf("yRangeSlider", "first"), model().Ymin());
    QCOMPARE(valueOf("yRangeSlider", "second"), model().Ymax());
}

void tst_MeasurementsChart2DZoom::zoomResetButton()
{
    loadWithRamp();
    model().refreshLegendData(40.0, 60.0);
    settle();
    click("zoomResetButton");
    QCOMPARE(model().Xmin(), 0.0);
    QCOMPARE(model().Xmax(), model().MeasureResultMaxX());
}

void tst_MeasurementsChart2DZoom::zoomResetOfAnEmptyPlot()
{
    load();
    model().SetMeasureResultMaxX(0.0);
    model().SetXmax(7.0);
    click("zoomResetButton");
    QCOMPARE(model().Xmax(), 1.0);
}

void tst_MeasurementsChart2DZoom::rectangleZoom()
{
    loadWithRamp();
    model().refreshLegendData(0.0, 100.0);
    settle();
    const double bottom = model().Ymin();
    const double top = model().Ymax();
    drag(inPlot(0.25, 0.4), inPlot(0.75, 0.5));
    QVERIFY2(std::abs(model().Xmin() - 25.0) < 0.5, qPrintable(QString::number(model().Xmin())));
    QVERIFY2(std::abs(model().Xmax() - 75.0) < 0.5, qPrintable(QString::number(model().Xmax())));
    // Ends are rounded to a tenth: the span was up to 100
    QVERIFY(std::abs(model().Xmin() * 10.0 - std::round(model().Xmin() * 10.0)) < 1e-6);
    QCOMPARE(model().Ymin(), bottom);
    QCOMPARE(model().Ymax(), top);
    QVERIFY(!item("zoomSelector")->isVisible());
}

void tst_MeasurementsChart2DZoom::rectangleZoomWithoutAutoScaling()
{
    loadWithRamp();
    model().refreshLegendData(0.0, 100.0);
    click("autoScalingButton");
    QVERIFY(!model().AutoScaling());
    const double span = model().Ymax() - model().Ymin();
    drag(inPlot(0.75, 0.75), inPlot(0.25, 0.25));
    QVERIFY(std::abs(model().Xmin() - 25.0) < 0.5);
    QVERIFY(std::abs(model().Xmax() - 75.0) < 0.5);
    QVERIFY(model().Ymax() - model().Ymin() < 0.8 * span);
    QCOMPARE(axis("axisY")->max(), model().Ymax());
}

void tst_MeasurementsChart2DZoom::rectangleOfAFewPixels()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 20.0625);
    takeHeight(4.0, 5.0);
    const QPoint from = inPlot(0.5, 0.5);
    drag(from, from + QPoint(3, 1));
    // Widened to the smallest ranges around the middle, and rounded to four decimals
    QVERIFY2(std::abs(model().Xmax() - model().Xmin() - 0.001) < 2e-4,
             qPrintable(QString::number(model().Xmax() - model().Xmin())));
    QVERIFY(std::abs((model().Xmax() + model().Xmin()) / 2 - 20.03125) < 1e-3);
    QVERIFY2(model().Ymax() - model().Ymin() >= 0.0099,
             qPrintable(QString::number(model().Ymax() - model().Ymin())));
    QVERIFY(model().Ymax() - model().Ymin() < 0.03);
}

void tst_MeasurementsChart2DZoom::clickLeavesTheWindow()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    settle();
    QTest::mouseClick(view(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    settle();
    QCOMPARE(model().Xmin(), 20.0);
    QCOMPARE(model().Xmax(), 60.0);
}

void tst_MeasurementsChart2DZoom::rightClickResets()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    settle();
    QTest::mouseClick(view(), Qt::RightButton, {}, inPlot(0.5, 0.5));
    settle();
    QCOMPARE(model().Xmin(), 0.0);
    QCOMPARE(model().Xmax(), model().MeasureResultMaxX());
}

void tst_MeasurementsChart2DZoom::wheelScrolls()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    settle();
    wheel(120);
    QVERIFY(model().Xmin() > 21.0 && model().Xmax() > 61.0);
    QVERIFY(std::abs(model().Xmax() - model().Xmin() - 40.0) < 1e-6);
    wheel(-120);
    QVERIFY(std::abs(model().Xmin() - 20.0) < 1e-6);
}

void tst_MeasurementsChart2DZoom::wheelStopsAtTheLimits()
{
    loadWithRamp();
    model().refreshLegendData(60.0, 1000.0);
    settle();
    const double last = model().MeasureResultMaxX();
    QCOMPARE(model().Xmax(), last);
    wheel(120);
    QCOMPARE(model().Xmin(), 60.0);
    QCOMPARE(model().Xmax(), last);
    wheel(-120);
    QVERIFY(model().Xmin() < 59.0 && model().Xmax() < last - 1.0);
    model().refreshLegendData(-5.0, 40.0);
    settle();
    QCOMPARE(model().Xmin(), 0.0);
    wheel(-120);
    QCOMPARE(model().Xmin(), 0.0);
    QCOMPARE(model().Xmax(), 40.0);
}

void tst_MeasurementsChart2DZoom::fingerMovesTheWindow()
{
    loadWithRamp();
    model().refreshLegendData(40.0, 60.0);
    settle();
    const double bottom = axis("axisY")->min();
    touch({inPlot(0.7, 0.3), inPlot(0.5, 0.5), inPlot(0.3, 0.7)});
    QVERIFY2(std::abs(model().Xmin() - 48.0) < 0.1, qPrintable(QString::number(model().Xmin())));
    QVERIFY(std::abs(model().Xmax() - 68.0) < 0.1);
    QCOMPARE(axis("axisY")->min(), bottom);
    touch({inPlot(0.2, 0.5), inPlot(0.8, 0.5)});
    QVERIFY2(std::abs(model().Xmin() - 36.0) < 0.1, qPrintable(QString::number(model().Xmin())));
    // Not away from the results at either end
    model().refreshLegendData(0.0, 20.0);
    settle();
    touch({inPlot(0.2, 0.5), inPlot(0.8, 0.5)});
    QCOMPARE(model().Xmin(), 0.0);
    QCOMPARE(model().Xmax(), 20.0);
    model().refreshLegendData(80.0, 1000.0);
    settle();
    touch({inPlot(0.8, 0.5), inPlot(0.2, 0.5)});
    QCOMPARE(model().Xmin(), 80.0);
    QCOMPARE(model().Xmax(), model().MeasureResultMaxX());
}

void tst_MeasurementsChart2DZoom::fingerMovesTheHeightOfTheUser()
{
    loadWithRamp();
    takeHeight(4.0, 8.0);
    touch({inPlot(0.5, 0.25), inPlot(0.5, 0.5)});
    QVERIFY2(std::abs(axis("axisY")->min() - 5.0) < 0.1, qPrintable(QString::number(axis("axisY")->min())));
    QVERIFY(std::abs(axis("axisY")->max() - 9.0) < 0.1);
    touch({inPlot(0.5, 0.75), inPlot(0.5, 0.25)});
    QVERIFY2(std::abs(axis("axisY")->min() - 3.0) < 0.1, qPrintable(QString::number(axis("axisY")->min())));
    // Not past the values at either end
    const double lowest = model().YminAllSignal();
    const double highest = model().YmaxAllSignal();
    model().SetYmin(lowest);
    model().SetYmax(lowest + 4.0);
    settle();
    touch({inPlot(0.5, 0.75), inPlot(0.5, 0.25)});
    QCOMPARE(axis("axisY")->min(), lowest);
    model().SetYmax(highest);
    model().SetYmin(highest - 4.0);
    settle();
    touch({inPlot(0.5, 0.25), inPlot(0.5, 0.75)});
    QCOMPARE(axis("axisY")->max(), highest);
}

void tst_MeasurementsChart2DZoom::doubleTapResets()
{
    loadWithRamp();
    model().refreshLegendData(40.0, 60.0);
    settle();
    touch({inPlot(0.5, 0.5)});
    QCOMPARE(model().Xmin(), 40.0);
    QTest::touchEvent(view(), m_screen).press(0, inPlot(0.25, 0.25), view());
    QTest::touchEvent(view(), m_screen).release(0, inPlot(0.25, 0.25), view());
    touch({inPlot(0.25, 0.25)});
    QCOMPARE(model().Xmin(), 0.0);
    QCOMPARE(model().Xmax(), model().MeasureResultMaxX());
    // The mouse has another way for it
    model().refreshLegendData(40.0, 60.0);
    settle();
    QTest::mouseDClick(view(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    settle();
    QCOMPARE(model().Xmin(), 40.0);
    QCOMPARE(model().Xmax(), 60.0);
}

void tst_MeasurementsChart2DZoom::pressCollapsesTheMenus()
{
    load();
    auto* mainViewModel =
        qvariant_cast<QObject*>(view()->rootContext()->contextProperty(QStringLiteral("MainViewModel")));
    mainViewModel->setProperty("PageMenuExpanded", true);
    mainViewModel->setProperty("ParameterMenuExpanded", true);
    QTest::mouseClick(view(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    QCOMPARE(mainViewModel->property("PageMenuExpanded").toBool(), false);
    QCOMPARE(mainViewModel->property("ParameterMenuExpanded").toBool(), false);
}

void tst_MeasurementsChart2DZoom::autoScalingButton()
{
    load();
    QVERIFY(!item("yRangeSlider")->isVisible());
    QCOMPARE(item("autoScalingButton")->property("label").toString(), QStringLiteral("Disable auto scaling"));
    click("autoScalingButton");
    QVERIFY(item("yRangeSlider")->isVisible());
    QCOMPARE(item("autoScalingButton")->property("label").toString(), QStringLiteral("Enable auto scaling"));
    click("autoScalingButton");
    QVERIFY(model().AutoScaling());
}

void tst_MeasurementsChart2DZoom::xSliderMovesTheWindow()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    settle();
    QQuickItem* slider = item("xRangeSlider");
    QCOMPARE(object(slider, "first")->property("value").toDouble(), 20.0);
    QCOMPARE(object(slider, "second")->property("value").toDouble(), 60.0);
    QCOMPARE(slider->property("to").toDouble(), model().MeasureResultMaxX());
    const QPoint from = middle(handle("xRangeSlider", "second"));
    drag(from, from + QPoint(100, 0));
    QVERIFY(model().Xmax() > 61.0);
    QCOMPARE(model().Xmin(), 20.0);
    // Far over the other handle
    const QPoint again = middle(handle("xRangeSlider", "second"));
    drag(again, again - QPoint(600, 0));
    QVERIFY(model().Xmax() >= model().Xmin() + model().MinDeltaAxisX() - 1e-9);
}

void tst_MeasurementsChart2DZoom::ySliderMovesTheWindow()
{
    loadWithRamp();
    click("autoScalingButton");
    const double lowest = model().YminAllSignal();
    const double highest = model().YmaxAllSignal();
    QCOMPARE(item("yRangeSlider")->property("from").toDouble(), lowest);
    QCOMPARE(item("yRangeSlider")->property("to").toDouble(), highest);
    const QPoint top = middle(handle("yRangeSlider", "second"));
    drag(top, top + QPoint(0, 100));
    QVERIFY(model().Ymax() < highest - 1.0);
    QCOMPARE(model().Ymax(), valueOf("yRangeSlider", "second"));
    QCOMPARE(axis("axisY")->max(), model().Ymax());
    QCOMPARE(model().Ymin(), lowest);
    const QPoint bottom = middle(handle("yRangeSlider", "first"));
    drag(bottom, bottom - QPoint(0, 100));
    QVERIFY(model().Ymin() > lowest + 1.0);
    QCOMPARE(model().Ymin(), valueOf("yRangeSlider", "first"));
    QCOMPARE(axis("axisY")->min(), model().Ymin());
}

void tst_MeasurementsChart2DZoom::ySliderKeepsTheSmallestRange()
{
    loadWithRamp();
    takeHeight(4.0, 8.0);
    // Far over the other handle
    const QPoint bottom = middle(handle("yRangeSlider", "first"));
    drag(bottom, bottom - QPoint(0, 400));
    QCOMPARE(model().Ymax(), 8.0);
    QVERIFY2(model().Ymin() < 8.0 && 8.0 - model().Ymin() >= 1e-6,
             qPrintable(QString::number(model().Ymin())));
    model().SetYmin(4.0);
    settle();
    const QPoint top = middle(handle("yRangeSlider", "second"));
    drag(top, top + QPoint(0, 400));
    QCOMPARE(model().Ymin(), 4.0);
    QVERIFY2(model().Ymax() > 4.0 && model().Ymax() - 4.0 >= 1e-6,
             qPrintable(QString::number(model().Ymax())));
}

void tst_MeasurementsChart2DZoom::ySliderFollowsItsLimits()
{
    loadWithRamp();
    takeHeight(4.0, 8.0);
    QSignalSpy first(object(item("yRangeSlider"), "first"), SIGNAL(valueChanged()));
    QSignalSpy second(object(item("yRangeSlider"), "second"), SIGNAL(valueChanged()));
    model().SetYminAllSignal(-30.0);
    // Away and back, so that the handle is placed anew
    QCOMPARE(first.count(), 2);
    model().SetYmaxAllSignal(70.0);
    QCOMPARE(second.count(), 2);
    QCOMPARE(valueOf("yRangeSlider", "first"), 4.0);
    QCOMPARE(valueOf("yRangeSlider", "second"), 8.0);
    // Of a way of 100 up from -30
    const QQuickItem* slider = item("yRangeSlider");
    const double length =
        slider->property("availableHeight").toDouble() - handle("yRangeSlider", "first")->height();
    const double lower = handle("yRangeSlider", "first")->y();
    const double upper = handle("yRangeSlider", "second")->y();
    QVERIFY(std::abs((lower - upper) / length - 0.04) < 1e-6);
    QVERIFY(std::abs((lower - slider->property("topPadding").toDouble()) / length - 0.66) < 1e-6);
}

void tst_MeasurementsChart2DZoom::slidersByKeyboard()
{
    loadWithRamp();
    model().refreshLegendData(20.0, 60.0);
    takeHeight(4.0, 8.0);
    QVERIFY(makeActive(view()));
    const auto press = [this](const char* slider, const char* which, Qt::Key key) {
        handle(slider, which)->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(view(), key);
        settle();
    };
    press("xRangeSlider", "first", Qt::Key_Right);
    QVERIFY2(model().Xmin() > 20.0, qPrintable(QString::number(model().Xmin())));
    press("xRangeSlider", "second", Qt::Key_Left);
    QVERIFY(model().Xmax() < 60.0);
    press("yRangeSlider", "first", Qt::Key_Up);
    QVERIFY(model().Ymin() > 4.0);
    press("yRangeSlider", "second", Qt::Key_Down);
    QVERIFY(model().Ymax() < 8.0);
}

std::unique_ptr<QObject> makeMeasurementsChart2DZoomTest()
{
    return std::make_unique<tst_MeasurementsChart2DZoom>();
}

#include "tst_MeasurementsChart2DZoom.moc"
