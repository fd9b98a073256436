// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFieldsHistory.h"
#include "ChartFixtures.h"
#include "CpuTimer.h"

#include <QTest>

#include <limits>
#include <random>
#include <vector>

namespace {

/// The walks as they are told, over plain X values.
int walkedLower(const std::vector<double>& x, double value)
{
    for (int i = static_cast<int>(x.size()) - 1; i >= 1; --i) {
        if (value >= x[static_cast<std::size_t>(i)])
            return i;
    }
    return 0;
}

int walkedUpper(const std::vector<double>& x, double value)
{
    if (x.empty())
        return 0;
    if (value >= x.back())
        return static_cast<int>(x.size()) - 1;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (value <= x[i])
            return static_cast<int>(i);
    }
    return static_cast<int>(x.size()) - 1;
}

/// X values by hand: stamps of the results still in the history, counted from `origin`.
std::vector<double> xValues(const CFieldsHistory& history, double origin)
{
    std::vector<double> values;
    for (const auto& result : history.Raw())
        values.push_back(static_cast<double>(result->Timestamp.toMSecsSinceEpoch() / 1000) +
                         result->TimestampNanoseconds / 1e9 - origin);
    return values;
}

} // namespace

class tst_CFieldsHistory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void emptyHistory();
    void resultsAreShared();
    void valuesOfTheSeries();
    void searchesEqualWalks_data();
    void searchesEqualWalks();
    void searchIsFastInALongHistory();
    void fractionCountsOnce();
    void timeStampsOfLocalTime();
    void hourThatComesTwice();
    void timeBeforeTheEpoch();
    void indexOutside();

private:
    CFieldsHistory m_history;
};

void tst_CFieldsHistory::init()
{
    m_history = CFieldsHistory();
}

void tst_CFieldsHistory::emptyHistory()
{
    QCOMPARE(m_history.LowerIndex(1.0), 0);
    QCOMPARE(m_history.UpperIndex(1.0), 0);
    m_history.MoveOriginToOldest();
}

void tst_CFieldsHistory::resultsAreShared()
{
    const auto result = makeResult(0, {1, 2, 3, 4, 5, 6});
    m_history.AppendRaw(result);
    m_history.AppendFiltered(result);
    QCOMPARE(m_history.Raw().front().data(), result.data());
    QCOMPARE(m_history.Filtered().front().data(), result.data());
    m_history.DropOldest();
    QVERIFY(m_history.Raw().empty() && m_history.Filtered().empty());
    QVERIFY(m_history.TimeStamps().empty() && m_history.Values().empty());
}

void tst_CFieldsHistory::valuesOfTheSeries()
{
    m_history.AppendFiltered(makeResult(0, {50.0F, 49.0F, 1.0F, 2.0F, 3.0F, 0.1F}));
    const FieldSeries::Values expected{50.0F, 49.0F, 1.0F, 2.0F, 3.0F, 50.0F - 0.1F, 50.0F + 0.1F};
    QCOMPARE(m_history.Values().front(), expected);
}

void tst_CFieldsHistory::searchesEqualWalks_data()
{
    QTest::addColumn<int>("seed");
    QTest::addColumn<int>("length");
    QTest::addColumn<double>("backwardShare");
    QTest::addColumn<double>("tieShare");
    QTest::newRow("one") << 1 << 1 << 0.0 << 0.0;
    QTest::newRow("two") << 2 << 2 << 0.0 << 0.0;
    QTest::newRow("rising") << 3 << 300 << 0.0 << 0.0;
    QTest::newRow("with ties") << 4 << 300 << 0.0 << 0.6;
    QTest::newRow("all equal") << 5 << 50 << 0.0 << 1.0;
    QTest::newRow("one step back somewhere") << 6 << 300 << 0.005 << 0.1;
    QTest::newRow("clock runs wild") << 7 << 200 << 0.5 << 0.1;
    QTest::newRow("always back") << 8 << 100 << 1.0 << 0.0;
}

void tst_CFieldsHistory::searchesEqualWalks()
{
    QFETCH(int, seed);
    QFETCH(int, length);
    QFETCH(double, backwardShare);
    QFETCH(double, tieShare);
    std::mt19937 engine(static_cast<unsigned>(seed));
    std::uniform_real_distribution<double> share(0.0, 1.0);
    std::uniform_int_distribution<qint64> advance(1, 40000000);
    qint64 now = 0;
    for (int i = 0; i < length; ++i) {
        m_history.AppendRaw(makeResult(now, {}));
        if (share(engine) >= tieShare)
            now += share(engine) < backwardShare ? -advance(engine) : advance(engine);
    }
    // Entries that fall off the front, and the origin that follows them or does not
    for (int round = 0; round < 4 && !m_history.Raw().empty(); ++round) {
        if (round % 2 == 0)
            m_history.MoveOriginToOldest();
        const double origin = m_history.TimeStamps().front() - m_history.X(0);
        const std::vector<double> x = xValues(m_history, origin);
        std::vector<double> probes{-1e9, 1e9, std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity()};
        for (const double value : x) {
            probes.push_back(value);
            probes.push_back(std::nextafter(value, 1e9));
            probes.push_back(std::nextafter(value, -1e9));
            probes.push_back(value + (share(engine) - 0.5) * 0.1);
        }
        for (const double probe : probes) {
            QCOMPARE(m_history.LowerIndex(probe), walkedLower(x, probe));
            QCOMPARE(m_history.UpperIndex(probe), walkedUpper(x, probe));
        }
        for (int i = 0; i < length / 4; ++i)
            m_history.DropOldest();
    }
}

/// A walk over all of it would take some 10 s here.
void tst_CFieldsHistory::searchIsFastInALongHistory()
{
    constexpr int kLength = 120000;
    for (int i = 0; i < kLength; ++i)
        m_history.AppendRaw(makeResult(i * qint64{100000}, {}));
    m_history.MoveOriginToOldest();
    const CpuTimer timer;
    qint64 sum = 0;
    for (int i = 0; i < 100000; ++i)
        sum += m_history.LowerIndex(i * 1e-4 * 0.5) + m_history.UpperIndex(i * 1e-4 * 1.1);
    QVERIFY(sum > 0);
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
}

void tst_CFieldsHistory::fractionCountsOnce()
{
    auto result = makeResult(0, {});
    result->Timestamp = QDateTime::fromMSecsSinceEpoch(kBaseSecond * 1000 + 750);
    result->TimestampNanoseconds = 750000000;
    m_history.AppendRaw(result);
    QCOMPARE(m_history.TimeStamps().front(), static_cast<double>(kBaseSecond) + 0.75);
}

/// A new second is converted whatever differs: the second, the day or the kind of time.
void tst_CFieldsHistory::timeStampsOfLocalTime()
{
    QVector<QDateTime> times;
    for (const qint64 second :
         {qint64{0}, qint64{0}, qint64{1}, qint64{86401}, qint64{1}, qint64{15552000}}) {
        for (const int ms : {0, 999}) {
            times.append(QDateTime::fromMSecsSinceEpoch((kBaseSecond + second) * 1000 + ms));
            times.append(QDateTime::fromMSecsSinceEpoch((kBaseSecond + second) * 1000 + ms, Qt::UTC));
            times.append(
                QDateTime::fromMSecsSinceEpoch((kBaseSecond + second) * 1000 + ms, Qt::OffsetFromUTC, 5400));
        }
    }
    for (const QDateTime& time : qAsConst(times)) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        result->Timestamp = time;
        m_history.AppendRaw(result);
        QCOMPARE(m_history.TimeStamps().back(), static_cast<double>(time.toMSecsSinceEpoch() / 1000));
    }
    auto invalid = QSharedPointer<CFieldIntensityResult>::create();
    invalid->TimestampNanoseconds = 500000000;
    m_history.AppendRaw(invalid);
    QCOMPARE(m_history.TimeStamps().back(),
             static_cast<double>(QDateTime().toMSecsSinceEpoch() / 1000) + 0.5);
}

/// Both seconds read 02:30:00 on the clock.
void tst_CFieldsHistory::hourThatComesTwice()
{
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "Europe/Paris");
    tzset();
    const qint64 summer = 1603585800;
    for (const qint64 second : {summer, summer + 3600, summer, summer + 3600}) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        result->Timestamp = QDateTime::fromMSecsSinceEpoch(second * 1000);
        m_history.AppendRaw(result);
        QCOMPARE(m_history.TimeStamps().back(), static_cast<double>(second));
    }
    if (zone.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", zone);
    tzset();
}

void tst_CFieldsHistory::timeBeforeTheEpoch()
{
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    result->Timestamp = QDateTime::fromMSecsSinceEpoch(-2500);
    result->TimestampNanoseconds = 500000000;
    m_history.AppendRaw(result);
    QCOMPARE(m_history.TimeStamps().front(), -2.5);
}

void tst_CFieldsHistory::indexOutside()
{
    m_history.AppendRaw(makeResult(0, {}));
    QVERIFY_EXCEPTION_THROWN(m_history.X(1), std::out_of_range);
}

QTEST_GUILESS_MAIN(tst_CFieldsHistory)
#include "tst_CFieldsHistory.moc"
