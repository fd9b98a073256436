// SPDX-License-Identifier: GPL-3.0-or-later
#include "CGrblController.h"
#include "CGrblResponder.h"
#include "MachineBench.h"

#include <QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(CGrblResponder&)>)
Q_DECLARE_METATYPE(std::function<void(StageSettings&)>)

using Bench = MachineBench<CGrblController>;

/// The driver of GRBL machines, over a real serial port, against a machine that is simulated here.
class tst_GrblMachine : public QObject
{
    Q_OBJECT

private slots:
    void arrives()
    {
        CGrblResponder machine;
        machine.WorkOffset = {-100, -50, -10};
        machine.Motion().At = {-100, -50, -10};
        machine.Noise = "error:7";
        machine.Run();
        Bench bench(machine);
        bench.settings.offset = {1, 0, 0};
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({9, -5, 2});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        // Work coordinates of 10, -5, 2 are machine coordinates of -90, -55, -8.
        QCOMPARE(textOf(machine.Place()), QByteArray("-90.00 -55.00 -8.00"));
        QVERIFY(bench.wasAtRest);
        QCOMPARE(textOf(bench.driver.Place()), QByteArray("9.00 -5.00 2.00"));
        QCOMPARE(machine.CountOf("G1 X10.000 Y-5.000 Z2.000 F30000.0"), 1);
        QCOMPARE(machine.CountOf("$H"), 0);
        QCOMPARE(machine.CountOf("$X"), 0);
        // To where it is, it arrives too; and the next session uses the open port.
        bench.driver.GoTo({9, -5, 2});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 2, kLongWaitMs);
        bench.driver.Stop();
        const int numResets = machine.NumResets();
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 3, kLongWaitMs);
        QCOMPARE(machine.NumResets(), numResets);
        // Who asks when the session is over moves nothing any more.
        bench.driver.Stop();
        bench.driver.GoTo({7, 7, 7});
        bench.driver.Scan();
        QTest::qWait(50);
        QCOMPARE(bench.numArrivals.load(), 3);
        bench.driver.Close();
        QCOMPARE(machine.CountOf("G1"), 3);
    }

    // The acknowledgement of a move comes at once; the machine needs 0.3 s.
    void arrivalIsNotTheAcknowledgement()
    {
        CGrblResponder machine;
        machine.IsBarrierInstant = true;
        machine.Run();
        Bench bench(machine);
        bench.settings.feed = 6000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({30, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QVERIFY(bench.wasAtRest);
        QCOMPARE(textOf(machine.Place()), QByteArray("30.00 0.00 0.00"));
    }

    void reportsOfEveryKind_data()
    {
        QTest::addColumn<bool>("isInInches");
        QTest::addColumn<bool>("isWork");
        QTest::newRow("inches") << true << false;
        QTest::newRow("work places") << false << true;
        QTest::newRow("work places in inches") << true << true;
    }

    void reportsOfEveryKind()
    {
        QFETCH(const bool, isInInches);
        QFETCH(const bool, isWork);
        CGrblResponder machine;
        machine.Settings[13] = isInInches ? 1 : 0;
        machine.IsReportingWork = isWork;
        machine.WorkOffset = {5, 6, 7};
        machine.Run();
        Bench bench(machine);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({12.7, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(textOf(machine.Place()), QByteArray("17.70 6.00 7.00"));
        QVERIFY(std::abs(bench.driver.Place()[0] - 12.7) < 0.02);
    }

    void whatIsNotDone_data()
    {
        QTest::addColumn<std::function<void(CGrblResponder&)>>("prepare");
        QTest::addColumn<std::function<void(StageSettings&)>>("set");
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<bool>("isMoveSent");
        QTest::addColumn<bool>("isTimeUp");
        using Prepare = std::function<void(CGrblResponder&)>;
        using Set = std::function<void(StageSettings&)>;
        const Set asIs = [](StageSettings&) {};
        QTest::newRow("outside of the travel")
            << Prepare([](CGrblResponder& machine) { machine.Settings[20] = 1; }) << asIs
            << QByteArray("beyond the machine's travel") << false << false;
        QTest::newRow("outside of the settings")
            << Prepare([](CGrblResponder&) {}) << Set([](StageSettings& settings) { settings.max[0] = 9.9; })
            << QByteArray("outside the limits of the settings") << false << false;
        QTest::newRow("refused by the machine")
            << Prepare([](CGrblResponder& machine) { machine.ErrorOfMoves = 15; }) << asIs
            << QByteArray("error:15, the place is beyond the travel") << true << false;
        QTest::newRow("locked") << Prepare([](CGrblResponder& machine) { machine.IsLocked = true; }) << asIs
                                << QByteArray("locked by an alarm") << false << false;
        QTest::newRow("limit switch")
            << Prepare([](CGrblResponder& machine) { machine.AlarmBeyondX = 5; }) << asIs
            << QByteArray("ALARM:1, a limit switch was hit") << true << false;
        QTest::newRow("never answers") << Prepare([](CGrblResponder& machine) { machine.IsMute = true; })
                                       << asIs << QByteArray("controller silent") << false << true;
        QTest::newRow("homing without switches")
            << Prepare([](CGrblResponder&) {})
            << Set([](StageSettings& settings) { settings.isHoming = true; })
            << QByteArray("homing is asked for, but the machine has none") << false << false;
        QTest::newRow("homing that never ends") << Prepare([](CGrblResponder& machine) {
            machine.Settings[22] = 1;
            machine.IsHomingSilent = true;
        }) << Set([](StageSettings& settings) { settings.isHoming = true; })
                                                << QByteArray("homing does not end") << false << true;
        QTest::newRow("no such port")
            << Prepare([](CGrblResponder&) {})
            << Set([](StageSettings& settings) { settings.port = QStringLiteral("/dev/no-such-port"); })
            << QByteArray("cannot be opened") << false << false;
        // Somebody else is at the port.
        QTest::newRow("babble") << Prepare([](CGrblResponder& machine) { machine.IsBabbling = true; }) << asIs
                                << QByteArray("controller silent") << false << true;
    }

    // Whatever happens, it comes to the log, nothing is said to have arrived, and a stop works.
    void whatIsNotDone()
    {
        QFETCH(const std::function<void(CGrblResponder&)>, prepare);
        QFETCH(const std::function<void(StageSettings&)>, set);
        QFETCH(const QByteArray, log);
        QFETCH(const bool, isMoveSent);
        QFETCH(const bool, isTimeUp);
        CGrblResponder machine;
        prepare(machine);
        machine.Run();
        Bench bench(machine, isTimeUp ? Bench::HastyTimes() : Bench::PatientTimes());
        set(bench.settings);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains(log.constData()), kLongWaitMs);
        bench.driver.Stop();
        bench.driver.Close();
        QCOMPARE(machine.CountOf("G1") > 0, isMoveSent);
        QCOMPARE(bench.numArrivals.load(), 0);
        QVERIFY(!machine.IsMoving());
    }

    // No machine has such places, and no command can tell them.
    void placesThatAreNone()
    {
        CGrblResponder machine;
        machine.Run();
        Bench bench(machine);
        bench.driver.Start(bench.settings);
        for (const double x : {std::nan(""), HUGE_VAL, 1e300, -1e9}) {
            const QByteArray text = "X " + QByteArray::number(x);
            bench.driver.GoTo({x, 0, 0});
            QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains((text + " mm is outside the limits").constData()),
                                     kLongWaitMs);
        }
        bench.driver.GoTo({1, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(machine.CountOf("G1"), 1);
    }

    void homesAndUnlocksWhenAsked()
    {
        CGrblResponder machine;
        machine.Settings[22] = 1;
        machine.IsLocked = true;
        machine.IsReportingMuch = true;
        machine.Run();
        Bench bench(machine);
        bench.settings.isHoming = true;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({-20, -1, -1});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(machine.CountOf("$H"), 1);
        QCOMPARE(machine.CountOf("$X"), 0);
        // Once is enough, and its travel counts from now on.
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({5, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains("beyond the machine's travel"), kLongWaitMs);
        QCOMPARE(machine.CountOf("$H"), 1);
        QCOMPARE(machine.CountOf("G1 X5"), 0);

        CGrblResponder locked;
        locked.IsLocked = true;
        locked.IsReportingMuch = true;
        locked.Run();
        Bench second(locked);
        second.settings.isUnlocking = true;
        second.driver.Start(second.settings);
        second.driver.GoTo({1, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(second.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(locked.CountOf("$X"), 1);
        QVERIFY(second.log.Contains("its position may be wrong"));
    }

    void lostLines_data()
    {
        QTest::addColumn<QByteArray>("lost");
        QTest::addColumn<QByteArray>("mute");
        QTest::newRow("the move") << QByteArray("G1") << QByteArray();
        QTest::newRow("the barrier") << QByteArray("G4") << QByteArray();
        QTest::newRow("the question for settings") << QByteArray("$$") << QByteArray();
        QTest::newRow("answer to the move") << QByteArray() << QByteArray("G1");
        QTest::newRow("answer to the barrier") << QByteArray() << QByteArray("G4");
        QTest::newRow("answer to the modes") << QByteArray() << QByteArray("G21");
    }

    void lostLines()
    {
        QFETCH(const QByteArray, lost);
        QFETCH(const QByteArray, mute);
        CGrblResponder machine;
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
        QVERIFY(bench.log.Contains("a line was lost"));
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 2, kLongWaitMs);
        QCOMPARE(textOf(machine.Place()), QByteArray("0.00 0.00 0.00"));
    }

    void stops()
    {
        CGrblResponder machine;
        machine.Motion().Acceleration = 2000;
        machine.WorkOffset = {-20, 0, 0};
        // As one of G92, which a reset ends.
        machine.OffsetAfterStop = CMotionModel::Place{30, 0, 0};
        machine.Run();
        Bench bench(machine);
        bench.settings.feed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({1500, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(machine.Place()[0] > 5, kLongWaitMs);
        bench.driver.Stop();
        QTRY_VERIFY_WITH_TIMEOUT(machine.NumResets() > 1, kLongWaitMs);
        QVERIFY(!machine.IsMoving());
        // 50 mm/s are gone after 0.6 mm at 2000 mm/s2: it was at rest before the reset, and lost no step.
        QVERIFY(machine.Place()[0] - machine.HeldAtX() < 1);
        QCOMPARE(machine.NumHolds(), 1);
        QVERIFY(!bench.log.Contains("ALARM"));
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(bench.driver.Place()[0] - (machine.Place()[0] - 30)) < 0.01,
                                 kLongWaitMs);
        QCOMPARE(bench.numArrivals.load(), 0);
        // The next session begins where it stands.
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({-30, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
        QCOMPARE(textOf(machine.Place()), QByteArray("0.00 0.00 0.00"));
    }

    void fallsSilentOnTheWay_data()
    {
        QTest::addColumn<bool>("isBabbling");
        QTest::newRow("nothing at all") << false;
        QTest::newRow("nothing that makes sense") << true;
    }

    void fallsSilentOnTheWay()
    {
        QFETCH(const bool, isBabbling);
        CGrblResponder machine;
        machine.Run();
        MachineTimes times = Bench::HastyTimes();
        times.banner = kLongWaitMs;
        times.silence = 700;
        Bench bench(machine, times);
        bench.settings.feed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({1500, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(machine.Place()[0] > 5, kLongWaitMs);
        (isBabbling ? machine.IsBabbling : machine.IsMute) = true;
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains("controller silent"), kLongWaitMs);
        // It is stopped though it does not answer.
        QTRY_VERIFY_WITH_TIMEOUT(!machine.IsMoving(), kLongWaitMs);
        QVERIFY(machine.Place()[0] < 1499);
        bench.driver.GoTo({1, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains("not ready"), kLongWaitMs);
        bench.driver.Stop();
        // It speaks again: the next session connects anew. It was at rest when it was reset.
        machine.IsMute = false;
        machine.IsBabbling = false;
        bench.settings.feed = 60000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE_WITH_TIMEOUT(bench.numArrivals.load(), 1, kLongWaitMs);
    }

    void stopsWhileItHomes()
    {
        CGrblResponder machine;
        machine.Settings[22] = 1;
        machine.IsHomingSilent = true;
        machine.Run();
        Bench bench(machine);
        bench.settings.isHoming = true;
        bench.driver.Start(bench.settings);
        QTRY_COMPARE_WITH_TIMEOUT(machine.CountOf("$H"), 1, kLongWaitMs);
        const int numResets = machine.NumResets();
        bench.driver.Stop();
        QTRY_COMPARE_WITH_TIMEOUT(machine.NumResets(), numResets + 1, kLongWaitMs);
        QCOMPARE(bench.numArrivals.load(), 0);
    }

    void scansWithoutStopping()
    {
        CGrblResponder machine;
        // It needs 10 mm to come to rest.
        machine.Motion().Acceleration = 500;
        machine.Run();
        Bench bench(machine);
        bench.settings.scanFrom = {0, 0, 0};
        bench.settings.scanTo = {20, 4, 0};
        bench.settings.scanLines = 2;
        bench.settings.scanSpacing = 5;
        bench.settings.scanFeed = 6000;
        bench.driver.Start(bench.settings);
        bench.driver.Scan();
        QTRY_COMPARE_WITH_TIMEOUT(bench.NumPoints(), 10, kLongWaitMs);
        // Where it was when it asked: there or a little further on its way.
        const double expected[] = {0, 5, 10, 15, 20, 20, 15, 10, 5, 0};
        for (int i = 0; i < 10; ++i) {
            const double further = (bench.points[i] - expected[i]) * (i < 5 ? 1 : -1);
            QVERIFY2(further > -0.1 && bench.points[i] > -0.1 && bench.points[i] < 20.1,
                     QByteArray::number(bench.points[i]));
        }
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains("the path is at its end"), kLongWaitMs);
        // One move for each line, and one to its beginning.
        QCOMPARE(machine.CountOf("G1"), 4);
        QCOMPARE(machine.CountOf("G1 X20.000 Y0.000 Z0.000 F6000.0"), 1);
        bench.driver.Scan();
        QTRY_VERIFY_WITH_TIMEOUT(bench.NumPoints() > 12, kLongWaitMs);
        bench.driver.Stop();
        const int numPoints = bench.NumPoints();
        QTRY_VERIFY_WITH_TIMEOUT(!machine.IsMoving(), kLongWaitMs);
        QTest::qWait(30);
        QCOMPARE(bench.NumPoints(), numPoints);
    }
};

QTEST_GUILESS_MAIN(tst_GrblMachine)
#include "tst_GrblMachine.moc"
