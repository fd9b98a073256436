// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "WindowDriver.h"

#include <QByteArray>
#include <QPoint>
#include <QPointF>
#include <QVector>

namespace QtCharts {
class QXYSeries;
}
class QObject;

/// Looks at the time plot on screen, and acts on it with the mouse. The plot must be on screen.
class PlotDriver
{
public:
    explicit PlotDriver(WindowDriver& driver) : m_driver(driver) {}

    /// The model behind the plot.
    QObject* Model() const;
    double Number(const char* property) const;
    double Span() const { return Number("Xmax") - Number("Xmin"); }

    QVector<QtCharts::QXYSeries*> Series() const;
    /// The points that the chart draws of a series.
    QVector<QPointF> Points(int series) const;
    QVector<bool> Visibility() const;
    /// Waits until each of the seven series has as many points as the model has rows, and at least `count`.
    bool WaitForPoints(int count) const;

    /// A place in the plot area, as fractions from its top left.
    QPoint At(double x, double y) const;
    void Drag(const QPoint& from, const QPoint& to) const;
    void Wheel(int delta) const;
    void RightClick() const;
    /// Drags a handle of a range slider, "first" or "second", by a way in pixels.
    void DragHandle(const char* slider, const char* handle, const QPoint& way) const;

private:
    QObject* chartView() const;

    WindowDriver& m_driver;
};
