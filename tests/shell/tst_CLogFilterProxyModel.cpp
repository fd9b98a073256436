// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogFilterProxyModel.h"
#include "CLogMessageList.h"
#include "CSettings.h"
#include "MetaObjectTable.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QtTest>

using namespace MetaObjectTable;

class tst_CLogFilterProxyModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void minLevelEmitsOnChange();
    void passesAllAtFirst();
    void minLevelNarrows_data();
    void minLevelNarrows();
    void textIsFoundAnywhereInAnyCase();
    void textIsNoPattern();
    void textAndLevelBothApply();
    void newRowsAreFiltered();
    void rowWithoutLevelFails();
    void setFilterStringIsInvokable();

private:
    static void append(CLogMessageList& list, CLogMessage::eLevel level, const char* text)
    {
        auto message = QSharedPointer<CLogMessage>::create();
        message->SetLevel(level);
        message->SetMessage(QString::fromUtf8(text));
        message->SetTimestamp(QDateTime::currentDateTime());
        list.Append(message);
    }

    static void fill(CLogMessageList& list)
    {
        append(list, CLogMessage::DEBUG, "Alpha");
        append(list, CLogMessage::INFO, "beta alpha");
        append(list, CLogMessage::WARNING, "gamma");
        append(list, CLogMessage::CRITICAL, "the ALPHAbet");
        append(list, CLogMessage::FATAL, "a.*a");
    }

    static QStringList lines(const char* text) { return QString::fromLatin1(text).split(QLatin1Char('|')); }

    static QStringList texts(const CLogFilterProxyModel& proxy)
    {
        QStringList result;
        for (int row = 0; row < proxy.rowCount(); ++row)
            result << proxy.index(row, 0).data(3).toString();
        return result;
    }

    CSettings m_settings{QStringLiteral("/nowhere")};
};

void tst_CLogFilterProxyModel::surface()
{
    const QMetaObject& meta = CLogFilterProxyModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"MinLevel", "int", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot, {"OnMinLevelChanged()"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Signal, {"MinLevelChanged(int)"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Method, {"setFilterString(QString)"}));
}

void tst_CLogFilterProxyModel::minLevelEmitsOnChange()
{
    CLogFilterProxyModel proxy;
    QCOMPARE(proxy.MinLevel(), 0);
    QSignalSpy changed(&proxy, &CLogFilterProxyModel::MinLevelChanged);
    proxy.SetMinLevel(0);
    QCOMPARE(changed.count(), 0);
    proxy.SetMinLevel(3);
    proxy.SetMinLevel(3);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 3);
}

void tst_CLogFilterProxyModel::passesAllAtFirst()
{
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    proxy.setSourceModel(&list);
    fill(list);
    QCOMPARE(proxy.rowCount(), 5);
}

void tst_CLogFilterProxyModel::minLevelNarrows_data()
{
    QTest::addColumn<int>("minLevel");
    QTest::addColumn<int>("rows");
    QTest::newRow("below all") << -1 << 5;
    QTest::newRow("debug") << 0 << 5;
    QTest::newRow("info") << 1 << 4;
    QTest::newRow("warning") << 2 << 3;
    QTest::newRow("critical") << 3 << 2;
    QTest::newRow("fatal") << 4 << 1;
    QTest::newRow("above all") << 5 << 0;
}

void tst_CLogFilterProxyModel::minLevelNarrows()
{
    QFETCH(int, minLevel);
    QFETCH(int, rows);
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.setSourceModel(&list);
    fill(list);
    proxy.SetMinLevel(minLevel);
    QCOMPARE(proxy.rowCount(), rows);
    proxy.SetMinLevel(0);
    QCOMPARE(proxy.rowCount(), 5);
}

void tst_CLogFilterProxyModel::textIsFoundAnywhereInAnyCase()
{
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    proxy.setSourceModel(&list);
    fill(list);
    proxy.setFilterString(QStringLiteral("aLpHa"));
    QCOMPARE(texts(proxy), lines("Alpha|beta alpha|the ALPHAbet"));
    proxy.setFilterString(QString());
    QCOMPARE(proxy.rowCount(), 5);
    proxy.setFilterString(QStringLiteral("nothing like it"));
    QCOMPARE(proxy.rowCount(), 0);
}

void tst_CLogFilterProxyModel::textIsNoPattern()
{
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    proxy.setSourceModel(&list);
    fill(list);
    proxy.setFilterString(QStringLiteral("a.*a"));
    QCOMPARE(texts(proxy), lines("a.*a"));
}

void tst_CLogFilterProxyModel::textAndLevelBothApply()
{
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    proxy.setSourceModel(&list);
    fill(list);
    proxy.setFilterString(QStringLiteral("alpha"));
    proxy.SetMinLevel(CLogMessage::INFO);
    QCOMPARE(texts(proxy), lines("beta alpha|the ALPHAbet"));
    proxy.SetMinLevel(CLogMessage::CRITICAL);
    QCOMPARE(texts(proxy), lines("the ALPHAbet"));
    proxy.setFilterString(QString());
    QCOMPARE(texts(proxy), lines("the ALPHAbet|a.*a"));
}

void tst_CLogFilterProxyModel::newRowsAreFiltered()
{
    m_settings.SetLogMaxHistoryCount(2);
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.setSourceModel(&list);
    proxy.SetMinLevel(CLogMessage::WARNING);
    append(list, CLogMessage::FATAL, "one");
    append(list, CLogMessage::INFO, "two");
    QCOMPARE(texts(proxy), lines("one"));
    append(list, CLogMessage::WARNING, "three");
    QCOMPARE(texts(proxy), lines("three"));
    m_settings.SetLogMaxHistoryCount(200);
}

void tst_CLogFilterProxyModel::rowWithoutLevelFails()
{
    QStandardItemModel source;
    auto* without = new QStandardItem;
    without->setData(QStringLiteral("text"), 3);
    source.appendRow(without);
    auto* withText = new QStandardItem;
    withText->setData(QStringLiteral("not a level"), 2);
    source.appendRow(withText);
    auto* with = new QStandardItem;
    with->setData(0, 2);
    source.appendRow(with);

    CLogFilterProxyModel proxy;
    proxy.SetMinLevel(-5);
    proxy.setSourceModel(&source);
    QCOMPARE(proxy.rowCount(), 1);
    QCOMPARE(proxy.mapToSource(proxy.index(0, 0)).row(), 2);
}

void tst_CLogFilterProxyModel::setFilterStringIsInvokable()
{
    CLogMessageList list(m_settings);
    CLogFilterProxyModel proxy;
    proxy.setSourceModel(&list);
    fill(list);
    QVERIFY(QMetaObject::invokeMethod(&proxy, "setFilterString", Q_ARG(QString, QStringLiteral("gam"))));
    QCOMPARE(texts(proxy), lines("gamma"));
    QCOMPARE(proxy.filterRole(), 3);
    QCOMPARE(proxy.filterCaseSensitivity(), Qt::CaseInsensitive);
}

QTEST_GUILESS_MAIN(tst_CLogFilterProxyModel)
#include "tst_CLogFilterProxyModel.moc"
