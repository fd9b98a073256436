// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBlockAlarm.h"
#include "LogRecorder.h"
#include "MeasureFixture.h"
#include "PatientWait.h"

#include <QtTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(CAxis::AxisType)
Q_DECLARE_METATYPE(CAlarm::AlarmState)

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// All fields of its samples are told apart by their value.
Sample distinct(float b)
{
    Sample sample;
    sample.b = b;
    sample.bbPrime = b + 1;
    sample.bx = b + 2;
    sample.by = b + 3;
    sample.bz = b + 4;
    sample.dB = b + 5;
    return sample;
}

} // namespace

class tst_CBlockAlarm : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void effectByState_data();
    void effectByState();
    void off();
    void fieldByAxis_data();
    void fieldByAxis();
    void boundsAreInside();
    void notANumberViolates();
    void maximumBelowMinimum();
    void violationInTheMiddleOfABlock();
    void samplesBehindAViolationAreNotLookedAt();
    void emptyBlock();
    void uncertaintyIsConverted();
    void uncertaintyInPercent_data();
    void uncertaintyInPercent();
    void texts();
    void onceInASustainedViolation();
    void timeWithoutViolationRearms();
    void violationKeepsTheTimerFromRearming();
    void stateOrAxisRearms();
    void offForgetsNothingOfTheTime();
    void firstMessageMayBeHeldBack();
    void stopped();

private:
    using Flags = QVector<bool>;

    Flags check(CBlockAlarm& alarm, const QVector<Sample>& samples)
    {
        Flags flags;
        alarm.Check(*makeBlock(samples), m_limits, m_units, [&](bool flag) { flags.append(flag); });
        return flags;
    }

    FakeNotifier m_notifier;
    CBlockAlarm::Limits m_limits;
    CBlockAlarm::DisplayUnits m_units;
};

void tst_CBlockAlarm::init()
{
    m_notifier.calls.clear();
    m_limits = {CAlarm::Notification, CAxis::B, -1.0, 1.0, CUnits::MICRO_TESLA};
    m_units = {CUnits::MICRO_TESLA, CUnits::MICRO_TESLA};
}

void tst_CBlockAlarm::effectByState_data()
{
    QTest::addColumn<CAlarm::AlarmState>("state");
    QTest::addColumn<bool>("isLogged");
    QTest::addColumn<int>("trayMessages");
    QTest::addColumn<int>("beeps");
    QTest::newRow("off") << CAlarm::Off << false << 0 << 0;
    QTest::newRow("notification") << CAlarm::Notification << true << 1 << 0;
    QTest::newRow("audio") << CAlarm::Audio << true << 1 << 1;
    QTest::newRow("flag") << CAlarm::FlagNotification << true << 0 << 0;
}

void tst_CBlockAlarm::effectByState()
{
    QFETCH(CAlarm::AlarmState, state);
    QFETCH(bool, isLogged);
    QFETCH(int, trayMessages);
    QFETCH(int, beeps);
    m_limits.state = state;
    CBlockAlarm alarm(&m_notifier, state, m_limits.axis, true);
    const LogRecorder log;
    QCOMPARE(check(alarm, {distinct(2)}), Flags{state != CAlarm::Off});
    QCOMPARE(log.Texts(QtWarningMsg).size(), isLogged ? 1 : 0);
    QCOMPARE(log.Messages().size(), isLogged ? 1 : 0);
    QCOMPARE(m_notifier.calls.count(QStringLiteral("beep")), beeps);
    QCOMPARE(m_notifier.calls.size(), trayMessages + beeps);
}

void tst_CBlockAlarm::off()
{
    m_limits.state = CAlarm::Off;
    CBlockAlarm alarm(&m_notifier, CAlarm::Off, m_limits.axis, true);
    QCOMPARE(check(alarm, {}), Flags{false});
    QCOMPARE(check(alarm, {distinct(2), distinct(3)}), Flags{false});
}

void tst_CBlockAlarm::fieldByAxis_data()
{
    QTest::addColumn<CAxis::AxisType>("axis");
    QTest::addColumn<double>("value");
    QTest::newRow("B") << CAxis::B << 10.0;
    QTest::newRow("B.B'") << CAxis::BBprime << 11.0;
    QTest::newRow("Bx") << CAxis::Bx << 12.0;
    QTest::newRow("By") << CAxis::By << 13.0;
    QTest::newRow("Bz") << CAxis::Bz << 14.0;
    QTest::newRow("dB") << CAxis::dB << 15.0;
}

void tst_CBlockAlarm::fieldByAxis()
{
    QFETCH(CAxis::AxisType, axis);
    QFETCH(double, value);
    m_limits.axis = axis;
    CBlockAlarm alarm(&m_notifier, m_limits.state, axis, false);
    m_limits.minimum = value;
    m_limits.maximum = value;
    QCOMPARE(check(alarm, {distinct(10)}), Flags{false});
    m_limits.maximum = value - 0.5;
    QCOMPARE(check(alarm, {distinct(10)}), Flags{true});
    m_limits.minimum = value + 0.5;
    m_limits.maximum = value + 1.5;
    QCOMPARE(check(alarm, {distinct(10)}), Flags{true});
}

void tst_CBlockAlarm::boundsAreInside()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    QCOMPARE(check(alarm, {distinct(-1), distinct(1)}), Flags({false, false}));
    QCOMPARE(check(alarm, {distinct(std::nextafter(1.0F, 2.0F))}), Flags{true});
    QCOMPARE(check(alarm, {distinct(std::nextafter(-1.0F, -2.0F))}), Flags{true});
}

void tst_CBlockAlarm::notANumberViolates()
{
    m_limits.minimum = -std::numeric_limits<double>::infinity();
    m_limits.maximum = std::numeric_limits<double>::infinity();
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    QCOMPARE(check(alarm, {distinct(1e30F)}), Flags{false});
    QCOMPARE(check(alarm, {distinct(kNaN)}), Flags{true});
    m_limits.maximum = std::numeric_limits<double>::quiet_NaN();
    QCOMPARE(check(alarm, {distinct(0)}), Flags{true});
}

void tst_CBlockAlarm::maximumBelowMinimum()
{
    m_limits.minimum = 1;
    m_limits.maximum = -1;
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    for (const float b : {-2.0F, -1.0F, 0.0F, 1.0F, 2.0F})
        QCOMPARE(check(alarm, {distinct(b)}), Flags{true});
}

void tst_CBlockAlarm::violationInTheMiddleOfABlock()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    QCOMPARE(check(alarm, {distinct(0), distinct(5), distinct(0)}), Flags({false, true}));
    // The next clean block clears it with its first sample.
    QCOMPARE(check(alarm, {distinct(0), distinct(0)}), Flags({false, false}));
}

void tst_CBlockAlarm::samplesBehindAViolationAreNotLookedAt()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    check(alarm, {distinct(5), distinct(6), distinct(0)});
    QCOMPARE(m_notifier.calls.size(), 1);
    QVERIFY(m_notifier.calls.constFirst().contains(QLatin1String("B = 5.0000")));
}

void tst_CBlockAlarm::emptyBlock()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    QCOMPARE(check(alarm, {}), Flags());
}

void tst_CBlockAlarm::uncertaintyIsConverted()
{
    m_limits.axis = CAxis::dB;
    m_limits.minimum = 1999;
    m_limits.maximum = 2001;
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    m_units = {CUnits::MILLI_TESLA, CUnits::MICRO_TESLA};
    Sample sample;
    sample.dB = 2;
    QCOMPARE(check(alarm, {sample}), Flags{false});
    m_units = {CUnits::MICRO_TESLA, CUnits::MICRO_TESLA};
    QCOMPARE(check(alarm, {sample}), Flags{true});
    // Raw counts change their sign.
    m_units = {CUnits::ADC, CUnits::TESLA};
    m_limits.minimum = -2;
    m_limits.maximum = -2;
    QCOMPARE(check(alarm, {sample}), Flags{false});
}

void tst_CBlockAlarm::uncertaintyInPercent_data()
{
    QTest::addColumn<float>("b");
    QTest::addColumn<float>("dB");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<bool>("isViolated");
    QTest::newRow("five percent") << 2.0F << 0.1F << 4.999 << 5.001 << false;
    QTest::newRow("of a negative field") << -2.0F << 0.1F << -5.001 << -4.999 << false;
    // The display shows nothing above nine percent.
    QTest::newRow("fifty percent") << 2.0F << 1.0F << 49.9 << 50.1 << false;
    QTest::newRow("outside") << 2.0F << 1.0F << 0.0 << 49.9 << true;
    QTest::newRow("no field") << 0.0F << 0.1F << -1e30 << 1e30 << true;
    QTest::newRow("hardly a field") << 0.0001F << 1e-6F << -1e30 << 1e30 << true;
    QTest::newRow("hardly a negative field") << -0.00009F << 1e-6F << -1e30 << 1e30 << true;
    QTest::newRow("small field") << 0.0002F << 1e-6F << 0.4 << 0.6 << false;
}

void tst_CBlockAlarm::uncertaintyInPercent()
{
    QFETCH(float, b);
    QFETCH(float, dB);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(bool, isViolated);
    m_limits = {CAlarm::FlagNotification, CAxis::dB, minimum, maximum, CUnits::PERCENT};
    m_units.uncertainty = CUnits::PERCENT;
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, false);
    Sample sample;
    sample.b = b;
    sample.dB = dB;
    QCOMPARE(check(alarm, {sample}), Flags{isViolated});
}

void tst_CBlockAlarm::texts()
{
    m_limits = {CAlarm::Audio, CAxis::BBprime, -0.5, 12.5, CUnits::MICRO_TESLA};
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    {
        const LogRecorder log;
        check(alarm, {distinct(1233.5)});
        QCOMPARE(log.Messages(), QStringList{QStringLiteral(
                                     "WARN B·B' is out-of-limit [µT] : Minimum = -0.5000, B·B' = 1234, "
                                     "Maximum = 12.500")});
    }
    QCOMPARE(m_notifier.calls,
             QStringList({QStringLiteral(
                              "B·B' is out-of-limit [µT]|Minimum = -0.5000\nB·B' = 1234\nMaximum = 12.500"),
                          QStringLiteral("beep")}));

    m_notifier.calls.clear();
    m_limits = {CAlarm::Notification, CAxis::dB, 0, 1, CUnits::PERCENT};
    m_units.uncertainty = CUnits::PERCENT;
    check(alarm, {distinct(0)});
    QCOMPARE(m_notifier.calls,
             QStringList{
                 QStringLiteral("ε(B) is out-of-limit [%]|Minimum = 0.0000\nε(B) = nan\nMaximum = 1.0000")});
}

void tst_CBlockAlarm::onceInASustainedViolation()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    for (int i = 0; i < 10; ++i)
        QCOMPARE(check(alarm, {distinct(2)}), Flags{true});
    QCOMPARE(m_notifier.calls.size(), 1);
    // A short return does not count.
    check(alarm, {distinct(0)});
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 1);
}

void tst_CBlockAlarm::timeWithoutViolationRearms()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    QElapsedTimer clock;
    clock.start();
    check(alarm, {distinct(2)});
    const auto* timer = alarm.findChild<QTimer*>();
    QCOMPARE(timer->interval(), 2000);
    QSignalSpy due(timer, &QTimer::timeout);
    QVERIFY(due.wait(kLongWaitMs));
    QVERIFY(clock.elapsed() >= 1990);
    check(alarm, {distinct(0)});
    QCOMPARE(m_notifier.calls.size(), 1);
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 2);
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 2);
}

void tst_CBlockAlarm::violationKeepsTheTimerFromRearming()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    auto* timer = alarm.findChild<QTimer*>();
    const QSignalSpy due(timer, &QTimer::timeout);
    check(alarm, {distinct(2)});
    QTRY_VERIFY(timer->remainingTime() < 1900);
    check(alarm, {distinct(0)});
    QVERIFY(timer->remainingTime() < 1900);
    check(alarm, {distinct(2)});
    QVERIFY(timer->remainingTime() > 1900);
    QCOMPARE(due.count(), 0);
}

void tst_CBlockAlarm::stateOrAxisRearms()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    check(alarm, {distinct(2)});
    m_limits.state = CAlarm::Audio;
    check(alarm, {distinct(2)});
    QCOMPARE(alarm.LastState(), CAlarm::Audio);
    QCOMPARE(m_notifier.calls.size(), 3);
    m_limits.axis = CAxis::Bx;
    check(alarm, {distinct(2)});
    QCOMPARE(alarm.LastAxis(), CAxis::Bx);
    QCOMPARE(m_notifier.calls.size(), 5);
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 5);
    // New limits are no reason for a new message.
    m_limits.maximum = 0.5;
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 5);
}

void tst_CBlockAlarm::offForgetsNothingOfTheTime()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, true);
    check(alarm, {distinct(2)});
    m_limits.state = CAlarm::Off;
    check(alarm, {distinct(2)});
    m_limits.state = CAlarm::Notification;
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 2);
}

void tst_CBlockAlarm::firstMessageMayBeHeldBack()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, false);
    QCOMPARE(check(alarm, {distinct(2)}), Flags{true});
    QCOMPARE(m_notifier.calls.size(), 0);
    alarm.OnRangeTimerTimedOut();
    check(alarm, {distinct(2)});
    QCOMPARE(m_notifier.calls.size(), 1);
}

void tst_CBlockAlarm::stopped()
{
    CBlockAlarm alarm(&m_notifier, m_limits.state, m_limits.axis, false);
    QVERIFY(alarm.findChild<QTimer*>()->isActive());
    alarm.Stop();
    QVERIFY(!alarm.findChild<QTimer*>()->isActive());
}

QTEST_GUILESS_MAIN(tst_CBlockAlarm)

#include "tst_CBlockAlarm.moc"
