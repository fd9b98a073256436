// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPlotTable.h"

#include <QLineSeries>
#include <QQmlEngine>

#include <algorithm>
#include <cmath>
#include <limits>

CPlotTable::CPlotTable(QObject* parent) : QIdentityProxyModel(parent)
{
    connect(this, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_hasGaps = false; });
}

void CPlotTable::RegisterQmlTypes()
{
    qmlRegisterType<QtCharts::QLineSeries>("Kestrix.Charts", 1, 0, "PointBuffer");
    qmlRegisterType<CPlotTable>("Kestrix.Charts", 1, 0, "PlotTable");
}

QVariant CPlotTable::data(const QModelIndex& index, int role) const
{
    const QVariant value = QIdentityProxyModel::data(index, role);
    if (value.isValid() && !std::isfinite(value.toDouble())) {
        m_hasGaps = true;
        return 0.0;
    }
    return value;
}

void CPlotTable::handOver(QObject* buffer, QObject* visible, int column) const
{
    const auto* from = qobject_cast<QtCharts::QXYSeries*>(buffer);
    auto* to = qobject_cast<QtCharts::QXYSeries*>(visible);
    if (!from || !to)
        return;
    QVector<QPointF> points = from->pointsVector();
    if (m_hasGaps) {
        for (int row = 0; row < points.size(); ++row) {
            if (!std::isfinite(QIdentityProxyModel::data(index(row, column), Qt::DisplayRole).toDouble()))
                points[row].setY(std::numeric_limits<double>::quiet_NaN());
        }
    }
    to->replace(points);
}

void CPlotTable::handOverPositive(QObject* buffer, QObject* visible) const
{
    const auto* from = qobject_cast<QtCharts::QXYSeries*>(buffer);
    auto* to = qobject_cast<QtCharts::QXYSeries*>(visible);
    if (!from || !to)
        return;
    // What is not a number has become 0 on the way to the buffer.
    QVector<QPointF> points = from->pointsVector();
    points.erase(
        std::remove_if(points.begin(), points.end(), [](const QPointF& point) { return !(point.y() > 0.0); }),
        points.end());
    to->replace(points);
}
