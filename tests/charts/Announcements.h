// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemModel>
#include <QStringList>

/// The announcements of a model, as "insert first..last" and "remove first..last".
class Announcements : public QObject
{
public:
    explicit Announcements(QAbstractItemModel& model)
    {
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex&, int first, int last) {
                    list.append(QStringLiteral("insert %1..%2").arg(first).arg(last));
                });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex&, int first, int last) {
                    list.append(QStringLiteral("remove %1..%2").arg(first).arg(last));
                });
        connect(&model, &QAbstractItemModel::modelReset, this,
                [this] { list.append(QStringLiteral("reset")); });
    }

    QStringList list;
};
