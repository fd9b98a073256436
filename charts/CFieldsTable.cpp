// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFieldsTable.h"

CFieldsTable::CFieldsTable(int rows) : m_series(FieldSeries::Count)
{
    Reserve(rows);
}

void CFieldsTable::Reserve(int rows)
{
    if (rows <= Capacity())
        return;
    for (QVector<float>& series : m_series)
        series.resize(rows);
    m_xValues.insert(m_xValues.end(), rows - Capacity(), QVariant(0.0));
}

void CFieldsTable::SetRow(int row, double x, const FieldSeries::Values& values)
{
    m_xValues[row] = x;
    for (std::size_t i = 0; i < FieldSeries::Count; ++i)
        m_series[static_cast<int>(i)][row] = values[i];
}

QVariant CFieldsTable::Value(int row, int column) const
{
    return column == 0 ? m_xValues[row] : QVariant(m_series[column - 1][row]);
}
