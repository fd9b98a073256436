// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBoardClock.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double kNs = 1e9;
constexpr qint64 kStartNs = 5000000000000; // the host has been up for a while

/// A board that takes readings at known times and a transmission that is not quite even.
class Board
{
public:
    explicit Board(double rate) : m_periodS(1 / rate) {}

    /// Device time is `scale` times seconds, fast by `drift`, from `offset` on, modulo `wrap`, in whole
    /// units.
    void HaveClock(double scale, double offset = 0, double drift = 0, double wrap = 0)
    {
        m_scale = scale;
        m_offset = offset;
        m_drift = drift;
        m_wrap = wrap;
    }
    void HaveJitter(double jitterS) { m_jitterS = jitterS; }

    /// `count` readings, `chunk` of which arrive together. x of a reading is its true time in seconds.
    void Send(int count, int chunk = 1)
    {
        QVector<BoardReading> readings;
        for (int i = 0; i < count; ++i) {
            readings.append(next());
            if (readings.size() == chunk) {
                Deliver(readings, m_timeS + m_jitterS * m_uniform(m_random));
                readings.clear();
            }
            m_timeS += m_periodS;
        }
        if (!readings.isEmpty())
            Deliver(readings, m_timeS);
    }
    /// Takes no reading for so long.
    void Pause(double s) { m_timeS += s; }
    /// Takes readings that get lost without a trace, or whose broken lines are seen.
    void Lose(int count, bool isSeen)
    {
        m_timeS += count * m_periodS;
        m_lost = isSeen ? count : 0;
    }
    /// `count` readings that are held up until the last of them.
    void HoldUp(int count)
    {
        QVector<BoardReading> readings;
        for (int i = 0; i < count; ++i) {
            readings.append(next());
            m_timeS += m_periodS;
        }
        // The system hands the first one over alone.
        Deliver({readings.first()}, m_timeS);
        Deliver(readings.mid(1), m_timeS);
    }
    void Restart() { m_offset = -m_timeS * m_scale; }

    void Deliver(const QVector<BoardReading>& readings, double arrivalS)
    {
        // The order of arrivals is that of sending.
        m_arrivalS = std::max(arrivalS, m_arrivalS + 1e-5);
        timed += clock.Arrive(readings, kStartNs + std::llround(m_arrivalS * kNs));
    }

    CBoardClock clock;
    QVector<TimedReading> timed;

private:
    BoardReading next()
    {
        BoardReading reading;
        reading.field.x = m_timeS;
        reading.lostBefore = m_lost;
        m_lost = 0;
        if (m_scale > 0) {
            double device = std::floor(m_timeS * (1 + m_drift) * m_scale + m_offset);
            if (m_wrap > 0)
                device = std::fmod(device, m_wrap);
            reading.deviceTime = device;
        }
        return reading;
    }

    double m_periodS;
    double m_scale = 0;
    double m_offset = 0;
    double m_drift = 0;
    double m_wrap = 0;
    double m_jitterS = 0;
    double m_timeS = 0;
    double m_arrivalS = -1;
    int m_lost = 0;
    std::mt19937 m_random{7};
    std::uniform_real_distribution<double> m_uniform{0, 1};
};

double errorS(const TimedReading& timed)
{
    return static_cast<double>(timed.timeNs - kStartNs) / kNs - timed.reading.field.x;
}

struct Errors
{
    double meanS = 0;
    double jitterS = 0; ///< standard deviation
    double largestS = 0;
};

Errors errorsOf(const QVector<TimedReading>& timed)
{
    Errors errors;
    double squares = 0;
    for (const TimedReading& reading : timed) {
        errors.meanS += errorS(reading) / timed.size();
        errors.largestS = std::max(errors.largestS, std::abs(errorS(reading)));
    }
    for (const TimedReading& reading : timed)
        squares += std::pow(errorS(reading) - errors.meanS, 2);
    errors.jitterS = std::sqrt(squares / timed.size());
    return errors;
}

bool advance(const QVector<TimedReading>& timed)
{
    return std::adjacent_find(timed.cbegin(), timed.cend(), [](const TimedReading& a, const TimedReading& b) {
               return a.timeNs >= b.timeNs;
           }) == timed.cend();
}

} // namespace

class tst_CBoardClock : public QObject
{
    Q_OBJECT

private slots:
    void lineIsThatOfLeastSquares();
    void oldPointsFade();
    void lineOfFewPoints();

    void arrivalsWithoutJitter();
    void jitterIsTakenOut_data();
    void jitterIsTakenOut();
    void slowBoards();
    void burstsKeepTheirRhythm();
    void readingsHeldUpAreNoGap();
    void gapsStayGaps_data();
    void gapsStayGaps();
    void pauseWhileLearning();

    void unitOfTheDeviceClock_data();
    void unitOfTheDeviceClock();
    void rateIsRefined_data();
    void rateIsRefined();
    void counterIsNoClock();
    void deviceClockThatIsFast();
    void deviceClockKeepsGaps();
    void deviceClockWraps_data();
    void deviceClockWraps();
    void deviceClockStartsAnew();
    void wildDeviceTime();
};

void tst_CBoardClock::lineIsThatOfLeastSquares()
{
    // Least squares through (0,1), (1,3), (2,4), (3,4): slope 1, mean (1.5, 3).
    CRunningLine line;
    line.Add(0, 1, 1);
    line.Add(1, 3, 1);
    line.Add(2, 4, 1);
    line.Add(3, 4, 1);
    QVERIFY(std::abs(line.Slope() - 1) < 1e-12);
    QVERIFY(std::abs(line.At(1.5) - 3) < 1e-12);
    QVERIFY(std::abs(line.At(10) - 11.5) < 1e-12);
    line.Shift(2, 5);
    QVERIFY(std::abs(line.At(12) - 16.5) < 1e-12);

    // Far from the origin, after many points, no digits are lost.
    CRunningLine far;
    for (int i = 0; i < 100000; ++i)
        far.Add(1e9 + i, 1e6 + i * 0.0035, 0.999);
    QVERIFY(std::abs(far.Slope() - 0.0035) < 1e-11);
    QVERIFY(std::abs(far.At(1e9 + 100000) - (1e6 + 350)) < 1e-8);
}

void tst_CBoardClock::oldPointsFade()
{
    // The textbook formulae, with weights of 1/4, 1/2 and 1.
    const double weights[] = {0.25, 0.5, 1};
    const double ys[] = {4, 0, 1};
    double w = 0;
    double mx = 0;
    double my = 0;
    for (int i = 0; i < 3; ++i) {
        w += weights[i];
        mx += weights[i] * i;
        my += weights[i] * ys[i];
    }
    mx /= w;
    my /= w;
    double sxy = 0;
    double sxx = 0;
    for (int i = 0; i < 3; ++i) {
        sxy += weights[i] * (i - mx) * (ys[i] - my);
        sxx += weights[i] * (i - mx) * (i - mx);
    }
    CRunningLine line;
    for (int i = 0; i < 3; ++i)
        line.Add(i, ys[i], 0.5);
    QVERIFY(std::abs(line.Slope() - sxy / sxx) < 1e-12);
    QVERIFY(std::abs(line.At(0) - (my - sxy / sxx * mx)) < 1e-12);
}

void tst_CBoardClock::lineOfFewPoints()
{
    CRunningLine line;
    QCOMPARE(line.At(3), 0.0);
    line.Add(5, 7, 1);
    QCOMPARE(line.Slope(), 0.0);
    QCOMPARE(line.At(100), 7.0);
    line.Add(5, 9, 1);
    QCOMPARE(line.Slope(), 0.0);
    QCOMPARE(line.At(5), 8.0);
}

void tst_CBoardClock::arrivalsWithoutJitter()
{
    Board board(250);
    board.Send(1000);
    QVERIFY(board.clock.IsSettled());
    QVERIFY(!board.clock.UsesDeviceTime());
    QVERIFY(std::abs(board.clock.Rate() - 250) < 1e-6);
    // The first second is for learning.
    QVERIFY(board.timed.size() > 700);
    QVERIFY(board.timed.first().reading.field.x < 1);
    QVERIFY(errorsOf(board.timed).largestS < 1e-6);
    QVERIFY(advance(board.timed));
}

void tst_CBoardClock::jitterIsTakenOut_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("jitterS");
    QTest::newRow("286 Hz, 3 ms") << 2000.0 / 7 << 0.003;
    QTest::newRow("100 Hz, 5 ms") << 100.0 << 0.005;
    QTest::newRow("1000 Hz, 2 ms") << 1000.0 << 0.002;
    QTest::newRow("20 Hz, 16 ms") << 20.0 << 0.016;
}

void tst_CBoardClock::jitterIsTakenOut()
{
    QFETCH(double, rate);
    QFETCH(double, jitterS);
    Board board(rate);
    board.HaveJitter(jitterS);
    board.Send(static_cast<int>(rate * 10));
    QVERIFY(advance(board.timed));
    const Errors errors = errorsOf(board.timed);
    qInfo("jitter %.3f ms of %.3f ms in arrivals", errors.jitterS * 1e3, jitterS / std::sqrt(12.0) * 1e3);
    // Even delays from 0 to J have a mean of J/2 and a deviation of J/sqrt(12).
    QVERIFY(std::abs(errors.meanS - jitterS / 2) < jitterS / 8);
    QVERIFY(errors.jitterS < jitterS / std::sqrt(12.0) / 3);
    QVERIFY(std::abs(board.clock.Rate() / rate - 1) < 2e-3);
}

void tst_CBoardClock::slowBoards()
{
    Board board(1);
    board.HaveJitter(0.05);
    board.Send(30);
    QVERIFY(board.clock.IsSettled());
    QVERIFY(board.timed.size() >= 25);
    QVERIFY(std::abs(board.clock.Rate() - 1) < 0.01);
    QVERIFY(errorsOf(board.timed).largestS < 0.1);
}

void tst_CBoardClock::burstsKeepTheirRhythm()
{
    // Sixteen readings at once: their arrivals tell nothing of what is between them.
    Board board(250);
    board.Send(2000, 16);
    QVERIFY(advance(board.timed));
    QVERIFY(errorsOf(board.timed).largestS < 1e-3);
    QVERIFY(std::abs(board.clock.Rate() / 250 - 1) < 1e-3);
}

void tst_CBoardClock::readingsHeldUpAreNoGap()
{
    Board board(250);
    board.HaveJitter(0.001);
    board.Send(500);
    board.HoldUp(30);
    board.Send(500);
    QVERIFY(advance(board.timed));
    QVERIFY(errorsOf(board.timed).largestS < 2e-3);
}

void tst_CBoardClock::gapsStayGaps_data()
{
    QTest::addColumn<double>("pauseS");
    QTest::addColumn<int>("lost");
    QTest::addColumn<bool>("isSeen");
    QTest::newRow("pause") << 0.5 << 0 << false;
    QTest::newRow("long pause") << 60.0 << 0 << false;
    QTest::newRow("pause out of rhythm") << 0.2017 << 0 << false;
    QTest::newRow("lost without a trace") << 0.0 << 40 << false;
    QTest::newRow("a few broken lines") << 0.0 << 3 << true;
    QTest::newRow("many broken lines") << 0.0 << 40 << true;
}

void tst_CBoardClock::gapsStayGaps()
{
    QFETCH(double, pauseS);
    QFETCH(int, lost);
    QFETCH(bool, isSeen);
    Board board(250);
    board.HaveJitter(0.001);
    board.Send(500);
    if (lost > 0)
        board.Lose(lost, isSeen);
    else
        board.Pause(pauseS);
    board.Send(500);
    QVERIFY(advance(board.timed));
    QVERIFY2(errorsOf(board.timed).largestS < 2.5e-3,
             qPrintable(QString::number(errorsOf(board.timed).largestS)));
    QVERIFY(std::abs(board.clock.Rate() / 250 - 1) < 1e-2);
}

void tst_CBoardClock::pauseWhileLearning()
{
    // A board that starts, prints a little, calibrates itself and goes on.
    Board board(250);
    board.Send(20);
    board.Pause(1.5);
    board.Send(500);
    QVERIFY(board.clock.IsSettled());
    QVERIFY(std::abs(board.clock.Rate() / 250 - 1) < 1e-3);
    QVERIFY(errorsOf(board.timed).largestS < 1e-3);
}

void tst_CBoardClock::unitOfTheDeviceClock_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("resolutionS");
    QTest::newRow("s") << 1.0 << 1.0;
    QTest::newRow("ms") << 1e3 << 1e-3;
    QTest::newRow("us") << 1e6 << 1e-6;
}

void tst_CBoardClock::unitOfTheDeviceClock()
{
    QFETCH(double, scale);
    QFETCH(double, resolutionS);
    // Whole seconds need a slow board.
    const double rate = scale > 1 ? 2000.0 / 7 : 0.5;
    Board board(rate);
    board.HaveClock(scale, 1e4 * scale);
    board.HaveJitter(scale > 1 ? 0.008 : 0.1);
    board.Send(scale > 1 ? 2000 : 60);
    QVERIFY(board.clock.IsSettled());
    QVERIFY(board.clock.UsesDeviceTime());
    QVERIFY(std::abs(board.clock.Rate() / rate - 1) < 1e-3);
    QVERIFY(advance(board.timed));
    // Better than the arrivals, and not better than the digits of the clock.
    const double jitterS = errorsOf(board.timed).jitterS;
    qInfo("jitter %.3f ms", jitterS * 1e3);
    QVERIFY(jitterS < std::max(resolutionS / std::sqrt(12.0) * 1.2, scale > 1 ? 5e-4 : 0.05));
}

void tst_CBoardClock::rateIsRefined_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("drift");
    QTest::addColumn<double>("pauseS");
    QTest::addColumn<double>("limit");
    // Even delays of 12 ms scatter by 3.5 ms; 23,000 of them, of which some 60 s count, tell a slope to
    // 0.0035 / (60 * sqrt(17000 / 12)), that is 2e-6, those of the first 0.7 s to 7e-4.
    QTest::newRow("by count") << 0.0 << 0.0 << 0.0 << 1e-5;
    // Where a pause ends is known to the delay of one arrival: 12 ms in 80 s, weighed in its middle.
    QTest::newRow("by count, with a pause") << 0.0 << 0.0 << 0.7 << 2.5e-4;
    QTest::newRow("board's clock") << 1e6 << 0.0 << 0.7 << 1e-5;
    // A millisecond at both ends of 80 s.
    QTest::newRow("board's clock of whole ms") << 1e3 << 0.0 << 0.7 << 2.5e-5;
    // A ceramic resonator is off by so much: the rate is that of the host's seconds.
    QTest::newRow("board's clock, fast") << 1e6 << 0.005 << 0.7 << 1e-5;
}

void tst_CBoardClock::rateIsRefined()
{
    QFETCH(double, scale);
    QFETCH(double, drift);
    QFETCH(double, pauseS);
    QFETCH(double, limit);
    const double rate = 2000.0 / 7;
    Board board(rate);
    if (scale > 0)
        board.HaveClock(scale, 0, drift);
    board.HaveJitter(0.012);
    while (!board.clock.IsSettled())
        board.Send(1);
    const double firstError = std::abs(board.clock.Rate() / rate - 1);
    board.Send(static_cast<int>(rate * 40));
    board.Pause(pauseS);
    board.Send(static_cast<int>(rate * 40));
    const double error = std::abs(board.clock.Rate() / rate - 1);
    qInfo("off by %.1e at first, then by %.1e", firstError, error);
    QVERIFY2(error < limit, qPrintable(QString::number(error)));
    QVERIFY(firstError < 6e-3);
}

void tst_CBoardClock::counterIsNoClock()
{
    // A column that counts samples grows, too.
    Board board(40);
    board.HaveClock(40);
    board.HaveJitter(0.002);
    board.Send(400);
    QVERIFY(board.clock.IsSettled());
    QVERIFY(!board.clock.UsesDeviceTime());
    QVERIFY(errorsOf(board.timed).largestS < 4e-3);
}

void tst_CBoardClock::deviceClockThatIsFast()
{
    Board board(100);
    board.HaveClock(1e6, 0, 0.005);
    board.HaveJitter(0.002);
    board.Send(6000);
    QVERIFY(board.clock.UsesDeviceTime());
    // In a minute it would be ahead by 300 ms.
    QVERIFY(errorsOf(board.timed).largestS < 5e-3);
}

void tst_CBoardClock::deviceClockKeepsGaps()
{
    Board board(100);
    board.HaveClock(1e3);
    board.HaveJitter(0.004);
    board.Send(200);
    board.Lose(1, false);
    board.Send(100);
    board.Pause(3);
    board.Send(200);
    QVERIFY(board.clock.UsesDeviceTime());
    QVERIFY(advance(board.timed));
    const Errors errors = errorsOf(board.timed);
    QVERIFY(errors.largestS < 5e-3);
    QVERIFY(errors.jitterS < 1e-3);
}

void tst_CBoardClock::deviceClockWraps_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("beforeS");
    QTest::newRow("us") << 1e6 << 2.0;
    QTest::newRow("ms") << 1e3 << 2.0;
    QTest::newRow("us, while learning") << 1e6 << 0.3;
}

void tst_CBoardClock::deviceClockWraps()
{
    QFETCH(double, scale);
    QFETCH(double, beforeS);
    const double wrap = 4294967296.0;
    Board board(200);
    board.HaveClock(scale, wrap - beforeS * scale, 0, wrap);
    board.HaveJitter(0.002);
    board.Send(1000);
    QVERIFY(board.clock.UsesDeviceTime());
    QVERIFY(advance(board.timed));
    QVERIFY(errorsOf(board.timed).largestS < 4e-3);
    // Across the wrap no time is lost and none is won.
    for (int i = 1; i < board.timed.size(); ++i) {
        const double stepS =
            static_cast<double>(board.timed.at(i).timeNs - board.timed.at(i - 1).timeNs) / kNs;
        QVERIFY(std::abs(stepS - 0.005) < 1.1e-3);
    }
}

void tst_CBoardClock::deviceClockStartsAnew()
{
    Board board(100);
    board.HaveClock(1e3, 7e6);
    board.HaveJitter(0.002);
    board.Send(300);
    board.Pause(1);
    board.Restart();
    board.Send(300);
    QVERIFY(board.clock.UsesDeviceTime());
    QVERIFY(advance(board.timed));
    QVERIFY(errorsOf(board.timed).largestS < 0.01);
}

void tst_CBoardClock::wildDeviceTime()
{
    Board board(100);
    board.HaveClock(1e3);
    board.Send(300);
    BoardReading wild;
    wild.field.x = 3;
    wild.deviceTime = 9e9;
    board.Deliver({wild}, 3);
    board.Pause(0.01);
    board.Send(300);
    QVERIFY(advance(board.timed));
    QVERIFY(errorsOf(board.timed).largestS < 0.02);
}

QTEST_APPLESS_MAIN(tst_CBoardClock)
#include "tst_CBoardClock.moc"
