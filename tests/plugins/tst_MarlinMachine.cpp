// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMarlinController.h"
#include "CMarlinResponder.h"
#include "MachineBench.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(CMarlinResponder&)>)
Q_DECLARE_METATYPE(std::function<void(StageSettings&)>)

using Bench = MachineBench<CMarlinController>;

namespace {

QByteArray textOf(const StagePlace& place)
{
    QByteArray text;
    for (const double value : place)
        text += QByteArray::number(value, 'f', 2) + ' ';
    return text.trimmed();
}

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
        // Slower upwards than asked for: 10 mm take a second.
        machine.TopSpeedOfZ = 10;
        machine.Run();
        Bench bench(machine);
        bench.settings.offset = {100, 100, 0};
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({-10, 5, 10});
        QTRY_VERIFY(bench.driver.Place()[2] > 1);
        QVERIFY(bench.driver.Place()[2] < 9.9);
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QVERIFY(!machine.IsMoving());
        QCOMPARE(textOf(machine.Place()), QByteArray("90.00 105.00 10.00"));
        QCOMPARE(textOf(bench.driver.Place()), QByteArray("-10.00 5.00 10.00"));
        QCOMPARE(machine.CountOf("G1 X90.000 Y105.000 Z10.000 F6000.0"), 1);
        QCOMPARE(machine.CountOf("G28"), 0);
        QCOMPARE(machine.CountOf("M84 S0"), 1);
        QCOMPARE(machine.CountOf("M84"), 1);
        QCOMPARE(machine.CountOf("M18"), 0);
        bench.driver.GoTo({-10, 5, 10});
        QTRY_COMPARE(bench.numArrivals.load(), 2);
        bench.driver.Stop();
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 9});
        QTRY_COMPARE(bench.numArrivals.load(), 3);
        QCOMPARE(machine.CountOf("M115"), 1);
        verifyNoHeater(machine);
    }

    // It waits as long as the machine says that it is busy, beyond any limit for silence.
    void busyIsNoSilence()
    {
        CMarlinResponder machine;
        machine.IsTellingBusy = true;
        machine.Motion().Acceleration = 4;
        machine.Run();
        Bench bench(machine);
        bench.driver.Start(bench.settings);
        // At 4 mm/s2 it takes two seconds, where a hundredth was to be expected.
        bench.driver.GoTo({4, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QCOMPARE(textOf(machine.Place()), QByteArray("4.00 0.00 0.00"));
        QVERIFY(machine.NumBusy() > 5);
        QCOMPARE(machine.CountOf("M400"), 1);
    }

    void whatIsNotDone_data()
    {
        QTest::addColumn<std::function<void(CMarlinResponder&)>>("prepare");
        QTest::addColumn<std::function<void(StageSettings&)>>("set");
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<bool>("isMoveSent");
        using Prepare = std::function<void(CMarlinResponder&)>;
        using Set = std::function<void(StageSettings&)>;
        const Set asIs = [](StageSettings&) {};
        QTest::newRow("outside of its limits") << Prepare([](CMarlinResponder& machine) {
            machine.Max = {9.5, 500, 500};
        }) << asIs << QByteArray("beyond the machine's limits")
                                               << false;
        QTest::newRow("it goes elsewhere") << Prepare([](CMarlinResponder& machine) {
            machine.Max = {9.5, 500, 500};
            machine.AreLimitsTold = false;
        }) << asIs << QByteArray("not where it was sent")
                                           << true;
        QTest::newRow("not homed") << Prepare(
                                          [](CMarlinResponder& machine) { machine.IsHomingNeeded = true; })
                                   << asIs << QByteArray("before it is homed") << true;
        QTest::newRow("halted") << Prepare([](CMarlinResponder& machine) {
            machine.ErrorOfMoves = "Printer halted. kill() called!";
        }) << asIs << QByteArray("Printer halted")
                                << true;
        QTest::newRow("never answers") << Prepare([](CMarlinResponder& machine) { machine.IsMute = true; })
                                       << asIs << QByteArray("controller silent") << false;
        QTest::newRow("homing that never ends")
            << Prepare([](CMarlinResponder& machine) { machine.IsHomingSilent = true; })
            << Set([](StageSettings& settings) { settings.isHoming = true; })
            << QByteArray("homing does not end") << false;
    }

    void whatIsNotDone()
    {
        QFETCH(const std::function<void(CMarlinResponder&)>, prepare);
        QFETCH(const std::function<void(StageSettings&)>, set);
        QFETCH(const QByteArray, log);
        QFETCH(const bool, isMoveSent);
        CMarlinResponder machine;
        prepare(machine);
        machine.Run();
        Bench bench(machine);
        set(bench.settings);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(bench.log.Contains(log.constData()), 8000);
        QElapsedTimer timer;
        timer.start();
        bench.driver.Stop();
        QVERIFY(timer.elapsed() < 500);
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
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({4, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 2);
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
        Bench bench(machine);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({10, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        QCOMPARE(textOf(machine.Place()), QByteArray("10.00 0.00 0.00"));
        // The machine saw each line once.
        QCOMPARE(machine.CountOf("G1 "), 1);
        QVERIFY(bench.log.Contains("sending"));
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 2);
        QCOMPARE(textOf(machine.Place()), QByteArray("0.00 0.00 0.00"));
    }

    void stops()
    {
        CMarlinResponder machine;
        machine.Run();
        Bench bench(machine);
        bench.settings.feed = 3000;
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({150, 0, 0});
        QTRY_VERIFY(machine.Place()[0] > 5);
        QElapsedTimer timer;
        timer.start();
        bench.driver.Stop();
        QVERIFY(timer.elapsed() < 200);
        QTRY_VERIFY(!machine.IsMoving());
        const double stoppedAt = machine.Place()[0];
        QVERIFY(stoppedAt < 50);
        QTRY_VERIFY(std::abs(bench.driver.Place()[0] - stoppedAt) < 0.01);
        QCOMPARE(machine.CountOf("M410"), 1);
        QCOMPARE(bench.numArrivals.load(), 0);
        bench.driver.Start(bench.settings);
        bench.driver.GoTo({0, 0, 0});
        QTRY_COMPARE(bench.numArrivals.load(), 1);
        verifyNoHeater(machine);
    }
};

QTEST_GUILESS_MAIN(tst_MarlinMachine)
#include "tst_MarlinMachine.moc"
