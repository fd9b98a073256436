// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CPlotTable.h"
#include "QmlTestSetup.h"
#include "SpectrumChartFixture.h"

#include <QLogValueAxis>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QValueAxis>
#include <QXYSeries>

#include <functional>
#include <memory>

using QtCharts::QLogValueAxis;
using QtCharts::QValueAxis;
using QtCharts::QXYSeries;

/// Stands for the view model of the page.
class PageStandIn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int field MEMBER field NOTIFY fieldChanged)

public:
    int field = 1;
    int loads = 0;
    std::function<void()> onLoad;

    Q_INVOKABLE void loadData()
    {
        ++loads;
        if (onLoad)
            onLoad();
    }

signals:
    void fieldChanged();
};

/// The spectrum's view in a window, on a model that has a spectrum of 101 bins, 1 Hz apart.
struct SpectrumViewFixture : SpectrumChartFixture
{
    void prepare()
    {
        QmlTestSetup::Prepare();
        CPlotTable::RegisterQmlTypes();
    }
    void begin()
    {
        start();
        m_setup = std::make_unique<QmlTestSetup>();
        m_page = std::make_unique<PageStandIn>();
        m_warningsBefore = QmlTestSetup::WarningCount();
        showRandom(101);
    }
    void end()
    {
        m_view.reset();
        m_page.reset();
        m_setup.reset();
        QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
    }

    void load(bool withModel = true, QObject* operation = nullptr);
    void settle();
    template <class T> T* find(const char* name) const;
    QQuickItem* item(const char* name) const { return find<QQuickItem>(name); }
    QObject* chartView() const { return item("chartView"); }
    static QObject* object(const QObject* of, const char* property)
    {
        return qvariant_cast<QObject*>(of->property(property));
    }
    QValueAxis* axisX() const { return qobject_cast<QValueAxis*>(object(chartView(), "axisX")); }
    QLogValueAxis* axisY() const { return qobject_cast<QLogValueAxis*>(object(chartView(), "axisY")); }
    QXYSeries* series(int index) const
    {
        return qobject_cast<QXYSeries*>(
            qvariant_cast<QObject*>(chartView()->property("shownSeries").toList().value(index)));
    }
    QPoint centreOf(const char* name) const;
    void click(const char* name);
    QPoint inPlot(double x, double y) const;
    void verifyWindow(double xMin, double xMax) const;

    std::unique_ptr<QmlTestSetup> m_setup;
    std::unique_ptr<PageStandIn> m_page;
    std::unique_ptr<QQuickView> m_view;
    int m_warningsBefore = 0;
};

inline void SpectrumViewFixture::load(bool withModel, QObject* operation)
{
    m_view = std::make_unique<QQuickView>();
    m_setup->setUp(m_view->engine());
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("ActiveOperation"), operation ? operation : m_operation.get());
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page.get());
    context->setContextProperty(QStringLiteral("TestModel"), withModel ? m_chart.get() : nullptr);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setSource(QUrl::fromLocalFile(QStringLiteral(KESTRIX_CHART_QML)));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->resize(900, 600);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    settle();
}

/// Lets the bindings and the hand-over of points run.
inline void SpectrumViewFixture::settle()
{
    QCoreApplication::processEvents();
    QTest::qWait(50);
}

template <class T> T* SpectrumViewFixture::find(const char* name) const
{
    return qobject_cast<T*>(QmlTestSetup::FindItem(m_view->rootObject(), name));
}

inline QPoint SpectrumViewFixture::centreOf(const char* name) const
{
    const QQuickItem* target = item(name);
    return target->mapToScene(QPointF(target->width() / 2, target->height() / 2)).toPoint();
}

inline void SpectrumViewFixture::click(const char* name)
{
    QVERIFY2(item(name), name);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centreOf(name));
    settle();
}

/// A point of the plot area, as fractions from its top left.
inline QPoint SpectrumViewFixture::inPlot(double x, double y) const
{
    const QRectF plot = chartView()->property("plotArea").toRectF();
    const QPointF local(plot.x() + x * plot.width(), plot.y() + y * plot.height());
    return item("chartView")->mapToScene(local).toPoint();
}

/// The model's window, and the axis on it.
inline void SpectrumViewFixture::verifyWindow(double xMin, double xMax) const
{
    QCOMPARE(m_chart->Xmin(), xMin);
    QCOMPARE(m_chart->Xmax(), xMax);
    QCOMPARE(axisX()->min(), xMin);
    QCOMPARE(axisX()->max(), xMax);
    QCOMPARE(axisY()->min(), m_chart->Ymin());
    QCOMPARE(axisY()->max(), m_chart->Ymax());
}
