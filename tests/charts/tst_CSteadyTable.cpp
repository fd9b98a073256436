// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSteadyTable.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>

namespace {

/// A model that replaces its rows as live tables do: all are removed, then as many or others come.
class BlockModel : public QStringListModel
{
public:
    using QStringListModel::QStringListModel;

    void replace(const QStringList& rows)
    {
        removeRows(0, rowCount());
        insertRows(0, rows.size());
        for (int row = 0; row < rows.size(); ++row)
            setData(index(row), rows.at(row));
    }
};

/// The changes that a view of the table is told of.
struct Told
{
    explicit Told(CSteadyTable& table)
        : inserted(&table, &QAbstractItemModel::rowsInserted),
          removed(&table, &QAbstractItemModel::rowsRemoved),
          changed(&table, &QAbstractItemModel::dataChanged), reset(&table, &QAbstractItemModel::modelReset)
    {
    }
    QVector<int> counts() const
    {
        return {inserted.count(), removed.count(), changed.count(), reset.count()};
    }

    QSignalSpy inserted;
    QSignalSpy removed;
    QSignalSpy changed;
    QSignalSpy reset;
};

QStringList rowsOf(const CSteadyTable& table)
{
    QStringList rows;
    for (int row = 0; row < table.rowCount(); ++row)
        rows << table.data(table.index(row, 0)).toString();
    return rows;
}

void passEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

} // namespace

class tst_CSteadyTable : public QObject
{
    Q_OBJECT

private slots:
    void showsTheSourceAsItIs();
    void rowsThatStayAreTheSameRowsWithNewValues();
    void moreAndFewerRowsAreInsertedAndRemovedAtTheEnd();
    void manyChangesAreOneInAnInterval();
    void nobodyIsToldWhileNobodyLooks();
    void aRowThatTheSourceGaveUpHasNoValue();
    void survivesItsSource();
};

void tst_CSteadyTable::showsTheSourceAsItIs()
{
    BlockModel source({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    CSteadyTable table;
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(table.columnCount(), 0);
    const Told told(table);
    QSignalSpy sourceChanged(&table, &CSteadyTable::SourceChanged);

    table.SetSource(&source);
    QCOMPARE(rowsOf(table), QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    QCOMPARE(table.columnCount(), 1);
    QCOMPARE(table.roleNames(), source.roleNames());
    QCOMPARE(told.counts(), QVector<int>({0, 0, 0, 1}));
    QCOMPARE(sourceChanged.count(), 1);
    QVERIFY(!table.data(table.index(0, 0), Qt::UserRole + 1).isValid());

    table.SetSource(&source);
    QCOMPARE(sourceChanged.count(), 1);
    table.SetSource(nullptr);
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(told.counts(), QVector<int>({0, 0, 0, 2}));
    source.replace({QStringLiteral("d")});
    passEvents();
    QCOMPARE(told.counts(), QVector<int>({0, 0, 0, 2}));
}

void tst_CSteadyTable::rowsThatStayAreTheSameRowsWithNewValues()
{
    BlockModel source({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    CSteadyTable table;
    table.SetSource(&source);
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const Told told(table);

    source.replace({QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f")});
    QCOMPARE(told.counts(), QVector<int>({0, 0, 0, 0}));
    passEvents();
    QCOMPARE(told.counts(), QVector<int>({0, 0, 1, 0}));
    QCOMPARE(told.changed.first().at(0).toModelIndex(), table.index(0, 0));
    QCOMPARE(told.changed.first().at(1).toModelIndex(), table.index(2, 0));
    QCOMPARE(rowsOf(table), QStringList({QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f")}));
}

void tst_CSteadyTable::moreAndFewerRowsAreInsertedAndRemovedAtTheEnd()
{
    BlockModel source({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    CSteadyTable table;
    table.SetInterval(0);
    table.SetSource(&source);
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const Told told(table);

    source.replace({QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f"), QStringLiteral("g"),
                    QStringLiteral("h")});
    passEvents();
    QCOMPARE(told.counts(), QVector<int>({1, 0, 1, 0}));
    QCOMPARE(told.inserted.first().mid(1), QVariantList({3, 4}));
    QCOMPARE(rowsOf(table), QStringList({QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f"),
                                         QStringLiteral("g"), QStringLiteral("h")}));

    source.replace({QStringLiteral("i")});
    QTRY_COMPARE(told.counts(), QVector<int>({1, 1, 2, 0}));
    QCOMPARE(told.removed.first().mid(1), QVariantList({1, 4}));
    QCOMPARE(rowsOf(table), QStringList({QStringLiteral("i")}));

    source.replace({});
    QTRY_COMPARE(told.counts(), QVector<int>({1, 2, 2, 0}));
    QCOMPARE(table.rowCount(), 0);
}

void tst_CSteadyTable::manyChangesAreOneInAnInterval()
{
    constexpr int kInterval = 400;
    BlockModel source({QStringLiteral("0")});
    CSteadyTable table;
    QSignalSpy intervalChanged(&table, &CSteadyTable::IntervalChanged);
    table.SetInterval(kInterval);
    table.SetInterval(kInterval);
    QCOMPARE(intervalChanged.count(), 1);
    QCOMPARE(table.Interval(), kInterval);
    table.SetSource(&source);
    const Told told(table);

    source.replace({QStringLiteral("1")});
    passEvents();
    QCOMPARE(told.changed.count(), 1);
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    int value = 1;
    while (told.changed.count() == 1) {
        source.replace({QString::number(++value)});
        QTest::qWait(1);
    }
    // The clock starts after the table's own, by less than the tolerance.
    QVERIFY2(sinceFirst.elapsed() >= kInterval - 100, qPrintable(QString::number(sinceFirst.elapsed())));
    QVERIFY(value > 3);
    QCOMPARE(rowsOf(table), QStringList({QString::number(value)}));
}

void tst_CSteadyTable::nobodyIsToldWhileNobodyLooks()
{
    BlockModel source({QStringLiteral("a")});
    CSteadyTable table;
    table.SetInterval(0);
    table.SetSource(&source);
    const Told told(table);
    QSignalSpy activeChanged(&table, &CSteadyTable::ActiveChanged);

    source.replace({QStringLiteral("b")});
    table.SetActive(false);
    source.replace({QStringLiteral("c"), QStringLiteral("d")});
    QTest::qWait(20);
    QCOMPARE(told.counts(), QVector<int>({0, 0, 0, 0}));

    table.SetActive(true);
    QCOMPARE(told.counts(), QVector<int>({1, 0, 1, 0}));
    QCOMPARE(rowsOf(table), QStringList({QStringLiteral("c"), QStringLiteral("d")}));
    QCOMPARE(activeChanged.count(), 2);

    table.SetActive(false);
    table.SetActive(true);
    QCOMPARE(told.counts(), QVector<int>({1, 0, 1, 0}));
}

void tst_CSteadyTable::aRowThatTheSourceGaveUpHasNoValue()
{
    BlockModel source({QStringLiteral("a"), QStringLiteral("b")});
    CSteadyTable table;
    table.SetSource(&source);
    source.removeRows(1, 1);
    QCOMPARE(table.rowCount(), 2);
    QVERIFY(!table.data(table.index(1, 0)).isValid());
    QCOMPARE(table.data(table.index(0, 0)).toString(), QStringLiteral("a"));
}

void tst_CSteadyTable::survivesItsSource()
{
    CSteadyTable table;
    {
        BlockModel source({QStringLiteral("a"), QStringLiteral("b")});
        table.SetSource(&source);
    }
    const Told told(table);
    QVERIFY(!table.data(table.index(0, 0)).isValid());
    QVERIFY(table.Source() == nullptr);
    passEvents();
    QCOMPARE(told.counts(), QVector<int>({0, 1, 0, 0}));
    QCOMPARE(table.rowCount(), 0);
}

QTEST_GUILESS_MAIN(tst_CSteadyTable)
#include "tst_CSteadyTable.moc"
