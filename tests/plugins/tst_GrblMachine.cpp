// SPDX-License-Identifier: GPL-3.0-or-later
#include "CGrblController.h"
#include "CGrblResponder.h"
#include "MachineBench.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(CGrblResponder&)>)
Q_DECLARE_METATYPE(std::function<void(StageSettings&)>)

using Bench = MachineBench<CGrblController>;

namespace {

QByteArray textOf(const StagePlace& place)
{
    QByteArray text;
    for (const double value : place)
        text += QByteArray::number(value, 'f', 2) + ' ';
    return text.trimmed();
}

} // namespace

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
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        // Work coordinates of 10, -5, 2 are machine coordinates of -90, -55, -8.
        QCOMPARE(textOf(machine.Place()), QByteArray("-90.00 -55.00 -8.00"));
        QVERIFY(!machine.IsMoving());
        QCOMPARE(textOf(bench.driver.Place()), QByteArray("9.00 -5.00 2.00"));
        QCOMPARE(machine.CountOf("G1 X10.000 Y-5.000 Z2.000 F6000.0"), 1);
        QCOMPARE(machine.CountOf("$H"), 0);
        QCOMPARE(machine.CountOf("$X"), 0);
        // To where it is, it arrives too; and the next session uses the open port.
        bench.driver.GoTo({9, -5, 2});
        QTRY_COMPARE(bench.numArrivals.load(), 2);
        bench.driver.Stop();
        const int numResets = machine.NumResets();
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 3);
        QCOMPARE(machine.NumResets(), numResets);
        QTest::qWait(50);
        QCOMPARE(bench.numArrivals.load(), 3);
    }

    // The acknowledgement of a move comes at once; the machine needs 0.3 s.
    void arrivalIsNotTheAcknowledgement()
    {
        CGrblResponder machine;
        machine.IsBarrierInstant = true;
        machine.Run();
        Bench bench(machine);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({30, 0, 0});
        QTRY_VERIFY(bench.driver.Place()[0] > 1);
        QVERIFY(bench.driver.Place()[0] < 29.9);
        QCOMPARE(bench.numArrivals.load(), 0);
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QVERIFY(!machine.IsMoving());
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
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QCOMPARE(textOf(machine.Place()), QByteArray("17.70 6.00 7.00"));
        QVERIFY(std::abs(bench.driver.Place()[0] - 12.7) < 0.02);
    }

    void whatIsNotDone_data()
    {
        QTest::addColumn<std::function<void(CGrblResponder&)>>("prepare");
        QTest::addColumn<std::function<void(StageSettings&)>>("set");
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<bool>("isMoveSent");
        using Prepare = std::function<void(CGrblResponder&)>;
        using Set = std::function<void(StageSettings&)>;
        const Set asIs = [](StageSettings&) {};
        QTest::newRow("outside of the travel")
            << Prepare([](CGrblResponder& machine) { machine.Settings[20] = 1; }) << asIs
            << QByteArray("beyond the machine's travel") << false;
        QTest::newRow("outside of the settings")
            << Prepare([](CGrblResponder&) {}) << Set([](StageSettings& settings) { settings.max[0] = 9.9; })
            << QByteArray("outside the limits of the settings") << false;
        QTest::newRow("refused by the machine")
            << Prepare([](CGrblResponder& machine) { machine.ErrorOfMoves = 15; }) << asIs
            << QByteArray("error:15, the place is beyond the travel") << true;
        QTest::newRow("locked") << Prepare([](CGrblResponder& machine) { machine.IsLocked = true; }) << asIs
                                << QByteArray("locked by an alarm") << false;
        QTest::newRow("limit switch") << Prepare([](CGrblResponder& machine) { machine.AlarmBeyondX = 5; })
                                      << asIs << QByteArray("ALARM:1, a limit switch was hit") << true;
        QTest::newRow("never answers") << Prepare([](CGrblResponder& machine) { machine.IsMute = true; })
                                       << asIs << QByteArray("controller silent") << false;
        QTest::newRow("homing without switches")
            << Prepare([](CGrblResponder&) {})
            << Set([](StageSettings& settings) { settings.isHoming = true; })
            << QByteArray("homing is asked for, but the machine has none") << false;
        QTest::newRow("homing that never ends") << Prepare([](CGrblResponder& machine) {
            machine.Settings[22] = 1;
            machine.IsHomingSilent = true;
        }) << Set([](StageSettings& settings) { settings.isHoming = true; })
                                                << QByteArray("homing does not end") << false;
        QTest::newRow("no such port")
            << Prepare([](CGrblResponder&) {})
            << Set([](StageSettings& settings) { settings.port = QStringLiteral("/dev/no-such-port"); })
            << QByteArray("cannot be opened") << false;
    }

    // Whatever happens, it comes to the log, nothing is said to have arrived, and a stop works.
    void whatIsNotDone()
    {
        QFETCH(const std::function<void(CGrblResponder&)>, prepare);
        QFETCH(const std::function<void(StageSettings&)>, set);
        QFETCH(const QByteArray, log);
        QFETCH(const bool, isMoveSent);
        CGrblResponder machine;
        prepare(machine);
        machine.Run();
        Bench bench(machine);
        set(bench.settings);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_VERIFY(bench.log.Contains(log.constData()));
        QElapsedTimer timer;
        timer.start();
        bench.driver.Stop();
        QVERIFY(timer.elapsed() < 500);
        bench.driver.Close();
        QCOMPARE(machine.CountOf("G1") > 0, isMoveSent);
        QCOMPARE(bench.numArrivals.load(), 0);
        QVERIFY(!machine.IsMoving());
    }

    void homesAndUnlocksWhenAsked()
    {
        CGrblResponder machine;
        machine.Settings[22] = 1;
        machine.IsLocked = true;
        machine.Run();
        Bench bench(machine);
        bench.settings.isHoming = true;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({-20, -1, -1});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QCOMPARE(machine.CountOf("$H"), 1);
        QCOMPARE(machine.CountOf("$X"), 0);
        // Once is enough, and its travel counts from now on.
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({5, 0, 0});
        QTRY_VERIFY(bench.log.Contains("beyond the machine's travel"));
        QCOMPARE(machine.CountOf("$H"), 1);
        QCOMPARE(machine.CountOf("G1 X5"), 0);

        CGrblResponder locked;
        locked.IsLocked = true;
        locked.Run();
        Bench second(locked);
        second.settings.isUnlocking = true;
        second.driver.Start(second.settings);
        second.driver.GoTo({1, 0, 0});
        QTRY_COMPARE(second.numArrivals.load(), 1);
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
        Bench bench(machine);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QCOMPARE(textOf(machine.Place()), QByteArray("10.00 0.00 0.00"));
        QVERIFY(bench.log.Contains("a line was lost"));
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 2);
        QCOMPARE(textOf(machine.Place()), QByteArray("0.00 0.00 0.00"));
    }

    void stops()
    {
        CGrblResponder machine;
        machine.Run();
        Bench bench(machine);
        bench.settings.feed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({150, 0, 0});
        QTRY_VERIFY(machine.Place()[0] > 5);
        QElapsedTimer timer;
        timer.start();
        bench.driver.Stop();
        const double stoppedAt = machine.Place()[0];
        QVERIFY(timer.elapsed() < 200);
        QTRY_VERIFY(machine.NumResets() > 1);
        // 50 mm/s are gone after 0.6 mm at 2000 mm/s2: it was at rest before the reset, and lost no step.
        QTRY_VERIFY(!machine.IsMoving());
        QVERIFY(machine.Place()[0] - stoppedAt < 5);
        QCOMPARE(machine.NumHolds(), 1);
        QVERIFY(!bench.log.Contains("ALARM"));
        QTRY_VERIFY(std::abs(bench.driver.Place()[0] - machine.Place()[0]) < 0.01);
        QCOMPARE(bench.numArrivals.load(), 0);
        // The next session begins where it stands.
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QCOMPARE(textOf(machine.Place()), QByteArray("0.00 0.00 0.00"));
    }

    void fallsSilentOnTheWay()
    {
        CGrblResponder machine;
        machine.Run();
        Bench bench(machine);
        bench.settings.feed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({150, 0, 0});
        QTRY_VERIFY(machine.Place()[0] > 5);
        machine.IsMute = true;
        QTRY_VERIFY(bench.log.Contains("controller silent"));
        // It is stopped though it does not answer.
        QTRY_VERIFY(!machine.IsMoving());
        QVERIFY(machine.Place()[0] < 149);
        bench.driver.GoTo({1, 0, 0});
        QTRY_VERIFY(bench.log.Contains("not ready"));
        bench.driver.Stop();
        // It speaks again: the next session connects anew. It was at rest when it was reset.
        machine.IsMute = false;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
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
        QTRY_COMPARE(machine.CountOf("$H"), 1);
        const int numResets = machine.NumResets();
        bench.driver.Stop();
        QTRY_COMPARE(machine.NumResets(), numResets + 1);
        QCOMPARE(bench.numArrivals.load(), 0);
    }

    void scansWithoutStopping()
    {
        CGrblResponder machine;
        machine.Run();
        Bench bench(machine);
        bench.settings.scanFrom = {0, 0, 0};
        bench.settings.scanTo = {20, 4, 0};
        bench.settings.scanLines = 2;
        bench.settings.scanSpacing = 5;
        bench.settings.scanFeed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.Scan();
        QTRY_COMPARE(bench.NumPoints(), 10);
        // Where it was when it asked: 50 mm/s, and a few reports a second between.
        const double expected[] = {0, 5, 10, 15, 20, 20, 15, 10, 5, 0};
        for (int i = 0; i < 10; ++i)
            QVERIFY2(std::abs(bench.points[i] - expected[i]) < 3, QByteArray::number(bench.points[i]));
        QTRY_VERIFY(bench.log.Contains("the path is at its end"));
        // One move for each line, and one to its beginning.
        QCOMPARE(machine.CountOf("G1"), 4);
        QCOMPARE(machine.CountOf("G1 X20.000 Y0.000 Z0.000 F3000.0"), 1);
        bench.driver.Scan();
        QTRY_VERIFY(bench.NumPoints() > 12);
        bench.driver.Stop();
        const int numPoints = bench.NumPoints();
        QTRY_VERIFY(!machine.IsMoving());
        QTest::qWait(30);
        QCOMPARE(bench.NumPoints(), numPoints);
    }
};

QTEST_GUILESS_MAIN(tst_GrblMachine)
#include "tst_GrblMachine.moc"
