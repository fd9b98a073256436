// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogMessageList.h"
#include "CSettings.h"
#include "MetaObjectTable.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

using namespace MetaObjectTable;

class tst_CLogMessageList : public QObject
{
    Q_OBJECT

private slots:
    void messageSurface();
    void messageSettersEmitOnChange();
    void levelOfType_data();
    void levelOfType();
    void levelTexts();
    void roles();
    void dataOfEveryRole();
    void invalidOutsideRowsAndRoles();
    void dropsOneOldRowAtTheLimit();
    void loweredLimitDoesNotShorten();
    void limitOfZeroKeepsTheNewest();

private:
    static QSharedPointer<CLogMessage> message(const QString& text,
                                               CLogMessage::eLevel level = CLogMessage::INFO)
    {
        auto result = QSharedPointer<CLogMessage>::create();
        result->SetLevel(level);
        result->SetMessage(text);
        result->SetTimestamp(QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7, 89)));
        return result;
    }

    static QStringList lines(const char* text) { return QString::fromLatin1(text).split(QLatin1Char('|')); }

    static QStringList texts(const CLogMessageList& list)
    {
        QStringList result;
        for (int row = 0; row < list.rowCount(); ++row)
            result << list.data(list.index(row), 3).toString();
        return result;
    }

    CSettings m_settings{QStringLiteral("/nowhere")};
};

void tst_CLogMessageList::messageSurface()
{
    const QMetaObject& meta = CLogMessage::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"Level", "eLevel", ReadWrite},
                                                  {"Timestamp", "QDateTime", ReadWrite},
                                                  {"Message", "QString", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareEnum(
        meta, "eLevel", {{"DEBUG", 0}, {"INFO", 1}, {"WARNING", 2}, {"CRITICAL", 3}, {"FATAL", 4}}));
}

void tst_CLogMessageList::messageSettersEmitOnChange()
{
    qRegisterMetaType<CLogMessage::eLevel>();
    CLogMessage message;
    QCOMPARE(message.Level(), CLogMessage::DEBUG);
    QCOMPARE(message.Message(), QString());
    QSignalSpy level(&message, &CLogMessage::LevelChanged);
    QSignalSpy time(&message, &CLogMessage::TimestampChanged);
    QSignalSpy text(&message, &CLogMessage::MessageChanged);
    const QDateTime now = QDateTime::currentDateTime();
    for (int i = 0; i < 2; ++i) {
        message.SetLevel(CLogMessage::FATAL);
        message.SetTimestamp(now);
        message.SetMessage(QStringLiteral("a"));
    }
    QCOMPARE(level.count(), 1);
    QCOMPARE(time.count(), 1);
    QCOMPARE(time.at(0).at(0).toDateTime(), now);
    QCOMPARE(text.count(), 1);
    QCOMPARE(text.at(0).at(0).toString(), QStringLiteral("a"));
    QCOMPARE(message.Level(), CLogMessage::FATAL);
}

void tst_CLogMessageList::levelOfType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("level");
    QTest::newRow("debug") << int(QtDebugMsg) << "x" << 0;
    QTest::newRow("info") << int(QtInfoMsg) << "x" << 1;
    QTest::newRow("info with mark") << int(QtInfoMsg) << "qrc:/a.qml" << 1;
    QTest::newRow("warning") << int(QtWarningMsg) << "x" << 2;
    QTest::newRow("warning qrc:") << int(QtWarningMsg) << "at qrc:/x" << 0;
    QTest::newRow("warning qrc without colon") << int(QtWarningMsg) << "qrc /x" << 2;
    QTest::newRow("warning QQuick") << int(QtWarningMsg) << "QQuickItem: x" << 0;
    QTest::newRow("warning qquick") << int(QtWarningMsg) << "qquickItem: x" << 2;
    QTest::newRow("warning qml") << int(QtWarningMsg) << "file.qml:2" << 0;
    QTest::newRow("warning QML") << int(QtWarningMsg) << "file.QML:2" << 2;
    QTest::newRow("critical") << int(QtCriticalMsg) << "x" << 3;
    QTest::newRow("critical with mark") << int(QtCriticalMsg) << "qml" << 3;
    QTest::newRow("fatal") << int(QtFatalMsg) << "qml" << 4;
    QTest::newRow("none of the five") << 17 << "x" << 0;
}

void tst_CLogMessageList::levelOfType()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(int, level);
    QCOMPARE(int(CLogMessage::LevelOf(static_cast<QtMsgType>(type), text)), level);
}

void tst_CLogMessageList::levelTexts()
{
    QCOMPARE(CLogMessage::LevelText(CLogMessage::DEBUG), QStringLiteral("DEBUG"));
    QCOMPARE(CLogMessage::LevelText(CLogMessage::INFO), QStringLiteral("INFO"));
    QCOMPARE(CLogMessage::LevelText(CLogMessage::WARNING), QStringLiteral("WARN"));
    QCOMPARE(CLogMessage::LevelText(CLogMessage::CRITICAL), QStringLiteral("CRIT"));
    QCOMPARE(CLogMessage::LevelText(CLogMessage::FATAL), QStringLiteral("FATAL"));
}

void tst_CLogMessageList::roles()
{
    const CLogMessageList list(m_settings);
    const QHash<int, QByteArray> expected{{1, "timestamp"}, {2, "level"}, {3, "message"}};
    QCOMPARE(list.roleNames(), expected);
}

void tst_CLogMessageList::dataOfEveryRole()
{
    CLogMessageList list(m_settings);
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    list.Append(message(QStringLiteral("text"), CLogMessage::CRITICAL));
    QCOMPARE(list.rowCount(), 1);
    const QModelIndex index = list.index(0);
    QCOMPARE(list.data(index, 1), QVariant(QStringLiteral("2026-03-04T05:06:07.089")));
    QCOMPARE(list.data(index, 2), QVariant(3));
    QCOMPARE(list.data(index, 3), QVariant(QStringLiteral("text")));
}

void tst_CLogMessageList::invalidOutsideRowsAndRoles()
{
    CLogMessageList list(m_settings);
    list.Append(message(QStringLiteral("text")));
    for (const int role : {-1, 0, 4, int(Qt::UserRole), int(Qt::UserRole) + 1})
        QVERIFY(!list.data(list.index(0), role).isValid());
    QVERIFY(!list.data(list.index(1), 3).isValid());
    QVERIFY(!list.data(QModelIndex(), 3).isValid());

    // An index that outlived its row.
    m_settings.SetLogMaxHistoryCount(1);
    CLogMessageList other(m_settings);
    other.Append(message(QStringLiteral("a")));
    const QModelIndex index = other.index(0);
    QVERIFY(other.data(index, 3).isValid());
    CLogMessageList empty(m_settings);
    QVERIFY(!empty.data(index, 3).isValid());
    m_settings.SetLogMaxHistoryCount(200);
}

void tst_CLogMessageList::dropsOneOldRowAtTheLimit()
{
    m_settings.SetLogMaxHistoryCount(3);
    CLogMessageList list(m_settings);
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy removed(&list, &CLogMessageList::rowsRemoved);
    QSignalSpy inserted(&list, &CLogMessageList::rowsInserted);
    QSignalSpy reset(&list, &CLogMessageList::modelReset);
    for (const char* text : {"a", "b", "c"})
        list.Append(message(QLatin1String(text)));
    QCOMPARE(removed.count(), 0);
    list.Append(message(QStringLiteral("d")));

    QCOMPARE(texts(list), lines("b|c|d"));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.at(0).at(1).toInt(), 0);
    QCOMPARE(removed.at(0).at(2).toInt(), 0);
    QCOMPARE(inserted.count(), 4);
    QCOMPARE(inserted.at(3).at(1).toInt(), 2);
    QCOMPARE(inserted.at(3).at(2).toInt(), 2);
    QCOMPARE(reset.count(), 0);
    m_settings.SetLogMaxHistoryCount(200);
}

void tst_CLogMessageList::loweredLimitDoesNotShorten()
{
    CLogMessageList list(m_settings);
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (const char* text : {"a", "b", "c"})
        list.Append(message(QLatin1String(text)));
    m_settings.SetLogMaxHistoryCount(1);
    list.Append(message(QStringLiteral("d")));
    QCOMPARE(texts(list), lines("b|c|d"));
    m_settings.SetLogMaxHistoryCount(200);
}

void tst_CLogMessageList::limitOfZeroKeepsTheNewest()
{
    m_settings.SetLogMaxHistoryCount(0);
    CLogMessageList list(m_settings);
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (const char* text : {"a", "b", "c"}) {
        list.Append(message(QLatin1String(text)));
        QCOMPARE(texts(list), QStringList{QLatin1String(text)});
    }
    m_settings.SetLogMaxHistoryCount(200);
}

QTEST_GUILESS_MAIN(tst_CLogMessageList)
#include "tst_CLogMessageList.moc"
