// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumViewFixture.h"

#include "CPlotTable.h"
#include "PatientWait.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQmlContext>
#include <QSignalSpy>

void SpectrumViewFixture::prepare()
{
    QmlTestSetup::Prepare();
    CPlotTable::RegisterQmlTypes();
}

void SpectrumViewFixture::begin()
{
    start();
    m_page = std::make_unique<PageStandIn>();
    m_warningsBefore = QmlTestSetup::WarningCount();
    showRandom(101);
}

void SpectrumViewFixture::end()
{
    unload();
    m_page.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void SpectrumViewFixture::makeWindow()
{
    m_setup = std::make_unique<QmlTestSetup>();
    m_view = std::make_unique<QQuickView>();
    m_setup->setUp(m_view->engine());
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(900, 600);
}

void SpectrumViewFixture::load(bool withModel, QObject* operation)
{
    if (!m_view)
        makeWindow();
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("ActiveOperation"), operation ? operation : m_operation.get());
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page.get());
    context->setContextProperty(QStringLiteral("TestModel"), withModel ? m_chart.get() : nullptr);
    m_view->setSource(QUrl::fromLocalFile(QStringLiteral(KESTRIX_CHART_QML)));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get(), kLongWaitMs));
    settle();
}

void SpectrumViewFixture::unload()
{
    if (m_view)
        m_view->setSource(QUrl());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void SpectrumViewFixture::settle()
{
    QSignalSpy frame(m_view.get(), &QQuickWindow::frameSwapped);
    // A chart draws what it has heard of in the frame before.
    for (int i = 0; i < 2; ++i) {
        QCoreApplication::processEvents();
        m_view->update();
        QVERIFY(frame.wait(kLongWaitMs));
    }
}

QPoint SpectrumViewFixture::centreOf(const char* name) const
{
    const QQuickItem* target = item(name);
    return target->mapToScene(QPointF(target->width() / 2, target->height() / 2)).toPoint();
}

void SpectrumViewFixture::click(const char* name)
{
    QVERIFY2(item(name), name);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centreOf(name));
    settle();
}

QPoint SpectrumViewFixture::inPlot(double x, double y) const
{
    const QRectF plot = chartView()->property("plotArea").toRectF();
    const QPointF local(plot.x() + x * plot.width(), plot.y() + y * plot.height());
    return item("chartView")->mapToScene(local).toPoint();
}

void SpectrumViewFixture::verifyWindow(double xMin, double xMax) const
{
    QCOMPARE(m_chart->Xmin(), xMin);
    QCOMPARE(m_chart->Xmax(), xMax);
    QCOMPARE(axisX()->min(), xMin);
    QCOMPARE(axisX()->max(), xMax);
    QCOMPARE(axisY()->min(), m_chart->Ymin());
    QCOMPARE(axisY()->max(), m_chart->Ymax());
}
