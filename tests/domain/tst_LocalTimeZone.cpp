// SPDX-License-Identifier: GPL-3.0-or-later
#include "LocalTimeZone.h"

#include <QDateTime>
#include <QtTest>

class tst_LocalTimeZone : public QObject
{
    Q_OBJECT

private slots:
    void keepsWhatIsSet()
    {
        qputenv("TZ", "Pacific/Chatham");
        keepLocalTimeZone();
        QCOMPARE(qgetenv("TZ"), QByteArray("Pacific/Chatham"));
        QCOMPARE(QDateTime(QDate(2024, 7, 1), QTime(12, 0)).offsetFromUtc(), 12 * 3600 + 45 * 60);
    }

    void localTimeStaysTheSystems()
    {
        qunsetenv("TZ");
        QVector<qint64> before;
        for (int month = 1; month <= 12; ++month)
            before << QDateTime(QDate(2024, month, 1), QTime(12, 0)).toMSecsSinceEpoch();
        keepLocalTimeZone();
#ifdef Q_OS_LINUX
        QCOMPARE(qgetenv("TZ"), QByteArray(":/etc/localtime"));
#endif
        for (int month = 1; month <= 12; ++month)
            QCOMPARE(QDateTime(QDate(2024, month, 1), QTime(12, 0)).toMSecsSinceEpoch(), before[month - 1]);
    }
};

QTEST_GUILESS_MAIN(tst_LocalTimeZone)
#include "tst_LocalTimeZone.moc"
