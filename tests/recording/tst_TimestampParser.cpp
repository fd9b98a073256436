// SPDX-License-Identifier: GPL-3.0-or-later
#include "TimestampParser.h"

#include <QtTest>

class tst_TimestampParser : public QObject
{
    Q_OBJECT

private slots:
    void parses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<quint32>("nanoseconds");
        const QDate day(2024, 3, 1);
        const QDateTime second(day, QTime(10, 11, 12));
        const auto row = [](const char* text, const QDateTime& time, quint32 nanoseconds) {
            QTest::newRow(text) << QString::fromUtf8(text) << time << nanoseconds;
        };
        row("2024.03.01T10:11:12.123456789", QDateTime(day, QTime(10, 11, 12, 123)), 123456789);
        row("2024.03.01T10:11:12.000000005", second, 5);
        row("2024.03.01T10:11:12.999999999", QDateTime(day, QTime(10, 11, 12, 999)), 999999999);
        row("2024.03.01T00:00:00.000000000", QDateTime(day, QTime(0, 0)), 0);
        row("2024.02.29T23:59:59.5", QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 500)), 500000000);
        // The fraction is padded or cut to nine digits.
        row("2024.03.01T10:11:12.1", QDateTime(day, QTime(10, 11, 12, 100)), 100000000);
        row("2024.03.01T10:11:12.", second, 0);
        row("2024.03.01T10:11:12.1234567899", QDateTime(day, QTime(10, 11, 12, 123)), 123456789);
        row("2024.03.01T10:11:12.12345678901234567890", QDateTime(day, QTime(10, 11, 12, 123)), 123456789);
        // What stands behind a second mark does not count.
        row("2024.03.01T10:11:12.5.7", QDateTime(day, QTime(10, 11, 12, 500)), 500000000);
        row("2024.03.01T10:11:12.5T9", QDateTime(day, QTime(10, 11, 12, 500)), 500000000);
        // A fraction that is no number is 0.
        row("2024.03.01T10:11:12.12x", second, 0);
        row("2024.03.01T10:11:12.-5", second, 0);
        // No "T", or no "." behind it.
        row("", QDateTime(), 0);
        row("2024.03.01 10:11:12.5", QDateTime(), 0);
        row("2024.03.01T10:11:12", QDateTime(), 0);
        row("12345", QDateTime(), 0);
        row("T", QDateTime(), 0);
        // A date that is none.
        row("2023.02.29T10:11:12.5", QDateTime(), 500000000);
        row("2024.13.01T10:11:12.5", QDateTime(), 500000000);
        row("0000.00.00T00:00:00.5", QDateTime(), 500000000);
        row("2024-03-01T10:11:12.5", QDateTime(), 500000000);
        row("T.", QDateTime(), 0);
        row("T.T", QDateTime(), 0);
        row("xxxx.xx.xxTxx:xx:xx.xxxxxxxxx", QDateTime(), 0);
    }

    void parses()
    {
        QFETCH(QString, text);
        QFETCH(QDateTime, time);
        QFETCH(quint32, nanoseconds);
        TimestampParser parser;
        for (int i = 0; i < 2; ++i) { // the second time with what the first one left behind
            CTimestampableResult result;
            parser.parse(text, result);
            QCOMPARE(result.Timestamp.isValid(), time.isValid());
            if (time.isValid())
                QCOMPARE(result.Timestamp, time);
            QCOMPARE(result.TimestampNanoseconds, nanoseconds);
        }
    }

    /// The remembered time must never be given for another one.
    void sequencesWithTheSamePartsStayApart()
    {
        TimestampParser parser;
        const QVector<QPair<QString, QDateTime>> sequence{
            {QStringLiteral("2024.03.01T10:11:12.001000000"), {QDate(2024, 3, 1), QTime(10, 11, 12, 1)}},
            {QStringLiteral("2024.03.01T10:11:12.001999999"), {QDate(2024, 3, 1), QTime(10, 11, 12, 1)}},
            {QStringLiteral("2024.03.02T10:11:12.001000000"), {QDate(2024, 3, 2), QTime(10, 11, 12, 1)}},
            {QStringLiteral("2024.02.30T10:11:12.001000000"), {}},
            {QStringLiteral("2024.03.02T10:11:12.001000000"), {QDate(2024, 3, 2), QTime(10, 11, 12, 1)}},
            {QStringLiteral("2024.03.02T10:11:13.001000000"), {QDate(2024, 3, 2), QTime(10, 11, 13, 1)}},
            {QStringLiteral("2025.03.02T10:11:13.001000000"), {QDate(2025, 3, 2), QTime(10, 11, 13, 1)}},
        };
        for (const auto& step : sequence) {
            CTimestampableResult result;
            parser.parse(step.first, result);
            QCOMPARE(result.Timestamp, step.second);
        }
    }

    void timeIsLocal()
    {
        CTimestampableResult result;
        TimestampParser().parse(u"2024.03.01T10:11:12.5", result);
        QCOMPARE(result.Timestamp.timeSpec(), Qt::LocalTime);
    }
};

QTEST_GUILESS_MAIN(tst_TimestampParser)
#include "tst_TimestampParser.moc"
