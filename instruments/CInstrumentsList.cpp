// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentsList.h"

int CInstrumentsList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_instruments.size();
}

QVariant CInstrumentsList::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_instruments.size())
        return {};
    const CInstrument& instrument = *m_instruments.at(index.row());
    switch (role) {
    case DisplayLabelRole:
        return QString(instrument.Name() + QStringLiteral(" - ") + instrument.SerialNumber());
    case RessourceNameRole:
        return instrument.RessourceName();
    case InterfaceRole:
        return static_cast<int>(instrument.Interface());
    default:
        return {};
    }
}

QHash<int, QByteArray> CInstrumentsList::roleNames() const
{
    return {
        {DisplayLabelRole, QByteArrayLiteral("DisplayLabel")},
        {RessourceNameRole, QByteArrayLiteral("RessourceName")},
        {InterfaceRole, QByteArrayLiteral("Interface")},
    };
}

void CInstrumentsList::Append(const QSharedPointer<CInstrument>& instrument)
{
    beginInsertRows(QModelIndex(), m_instruments.size(), m_instruments.size());
    m_instruments.append(instrument);
    endInsertRows();
}

void CInstrumentsList::Clear()
{
    beginResetModel();
    m_instruments.clear();
    endResetModel();
}
