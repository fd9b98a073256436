// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeasurementsChartTest.h"

#include "CFieldIntensityResult.h"
#include "CInstrumentSupervisor.h"
#include "CMeasureBlock.h"
#include "COperationMeasure.h"
#include "CPlotTable.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "PatientWait.h"
#include "QmlTestSetup.h"

#include <QCoreApplication>
#include <QQmlContext>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>

using QtCharts::QValueAxis;
using QtCharts::QXYSeries;

MeasurementsChartTest::MeasurementsChartTest() = default;

MeasurementsChartTest::~MeasurementsChartTest() = default;

void MeasurementsChartTest::initTestCase()
{
    QmlTestSetup::Prepare();
    CPlotTable::RegisterQmlTypes();
}

void MeasurementsChartTest::init()
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

void MeasurementsChartTest::cleanup()
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

void MeasurementsChartTest::load(Model model)
{
    m_view = std::make_unique<QQuickView>();
    m_setup->setUp(m_view->engine());
    m_view->rootContext()->setContextProperty(QStringLiteral("TestModel"),
                                              model == Model::Given ? m_model.get() : nullptr);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setSource(QUrl::fromLocalFile(QStringLiteral(KESTRIX_CHART_QML)));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->resize(900, 600);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get(), kLongWaitMs));
    settle();
}

void MeasurementsChartTest::settle()
{
    m_model->UpdatePlot();
    QCoreApplication::processEvents();
    QSignalSpy frame(m_view.get(), &QQuickWindow::frameSwapped);
    for (int i = 0; i < 2; ++i) {
        m_view->update();
        frame.wait(1000);
    }
}

void MeasurementsChartTest::addSamples(int count, double periodS, const std::function<float(int)>& value)
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

QQuickItem* MeasurementsChartTest::item(const char* name) const
{
    return QmlTestSetup::FindItem(m_view->rootObject(), name);
}

QVector<QObject*> MeasurementsChartTest::sprites() const
{
    QVector<QObject*> all;
    for (const QVariant& sprite : chartView()->property("sprites").toList())
        all.append(qvariant_cast<QObject*>(sprite));
    return all;
}

void MeasurementsChartTest::click(const char* name)
{
    QQuickItem* target = item(name);
    QVERIFY2(target, name);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(target));
    settle();
}

QPoint MeasurementsChartTest::inPlot(double x, double y) const
{
    const QRectF plot = chartView()->property("plotArea").toRectF();
    const QPointF local(plot.x() + x * plot.width(), plot.y() + y * plot.height());
    return chartView()->mapToScene(local).toPoint();
}

void MeasurementsChartTest::drag(const QPoint& from, const QPoint& to)
{
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
    QTest::mouseMove(m_view.get(), (from + to) / 2);
    QTest::mouseMove(m_view.get(), to);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, to);
    settle();
}

void MeasurementsChartTest::loadWithRamp()
{
    load();
    addSamples(1001, 0.1, [](int i) { return static_cast<float>(i % 10); });
    settle();
}

QValueAxis* MeasurementsChartTest::axis(const char* name) const
{
    return qobject_cast<QValueAxis*>(object(chartView(), name));
}

QXYSeries* MeasurementsChartTest::series(int index) const
{
    return qobject_cast<QXYSeries*>(object(sprites().at(index), "series"));
}

QPoint MeasurementsChartTest::middle(const QQuickItem* item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

void MeasurementsChartTest::wheel(int delta)
{
    const QPoint at = inPlot(0.5, 0.5);
    QWheelEvent event(at, m_view->mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_view.get(), &event);
    settle();
}
