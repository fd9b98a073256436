// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlotDriver.h"

#include "PatientWait.h"

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRectF>
#include <QTest>
#include <QVariant>
#include <QWheelEvent>
#include <QXYSeries>

#include <algorithm>
#include <utility>

using QtCharts::QXYSeries;

namespace {

constexpr int kSeries = 7;

QObject* part(const QObject* of, const char* property)
{
    return of ? qvariant_cast<QObject*>(of->property(property)) : nullptr;
}

} // namespace

QObject* PlotDriver::chartView() const
{
    return m_driver.Find(QStringLiteral("chartView"));
}

QObject* PlotDriver::Model() const
{
    return part(m_driver.Find(QStringLiteral("measurementsChart2D")), "dataModel");
}

double PlotDriver::Number(const char* property) const
{
    const QObject* model = Model();
    return model ? model->property(property).toDouble() : qQNaN();
}

QVector<QXYSeries*> PlotDriver::Series() const
{
    QVector<QXYSeries*> all;
    const QObject* view = chartView();
    const QVariantList sprites = view ? view->property("sprites").toList() : QVariantList();
    for (const QVariant& sprite : sprites)
        all.append(qobject_cast<QXYSeries*>(part(qvariant_cast<QObject*>(sprite), "series")));
    return all;
}

QVector<QPointF> PlotDriver::Points(int series) const
{
    const QVector<QXYSeries*> all = Series();
    return series < all.size() ? all.at(series)->pointsVector() : QVector<QPointF>();
}

QVector<bool> PlotDriver::Visibility() const
{
    QVector<bool> visible;
    const QVector<QXYSeries*> all = Series();
    for (const QXYSeries* series : all)
        visible.append(series->isVisible());
    return visible;
}

bool PlotDriver::WaitForPoints(int count) const
{
    return QTest::qWaitFor(
        [&] {
            const QVector<QXYSeries*> all = Series();
            const int rows = static_cast<int>(Number("DownsampledSignalLength"));
            return all.size() == kSeries && rows >= count &&
                   std::all_of(all.begin(), all.end(),
                               [rows](const QXYSeries* series) { return series->count() == rows; });
        },
        kLongWaitMs);
}

QPoint PlotDriver::At(double x, double y) const
{
    const QQuickItem* view = m_driver.Find(QStringLiteral("chartView"));
    const QRectF plot = view->property("plotArea").toRectF();
    return view->mapToScene(QPointF(plot.x() + x * plot.width(), plot.y() + y * plot.height())).toPoint();
}

void PlotDriver::Drag(const QPoint& from, const QPoint& to) const
{
    QTest::mousePress(m_driver.Window(), Qt::LeftButton, {}, from);
    QTest::mouseMove(m_driver.Window(), (from + to) / 2);
    QTest::mouseMove(m_driver.Window(), to);
    QTest::mouseRelease(m_driver.Window(), Qt::LeftButton, {}, to);
}

void PlotDriver::Wheel(int delta) const
{
    const QPoint at = this->At(0.5, 0.5);
    QWheelEvent event(at, m_driver.Window()->mapToGlobal(at), {}, QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_driver.Window(), &event);
}

void PlotDriver::RightClick() const
{
    QTest::mouseClick(m_driver.Window(), Qt::RightButton, {}, At(0.5, 0.5));
}

void PlotDriver::DragHandle(const char* slider, const char* handle, const QPoint& way) const
{
    const QQuickItem* item = m_driver.Find(QLatin1String(slider));
    QVERIFY2(item, slider);
    auto* grip = qobject_cast<QQuickItem*>(part(part(item, handle), "handle"));
    QVERIFY2(grip, handle);
    QPoint from(-1, -1);
    const auto isStill = [&] {
        const QPoint last = std::exchange(from, WindowDriver::Middle(grip));
        m_driver.MakeFrame();
        return from == last && from == WindowDriver::Middle(grip);
    };
    QVERIFY(QTest::qWaitFor(isStill, kLongWaitMs));
    Drag(from, from + way);
}
