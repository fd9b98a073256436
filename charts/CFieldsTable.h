// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FieldSeries.h"

#include <QVariant>
#include <QVector>

/// The rows that a field plot publishes: X and one value of each series. Its memory is taken once; rows are
/// overwritten in place.
class CFieldsTable
{
public:
    explicit CFieldsTable(int rows);

    int Capacity() const { return m_xValues.size(); }
    /// Room for at least this many rows.
    void Reserve(int rows);
    void SetRow(int row, double x, const FieldSeries::Values& values);
    /// X for column 0, a float for the series behind it.
    QVariant Value(int row, int column) const;

private:
    QVector<QVector<float>> m_series;
    QVector<QVariant> m_xValues;
};
