// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSampleClock.h"

#include <QtTest>

#include <limits>

class tst_CSampleClock : public QObject
{
    Q_OBJECT

private slots:
    void wholePeriods_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<qint64>("periodNs");
        QTest::newRow("1 Hz") << 1.0 << 1000000000LL;
        QTest::newRow("20 Hz") << 20.0 << 50000000LL;
        QTest::newRow("0.01 Hz") << 0.01 << 100000000000LL;
        QTest::newRow("12.5 Hz") << 12.5 << 80000000LL;
        QTest::newRow("1/0.0035 s") << 1 / 0.0035 << 3500000LL;
        QTest::newRow("100 kHz") << 100000.0 << 10000LL;
    }
    void wholePeriods()
    {
        QFETCH(double, rate);
        QFETCH(qint64, periodNs);
        const CSampleClock clock(rate);
        for (const quint64 index : {0ULL, 1ULL, 2ULL, 999ULL, 86400ULL * 1000})
            QCOMPARE(clock.OffsetNs(index), static_cast<qint64>(index) * periodNs);
    }

    // 3 samples take one second exactly, however many seconds have gone.
    void thirdsDoNotDrift()
    {
        const CSampleClock clock(3);
        QCOMPARE(clock.OffsetNs(1), 333333333LL);
        QCOMPARE(clock.OffsetNs(2), 666666666LL);
        QCOMPARE(clock.OffsetNs(3), 1000000000LL);
        QCOMPARE(clock.OffsetNs(3000000000ULL), 1000000000000000000LL);
    }

    void sevenths()
    {
        const CSampleClock clock(2000.0 / 7);
        QCOMPARE(clock.OffsetNs(2000ULL * 1000000), 7000000000000000LL);
    }

    void rateOfNoSenseIsOneHertz()
    {
        for (const double rate :
             {0.0, -5.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
            QCOMPARE(CSampleClock(rate).OffsetNs(2), 2000000000LL);
    }
};

QTEST_APPLESS_MAIN(tst_CSampleClock)
#include "tst_CSampleClock.moc"
