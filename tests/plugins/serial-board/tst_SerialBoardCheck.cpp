// SPDX-License-Identifier: GPL-3.0-or-later
#include "BoardPort.h"
#include "PluginDriver.h"
#include "PtyBoard.h"
#include "SerialBoardSettings.h"

#include <QDir>
#include <QProcess>
#include <QTest>

namespace {

const QString kSettings = QStringLiteral("KestrixSerialBoard.ini");

} // namespace

/// Boards without a measurement: their identity, their settings, and what the check of plug-ins says.
class tst_SerialBoardCheck : public QObject
{
    Q_OBJECT

private slots:
    void checkFindsNothing()
    {
        PtyBoard board(QDir::current().filePath(QStringLiteral("board")));
        QVERIFY(board.Plug());
        // A busy machine sends late: its own clock gives the samples an even pace.
        board.Start([index = 0]() mutable {
            ++index;
            return PtyWrite{index / 200.0,
                            "t_us:" + QByteArray::number(index * 5000) +
                                " x_uT:20.50 y_uT:-3.25 z_uT:" + QByteArray::number(41 + index % 3) + '\n'};
        });
        writeSettings(kSettings, "[Port]\nTimeoutS=30\nName=" + board.Path().toUtf8() + '\n');
        QProcess check;
        // A busy machine must not look like a slow plug-in.
        check.start(QStringLiteral(CHECKER),
                    {QStringLiteral("--slow"), QStringLiteral("5000"), QStringLiteral("--blocks"),
                     QStringLiteral("2"), QStringLiteral("--wait"), QStringLiteral("30"),
                     QStringLiteral(PLUGIN_PATH)});
        QVERIFY(check.waitForFinished(90000));
        const QByteArray report = check.readAllStandardOutput();
        QVERIFY2(check.exitCode() == 0, report.constData());
        QVERIFY2(report.contains("Serial board"), report.constData());
        // Only automatic ranging can be chosen: the sensor of a board is not known.
        QVERIFY2(report.contains("0 errors, 1 warnings") && report.contains("ranges-empty"),
                 report.constData());
    }

    void boardsAreToldApart()
    {
        const BoardPort first{
            QStringLiteral("/dev/ttyACM0"), QStringLiteral("A1/x - 2"), {}, {}, 0x2341, 0x8036};
        const BoardPort second{QStringLiteral("/dev/ttyACM0"), QStringLiteral("B7"), {}, {}, 0x2341, 0x8036};
        const BoardPort moved{
            QStringLiteral("/dev/ttyACM1"), QStringLiteral("A1/x - 2"), {}, {}, 0x2341, 0x8036};
        const BoardPort nameless{QStringLiteral("/dev/ttyUSB0"), {}, {}, {}, 0x1A86, 0x7523};
        const QString port = QStringLiteral("ttyACM0");
        const QString identity = QStringLiteral("A1-x-2");
        QCOMPARE(identityOf(first, port), identity);
        QCOMPARE(identityOf(nameless, QStringLiteral("ttyUSB0")), QStringLiteral("1a86-7523 ttyUSB0"));
        QCOMPARE(identityOf({QStringLiteral("/dev/pts/7"), {}, {}, {}, 0, 0}, QStringLiteral("/dev/pts/7")),
                 QStringLiteral("dev-pts-7"));

        const auto found = [&port](const QString& wanted, const QList<BoardPort>& available) {
            const auto board = findBoard({port, wanted}, available);
            return board ? board->location + QLatin1Char(' ') + board->serialNumber : QString();
        };
        QCOMPARE(found({}, {first, nameless}), QStringLiteral("/dev/ttyACM0 A1/x - 2"));
        QCOMPARE(found({}, {nameless}), QString());
        QCOMPARE(found(identity, {first}), QStringLiteral("/dev/ttyACM0 A1/x - 2"));
        // Another board at its port is not it; at another port it is.
        QCOMPARE(found(identity, {second}), QString());
        QCOMPARE(found(identity, {second, moved}), QStringLiteral("/dev/ttyACM1 A1/x - 2"));
        QCOMPARE(found(identity, {}), QString());
        // Boards without a number are known by their kind and port.
        QVERIFY(!findBoard({QStringLiteral("ttyUSB0"), QStringLiteral("0403-6001 ttyUSB0")}, {nameless}));
        QVERIFY(findBoard({QStringLiteral("/dev/ttyUSB0"), {}}, {nameless}));
        QVERIFY(!findBoard({{}, {}}, {nameless}));
    }

    void settingsFile()
    {
        writeSettings(kSettings,
                      "[Port]\nName=/dev/ttyUSB3\nSpeed=57600\nTimeoutS=1000\n"
                      "[Board]\nUnit=Gauss\nScale=0.5\nColumns=time, z, -, y, x\nRange=8\nUncertainty=-1\n"
                      "Manufacturer=Me\nModel=Mine\nCalibrationDate=2026-03-01\n");
        SerialBoardSettings settings = SerialBoardSettings::Load();
        QCOMPARE(settings.port, QStringLiteral("/dev/ttyUSB3"));
        QCOMPARE(settings.speed, 57600);
        QCOMPARE(settings.timeoutS, 60.0);
        QCOMPARE(settings.unit, CUnits::GAUSS);
        QCOMPARE(settings.scale, 0.5);
        using Column = CBoardLineParser::Column;
        QCOMPARE(settings.columns,
                 (QVector<Column>{Column::Time, Column::Z, Column::Other, Column::Y, Column::X}));
        QCOMPARE(settings.range, 8.0);
        QCOMPARE(settings.uncertainty, 0.0);
        QCOMPARE(settings.manufacturer, QStringLiteral("Me"));
        QCOMPARE(settings.model, QStringLiteral("Mine"));
        QCOMPARE(settings.calibrationDate, QDate(2026, 3, 1));

        writeSettings(kSettings, "[Board]\nUnit=furlong\nColumns=x,y\n");
        settings = SerialBoardSettings::Load();
        QCOMPARE(settings.unit, CUnits::UNKNOWN);
        QVERIFY(settings.columns.isEmpty());
        QVERIFY(settings.port.isEmpty());
        QCOMPARE(settings.speed, 0);
        QCOMPARE(settings.timeoutS, 6.0);
        writeSettings(kSettings, "[Board]\nUnit=\xC2\xB5T\n");
        QVERIFY(SerialBoardSettings::Load().unit == CUnits::MICRO_TESLA ||
                SerialBoardSettings::Load().unit == CUnits::UNKNOWN);
    }
};

QTEST_GUILESS_MAIN(tst_SerialBoardCheck)
#include "tst_SerialBoardCheck.moc"
