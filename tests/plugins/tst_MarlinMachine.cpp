// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMarlinController.h"
#include "CMarlinResponder.h"
#include "MachineBench.h"

#include <QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(CMarlinResponder&)>)
Q_DECLARE_METATYPE(std::function<void(StageSettings&)>)

using Bench = MachineBench<CMarlinController>;

namespace {

/// Whatever heats, cools or pushes filament.
void verifyNoHeater(const CMachineResponder& machine)
{
    for (const QByteArray& line : machine.Lines()) {
        for (const char* forbidden : {"M104", "M109", "M140", "M190", "M141", "M191", "M106", "M107", "M303"})
            QVERIFY2(!line.contains(forbidden), line.constData());
        QVERIFY2(!line.contains('E'), line.constData());
    }
}

} // namespace

/// The driver of Marlin machines, over a real serial port, against a machine that is simulated here.
class tst_MarlinMachine : public QObject
{
    Q_OBJECT

private slots:
    void arrives()
    {
        CMarlinResponder machine;
        machine.IsTellingBusy = true;
        // Slower upwards than asked for: 10 mm take 0.2 s.
        machine.TopSpeedOfZ = 50;
        machine.Run();
        Bench bench(machine);
        bench.settings.offset = {100, 100, 0};
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({-10, 5, 10});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QVERIFY(bench.wasAtRest);
        QCOMPARE(textOf(machine.Place()), QByteArray("90.00 105.00 10.00"));
        QCOMPARE(textOf(bench.driver.Place()), QByteArray("-10.00 5.00 10.00"));
        QCOMPARE(machine.CountOf("G1 X90.000 Y105.000 Z10.000 F30000.0"), 1);
        QCOMPARE(machine.CountOf("G28"), 0);
        QCOMPARE(machine.CountOf("M84 S0"), 1);
        QCOMPARE(machine.CountOf("M84"), 1);
        QCOMPARE(machine.CountOf("M18"), 0);
        bench.driver.GoTo({-10, 5, 10});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 2, kLongWaitMs);
        bench.driver.Stop();
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 9});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 3, kLongWaitMs);
        QCOMPARE(machine.CountOf("M115"), 1);
        verifyNoHeater(machine);
    }

    // It waits as long as the machine says that it is busy, beyond any limit for silence.
    void busyIsNoSilence()
    {
        CMarlinResponder machine;
        machine.IsTellingBusy = true;
        machine.Motion().Acceleration = 16;
        machine.Run();
        MachineTimes times = Bench::PatientTimes();
        times.stall = 400;
        Bench bench(machine, times);
        bench.driver.Start(bench.settings);
        // At 16 mm/s2 it takes a second, where a hundredth was to be expected.
        bench.driver.GoTo({4, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(textOf(machine.Place()), QByteArray("4.00 0.00 0.00"));
        QVERIFY(machine.NumBusy() > 5);
        QCOMPARE(machine.CountOf("M400"), 1);
    }

    // Though not for ever.
    void busyWithoutEnd()
    {
        CMarlinResponder machine;
        machine.IsTellingBusy = true;
        machine.Motion().Acceleration = 1e-3;
        machine.Run();
        MachineTimes times = Bench::PatientTimes();
        times.stall = 100;
        times.busy = 100;
        times.halt = 150;
        Bench bench(machine, times);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({4, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains("busy without end"), kLongWaitMs);
        bench.driver.Close();
        QCOMPARE(bench.numArrivals.load(), 0);
    }

    void whatIsNotDone_data()
    {
        QTest::addColumn<std::function<void(CMarlinResponder&)>>("prepare");
        QTest::addColumn<std::function<void(StageSettings&)>>("set");
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<bool>("isMoveSent");
        QTest::addColumn<bool>("isTimeUp");
        using Prepare = std::function<void(CMarlinResponder&)>;
        using Set = std::function<void(StageSettings&)>;
        const Set asIs = [](StageSettings&) {};
        QTest::newRow("outside of its limits") << Prepare([](CMarlinResponder& machine) {
            machine.Max = {9.5, 500, 500};
        }) << asIs << QByteArray("beyond the machine's limits")
                                               << false << false;
        QTest::newRow("it goes elsewhere") << Prepare([](CMarlinResponder& machine) {
            machine.Max = {9.5, 500, 500};
            machine.AreLimitsTold = false;
        }) << asIs << QByteArray("not where it was sent")
                                           << true << false;
        QTest::newRow("not homed") << Prepare(
                                          [](CMarlinResponder& machine) { machine.IsHomingNeeded = true; })
                                   << asIs << QByteArray("before it is homed") << true << false;
        QTest::newRow("halted") << Prepare([](CMarlinResponder& machine) {
            machine.ErrorOfMoves = "Printer halted. kill() called!";
        }) << asIs << QByteArray("Printer halted")
                                << true << false;
        QTest::newRow("never answers") << Prepare([](CMarlinResponder& machine) { machine.IsMute = true; })
                                       << asIs << QByteArray("controller silent") << false << true;
        QTest::newRow("homing that never ends")
            << Prepare([](CMarlinResponder& machine) { machine.IsHomingSilent = true; })
            << Set([](StageSettings& settings) { settings.isHoming = true; })
            << QByteArray("homing does not end") << false << true;
        // Somebody else is at the port.
        QTest::newRow("babble") << Prepare([](CMarlinResponder& machine) { machine.IsBabbling = true; })
                                << asIs << QByteArray("controller silent") << false << true;
    }

    void whatIsNotDone()
    {
        QFETCH(const std::function<void(CMarlinResponder&)>, prepare);
        QFETCH(const std::function<void(StageSettings&)>, set);
        QFETCH(const QByteArray, log);
        QFETCH(const bool, isMoveSent);
        QFETCH(const bool, isTimeUp);
        CMarlinResponder machine;
        prepare(machine);
        machine.Run();
        Bench bench(machine, isTimeUp ? Bench::HastyTimes() : Bench::PatientTimes());
        set(bench.settings);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains(log.constData()), kLongWaitMs);
        bench.driver.Stop();
        bench.driver.Close();
        QCOMPARE(machine.CountOf("G1 ") > 0, isMoveSent);
        QCOMPARE(bench.numArrivals.load(), 0);
    }

    void homesWhenAsked()
    {
        CMarlinResponder machine;
        machine.IsHomingNeeded = true;
        machine.Run();
        Bench bench(machine);
        bench.settings.isHoming = true;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({3, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({4, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 2, kLongWaitMs);
        QCOMPARE(machine.CountOf("G28"), 1);
    }

    void linesThatGetLost_data()
    {
        QTest::addColumn<QByteArray>("damaged");
        QTest::addColumn<QByteArray>("lost");
        QTest::addColumn<QByteArray>("mute");
        QTest::newRow("damaged move") << QByteArray("G1 ") << QByteArray() << QByteArray();
        QTest::newRow("damaged question") << QByteArray("M114") << QByteArray() << QByteArray();
        QTest::newRow("lost move") << QByteArray() << QByteArray("G1 ") << QByteArray();
        QTest::newRow("lost answer to the move") << QByteArray() << QByteArray() << QByteArray("G1 ");
        QTest::newRow("lost answer to a question") << QByteArray() << QByteArray() << QByteArray("M115");
    }

    void linesThatGetLost()
    {
        QFETCH(const QByteArray, damaged);
        QFETCH(const QByteArray, lost);
        QFETCH(const QByteArray, mute);
        CMarlinResponder machine;
        machine.DamagedBeginning = damaged;
        machine.NumLinesToDamage = damaged.isEmpty() ? 0 : 2;
        machine.LostBeginning = lost;
        machine.NumLinesToLose = lost.isEmpty() ? 0 : 1;
        machine.MuteBeginning = mute;
        machine.NumAnswersToLose = mute.isEmpty() ? 0 : 1;
        machine.Run();
        Bench bench(machine, Bench::AlertTimes());
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(textOf(machine.Place()), QByteArray("10.00 0.00 0.00"));
        // The machine saw each line once.
        QCOMPARE(machine.CountOf("G1 "), 1);
        QVERIFY(bench.log.Contains("sending"));
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 2, kLongWaitMs);
        QCOMPARE(textOf(machine.Place()), QByteArray("0.00 0.00 0.00"));
    }

    void stops()
    {
        CMarlinResponder machine;
        machine.Run();
        Bench bench(machine);
        bench.settings.feed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({490, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(machine.Place()[0] > 5, kLongWaitMs);
        bench.driver.Stop();
        QTRY_VERIFY_WITH_TIMEOUT(!machine.IsMoving(), kLongWaitMs);
        const double stoppedAt = machine.Place()[0];
        QVERIFY(stoppedAt < 489);
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(bench.driver.Place()[0] - stoppedAt) < 0.01, kLongWaitMs);
        QCOMPARE(machine.CountOf("M410"), 1);
        QCOMPARE(bench.numArrivals.load(), 0);
        // Not even who asks late moves it again.
        bench.driver.GoTo({7, 7, 7});
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(machine.CountOf("G1 X7"), 0);
        verifyNoHeater(machine);
    }
};

QTEST_GUILESS_MAIN(tst_MarlinMachine)
#include "tst_MarlinMachine.moc"
