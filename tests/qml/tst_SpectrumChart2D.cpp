// SPDX-License-Identifier: GPL-3.0-or-later
// The spectrum's view on the real model, driven by the mouse.
#include "SpectrumViewFixture.h"

#include <QQmlContext>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>

namespace {

int messageCount = 0;

void countMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
    ++messageCount;
}

} // namespace

class tst_SpectrumChart2D : public QObject, private SpectrumViewFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void withoutModel();
    void dataAreLoadedOnceComplete();
    void axes();
    void axisFormats_data();
    void axisFormats();
    void seriesOfTheSpectrum();
    void pointsFollowTheModel();
    void zerosLeaveTheLogAxis();
    void nameFollowsTheField();
    void newSeriesSayNothing();
    void zoomInButton();
    void zoomOutButton();
    void zoomResetButton();
    void rectangleZoom();
    void clickLeavesTheWindow();
    void rightClickResets();
    void wheelScrolls();
    void pressCollapsesTheMenus();
    void sliderMovesTheWindow();
    void legendSwitchesSeries();
    void legendHover();
    void wideZoomAfterNarrowOne();
};

void tst_SpectrumChart2D::withoutModel()
{
    load(false);
    QCOMPARE(axisX()->min(), 0.0);
    QCOMPARE(axisX()->max(), 1.0);
    QCOMPARE(item("xRangeSlider")->property("from").toDouble(), 0.0);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    click("zoomInButton");
    QCOMPARE(m_page->loads, 1);
}

void tst_SpectrumChart2D::dataAreLoadedOnceComplete()
{
    m_chart->Clear();
    m_page->onLoad = [this] { showRandom(51); };
    load();
    QVERIFY(series(0));
    QCOMPARE(m_page->loads, 1);
    QTRY_COMPARE(series(0)->count(), 51);
}

void tst_SpectrumChart2D::axes()
{
    load();
    verifyWindow(0.0, 100.0);
    QCOMPARE(axisX()->titleText(), QStringLiteral("F [Hz]"));
    QCOMPARE(axisX()->tickType(), QValueAxis::TicksDynamic);
    QCOMPARE(axisX()->tickAnchor(), 0.0);
    QCOMPARE(axisX()->tickInterval(), 20.0);
    QCOMPARE(axisX()->tickCount(), 10);
    QCOMPARE(axisY()->titleText(), QStringLiteral("Field strength [µT]"));
    QCOMPARE(axisY()->base(), 10.0);
    QCOMPARE(axisY()->labelFormat(), QStringLiteral("%.2E"));
    QCOMPARE(axisY()->minorTickCount(), 8);
    QCOMPARE(item("xRangeSlider")->property("from").toDouble(), 0.0);
    QCOMPARE(item("xRangeSlider")->property("to").toDouble(), 100.0);
    QVERIFY(!item("yRangeSlider"));
    QVERIFY(!item("autoScalingButton"));
}

void tst_SpectrumChart2D::axisFormats_data()
{
    QTest::addColumn<int>("high");
    QTest::addColumn<QString>("format");
    QTest::newRow("1 Hz") << 51 << QStringLiteral("%.3f");
    QTest::newRow("2 Hz") << 52 << QStringLiteral("%.2f");
    QTest::newRow("10 Hz") << 60 << QStringLiteral("%.2f");
    QTest::newRow("11 Hz") << 61 << QStringLiteral("%.1f");
    QTest::newRow("50 Hz") << 100 << QStringLiteral("%.1f");
}

void tst_SpectrumChart2D::axisFormats()
{
    QFETCH(int, high);
    QFETCH(QString, format);
    load();
    m_chart->refreshAxisX(50, high);
    settle();
    QCOMPARE(axisX()->labelFormat(), format);
    QCOMPARE(axisX()->tickInterval(), (high - 50) / 5.0);
}

void tst_SpectrumChart2D::seriesOfTheSpectrum()
{
    load();
    QCOMPARE(chartView()->property("shownSeries").toList().size(), 2);
    QCOMPARE(series(0)->name(), QStringLiteral("B·B'"));
    QCOMPARE(series(0)->pointsVisible(), true);
    QCOMPARE(series(0)->useOpenGL(), true);
    QCOMPARE(series(1)->name(), QStringLiteral("Limits"));
    QCOMPARE(series(1)->useOpenGL(), false);
    QCOMPARE(series(1)->pen().style(), Qt::DashLine);
    QCOMPARE(series(1)->color(), QColor::fromHsvF(1.0 / 3.0, 1.0, 0.9, 1.0));
    QCOMPARE(series(1)->count(), 0);
}

void tst_SpectrumChart2D::pointsFollowTheModel()
{
    load();
    const auto compare = [this] {
        QTRY_COMPARE(series(0)->count(), m_chart->DownsampledSignalLength());
        for (int row = 0; row < series(0)->count(); ++row)
            QCOMPARE(series(0)->at(row), QPointF(xValue(*m_chart, row), seriesValue(*m_chart, row, 0)));
    };
    compare();
    m_chart->refreshAxisX(10, 20);
    QCOMPARE(m_chart->DownsampledSignalLength(), 11);
    compare();
    // A block of the same length
    const QPointF before = series(0)->at(3);
    m_chart->UpdateSpectrum(makeBlock(200), 0);
    compare();
    QVERIFY(series(0)->at(3) != before);
    m_chart->Clear();
    settle();
    QCOMPARE(series(0)->count(), 0);
    showRandom(3001);
    QCOMPARE(m_chart->DownsampledSignalLength(), 401);
    compare();
}

/// A spectrum with nothing above zero leaves the axis where it was and says nothing.
void tst_SpectrumChart2D::zerosLeaveTheLogAxis()
{
    load();
    const double min = axisY()->min();
    const double max = axisY()->max();
    m_chart->UpdateSpectrum(blockOf(std::vector<float>(200, 0.0F)), 0);
    settle();
    QCOMPARE(m_chart->Ymin(), 0.0);
    QCOMPARE(series(0)->count(), 0);
    QCOMPARE(axisY()->min(), min);
    QCOMPARE(axisY()->max(), max);
    m_chart->UpdateSpectrum(makeBlock(200), 0);
    settle();
    verifyWindow(0.0, 100.0);
    QCOMPARE(series(0)->count(), 101);
}

void tst_SpectrumChart2D::nameFollowsTheField()
{
    load();
    const QStringList names{QStringLiteral("B"), QStringLiteral("B·B'"), QStringLiteral("Bx"),
                            QStringLiteral("By"), QStringLiteral("Bz")};
    for (const int field : {4, 3, 2, 1, 0}) {
        m_page->field = field;
        emit m_page->fieldChanged();
        settle();
        QCOMPARE(series(0)->name(), names[field]);
        QCOMPARE(series(0)->count(), 101);
    }
    m_page->field = -1;
    emit m_page->fieldChanged();
    settle();
    QCOMPARE(series(0)->name(), QString());
}

/// A mapper that is given its model before its columns writes a line into the log.
void tst_SpectrumChart2D::newSeriesSayNothing()
{
    load();
    const QtMessageHandler former = qInstallMessageHandler(countMessage);
    messageCount = 0;
    for (const int field : {2, 3}) {
        m_page->field = field;
        emit m_page->fieldChanged();
        settle();
    }
    qInstallMessageHandler(former);
    QCOMPARE(messageCount, 0);
}

void tst_SpectrumChart2D::zoomInButton()
{
    load();
    click("zoomInButton");
    verifyWindow(25.0, 75.0);
    // 37.5 to 62.5, outward to whole hertz
    click("zoomInButton");
    verifyWindow(37.0, 63.0);
    for (int i = 0; i < 10; ++i)
        click("zoomInButton");
    QVERIFY(m_chart->Xmax() - m_chart->Xmin() >= 1.0);
    QVERIFY(m_chart->Xmax() - m_chart->Xmin() <= 2.0);
}

void tst_SpectrumChart2D::zoomOutButton()
{
    load();
    m_chart->refreshAxisX(40, 51);
    settle();
    // 34.5 to 56.5
    click("zoomOutButton");
    verifyWindow(34.0, 57.0);
    for (int i = 0; i < 4; ++i)
        click("zoomOutButton");
    verifyWindow(0.0, 100.0);
}

void tst_SpectrumChart2D::zoomResetButton()
{
    load();
    click("zoomInButton");
    click("zoomResetButton");
    verifyWindow(0.0, 100.0);
    QTRY_COMPARE(series(0)->count(), 101);
}

void tst_SpectrumChart2D::rectangleZoom()
{
    load();
    const QPoint from = inPlot(0.2033, 0.25);
    const QPoint to = inPlot(0.4071, 0.75);
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
    QTest::mouseMove(m_view.get(), (from + to) / 2);
    QTest::mouseMove(m_view.get(), to);
    QQuickItem* selector = item("zoomSelector");
    QVERIFY(selector->isVisible());
    // The height is the mouse's
    QVERIFY(std::abs(selector->height() - (to.y() - from.y())) < 2.0);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, to);
    settle();
    QVERIFY(!selector->isVisible());
    verifyWindow(20.0, 41.0);
}

void tst_SpectrumChart2D::clickLeavesTheWindow()
{
    load();
    m_chart->refreshAxisX(10, 31);
    settle();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    settle();
    verifyWindow(10.0, 31.0);
}

void tst_SpectrumChart2D::rightClickResets()
{
    load();
    click("zoomInButton");
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, inPlot(0.5, 0.5));
    settle();
    verifyWindow(0.0, 100.0);
}

void tst_SpectrumChart2D::wheelScrolls()
{
    load();
    m_chart->refreshAxisX(40, 60);
    settle();
    const auto wheel = [this](int delta) {
        const QPointF position = inPlot(0.5, 0.5);
        QWheelEvent event(position, m_view->mapToGlobal(position.toPoint()), {}, {0, delta}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_view.get(), &event);
    };
    wheel(120);
    QVERIFY(m_chart->Xmin() > 40.0);
    QCOMPARE(m_chart->Xmax() - m_chart->Xmin(), 20.0);
    const double moved = m_chart->Xmin();
    wheel(-120);
    QVERIFY(m_chart->Xmin() < moved);
    QCOMPARE(m_chart->Xmax() - m_chart->Xmin(), 20.0);
    for (int i = 0; i < 40; ++i)
        wheel(120);
    settle();
    verifyWindow(80.0, 100.0);
    for (int i = 0; i < 60; ++i)
        wheel(-120);
    settle();
    verifyWindow(0.0, 20.0);
}

void tst_SpectrumChart2D::pressCollapsesTheMenus()
{
    load();
    auto* menus =
        qvariant_cast<QObject*>(m_view->rootContext()->contextProperty(QStringLiteral("MainViewModel")));
    menus->setProperty("PageMenuExpanded", true);
    menus->setProperty("ParameterMenuExpanded", true);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    QCOMPARE(menus->property("PageMenuExpanded").toBool(), false);
    QCOMPARE(menus->property("ParameterMenuExpanded").toBool(), false);
}

void tst_SpectrumChart2D::sliderMovesTheWindow()
{
    load();
    const QQuickItem* slider = item("xRangeSlider");
    const QPoint left = slider->mapToScene(QPointF(8, slider->height() / 2)).toPoint();
    const QPoint right = slider->mapToScene(QPointF(slider->width() - 8, slider->height() / 2)).toPoint();
    const auto drag = [this](const QPoint& from, const QPoint& to) {
        QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
        QTest::mouseMove(m_view.get(), (from + to) / 2);
        QTest::mouseMove(m_view.get(), to);
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, to);
        settle();
    };
    drag(left, (left + right) / 2);
    QVERIFY(std::abs(m_chart->Xmin() - 50.0) < 3.0);
    QCOMPARE(m_chart->Xmax(), 100.0);
    // The other handle cannot come nearer than 1 Hz
    drag(right, left);
    QCOMPARE(m_chart->Xmax() - m_chart->Xmin(), 1.0);
}

void tst_SpectrumChart2D::legendSwitchesSeries()
{
    load();
    click("legendRow0");
    QCOMPARE(series(0)->isVisible(), false);
    QCOMPARE(series(1)->isVisible(), true);
    click("legendRow1");
    QCOMPARE(series(1)->isVisible(), false);
    click("legendRow0");
    QCOMPARE(series(0)->isVisible(), true);
    QVERIFY(item("chartLegend")->isVisible());
    click("legendButton");
    QVERIFY(!item("chartLegend")->isVisible());
}

void tst_SpectrumChart2D::legendHover()
{
    load();
    QTest::mouseMove(m_view.get(), centreOf("legendRow0"));
    settle();
    QCOMPARE(series(0)->opacity(), 1.0);
    QCOMPARE(series(1)->opacity(), 0.1);
    QCOMPARE(series(0)->pointLabelsVisible(), true);
    QTest::mouseMove(m_view.get(), centreOf("legendRow1"));
    settle();
    QCOMPARE(series(0)->opacity(), 0.1);
    QCOMPARE(series(1)->opacity(), 1.0);
    QTest::mouseMove(m_view.get(), inPlot(0.5, 0.5));
    settle();
    for (const int i : {0, 1}) {
        QCOMPARE(series(i)->opacity(), 1.0);
        QCOMPARE(series(i)->pointLabelsVisible(), false);
    }
}

/// The ticks of the narrow window must not be drawn over the wide one: at 1 Hz that would be 160,000.
void tst_SpectrumChart2D::wideZoomAfterNarrowOne()
{
    showRandom(32769);
    load();
    m_chart->refreshAxisX(1000, 1001);
    settle();
    double narrowest = 1e9;
    connect(axisX(), &QValueAxis::rangeChanged, this, [&](double min, double max) {
        if (max > min)
            narrowest = std::min(narrowest, axisX()->tickInterval() / (max - min));
    });
    m_chart->refreshAxisX(0, 32768);
    settle();
    verifyWindow(0.0, 32768.0);
    QCOMPARE(axisX()->tickInterval(), 32768.0 / 5.0);
    QVERIFY2(narrowest > 0.001, qPrintable(QString::number(narrowest)));
}

QTEST_MAIN(tst_SpectrumChart2D)
#include "tst_SpectrumChart2D.moc"
