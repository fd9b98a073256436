// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSortFilterProxyModel>
#include <QString>

/// The log list narrowed to a minimum level and a search text.
class CLogFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_PROPERTY(int MinLevel READ MinLevel WRITE SetMinLevel NOTIFY MinLevelChanged)

public:
    explicit CLogFilterProxyModel(QObject* parent = nullptr);

    int MinLevel() const { return m_minLevel; } ///< lowest CLogMessage::eLevel that passes
    void SetMinLevel(int value);

    /// Passes messages that hold `string` somewhere, in upper or lower case; an empty text passes all.
    Q_INVOKABLE void setFilterString(QString string);

public slots:
    void OnMinLevelChanged();

signals:
    void MinLevelChanged(int value);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    int m_minLevel = 0;
};
