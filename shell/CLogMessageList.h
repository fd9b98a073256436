// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CLogMessage.h"

#include <QAbstractListModel>
#include <QSharedPointer>

#include <deque>

class CSettings;

/// The log of this run as the log dialog shows it, oldest message first. Main thread only.
class CLogMessageList : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        TimestampRole = 1, ///< ISO text with milliseconds
        LevelRole = 2,     ///< CLogMessage::eLevel as an integer
        MessageRole = 3
    };

    /// `settings` must outlive the list.
    explicit CLogMessageList(const CSettings& settings, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Adds a message at the end. At LogMaxHistoryCount rows the oldest one, and no more than one, goes
    /// first: a limit that was lowered meanwhile does not shorten the list.
    void Append(const QSharedPointer<CLogMessage>& message);

private:
    const CSettings& m_settings;
    std::deque<QSharedPointer<CLogMessage>> m_messages;
};
