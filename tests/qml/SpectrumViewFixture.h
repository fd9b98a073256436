// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "QmlTestSetup.h"
#include "SpectrumChartFixture.h"

#include <QLogValueAxis>
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

/// The spectrum's view in a window, on a model that has a spectrum of 101 bins, 1 Hz apart. Each test has a
/// model and a view of its own; the window and the engine, which would take most of the time, are the same
/// for all.
struct SpectrumViewFixture : SpectrumChartFixture
{
    static void prepare();
    void begin();
    void end();

    void load(bool withModel = true, QObject* operation = nullptr);
    /// Takes the view out of the window, which stays.
    void unload();
    /// Lets the bindings and the hand-over of points run.
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
    /// A point of the plot area, as fractions from its top left.
    QPoint inPlot(double x, double y) const;
    /// The model's window, and the axis on it.
    void verifyWindow(double xMin, double xMax) const;

    std::unique_ptr<QmlTestSetup> m_setup;
    std::unique_ptr<PageStandIn> m_page;
    std::unique_ptr<QQuickView> m_view;

private:
    void makeWindow();

    int m_warningsBefore = 0;
};

template <class T> T* SpectrumViewFixture::find(const char* name) const
{
    return qobject_cast<T*>(QmlTestSetup::FindItem(m_view->rootObject(), name));
}
