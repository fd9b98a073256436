// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIdentityProxyModel>

/// Stands between a chart model and the mappers of its view, which read the table point by point. A mapper on
/// a series that is in a chart makes the chart lay itself out at every point; so the mappers fill series that
/// are in no chart, and this class hands their points over to the visible series in one go.
///
/// A mapper drops a value that is not a number, with a line in the log for each. So it is given 0 instead,
/// and the gap comes back when the points are handed over.
class CPlotTable : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit CPlotTable(QObject* parent = nullptr);

    /// "PlotTable" and "PointBuffer" of the QML module "Kestrix.Charts" 1.0. The latter is the series for a
    /// mapper to fill: QML's own line series counts its points at each one that is added, by copying them
    /// all.
    static void RegisterQmlTypes();

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Replaces the points of one XY series by those of another, which holds this `column` of the table.
    Q_INVOKABLE void handOver(QObject* buffer, QObject* visible, int column) const;
    /// The same for a series on a log axis: leaves out the points that are not above zero, of which a single
    /// one would hide the whole series, and those without a number.
    Q_INVOKABLE void handOverPositive(QObject* buffer, QObject* visible) const;

private:
    mutable bool m_hasGaps = false;
};
