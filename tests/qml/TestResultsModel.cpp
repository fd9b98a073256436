// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestResultsModel.h"

#include <limits>

namespace {
enum Role { Timestamp = Qt::UserRole + 1, B, dB, BBprime, Bx, By, Bz, T, X, Y, Z, Roll, Pitch, Yaw };
} // namespace

void TestResultsModel::SetRowCount(int rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

int TestResultsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

QVariant TestResultsModel::data(const QModelIndex& index, int role) const
{
    const int row = index.row();
    switch (role) {
    case Timestamp:
        return QStringLiteral("2024.05.06T07:08:%1.000000000").arg(row % 60, 2, 10, QLatin1Char('0'));
    case B:
        return row + 0.5F;
    case dB:
        return 0.01F;
    case BBprime:
        return -48.85612F;
    case Bx:
        return {};
    case By:
        return std::numeric_limits<float>::quiet_NaN();
    case Bz:
        return 12345.678F;
    case T:
        return 8000 + row;
    case X:
    case Y:
    case Z:
        return 10.0 * role;
    case Roll:
    case Pitch:
    case Yaw:
        return 1.23456;
    default:
        return {};
    }
}

QHash<int, QByteArray> TestResultsModel::roleNames() const
{
    return {{Timestamp, "Timestamp"},
            {B, "B"},
            {dB, "dB"},
            {BBprime, "BBprime"},
            {Bx, "Bx"},
            {By, "By"},
            {Bz, "Bz"},
            {T, "T"},
            {X, "X"},
            {Y, "Y"},
            {Z, "Z"},
            {Roll, "Roll"},
            {Pitch, "Pitch"},
            {Yaw, "Yaw"}};
}
