// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"

#include <QAbstractListModel>
#include <QList>
#include <QSharedPointer>

/// The list of instruments as the instrument page shows it.
class CInstrumentsList : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { DisplayLabelRole = Qt::UserRole + 1, RessourceNameRole, InterfaceRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void Append(const QSharedPointer<CInstrument>& instrument);
    void Clear();

private:
    QList<QSharedPointer<CInstrument>> m_instruments;
};
