// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPlaceEstimate.h"
#include "CScanPath.h"
#include "CStageDialog.h"
#include "GrblConfiguration.h"
#include "GrblLine.h"
#include "MarlinLine.h"
#include "PluginDriver.h"
#include "StageSettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QPushButton>
#include <QRegularExpression>
#include <QtTest>

#include <limits>

using Kind = GrblLine::Kind;
using MarlinKind = MarlinLine::Kind;
Q_DECLARE_METATYPE(GrblLine::Kind)
Q_DECLARE_METATYPE(MarlinLine::Kind)

namespace {

const QString kSettingsFile = QStringLiteral("KestrixGrblMachine.ini");

QByteArray textOf(const std::optional<StagePlace>& place)
{
    return place ? QByteArray::number((*place)[0]) + ' ' + QByteArray::number((*place)[1]) + ' ' +
                       QByteArray::number((*place)[2])
                 : QByteArray("none");
}

/// What the device said, in the captured dialogue of that name.
QList<QByteArray> captured(const QString& name)
{
    QFile file(QStringLiteral(SHARED_DATA_PATH "/transcripts/") + name);
    QList<QByteArray> lines;
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const int arrow = line.indexOf(" < ");
        if (arrow >= 0)
            lines.append(line.mid(arrow + 3));
        else if (line == "ok")
            lines.append(line);
    }
    return lines;
}

} // namespace

/// The languages of the machines, and all of the machine mappers that needs no machine.
class tst_MachineLanguages : public QObject
{
    Q_OBJECT

private slots:
    void grblLines_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<int>("number");
        QTest::newRow("ok") << QByteArray("ok") << Kind::Ok << 0;
        QTest::newRow("ok with return") << QByteArray("ok\r") << Kind::Ok << 0;
        QTest::newRow("error") << QByteArray("error:20") << Kind::Error << 20;
        QTest::newRow("error without number") << QByteArray("error:") << Kind::Other << 0;
        QTest::newRow("alarm") << QByteArray("ALARM:3") << Kind::Alarm << 3;
        QTest::newRow("banner") << QByteArray("Grbl 1.1h ['$' for help]") << Kind::Banner << 0;
        QTest::newRow("banner of a relative")
            << QByteArray("GrblHAL 1.1f ['$' or '$HELP' for help]") << Kind::Banner << 0;
        QTest::newRow("setting") << QByteArray("$110=500.000") << Kind::Setting << 110;
        QTest::newRow("setting without value") << QByteArray("$110=") << Kind::Other << 110;
        QTest::newRow("start-up line") << QByteArray("$N0=") << Kind::Other << 0;
        QTest::newRow("message") << QByteArray("[MSG:Caution: Unlocked]") << Kind::Message << 0;
        QTest::newRow("cut message") << QByteArray("[MSG:Caut") << Kind::Other << 0;
        QTest::newRow("build options") << QByteArray("[OPT:VZ,15,128]") << Kind::Options << 0;
        QTest::newRow("cut status") << QByteArray("<Idle|MPos:0.000,0.0") << Kind::Other << 0;
        QTest::newRow("damaged status") << QByteArray("<Idle|MPos:0.000,0.#00,0.000>") << Kind::Other << 0;
        QTest::newRow("status of two axes") << QByteArray("<Idle|MPos:0.000,0.000>") << Kind::Other << 0;
        QTest::newRow("empty status") << QByteArray("<>") << Kind::Other << 0;
        QTest::newRow("empty") << QByteArray() << Kind::Other << 0;
        QTest::newRow("noise") << QByteArray("\xff\xfeokk") << Kind::Other << 0;
    }

    void grblLines()
    {
        QFETCH(const QByteArray, line);
        QFETCH(const Kind, kind);
        QFETCH(const int, number);
        const GrblLine parsed = GrblLine::Parse(line);
        QVERIFY(parsed.kind == kind);
        if (kind != Kind::Other)
            QCOMPARE(parsed.number, number);
    }

    void grblStatus()
    {
        const GrblLine idle = GrblLine::Parse(
            "<Idle|MPos:1.500,-2.000,3.000|Bf:15,128|FS:0,0|Pn:PXYZRHS|WCO:10.000,0.000,-0.250>");
        QVERIFY(idle.kind == Kind::Status);
        QCOMPARE(idle.state, QByteArray("Idle"));
        QCOMPARE(idle.subState, -1);
        QCOMPARE(textOf(idle.machinePlace), QByteArray("1.5 -2 3"));
        QCOMPARE(textOf(idle.workPlace), QByteArray("none"));
        QCOMPARE(textOf(idle.workOffset), QByteArray("10 0 -0.25"));
        const GrblLine held = GrblLine::Parse("<Hold:1|WPos:4.000,5.000,6.000,7.000|FS:600,0>");
        QCOMPARE(held.state, QByteArray("Hold"));
        QCOMPARE(held.subState, 1);
        QCOMPARE(textOf(held.workPlace), QByteArray("4 5 6"));
        QCOMPARE(GrblLine::Parse("$131=199.5").value, 199.5);
        QCOMPARE(GrblLine::Parse("[OPT:VZ,15,128]").text, QByteArray("VZ"));
        QVERIFY(GrblLine::ErrorText(15).contains(QStringLiteral("travel")));
        QVERIFY(GrblLine::AlarmText(99).contains(QStringLiteral("99")));
    }

    void grblTravel_data()
    {
        QTest::addColumn<QList<QPair<int, double>>>("settings");
        QTest::addColumn<bool>("isHomed");
        QTest::addColumn<double>("x");
        QTest::addColumn<bool>("isInside");
        using List = QList<QPair<int, double>>;
        const List soft{{20, 1}, {130, 200}, {131, 200}, {132, 200}};
        const List homing{{20, 0}, {22, 1}, {130, 200}, {131, 200}, {132, 200}};
        QTest::newRow("zero") << soft << false << 0.0 << true;
        QTest::newRow("the end") << soft << false << -200.0 << true;
        QTest::newRow("beyond the end") << soft << false << -200.001 << false;
        QTest::newRow("beyond zero") << soft << false << 0.001 << false;
        QTest::newRow("no limits") << List{{20, 0}, {130, 200}} << false << 5000.0 << true;
        QTest::newRow("not homed") << homing << false << 1.0 << true;
        QTest::newRow("homed") << homing << true << 1.0 << false;
        QTest::newRow("travel is not told") << List{{20, 1}} << false << 5000.0 << true;
        QTest::newRow("origin upwards") << soft + List{{23, 1}, {-1, 0}} << false << 199.0 << true;
        QTest::newRow("origin upwards, below") << soft + List{{23, 1}, {-1, 0}} << false << -1.0 << false;
        QTest::newRow("origin, other axis") << soft + List{{23, 2}, {-1, 0}} << false << -1.0 << true;
    }

    void grblTravel()
    {
        using List = QList<QPair<int, double>>;
        QFETCH(const List, settings);
        QFETCH(const bool, isHomed);
        QFETCH(const double, x);
        QFETCH(const bool, isInside);
        GrblConfiguration configuration;
        for (const auto& setting : settings) {
            if (setting.first < 0)
                configuration.TakeOptions("VZ");
            else
                configuration.TakeSetting(setting.first, setting.second);
        }
        configuration.isHomed = isHomed;
        // What is no setting of a machine changes nothing.
        for (const char* line : {"$130=nan", "$131=inf", "$23=1e300", "$1=-1e300", "$130=", "$x=5", "$=1"}) {
            const GrblLine parsed = GrblLine::Parse(line);
            if (parsed.kind == Kind::Setting && parsed.number != 23)
                configuration.TakeSetting(parsed.number, parsed.value);
        }
        const double y = configuration.hasForcedOrigin && configuration.homingMask == 2 ? 1 : 0;
        QCOMPARE(!configuration.WhyOutside({x, y, 0}), isInside);
        if (!isInside)
            QVERIFY(configuration.WhyOutside({x, 0, 0})->startsWith(QStringLiteral("X ")));
    }

    // Every line that real firmware sent is understood, and nothing else is.
    void capturedDialogues_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("numOk");
        QTest::addColumn<QByteArray>("lastState");
        QTest::addColumn<QByteArray>("lastPlace");
        // Counted and read by eye in the files.
        QTest::newRow("grbl") << QStringLiteral("grbl-1.1h_basic.txt") << 8 << QByteArray("Idle")
                              << QByteArray("10.58 5 0");
        QTest::newRow("relative") << QStringLiteral("grblhal_basic.txt") << 8 << QByteArray("Idle")
                                  << QByteArray("10.748 5 0");
        QTest::newRow("jog, hold, alarm") << QStringLiteral("grblhal_jog_hold_alarm.txt") << 9
                                          << QByteArray("Idle") << QByteArray("55.676 0 0");
        QTest::newRow("homing hangs")
            << QStringLiteral("grblhal_homing_hangs.txt") << 7 << QByteArray("Home") << QByteArray("0 0 0");
        QTest::newRow("barrier") << QStringLiteral("barrier_G4.txt") << 13 << QByteArray("Idle")
                                 << QByteArray("0 0 0");
    }

    void capturedDialogues()
    {
        QFETCH(const QString, name);
        QFETCH(const int, numOk);
        QFETCH(const QByteArray, lastState);
        QFETCH(const QByteArray, lastPlace);
        if (!QDir(QStringLiteral(SHARED_DATA_PATH "/transcripts")).exists())
            QSKIP("the captured dialogues are not at hand");
        const QList<QByteArray> lines = captured(name);
        QVERIFY(!lines.isEmpty());
        // The simulation that they ran in says its step counts in lines of its own.
        const QRegularExpression steps(QStringLiteral("^-?\\d+, -?\\d+, -?\\d+, [0-9.]+$"));
        int numOkSeen = 0;
        GrblLine last;
        for (const QByteArray& line : lines) {
            const GrblLine parsed = GrblLine::Parse(line);
            const bool isOfSimulation = steps.match(QString::fromLatin1(line)).hasMatch();
            QVERIFY2((parsed.kind == Kind::Other) == isOfSimulation, line.constData());
            if (parsed.kind == Kind::Ok)
                ++numOkSeen;
            if (parsed.kind == Kind::Status) {
                QVERIFY(parsed.machinePlace);
                last = parsed;
            }
        }
        QCOMPARE(numOkSeen, numOk);
        QCOMPARE(last.state, lastState);
        QCOMPARE(textOf(last.machinePlace), lastPlace);
    }

    void marlinLines_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<MarlinKind>("kind");
        QTest::addColumn<int>("number");
        QTest::newRow("ok") << QByteArray("ok") << MarlinKind::Ok << 0;
        QTest::newRow("long ok") << QByteArray("ok N5 P15 B3") << MarlinKind::Ok << 0;
        QTest::newRow("no ok") << QByteArray("okay") << MarlinKind::Other << 0;
        QTest::newRow("start") << QByteArray("start") << MarlinKind::Start << 0;
        QTest::newRow("busy") << QByteArray("echo:busy: processing") << MarlinKind::Busy << 0;
        QTest::newRow("resend") << QByteArray("Resend: 42") << MarlinKind::Resend << 42;
        QTest::newRow("short resend") << QByteArray("rs N7") << MarlinKind::Resend << 7;
        QTest::newRow("resend without number") << QByteArray("Resend:") << MarlinKind::Other << 0;
        QTest::newRow("checksum") << QByteArray("Error:checksum mismatch, Last Line: 4")
                                  << MarlinKind::LineFault << 0;
        QTest::newRow("line number") << QByteArray(
                                            "Error:Line Number is not Last Line Number+1, Last Line: 4")
                                     << MarlinKind::LineFault << 0;
        QTest::newRow("error") << QByteArray("Error:Printer halted. kill() called!") << MarlinKind::Error
                               << 0;
        QTest::newRow("not homed") << QByteArray("echo:Home XYZ First") << MarlinKind::NotHomed << 0;
        QTest::newRow("emergency parser")
            << QByteArray("Cap:EMERGENCY_PARSER:1") << MarlinKind::EmergencyParser << 1;
        QTest::newRow("other capability") << QByteArray("Cap:EEPROM:1") << MarlinKind::Other << 0;
        QTest::newRow("limits that are off")
            << QByteArray("echo:Soft endstops: Off  Min: X0.00 Y0.00 Z0.00   Max: X1.00 Y1.00 Z1.00")
            << MarlinKind::Other << 0;
        QTest::newRow("cut place") << QByteArray("X:1.00 Y:2.0") << MarlinKind::Other << 0;
    }

    void marlinLines()
    {
        QFETCH(const QByteArray, line);
        QFETCH(const MarlinKind, kind);
        QFETCH(const int, number);
        const MarlinLine parsed = MarlinLine::Parse(line);
        QVERIFY(parsed.kind == kind);
        if (kind != MarlinKind::Other)
            QCOMPARE(int(parsed.number), number);
    }

    void marlinPlaces()
    {
        const MarlinLine place = MarlinLine::Parse("X:10.50 Y:-2.00 Z:0.25 E:0.00 Count X:840 Y:-160 Z:100");
        QVERIFY(place.kind == MarlinKind::Place);
        QCOMPARE(textOf(place.place), QByteArray("10.5 -2 0.25"));
        const MarlinLine feed = MarlinLine::Parse("echo:  M203 X500.00 Y400.00 Z5.00 E25.00");
        QVERIFY(feed.kind == MarlinKind::MaxFeed);
        QCOMPARE(textOf(feed.place), QByteArray("500 400 5"));
        const MarlinLine limits = MarlinLine::Parse(
            "echo:Soft endstops: On  Min: X0.00 Y-5.00 Z0.00   Max: X220.00 Y221.00 Z250.50");
        QVERIFY(limits.kind == MarlinKind::Limits);
        QCOMPARE(textOf(limits.place), QByteArray("0 -5 0"));
        QCOMPARE(textOf(limits.upper), QByteArray("220 221 250.5"));
        const MarlinLine firmware =
            MarlinLine::Parse("FIRMWARE_NAME:Marlin 2.1.2 (Jan 1 2024) SOURCE_CODE_URL:github.com/x");
        QCOMPARE(firmware.text, QByteArray("Marlin 2.1.2 (Jan 1 2024)"));
        // By hand: N, 3, blank, T, 0 are 78, 51, 32, 84, 48; their exclusive or is 57.
        QCOMPARE(MarlinLine::Numbered(3, "T0"), QByteArray("N3 T0*57\n"));
    }

    void placeBetweenReports()
    {
        CPlaceEstimate estimate;
        QCOMPARE(textOf(estimate.At(1000)), QByteArray("0 0 0"));
        estimate.Report({10, 0, 0}, 1000);
        QCOMPARE(textOf(estimate.At(1050)), QByteArray("10 0 0"));
        estimate.Report({12, -1, 0}, 1100);
        QCOMPARE(textOf(estimate.At(1150)), QByteArray("13 -1.5 0"));
        QCOMPARE(textOf(estimate.At(1000)), QByteArray("12 -1 0"));
        // A quarter of a second at most: 12 + 250 * 0.02.
        QCOMPARE(textOf(estimate.At(60000)), QByteArray("17 -3.5 0"));
        // It slows down before its goal, and is not beyond it.
        estimate.HeadFor({12.5, -20, 0});
        QCOMPARE(textOf(estimate.At(1150)), QByteArray("12.5 -1.5 0"));
        estimate.Rest();
        QCOMPARE(textOf(estimate.At(60000)), QByteArray("12 -1 0"));
    }

    void pathOfAScan()
    {
        StageSettings settings;
        settings.scanFrom = {0, -5, 1};
        settings.scanTo = {20, 5, 3};
        settings.scanLines = 3;
        const std::vector<ScanLine> lines = CScanPath::LinesOf(settings);
        QCOMPARE(int(lines.size()), 3);
        QCOMPARE(textOf(lines[0].from) + " to " + textOf(lines[0].to), QByteArray("0 -5 1 to 20 -5 1"));
        QCOMPARE(textOf(lines[1].from) + " to " + textOf(lines[1].to), QByteArray("20 0 2 to 0 0 2"));
        QCOMPARE(textOf(lines[2].from) + " to " + textOf(lines[2].to), QByteArray("0 5 3 to 20 5 3"));

        CScanPath path(lines[1], 6);
        QCOMPARE(path.Count(), 4); // at 20, 14, 8, 2
        QCOMPARE(path.Pass({20, 0, 2}), 1);
        QCOMPARE(path.Pass({19, 0, 2}), 0);
        QCOMPARE(path.Pass({13.9, 0, 2}), 1);
        QCOMPARE(path.Pass({16, 0, 2}), 0);
        QCOMPARE(path.Pass({-1000, 0, 2}), 2);
        QCOMPARE(path.Finish(), 0);
        CScanPath short_(ScanLine{{1, 1, 1}, {1, 1, 1}}, 5);
        QCOMPARE(short_.Count(), 1);
        QCOMPARE(short_.Pass({7, 7, 7}), 0);
        QCOMPARE(short_.Finish(), 1);
        // 0.3 is three spacings of 0.1, though not in binary.
        QCOMPARE(CScanPath(ScanLine{{0, 0, 0}, {0.3, 0, 0}}, 0.1).Count(), 4);
    }

    void settingsAreReadAndWritten()
    {
        removeSettings(kSettingsFile);
        const StageSettings defaults = StageSettings::Load(kSettingsFile);
        QVERIFY(!defaults.HasPort());
        QCOMPARE(defaults.baudRate, 115200);
        writeSettings(kSettingsFile, "[Machine]\nFeed=0.01\n[Scan]\nFeed=-3\n");
        QCOMPARE(StageSettings::Load(kSettingsFile).feed, 1.0);
        QCOMPARE(StageSettings::Load(kSettingsFile).scanFeed, 1.0);
        writeSettings(kSettingsFile, "[Machine]\nFeed=-5\n");
        QCOMPARE(StageSettings::Load(kSettingsFile).feed, 0.0);
        QVERIFY(!defaults.isHoming);
        writeSettings(kSettingsFile,
                      "[Machine]\nPort=/dev/ttyUSB3\nBaudRate=250000\nFeed=750.5\nSettleMs=20\n"
                      "Home=true\nUnlock=1\nOffsetX=1\nOffsetY=-2.5\nMaxZ=40\nYaw=90\n"
                      "[Scan]\nFromX=-5\nToY=7\nLines=0\nSpacing=0\nFeed=300\n");
        StageSettings settings = StageSettings::Load(kSettingsFile);
        const auto check = [](const StageSettings& read) {
            QCOMPARE(read.port, QStringLiteral("/dev/ttyUSB3"));
            QCOMPARE(read.baudRate, 250000);
            QCOMPARE(read.feed, 750.5);
            QCOMPARE(read.settleMs, 20);
            QVERIFY(read.isHoming && read.isUnlocking);
            QCOMPARE(textOf(read.offset), QByteArray("1 -2.5 0"));
            QCOMPARE(read.max[2], 40.0);
            QVERIFY(std::isinf(read.max[0]) && std::isinf(read.min[2]));
            QCOMPARE(textOf(read.angles), QByteArray("0 0 90"));
            QCOMPARE(textOf(read.scanFrom), QByteArray("-5 0 0"));
            QCOMPARE(textOf(read.scanTo), QByteArray("50 7 0"));
            QCOMPARE(read.scanLines, 1);
            QVERIFY(read.scanSpacing > 0);
            QCOMPARE(read.scanFeed, 300.0);
        };
        check(settings);
        removeSettings(kSettingsFile);
        QVERIFY(settings.Save(kSettingsFile));
        check(StageSettings::Load(kSettingsFile));
        removeSettings(kSettingsFile);
    }

    void dialogAsksForTheSettings()
    {
        StageSettings settings;
        settings.max[1] = 12;
        CStageDialog dialog(QStringLiteral("Machine"), settings, true);
        auto* const accept = dialog.findChild<QPushButton*>(QStringLiteral("stageAccept"));
        auto* const port = dialog.findChild<QComboBox*>(QStringLiteral("stagePort"));
        // No port is chosen beforehand.
        QVERIFY(port->currentText().isEmpty());
        QVERIFY(!accept->isEnabled());
        port->setEditText(QStringLiteral(" /dev/pts/9 "));
        QVERIFY(accept->isEnabled());
        dialog.findChild<QComboBox*>(QStringLiteral("stageBaudRate"))->setEditText(QStringLiteral("57600"));
        dialog.findChild<QDoubleSpinBox*>(QStringLiteral("stageFeed"))->setValue(321);
        dialog.findChild<QSpinBox*>(QStringLiteral("stageSettle"))->setValue(7);
        dialog.findChild<QCheckBox*>(QStringLiteral("stageHome"))->setChecked(true);
        dialog.findChild<QDoubleSpinBox*>(QStringLiteral("stageOffsetZ"))->setValue(-4.5);
        dialog.findChild<QDoubleSpinBox*>(QStringLiteral("stageToX"))->setValue(80);
        dialog.findChild<QSpinBox*>(QStringLiteral("stageLines"))->setValue(2);
        const StageSettings answer = dialog.Settings();
        QCOMPARE(answer.port, QStringLiteral("/dev/pts/9"));
        QCOMPARE(answer.baudRate, 57600);
        QCOMPARE(answer.feed, 321.0);
        QCOMPARE(answer.settleMs, 7);
        QVERIFY(answer.isHoming && !answer.isUnlocking);
        QCOMPARE(textOf(answer.offset), QByteArray("0 0 -4.5"));
        QCOMPARE(textOf(answer.scanTo), QByteArray("80 50 0"));
        QCOMPARE(answer.scanLines, 2);
        QCOMPARE(answer.max[1], 12.0);
        for (const QWidget* field :
             dialog.findChildren<QWidget*>(QRegularExpression(QStringLiteral("^stage"))))
            QVERIFY2(!field->accessibleName().isEmpty(), qPrintable(field->objectName()));
    }
};

QTEST_MAIN(tst_MachineLanguages)
#include "tst_MachineLanguages.moc"
