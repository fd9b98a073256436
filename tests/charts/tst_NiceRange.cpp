// SPDX-License-Identifier: GPL-3.0-or-later
#include "NiceRange.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <random>

namespace {

/// The same rule by another road: the tick is searched in a list of candidates, with 80-bit arithmetic.
NiceRange searchedRange(double yMin, double yMax, int ticks)
{
    const long double raw = (static_cast<long double>(yMax) - yMin) / (ticks - 1);
    long double tick = 0.0L;
    for (int decade = -30; decade <= 40 && tick == 0.0L; ++decade) {
        const long double power = powl(10.0L, decade);
        if (raw < 1.5L * power)
            tick = power;
        else if (raw < 3.0L * power)
            tick = 2.0L * power;
        else if (raw < 7.0L * power)
            tick = 5.0L * power;
    }
    const long long low = static_cast<long long>(floorl(yMin / tick));
    const long long high = static_cast<long long>(ceill(yMax / tick));
    long long count = high - low + 1;
    if (count > 11)
        count = (high - low) / 2 + 1;
    return {static_cast<double>(low * tick), static_cast<double>(high * tick), static_cast<int>(count)};
}

} // namespace

class tst_NiceRange : public QObject
{
    Q_OBJECT

private slots:
    void knownRanges_data();
    void knownRanges();
    void equalsSearchedRange();
    void dependsOnTheTicksBefore();
    void flatSignalHasNoRange();
    void recoversFromOneTick();
    void unusableEndsGiveOneTick();
    void margins_data();
    void margins();
};

void tst_NiceRange::knownRanges_data()
{
    QTest::addColumn<double>("yMin");
    QTest::addColumn<double>("yMax");
    QTest::addColumn<int>("ticksBefore");
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<int>("ticks");
    // x = 0.1: f = 1, tick 0.1
    QTest::newRow("unit") << 0.0 << 1.0 << 11 << 0.0 << 1.0 << 11;
    // x = 0.15 would be the threshold: 1.4 / 10 is below, tick 0.1, 15 ticks halve to 14 / 2 + 1
    QTest::newRow("factor 1 halves") << 0.0 << 1.4 << 11 << 0.0 << 1.4 << 8;
    // x = 0.16: tick 0.2
    QTest::newRow("factor 2") << 0.0 << 1.6 << 11 << 0.0 << 1.6 << 9;
    // x = 0.29: tick 0.2, ceil(14.5) = 15 intervals, integer half 7
    QTest::newRow("factor 2 odd half") << 0.0 << 2.9 << 11 << 0.0 << 3.0 << 8;
    // x = 1.5, 3 and 7: the thresholds belong to the larger ticks, 2, 5 and 10
    QTest::newRow("threshold of 2") << 0.0 << 15.0 << 11 << 0.0 << 16.0 << 9;
    QTest::newRow("threshold of 5") << 0.0 << 30.0 << 11 << 0.0 << 30.0 << 7;
    QTest::newRow("threshold of 10") << -5.0 << 65.0 << 11 << -10.0 << 70.0 << 9;
    // x = 0.4: tick 0.5
    QTest::newRow("factor 5") << -1.2 << 2.8 << 11 << -1.5 << 3.0 << 10;
    // x = 0.8: tick 1
    QTest::newRow("factor 10") << -3.5 << 4.5 << 11 << -4.0 << 5.0 << 10;
    // x = 0.25 with five ticks: tick 0.2
    QTest::newRow("five ticks before") << 0.0 << 1.0 << 5 << 0.0 << 1.0 << 6;
    // x = 6 with two ticks: tick 5
    QTest::newRow("two ticks before") << 1.0 << 7.0 << 2 << 0.0 << 10.0 << 3;
}

void tst_NiceRange::knownRanges()
{
    QFETCH(double, yMin);
    QFETCH(double, yMax);
    QFETCH(int, ticksBefore);
    QFETCH(double, low);
    QFETCH(double, high);
    QFETCH(int, ticks);
    const NiceRange range = niceRange(yMin, yMax, ticksBefore);
    QVERIFY2(std::abs(range.min - low) < 1e-12, qPrintable(QString::number(range.min)));
    QVERIFY2(std::abs(range.max - high) < 1e-12, qPrintable(QString::number(range.max)));
    QCOMPARE(range.tickCount, ticks);
}

void tst_NiceRange::equalsSearchedRange()
{
    std::mt19937 engine(20);
    std::uniform_real_distribution<double> decade(-6.0, 6.0);
    std::uniform_real_distribution<double> place(-3.0, 3.0);
    std::uniform_int_distribution<int> ticks(2, 11);
    for (int i = 0; i < 20000; ++i) {
        const double span = std::pow(10.0, decade(engine));
        const double yMin = place(engine) * span;
        const double yMax = yMin + span;
        const int before = ticks(engine);
        const NiceRange range = niceRange(yMin, yMax, before);
        const NiceRange expected = searchedRange(yMin, yMax, before);
        const double tolerance = span * 1e-12;
        QVERIFY(std::abs(range.min - expected.min) < tolerance);
        QVERIFY(std::abs(range.max - expected.max) < tolerance);
        QCOMPARE(range.tickCount, expected.tickCount);
        QVERIFY(range.min <= yMin + tolerance && range.max >= yMax - tolerance);
    }
}

void tst_NiceRange::dependsOnTheTicksBefore()
{
    const NiceRange fine = niceRange(0.3, 9.7, 11);
    const NiceRange coarse = niceRange(0.3, 9.7, 3);
    QCOMPARE(fine.max, 10.0);
    QCOMPARE(fine.tickCount, 11);
    QCOMPARE(coarse.max, 10.0);
    QCOMPARE(coarse.tickCount, 3);
}

void tst_NiceRange::flatSignalHasNoRange()
{
    for (const double level : {0.0, 48.25, -3.0}) {
        const NiceRange range = niceRange(level, level, 11);
        QVERIFY(std::isnan(range.min));
        QVERIFY(std::isnan(range.max));
        QCOMPARE(range.tickCount, 1);
    }
}

void tst_NiceRange::recoversFromOneTick()
{
    for (const int ticks : {1, 0, -2147483647}) {
        const NiceRange range = niceRange(0.0, 1.0, ticks);
        QCOMPARE(range.min, 0.0);
        QCOMPARE(range.max, 1.0);
        QCOMPARE(range.tickCount, 11);
    }
}

void tst_NiceRange::unusableEndsGiveOneTick()
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    QCOMPARE(niceRange(kNan, 1.0, 11).tickCount, 1);
    QCOMPARE(niceRange(0.0, kInfinity, 11).tickCount, 1);
    QCOMPARE(niceRange(2.0, 1.0, 11).tickCount, 1);
    QVERIFY(std::isnan(niceRange(2.0, 1.0, 11).min));
    // Ends that differ in the last bit only, far from zero
    const double level = 1e15;
    QVERIFY(niceRange(level, std::nextafter(level, 2e15), 11).tickCount >= 1);
}

void tst_NiceRange::margins_data()
{
    QTest::addColumn<double>("span");
    QTest::addColumn<double>("margin");
    // The span goes up to 1, 2, 5 or 10 of its decade; half of that goes to the nearest of them.
    QTest::newRow("no span counts as 1") << 0.0 << 0.5;
    QTest::newRow("negative counts as 1") << -7.0 << 0.5;
    QTest::newRow("1 stays 1") << 1.0 << 0.5;
    QTest::newRow("above 1 is 2") << 1.1 << 1.0;
    QTest::newRow("2 stays 2") << 2.0 << 1.0;
    QTest::newRow("above 2 is 5, half 2.5 is 2") << 2.1 << 2.0;
    QTest::newRow("5 stays 5") << 5.0 << 2.0;
    QTest::newRow("above 5 is 10") << 5.1 << 5.0;
    QTest::newRow("10 stays 10") << 10.0 << 5.0;
    QTest::newRow("15") << 15.0 << 10.0;
    QTest::newRow("20") << 20.0 << 10.0;
    QTest::newRow("300") << 300.0 << 200.0;
    QTest::newRow("0.7") << 0.7 << 0.5;
    QTest::newRow("0.03") << 0.03 << 0.02;
}

void tst_NiceRange::margins()
{
    QFETCH(double, span);
    QFETCH(double, margin);
    const double actual = niceMargin(span);
    QVERIFY2(std::abs(actual - margin) <= 1e-15 * std::abs(margin),
             qPrintable(QString::number(actual, 'g', 17)));
}

QTEST_GUILESS_MAIN(tst_NiceRange)
#include "tst_NiceRange.moc"
