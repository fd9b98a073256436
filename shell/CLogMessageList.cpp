// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogMessageList.h"

#include "CSettings.h"

CLogMessageList::CLogMessageList(const CSettings& settings, QObject* parent)
    : QAbstractListModel(parent), m_settings(settings)
{
}

int CLogMessageList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_messages.size());
}

QVariant CLogMessageList::data(const QModelIndex& index, int role) const
{
    if (index.row() < 0 || index.row() >= rowCount())
        return {};

    const CLogMessage& message = *m_messages[static_cast<std::size_t>(index.row())];
    switch (role) {
    case TimestampRole:
        return message.Timestamp().toString(Qt::ISODateWithMs);
    case LevelRole:
        return static_cast<int>(message.Level());
    case MessageRole:
        return message.Message();
    default:
        return {};
    }
}

QHash<int, QByteArray> CLogMessageList::roleNames() const
{
    return {{TimestampRole, QByteArrayLiteral("timestamp")},
            {LevelRole, QByteArrayLiteral("level")},
            {MessageRole, QByteArrayLiteral("message")}};
}

void CLogMessageList::Append(const QSharedPointer<CLogMessage>& message)
{
    if (!m_messages.empty() && m_messages.size() >= m_settings.LogMaxHistoryCount()) {
        beginRemoveRows({}, 0, 0);
        m_messages.pop_front();
        endRemoveRows();
    }

    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_messages.push_back(message);
    endInsertRows();
}
