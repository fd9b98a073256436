// SPDX-License-Identifier: GPL-3.0-or-later
// A map that a real machine makes: the machine is simulated behind a serial port, all else is the program.
#include "CGrblResponder.h"
#include "EndToEndTest.h"
#include "StageSettings.h"

#include <QQuickItem>
#include <QTest>

namespace {

constexpr int kGrblMachineIndex = 2;
const QString kSettingsFile = QStringLiteral("KestrixGrblMachine.ini");

} // namespace

class tst_EndToEndMachine : public EndToEndTest
{
    Q_OBJECT

    QString shown(const char* name) { return driver().Text(QLatin1String(name), QStringLiteral("value")); }

    void openMapping()
    {
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("mappingMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("mappingPage")));
        // Who has no machine meets none: the mapper that is chosen beforehand is one of software.
        QQuickItem* const box = driver().Find(QStringLiteral("mapperComboBoxBox"));
        QVERIFY(box);
        QCOMPARE(box->property("currentText").toString(), QStringLiteral("Simulated gantry"));
        QVERIFY(driver().Choose(QStringLiteral("mapperComboBox"), kGrblMachineIndex));
        QCOMPARE(box->property("currentText").toString(), QStringLiteral("GRBL machine"));
    }

private slots:
    void mapIsMadeByAMachine()
    {
        CGrblResponder machine;
        machine.Settings[20] = 1;
        machine.WorkOffset = {-150, -150, -50};
        machine.Motion().At = {-150, -150, -50};
        machine.Run();
        StageSettings settings;
        settings.port = machine.Port();
        settings.feed = 6000;
        settings.settleMs = 10;
        settings.angles = {0, 0, 90};
        QVERIFY(settings.Save(kSettingsFile));
        openMapping();
        // No machine moves before it is told to.
        QVERIFY(machine.Lines().isEmpty());
        QVERIFY(driver().Enter(QStringLiteral("xStopField"), QStringLiteral("20")));
        QVERIFY(driver().Enter(QStringLiteral("xStepField"), QStringLiteral("10")));
        QVERIFY(driver().Enter(QStringLiteral("zStopField"), QStringLiteral("0")));
        const int places = 6; // three of X, two of Y

        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(scenario().Flag("IsIdleWithData"), 20000);
        QCOMPARE(shown("blockLine"), QString::number(places));
        // To the page the last block is a stored one, which leaves the place of the block before.
        QCOMPARE(shown("positionXDisplayer"), QStringLiteral("20.00"));
        QCOMPARE(shown("positionYDisplayer"), QStringLiteral("0.000"));
        QCOMPARE(shown("orientationYawDisplayer"), QStringLiteral("90.00"));
        QCOMPARE(machine.CountOf("G1 "), places);
        QCOMPARE(machine.Place()[0], -130.0);
        QVERIFY(!machine.IsMoving());
        const QString path = saveRecord(QStringLiteral("machine.qdr.xml"));
        QVERIFY(!path.isEmpty());
        QVERIFY(scenario().CloseWindow());
    }

    void machineFallsSilentAndTheSessionIsStopped()
    {
        CGrblResponder machine;
        machine.Run();
        StageSettings settings;
        settings.port = machine.Port();
        settings.feed = 600;
        QVERIFY(settings.Save(kSettingsFile));
        openMapping();
        QVERIFY(driver().Enter(QStringLiteral("xStartField"), QStringLiteral("200")));
        QVERIFY(driver().Enter(QStringLiteral("xStopField"), QStringLiteral("200")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(machine.IsMoving());
        machine.IsMute = true;
        QTRY_VERIFY_WITH_TIMEOUT(scenario().LogText().contains(QStringLiteral("controller silent")), 10000);
        // The page lives on, and the session can be ended.
        QVERIFY(driver().Click(QStringLiteral("stopButton")));
        QTRY_VERIFY(driver().IsVisible(QStringLiteral("resumeButton")));
        QTRY_VERIFY(!machine.IsMoving());
        QVERIFY(machine.Place()[0] < 190);
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndMachine)
#include "tst_EndToEndMachine.moc"
