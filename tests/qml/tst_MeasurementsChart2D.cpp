// SPDX-License-Identifier: GPL-3.0-or-later
// The time plot's view on the real model, driven by mouse and keyboard.
#include "CChart2DMeterData.h"
#include "CFieldIntensityResult.h"
#include "CInstrumentSupervisor.h"
#include "CMeasureBlock.h"
#include "COperationMeasure.h"
#include "CPlotTable.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "QmlTestSetup.h"

#include <QApplication>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <QValueAxis>
#include <QXYSeries>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

using QtCharts::QValueAxis;
using QtCharts::QXYSeries;

class tst_MeasurementsChart2D : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void withoutModel();
    void seriesOfTheTable();
    void pointsFollowTheModel();
    void scatterOnAPositionAxis();
    void zeroLineSpansTheAxis();
    void flatSignalKeepsTheAxis();
    void gapsArePrintedNever();
    void axisFormats_data();
    void axisFormats();
    void zoomInButton();
    void zoomOutAtTheLimitsResets();
    void zoomResetButton();
    void rectangleZoom();
    void rectangleZoomWithoutAutoScaling();
    void clickLeavesTheWindow();
    void rightClickResets();
    void wheelScrolls();
    void pressCollapsesTheMenus();
    void autoScalingButton();
    void xSliderMovesTheWindow();
    void legendSwitchesSeries();
    void legendHover();
    void selectNoneAndAll();
    void clearingMakesNewSeries();
    void timeLabels();

private:
    void addSamples(int count, double periodS, const std::function<float(int)>& value);
    void load(bool withModel);
    template <class T> T* find(const char* name) const;
    QQuickItem* item(const char* name) const { return find<QQuickItem>(name); }
    QObject* chartView() const { return find<QObject>("chartView"); }
    QValueAxis* axis(const char* name) const { return qobject_cast<QValueAxis*>(object(chartView(), name)); }
    static QObject* object(const QObject* of, const char* property)
    {
        return qvariant_cast<QObject*>(of->property(property));
    }
    QVector<QObject*> sprites() const;
    QXYSeries* series(int index) const
    {
        return qobject_cast<QXYSeries*>(object(sprites().at(index), "series"));
    }
    void click(const char* name);
    QPoint inPlot(double x, double y) const;
    void drag(const QPoint& from, const QPoint& to);
    void settle();

    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_pluginsManager;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<COperationMeasure> m_operation;
    std::unique_ptr<CChart2DMeterData> m_model;
    std::unique_ptr<QmlTestSetup> m_setup;
    std::unique_ptr<QQuickView> m_view;
    int m_warningsBefore = 0;
    qint64 m_nowNs = 0;
};

void tst_MeasurementsChart2D::initTestCase()
{
    QmlTestSetup::Prepare();
    CPlotTable::RegisterQmlTypes();
}

void tst_MeasurementsChart2D::init()
{
    m_settings = std::make_unique<CSettings>(QCoreApplication::applicationDirPath());
    m_pluginsManager = std::make_unique<CPluginsManager>(*m_settings);
    m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
    m_operation =
        std::make_unique<COperationMeasure>(m_settings.get(), m_pluginsManager.get(), m_supervisor.get());
    m_model = std::make_unique<CChart2DMeterData>(m_operation.get(), m_settings.get());
    m_setup = std::make_unique<QmlTestSetup>();
    m_nowNs = 0;
    m_warningsBefore = QmlTestSetup::WarningCount();
}

void tst_MeasurementsChart2D::cleanup()
{
    m_view.reset();
    m_setup.reset();
    m_model.reset();
    m_operation.reset();
    m_supervisor.reset();
    m_pluginsManager.reset();
    m_settings.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void tst_MeasurementsChart2D::load(bool withModel)
{
    m_view = std::make_unique<QQuickView>();
    m_setup->setUp(m_view->engine());
    m_view->rootContext()->setContextProperty(QStringLiteral("TestModel"),
                                              withModel ? m_model.get() : nullptr);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setSource(QUrl::fromLocalFile(QStringLiteral(KESTRIX_CHART_QML)));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->resize(900, 600);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    settle();
}

/// Lets the model's timer, the bindings and the hand-over of points run.
void tst_MeasurementsChart2D::settle()
{
    m_model->UpdatePlot();
    QCoreApplication::processEvents();
    QTest::qWait(50);
}

void tst_MeasurementsChart2D::addSamples(int count, double periodS, const std::function<float(int)>& value)
{
    auto block = QSharedPointer<CMeasureBlock>::create();
    constexpr qint64 kStartMs = 1600000000000;
    for (int i = 0; i < count; ++i) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        result->Timestamp = QDateTime::fromMSecsSinceEpoch(kStartMs + m_nowNs / 1000000);
        result->TimestampNanoseconds = static_cast<quint32>(m_nowNs % 1000000000);
        const float v = value(i);
        result->SetB(v);
        result->SetBBprime(v + 1.0F);
        result->SetBx(v + 2.0F);
        result->SetBy(v + 3.0F);
        result->SetBz(v + 4.0F);
        result->SetDB(0.5F);
        block->Results.append(result);
        m_nowNs += std::llround(periodS * 1e9);
    }
    m_operation->OperationParameters()->MeasurementParameters()->SetAcquisitionRate(1.0 / periodS);
    m_model->LoadDataset({block});
}

template <class T> T* tst_MeasurementsChart2D::find(const char* name) const
{
    return qobject_cast<T*>(QmlTestSetup::FindItem(m_view->rootObject(), name));
}

QVector<QObject*> tst_MeasurementsChart2D::sprites() const
{
    QVector<QObject*> all;
    for (const QVariant& sprite : chartView()->property("sprites").toList())
        all.append(qvariant_cast<QObject*>(sprite));
    return all;
}

void tst_MeasurementsChart2D::click(const char* name)
{
    QQuickItem* target = item(name);
    QVERIFY2(target, name);
    const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centre.toPoint());
    settle();
}

/// A point of the plot area, as fractions from its top left.
QPoint tst_MeasurementsChart2D::inPlot(double x, double y) const
{
    const QRectF plot = chartView()->property("plotArea").toRectF();
    const QPointF local(plot.x() + x * plot.width(), plot.y() + y * plot.height());
    return item("chartView")->mapToScene(local).toPoint();
}

void tst_MeasurementsChart2D::drag(const QPoint& from, const QPoint& to)
{
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
    QTest::mouseMove(m_view.get(), (from + to) / 2);
    QTest::mouseMove(m_view.get(), to);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, to);
    settle();
}

void tst_MeasurementsChart2D::withoutModel()
{
    load(false);
    QCOMPARE(axis("axisX")->min(), 0.0);
    QCOMPARE(axis("axisX")->max(), 1.0);
    QCOMPARE(axis("axisY")->min(), 0.0);
    QCOMPARE(axis("axisY")->max(), 1.0);
    QCOMPARE(item("yRangeSlider")->property("from").toDouble(), 0.0);
    QCOMPARE(item("yRangeSlider")->property("to").toDouble(), 10.0);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    click("zoomInButton");
}

void tst_MeasurementsChart2D::seriesOfTheTable()
{
    load(true);
    QCOMPARE(chartView()->property("seriesCount").toInt(), 7);
    const QStringList names{QStringLiteral("B"),       QStringLiteral("B·B'"), QStringLiteral("Bx"),
                            QStringLiteral("By"),      QStringLiteral("Bz"),   QStringLiteral("B ± ε(B)"),
                            QStringLiteral("B + ε(B)")};
    const QVector<double> hues{0, 60, 120, 180, 240, 0, 0};
    for (int i = 0; i < 7; ++i) {
        QCOMPARE(series(i)->name(), names[i]);
        QCOMPARE(series(i)->color(), QColor::fromHsvF(hues[i] / 360.0, 1.0, 0.9, 1.0));
        QVERIFY(!series(i)->pointsVisible());
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
    load(true);
    addSamples(1000, 0.1, [](int i) { return static_cast<float>(std::sin(i * 0.1)); });
    settle();
    // New data scroll to the last 10 s before the end of the axis, which is 0.6 s past the last result
    QCOMPARE(m_model->rowCount(), 95);
    m_model->resetAxisXDelta(true);
    settle();
    QCOMPARE(m_model->rowCount(), 401);
    for (int i = 0; i < 7; ++i) {
        QTRY_COMPARE(series(i)->count(), 401);
        for (const int row : {0, 200, 400}) {
            QCOMPARE(series(i)->at(row).x(), m_model->data(m_model->index(row, 0)).toDouble());
            QCOMPARE(series(i)->at(row).y(), m_model->data(m_model->index(row, i + 1)).toDouble());
        }
        QCOMPARE(object(sprites().at(i), "mapper")->property("rowCount").toInt(), 401);
    }
    QCOMPARE(axis("axisX")->max(), m_model->Xmax());
    QCOMPARE(axis("axisY")->max(), m_model->Ymax());
    QCOMPARE(axis("axisY")->tickCount(), m_model->YTickCount());
}

void tst_MeasurementsChart2D::scatterOnAPositionAxis()
{
    load(true);
    m_view->rootObject()->setProperty("xAxisType", 2);
    QMetaObject::invokeMethod(chartView(), "createAllSeries");
    for (int i = 0; i < 7; ++i) {
        QCOMPARE(series(i)->type(), QXYSeries::SeriesTypeScatter);
        QCOMPARE(series(i)->property("markerSize").toDouble(), i < 5 ? 5.0 : 3.0);
    }
    QCOMPARE(item("horizontalAxisLabel")->property("text").toString(), QStringLiteral("Y"));
}

void tst_MeasurementsChart2D::zeroLineSpansTheAxis()
{
    load(true);
    addSamples(1000, 0.1, [](int i) { return static_cast<float>(i % 50 - 25); });
    settle();
    m_model->resetAxisXDelta(true);
    settle();
    const auto* zero = qobject_cast<QXYSeries*>(object(chartView(), "yZeroSeries"));
    QCOMPARE(zero->name(), QStringLiteral("Yzero"));
    QCOMPARE(zero->count(), 2);
    QVERIFY(zero->at(0).x() <= axis("axisX")->min());
    QVERIFY(zero->at(1).x() >= axis("axisX")->max());
    QCOMPARE(zero->at(0).y(), 0.0);
    QCOMPARE(zero->at(1).y(), 0.0);
    QCOMPARE(zero->pen().style(), Qt::DashLine);
}

void tst_MeasurementsChart2D::flatSignalKeepsTheAxis()
{
    load(true);
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    const double top = axis("axisY")->max();
    m_model->SetYmin(std::numeric_limits<double>::quiet_NaN());
    m_model->SetYmax(std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(axis("axisY")->max(), top);
    m_model->SetYmax(50.0);
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
    load(true);
    messageCount = 0;
    previousHandler = qInstallMessageHandler(countMessages);
    addSamples(50, 0.1, [](int i) {
        return i >= 20 && i < 30 ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(i);
    });
    for (int i = 0; i < 5; ++i) {
        m_model->SetXmin(0.01 * i);
        settle();
    }
    qInstallMessageHandler(previousHandler);
    QCOMPARE(messageCount, 0);
    QTRY_COMPARE(series(0)->count(), m_model->rowCount());
    int gaps = 0;
    for (const QPointF& point : series(0)->pointsVector())
        gaps += std::isnan(point.y()) ? 1 : 0;
    QCOMPARE(gaps, 10);
}

void tst_MeasurementsChart2D::axisFormats_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<QString>("format");
    QTest::addColumn<double>("precision");
    QTest::addColumn<double>("range");
    const auto row = [](const char* axisName, double min, double max, const char* format, double precision,
                        double range) {
        QTest::addRow("%s %g to %g", axisName, min, max)
            << QByteArray(axisName) << min << max << QString::fromLatin1(format) << precision << range;
    };
    row("axisX", 1.0, 1.0625, "%.4f", 1e4, 0.001);
    row("axisX", 1.0, 2.0, "%.3f", 1e3, 0.01);
    row("axisX", 1.0, 11.0, "%.2f", 1e2, 0.01);
    row("axisX", 1.0, 101.0, "%.1f", 1e1, 0.1);
    row("axisX", 1.0, 101.5, "%.0f", 1, 0.1);
    row("axisY", 2000.0, 2000.0078125, "%.7E", 1e7, 1e-6);
    row("axisY", 2000.0, 2000.5, "%.6E", 1e6, 1e-5);
    row("axisY", 2000.0, 2001.0, "%.5E", 1e5, 1e-4);
    row("axisY", 2000.0, 2010.0, "%.4E", 1e4, 1e-3);
    row("axisY", -2000.0, -1900.0, "%.3E", 1e3, 1e-2);
    row("axisY", 0.0, 0.00005, "%.7f", 1e7, 1e-6);
    row("axisY", 0.0, 0.0005, "%.6f", 1e6, 1e-5);
    row("axisY", 0.0, 0.005, "%.5f", 1e5, 1e-4);
    row("axisY", 0.0, 0.5, "%.4f", 1e4, 1e-3);
    row("axisY", 0.0, 1.0, "%.3f", 1e3, 1e-2);
    row("axisY", 0.0, 10.0, "%.2f", 1e2, 1e-2);
    row("axisY", 900.0, 1000.0, "%.1f", 1e1, 1e-1);
}

void tst_MeasurementsChart2D::axisFormats()
{
    QFETCH(QByteArray, name);
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(QString, format);
    QFETCH(double, precision);
    QFETCH(double, range);
    load(true);
    const bool horizontal = name == "axisX";
    m_model->setProperty(horizontal ? "Xmax" : "Ymax", max);
    m_model->setProperty(horizontal ? "Xmin" : "Ymin", min);
    QCOMPARE(axis(name)->labelFormat(), format);
    QCOMPARE(axis(name)->property("precisionIntValue").toDouble(), precision);
    QCOMPARE(axis(name)->property("minAxisRange").toDouble(), range);
}

void tst_MeasurementsChart2D::zoomInButton()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(20.0, 60.0);
    settle();
    click("zoomInButton");
    QVERIFY(std::abs(m_model->Xmin() - 30.0) < 1e-6);
    QVERIFY(std::abs(m_model->Xmax() - 50.0) < 1e-6);
    QCOMPARE(axis("axisX")->min(), m_model->Xmin());
    for (int i = 0; i < 20; ++i)
        click("zoomInButton");
    QVERIFY(m_model->Xmax() - m_model->Xmin() >= axis("axisX")->property("minAxisRange").toDouble());
    QVERIFY(m_model->Xmax() - m_model->Xmin() < 1.0);
}

void tst_MeasurementsChart2D::zoomOutAtTheLimitsResets()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(40.0, 60.0);
    settle();
    click("zoomOutButton");
    QVERIFY(std::abs(m_model->Xmin() - 30.0) < 1e-6);
    QVERIFY(std::abs(m_model->Xmax() - 70.0) < 1e-6);
    QSignalSpy slider(m_model.get(), &CChart2D::refreshLimitSliderX);
    for (int i = 0; i < 4; ++i)
        click("zoomOutButton");
    QCOMPARE(m_model->Xmin(), 0.0);
    QCOMPARE(m_model->Xmax(), m_model->MeasureResultMaxX());
    QVERIFY(slider.count() > 0);
}

void tst_MeasurementsChart2D::zoomResetButton()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(40.0, 60.0);
    settle();
    click("zoomResetButton");
    QCOMPARE(m_model->Xmin(), 0.0);
    QCOMPARE(m_model->Xmax(), m_model->MeasureResultMaxX());
}

void tst_MeasurementsChart2D::rectangleZoom()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(0.0, 100.0);
    settle();
    const double bottom = m_model->Ymin();
    const double top = m_model->Ymax();
    drag(inPlot(0.25, 0.4), inPlot(0.75, 0.5));
    QVERIFY2(std::abs(m_model->Xmin() - 25.0) < 0.5, qPrintable(QString::number(m_model->Xmin())));
    QVERIFY2(std::abs(m_model->Xmax() - 75.0) < 0.5, qPrintable(QString::number(m_model->Xmax())));
    // Ends are rounded to a tenth: the span was up to 100
    QVERIFY(std::abs(m_model->Xmin() * 10.0 - std::round(m_model->Xmin() * 10.0)) < 1e-6);
    QCOMPARE(m_model->Ymin(), bottom);
    QCOMPARE(m_model->Ymax(), top);
    QVERIFY(!item("zoomSelector")->isVisible());
}

void tst_MeasurementsChart2D::rectangleZoomWithoutAutoScaling()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(0.0, 100.0);
    click("autoScalingButton");
    QVERIFY(!m_model->AutoScaling());
    const double span = m_model->Ymax() - m_model->Ymin();
    drag(inPlot(0.75, 0.75), inPlot(0.25, 0.25));
    QVERIFY(std::abs(m_model->Xmin() - 25.0) < 0.5);
    QVERIFY(std::abs(m_model->Xmax() - 75.0) < 0.5);
    QVERIFY(m_model->Ymax() - m_model->Ymin() < 0.8 * span);
    QCOMPARE(axis("axisY")->max(), m_model->Ymax());
}

void tst_MeasurementsChart2D::clickLeavesTheWindow()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(20.0, 60.0);
    settle();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    settle();
    QCOMPARE(m_model->Xmin(), 20.0);
    QCOMPARE(m_model->Xmax(), 60.0);
}

void tst_MeasurementsChart2D::rightClickResets()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(20.0, 60.0);
    settle();
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, inPlot(0.5, 0.5));
    settle();
    QCOMPARE(m_model->Xmin(), 0.0);
    QCOMPARE(m_model->Xmax(), m_model->MeasureResultMaxX());
}

void tst_MeasurementsChart2D::wheelScrolls()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(20.0, 60.0);
    settle();
    const auto wheel = [this](int delta) {
        const QPoint at = inPlot(0.5, 0.5);
        QWheelEvent event(at, m_view->mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_view.get(), &event);
        settle();
    };
    wheel(120);
    QVERIFY(m_model->Xmin() > 21.0 && m_model->Xmax() > 61.0);
    QVERIFY(std::abs(m_model->Xmax() - m_model->Xmin() - 40.0) < 1e-6);
    wheel(-120);
    QVERIFY(std::abs(m_model->Xmin() - 20.0) < 1e-6);
}

void tst_MeasurementsChart2D::pressCollapsesTheMenus()
{
    load(true);
    auto* mainViewModel =
        qvariant_cast<QObject*>(m_view->rootContext()->contextProperty(QStringLiteral("MainViewModel")));
    mainViewModel->setProperty("PageMenuExpanded", true);
    mainViewModel->setProperty("ParameterMenuExpanded", true);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, inPlot(0.5, 0.5));
    QCOMPARE(mainViewModel->property("PageMenuExpanded").toBool(), false);
    QCOMPARE(mainViewModel->property("ParameterMenuExpanded").toBool(), false);
}

void tst_MeasurementsChart2D::autoScalingButton()
{
    load(true);
    QVERIFY(!item("yRangeSlider")->isVisible());
    QCOMPARE(item("autoScalingButton")->property("label").toString(), QStringLiteral("Disable auto scaling"));
    click("autoScalingButton");
    QVERIFY(item("yRangeSlider")->isVisible());
    QCOMPARE(item("autoScalingButton")->property("label").toString(), QStringLiteral("Enable auto scaling"));
    click("autoScalingButton");
    QVERIFY(m_model->AutoScaling());
}

void tst_MeasurementsChart2D::xSliderMovesTheWindow()
{
    load(true);
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    m_model->refreshLegendData(20.0, 60.0);
    settle();
    QQuickItem* slider = item("xRangeSlider");
    QCOMPARE(object(slider, "first")->property("value").toDouble(), 20.0);
    QCOMPARE(object(slider, "second")->property("value").toDouble(), 60.0);
    QCOMPARE(slider->property("to").toDouble(), m_model->MeasureResultMaxX());
    const auto* handle = qvariant_cast<QQuickItem*>(object(slider, "second")->property("handle"));
    const QPoint from = handle->mapToScene(QPointF(handle->width() / 2, handle->height() / 2)).toPoint();
    drag(from, from + QPoint(100, 0));
    QVERIFY(m_model->Xmax() > 61.0);
    QCOMPARE(m_model->Xmin(), 20.0);
    // Far over the other handle
    const QPoint again = handle->mapToScene(QPointF(handle->width() / 2, handle->height() / 2)).toPoint();
    drag(again, again - QPoint(600, 0));
    QVERIFY(m_model->Xmax() >= m_model->Xmin() + m_model->MinDeltaAxisX() - 1e-9);
}

void tst_MeasurementsChart2D::legendSwitchesSeries()
{
    load(true);
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QSignalSpy length(m_model.get(), &CChart2DFieldsData::DownsampledSignalLengthChanged);
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
    QTest::mouseMove(m_view.get(), inPlot(0.5, 0.5));
    settle();
    QVERIFY(!series(0)->isVisible() && !series(2)->isVisible());
    QVERIFY(series(5)->isVisible() && series(6)->isVisible());
}

void tst_MeasurementsChart2D::legendHover()
{
    load(true);
    const auto hover = [this](const char* name) {
        const QQuickItem* row = item(name);
        QTest::mouseMove(m_view.get(), row->mapToScene(QPointF(50, 5)).toPoint());
        settle();
    };
    hover("legendRow5");
    for (int i = 0; i < 7; ++i)
        QCOMPARE(series(i)->isVisible(), i >= 5);
    QCOMPARE(series(1)->color(), QColor::fromHslF(0, 0, 0.8, 1));
    hover("legendRow3");
    for (int i = 0; i < 7; ++i)
        QCOMPARE(series(i)->isVisible(), i == 3);
    QTest::mouseMove(m_view.get(), inPlot(0.5, 0.5));
    settle();
    for (int i = 0; i < 7; ++i)
        QVERIFY(series(i)->isVisible());
    QCOMPARE(series(1)->color(), QColor::fromHsvF(60.0 / 360.0, 1.0, 0.9, 1.0));
}

void tst_MeasurementsChart2D::selectNoneAndAll()
{
    load(true);
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QSignalSpy length(m_model.get(), &CChart2DFieldsData::DownsampledSignalLengthChanged);
    click("legendSelectNoneButton");
    QCOMPARE(length.count(), 1);
    QCOMPARE(m_model->Ymin(), 0.001);
    QCOMPARE(m_model->Ymax(), 10.0);
    for (int i = 0; i < 7; ++i)
        QVERIFY(!series(i)->isVisible());
    click("legendSelectAllButton");
    QCOMPARE(length.count(), 2);
    for (int i = 0; i < 7; ++i)
        QVERIFY(series(i)->isVisible());
}

void tst_MeasurementsChart2D::clearingMakesNewSeries()
{
    load(true);
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    click("legendSelectNoneButton");
    m_model->ClearData();
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
    QCOMPARE(m_model->YmaxAllSignal(), 13.0);
}

void tst_MeasurementsChart2D::timeLabels()
{
    load(true);
    addSamples(100, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
    QVERIFY(!m_model->XminTime().isEmpty());
    QCOMPARE(item("xMinTimeLabel")->property("text").toString(), m_model->XminTime());
    QCOMPARE(item("xMinDateLabel")->property("text").toString(), m_model->XminDate());
    QCOMPARE(item("xMaxTimeLabel")->property("text").toString(), m_model->XmaxTime());
    QCOMPARE(item("xMaxDateLabel")->property("text").toString(), m_model->XmaxDate());
    QCOMPARE(item("horizontalAxisLabel")->property("text").toString(), QStringLiteral("Time [s]"));
    QCOMPARE(axis("axisY")->titleText(), QStringLiteral("Field strength [µT]"));
}

QTEST_MAIN(tst_MeasurementsChart2D)
#include "tst_MeasurementsChart2D.moc"
