// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

/// Stands between a table model and its view. A live model drops its rows and adds new ones with each block,
/// a hundred times a second and more; a view would build all its cells anew each time. This one shows the
/// source's rows as they are at its last refresh but one interval at most, as changed values in the rows that
/// stay, and passes on nothing while nobody looks.
///
/// Rows, columns and roles are those of the source. Main thread only.
class CSteadyTable : public QAbstractTableModel
{
    Q_OBJECT
    /// The model whose rows are shown; none at first. Not owned.
    Q_PROPERTY(QAbstractItemModel* source READ Source WRITE SetSource NOTIFY SourceChanged)
    /// Least time between two refreshes, in milliseconds.
    Q_PROPERTY(int interval READ Interval WRITE SetInterval NOTIFY IntervalChanged)
    /// Whether the view is looked at. Becoming active shows at once what changed meanwhile.
    Q_PROPERTY(bool active READ IsActive WRITE SetActive NOTIFY ActiveChanged)

public:
    explicit CSteadyTable(QObject* parent = nullptr);

    /// "SteadyTable" of the QML module "Kestrix.Charts" 1.0.
    static void RegisterQmlTypes();

    QAbstractItemModel* Source() const { return m_source; }
    void SetSource(QAbstractItemModel* source);
    int Interval() const { return m_interval; }
    void SetInterval(int interval);
    bool IsActive() const { return m_isActive; }
    void SetActive(bool active);

    QHash<int, QByteArray> roleNames() const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// The source's value of now; invalid for a row that the source has given up since the last refresh.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

signals:
    void SourceChanged();
    void IntervalChanged();
    void ActiveChanged();

private:
    void onSourceChanged();
    void refresh();
    int sourceRowCount() const;

    QPointer<QAbstractItemModel> m_source;
    QTimer m_timer;
    QElapsedTimer m_sinceRefresh;
    int m_interval = 100;
    int m_rowCount = 0;
    bool m_isActive = true;
    bool m_isStale = false;
};
