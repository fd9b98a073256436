// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSteadyTable.h"

#include <QQmlEngine>

#include <algorithm>

CSteadyTable::CSteadyTable(QObject* parent) : QAbstractTableModel(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &CSteadyTable::refresh);
}

void CSteadyTable::RegisterQmlTypes()
{
    qmlRegisterType<CSteadyTable>("Kestrix.Charts", 1, 0, "SteadyTable");
}

void CSteadyTable::SetSource(QAbstractItemModel* source)
{
    if (m_source == source)
        return;
    beginResetModel();
    if (m_source)
        m_source->disconnect(this);
    m_source = source;
    m_timer.stop();
    m_isStale = false;
    m_rowCount = sourceRowCount();
    if (source) {
        connect(source, &QAbstractItemModel::rowsInserted, this, &CSteadyTable::onSourceChanged);
        connect(source, &QAbstractItemModel::rowsRemoved, this, &CSteadyTable::onSourceChanged);
        connect(source, &QAbstractItemModel::modelReset, this, &CSteadyTable::onSourceChanged);
        connect(source, &QAbstractItemModel::dataChanged, this, &CSteadyTable::onSourceChanged);
        connect(source, &QObject::destroyed, this, &CSteadyTable::onSourceChanged);
    }
    endResetModel();
    emit SourceChanged();
}

void CSteadyTable::SetInterval(int interval)
{
    if (m_interval == interval)
        return;
    m_interval = interval;
    emit IntervalChanged();
}

void CSteadyTable::SetActive(bool active)
{
    if (m_isActive == active)
        return;
    m_isActive = active;
    m_timer.stop();
    if (active && m_isStale)
        refresh();
    emit ActiveChanged();
}

QHash<int, QByteArray> CSteadyTable::roleNames() const
{
    return m_source ? m_source->roleNames() : QAbstractTableModel::roleNames();
}

int CSteadyTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int CSteadyTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() || !m_source ? 0 : m_source->columnCount();
}

QVariant CSteadyTable::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= sourceRowCount())
        return {};
    return m_source->data(m_source->index(index.row(), index.column()), role);
}

int CSteadyTable::sourceRowCount() const
{
    return m_source ? m_source->rowCount() : 0;
}

void CSteadyTable::onSourceChanged()
{
    m_isStale = true;
    if (!m_isActive || m_timer.isActive())
        return;
    // Even the first change waits for the event loop: removal and insertion of one block belong together.
    const qint64 elapsed = m_sinceRefresh.isValid() ? m_sinceRefresh.elapsed() : m_interval;
    m_timer.start(static_cast<int>(std::max<qint64>(0, m_interval - elapsed)));
}

void CSteadyTable::refresh()
{
    m_isStale = false;
    m_sinceRefresh.start();
    const int rowCount = sourceRowCount();
    const int kept = std::min(m_rowCount, rowCount);
    if (rowCount < m_rowCount) {
        beginRemoveRows(QModelIndex(), rowCount, m_rowCount - 1);
        m_rowCount = rowCount;
        endRemoveRows();
    }
    if (kept > 0)
        emit dataChanged(index(0, 0), index(kept - 1, columnCount() - 1));
    if (rowCount > m_rowCount) {
        beginInsertRows(QModelIndex(), m_rowCount, rowCount - 1);
        m_rowCount = rowCount;
        endInsertRows();
    }
}
