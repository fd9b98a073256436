// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBoardLineParser.h"

#include <QTest>

namespace {

using Lines = QList<QByteArray>;
using Column = CBoardLineParser::Column;

struct Expected
{
    double x, y, z;
    CUnits::UnitType unit;
};

QList<BoardReading> readAll(CBoardLineParser& parser, const Lines& lines)
{
    QList<BoardReading> readings;
    for (const QByteArray& line : lines) {
        if (const auto reading = parser.Feed(line))
            readings.append(*reading);
    }
    return readings;
}

} // namespace

Q_DECLARE_METATYPE(Expected)

class tst_CBoardLineParser : public QObject
{
    Q_OBJECT

private slots:
    void formats_data();
    void formats();
    void axesOnLinesOfTheirOwn();
    void brokenSamplesAreDropped();
    void timeAndTemperature();
    void headerNamesTheColumns();
    void fourColumns();
    void configuredColumns();
    void otherSensorsOfTheBoard();
    void linesRunTogether();
    void linesCutBeforeTheirUnit();
    void lastDigit_data();
    void lastDigit();
    void lostSamplesAreCounted();
    void rejected_data();
    void rejected();
};

void tst_CBoardLineParser::formats_data()
{
    QTest::addColumn<Lines>("lines");
    QTest::addColumn<Expected>("expected");

    const Expected inMicroTesla{12.34, -5.67, 40.12, CUnits::MICRO_TESLA};
    QTest::newRow("labels and blanks") << Lines{"X: 12.34  Y: -5.67  Z: 40.12  uT"} << inMicroTesla;
    QTest::newRow("carriage return") << Lines{"X: 12.34  Y: -5.67  Z: 40.12  uT\r\n"} << inMicroTesla;
    QTest::newRow("commas, empty lines")
        << Lines{"", "X: 12.34, Y: -5.67, Z: 40.12 uT", "\r"} << inMicroTesla;
    QTest::newRow("micro sign") << Lines{"X: 12.34  Y: -5.67  Z: 40.12  \xC2\xB5T"} << inMicroTesla;
    QTest::newRow("micro in one byte") << Lines{"X: 12.34  Y: -5.67  Z: 40.12  \xB5T"} << inMicroTesla;
    QTest::newRow("Greek letter") << Lines{"X: 12.34  Y: -5.67  Z: 40.12  \xCE\xBCT"} << inMicroTesla;
    QTest::newRow("axis by axis") << Lines{"X: 12.34 uT", "Y: -5.67 uT", "Z: 40.12 uT"} << inMicroTesla;
    QTest::newRow("unit at each value") << Lines{"X = 0.49 mT; Y = -0.20 mT; Z = 1.96 mT"}
                                        << Expected{0.49, -0.20, 1.96, CUnits::MILLI_TESLA};
    QTest::newRow("bare, semicolons")
        << Lines{"0.49 ; -0.20 ; 1.96"} << Expected{0.49, -0.20, 1.96, CUnits::UNKNOWN};
    QTest::newRow("bare, commas") << Lines{"1,-2.5,3e1"} << Expected{1, -2.5, 30, CUnits::UNKNOWN};
    QTest::newRow("bare, tabs") << Lines{"+1\t.5\t-3."} << Expected{1, 0.5, -3, CUnits::UNKNOWN};
    QTest::newRow("bare, blanks and unit") << Lines{"1 2  3 nT"} << Expected{1, 2, 3, CUnits::NANO_TESLA};
    QTest::newRow("comma at the end") << Lines{"1,2,3,"} << Expected{1, 2, 3, CUnits::UNKNOWN};
    QTest::newRow("brackets") << Lines{"magX[1.2] magY[3.4] magZ[5.6] temperature(C)[25.0]"}
                              << Expected{1.2, 3.4, 5.6, CUnits::UNKNOWN};
    QTest::newRow("plotter") << Lines{"x:1.2,y:3.4,z:5.6"} << Expected{1.2, 3.4, 5.6, CUnits::UNKNOWN};
    QTest::newRow("plotter with units in labels")
        << Lines{"Bx_uT:1.2\tBy_uT:3.4\tBz_uT:5.6"} << Expected{1.2, 3.4, 5.6, CUnits::MICRO_TESLA};
    // What the sketches in examples/boards print.
    QTest::newRow("plotter with time")
        << Lines{"t_us:4123456 x_uT:12.34 y_uT:-5.67 z_uT:40.12\r"} << inMicroTesla;
    QTest::newRow("JSON") << Lines{R"({"x": 1.2, "y": -3.4, "z": 5.6})"}
                          << Expected{1.2, -3.4, 5.6, CUnits::UNKNOWN};
    QTest::newRow("JSON with unit") << Lines{R"({"unit":"mG","x":1.2,"y":-3.4,"z":5.6})"}
                                    << Expected{1.2, -3.4, 5.6, CUnits::MILLI_GAUSS};
    QTest::newRow("JSON, bare keys") << Lines{"{x:1.2,y:-3.4,z:5.6}"}
                                     << Expected{1.2, -3.4, 5.6, CUnits::UNKNOWN};
    QTest::newRow("gauss") << Lines{"X: 1 Y: 2 Z: 3 gauss"} << Expected{1, 2, 3, CUnits::GAUSS};
    QTest::newRow("G") << Lines{"X: 1G Y: 2G Z: 3G"} << Expected{1, 2, 3, CUnits::GAUSS};
    QTest::newRow("T") << Lines{"X: 1 Y: 2 Z: 3 T"} << Expected{1, 2, 3, CUnits::TESLA};
    QTest::newRow("mG") << Lines{"X: 1 Y: 2 Z: 3 mG"} << Expected{1, 2, 3, CUnits::MILLI_GAUSS};
}

void tst_CBoardLineParser::formats()
{
    QFETCH(Lines, lines);
    QFETCH(Expected, expected);
    CBoardLineParser parser;
    const QList<BoardReading> readings = readAll(parser, lines);
    QCOMPARE(readings.size(), 1);
    QCOMPARE(readings.first().field.x, expected.x);
    QCOMPARE(readings.first().field.y, expected.y);
    QCOMPARE(readings.first().field.z, expected.z);
    QCOMPARE(readings.first().unit, expected.unit);
    QCOMPARE(parser.RejectedLines(), 0);
}

void tst_CBoardLineParser::axesOnLinesOfTheirOwn()
{
    CBoardLineParser parser;
    const QList<BoardReading> readings =
        readAll(parser, {"X: 1 uT", "Y: 2 uT", "Z: 3 uT", "", "X: 4 uT", "Y: 5 uT", "Z: 6 uT"});
    QCOMPARE(readings.size(), 2);
    QCOMPARE(readings.at(1).field.x, 4.0);
    QCOMPARE(readings.at(1).field.z, 6.0);
}

void tst_CBoardLineParser::brokenSamplesAreDropped()
{
    CBoardLineParser parser;
    // A lost line, garbage between the axes, and a gap: no sample is made of the parts of two.
    QVERIFY(readAll(parser, {"X: 1 uT", "Z: 3 uT"}).isEmpty());
    QVERIFY(readAll(parser, {"Y: 2 uT", "Z: 3 uT"}).isEmpty());
    QVERIFY(readAll(parser, {"X: 1 uT", "Y: 2\x01 uT", "Z: 3 uT"}).isEmpty());
    QVERIFY(readAll(parser, {"X: 1 uT", "Y: 2 mT", "Z: 3 uT"}).isEmpty());
    QVERIFY(readAll(parser, {"X: 1 uT", "Y: 2 uT"}).isEmpty());
    parser.Interrupt();
    QVERIFY(readAll(parser, {"Z: 3 uT"}).isEmpty());
    // The end of a line that lost its beginning.
    QVERIFY(readAll(parser, {"34  Y: -5.67  Z: 40.12  uT"}).isEmpty());
    QCOMPARE(readAll(parser, {"X: 7 uT", "Y: 8 uT", "Z: 9 uT"}).size(), 1);
}

void tst_CBoardLineParser::timeAndTemperature()
{
    CBoardLineParser parser;
    const auto brackets = parser.Feed("magX[1.2] magY[3.4] magZ[5.6] temperature(C)[25.5]");
    QVERIFY(brackets && !brackets->deviceTime);
    QCOMPARE(*brackets->temperature, 25.5);

    const auto labelled = parser.Feed("t_ms:1250,x:1,y:2,z:3,T:21.5");
    QVERIFY(labelled && labelled->deviceTime && labelled->temperature);
    QCOMPARE(*labelled->deviceTime, 1250.0);
    QCOMPARE(labelled->timeUnit, BoardTimeUnit::Milliseconds);
    QCOMPARE(*labelled->temperature, 21.5);
    QCOMPARE(labelled->unit, CUnits::UNKNOWN);

    const auto json = parser.Feed(R"({"time": 12.5, "x": 1, "y": 2, "z": 3})");
    QVERIFY(json && json->deviceTime);
    QCOMPARE(*json->deviceTime, 12.5);
    QCOMPARE(json->timeUnit, BoardTimeUnit::Unknown);

    const auto five = parser.Feed("12.5 1 2 3 20.25");
    QVERIFY(five && five->deviceTime && five->temperature);
    QCOMPARE(*five->deviceTime, 12.5);
    QCOMPARE(five->field.z, 3.0);
    QCOMPARE(*five->temperature, 20.25);
}

void tst_CBoardLineParser::headerNamesTheColumns()
{
    CBoardLineParser parser;
    QVERIFY(!parser.Feed("time (us), temp, Z (uT), Y (uT), X (uT), status"));
    const auto reading = parser.Feed("5000,21,3,2,1,7");
    QVERIFY(reading);
    QCOMPARE(reading->field.x, 1.0);
    QCOMPARE(reading->field.y, 2.0);
    QCOMPARE(reading->field.z, 3.0);
    QCOMPARE(reading->unit, CUnits::MICRO_TESLA);
    QCOMPARE(*reading->deviceTime, 5000.0);
    QCOMPARE(reading->timeUnit, BoardTimeUnit::Microseconds);
    QCOMPARE(*reading->temperature, 21.0);
    QCOMPARE(parser.RejectedLines(), 0);

    // A line cut short has another number of columns.
    QVERIFY(!parser.Feed("5000,21,3,2"));
    QCOMPARE(parser.RejectedLines(), 1);
    // The header comes again when the board starts anew.
    QVERIFY(!parser.Feed("x y z"));
    QVERIFY(parser.Feed("1 2 3"));
}

void tst_CBoardLineParser::fourColumns()
{
    CBoardLineParser clock;
    QList<BoardReading> readings =
        readAll(clock, {"10,1,2,3", "20,1,2,3", "30,1,2,3", "40,1,2,3", "50,4,5,6"});
    QCOMPARE(readings.size(), 2);
    QCOMPARE(*readings.last().deviceTime, 50.0);
    QCOMPARE(readings.last().field.x, 4.0);
    QVERIFY(!readings.last().temperature);

    QVERIFY(clock.HasGuessedClock());
    // It is found to be one: from now on it may start anew.
    clock.JudgeGuessedClock(true);
    QVERIFY(clock.Feed("5,1,2,3")->deviceTime);

    // A field that grows by chance is no clock: what falls gives it away, as does who knows the host's clock.
    CBoardLineParser growing;
    QCOMPARE(readAll(growing, {"1,1,2,25", "2,1,2,25", "3,1,2,25", "4,1,2,25"}).size(), 1);
    QVERIFY(growing.HasGuessedClock());
    readings = readAll(growing, {"3,1,2,25", "1,1,2,25", "2,1,2,25", "4,7,2,25"});
    QCOMPARE(readings.size(), 1);
    QVERIFY(!readings.last().deviceTime);
    QCOMPARE(readings.last().field.y, 7.0);
    CBoardLineParser judged;
    readAll(judged, {"1,1,2,25", "2,1,2,25", "3,1,2,25", "4,1,2,25"});
    judged.JudgeGuessedClock(false);
    QVERIFY(!judged.HasGuessedClock());
    QCOMPARE(judged.Feed("5,1,2,25")->field.x, 5.0);

    CBoardLineParser temperature;
    readings = readAll(temperature, {"10,1,2,25", "11,1,2,25", "9,1,2,25", "12,1,2,25"});
    QCOMPARE(readings.size(), 1);
    QCOMPARE(readings.last().field.x, 12.0);
    QCOMPARE(*readings.last().temperature, 25.0);
    QVERIFY(!readings.last().deviceTime);
}

void tst_CBoardLineParser::configuredColumns()
{
    CBoardLineParser parser({Column::Other, Column::Z, Column::Y, Column::X});
    const auto reading = parser.Feed("99;3;2;1");
    QVERIFY(reading);
    QCOMPARE(reading->field.x, 1.0);
    QCOMPARE(reading->field.y, 2.0);
    QCOMPARE(reading->field.z, 3.0);
    QVERIFY(!parser.Feed("3;2;1"));
}

void tst_CBoardLineParser::otherSensorsOfTheBoard()
{
    CBoardLineParser parser;
    const auto reading =
        parser.Feed("accX:0.1 accY:0.2 accZ:9.8 x:7 y:8 z:9 mag_x:1 mag_y:2 mag_z:3 heading:271.5 uT:5");
    QVERIFY(reading);
    QCOMPARE(reading->field.x, 1.0);
    QCOMPARE(reading->field.y, 2.0);
    QCOMPARE(reading->field.z, 3.0);
}

void tst_CBoardLineParser::linesRunTogether()
{
    CBoardLineParser parser;
    QVERIFY(parser.Feed("1,2,3"));
    // Two lines that lost what was between them look like one with a time and a temperature.
    QVERIFY(!parser.Feed("1,2,34,5,6"));
    QCOMPARE(parser.RejectedLines(), 1);
    QVERIFY(parser.Feed("4,5,6"));
    // A board that goes on so prints something else now.
    QCOMPARE(readAll(parser, {"9,1,2,3,20", "10,1,2,3,20", "11,1,2,3,20"}).size(), 0);
    const auto reading = parser.Feed("12,4,5,6,21");
    QVERIFY(reading && reading->deviceTime);
    QCOMPARE(*reading->deviceTime, 12.0);
    QCOMPARE(reading->field.x, 4.0);
}

void tst_CBoardLineParser::linesCutBeforeTheirUnit()
{
    CBoardLineParser parser;
    QVERIFY(parser.Feed("X: 12.34  Y: -5.67  Z: 40.12  uT"));
    QVERIFY(!parser.Feed("X: 12.34  Y: -5.67  Z: 4"));
    QVERIFY(parser.Feed("X: 12.34  Y: -5.67  Z: 40.12  uT"));
    QCOMPARE(parser.RejectedLines(), 1);
    QCOMPARE(readAll(parser, {"X: 1 Y: 2 Z: 3", "X: 1 Y: 2 Z: 3", "X: 1 Y: 2 Z: 3"}).size(), 0);
    QVERIFY(parser.Feed("X: 1 Y: 2 Z: 3"));
}

void tst_CBoardLineParser::lastDigit_data()
{
    QTest::addColumn<Lines>("lines");
    QTest::addColumn<double>("step");
    QTest::newRow("hundredths") << Lines{"X: 12.34  Y: -5.67  Z: 40.12  uT"} << 0.01;
    QTest::newRow("whole") << Lines{"412 -100 35"} << 1.0;
    QTest::newRow("the coarsest of three") << Lines{"0.125;1.5;2.25"} << 0.1;
    QTest::newRow("exponent") << Lines{"1.25e-5 1.50E-5 1.00e-5"} << 1e-7;
    QTest::newRow("the time has another one") << Lines{"12,0.5,0.5,0.5,20"} << 0.1;
    QTest::newRow("axis by axis") << Lines{"X: 1.00 uT", "Y: 2.0 uT", "Z: 3.00 uT"} << 0.1;
}

void tst_CBoardLineParser::lastDigit()
{
    QFETCH(Lines, lines);
    QFETCH(double, step);
    CBoardLineParser parser;
    const QList<BoardReading> readings = readAll(parser, lines);
    QCOMPARE(readings.size(), 1);
    QCOMPARE(readings.first().step, step);
}

void tst_CBoardLineParser::lostSamplesAreCounted()
{
    CBoardLineParser parser;
    QList<BoardReading> readings = readAll(parser, {"1,2,3", "4,\x01,6", "", "7,8", "9,10,11", "12,13,14"});
    QCOMPARE(readings.size(), 3);
    QCOMPARE(readings.at(0).lostBefore, 0);
    QCOMPARE(readings.at(1).lostBefore, 2);
    QCOMPARE(readings.at(2).lostBefore, 0);
    // Three lines of one axis each are a sample: how many are lost cannot be told from lines.
    CBoardLineParser axes;
    readings = readAll(axes, {"X:1", "Y:2", "Z:3", "X:1", "Y:\x01", "Z:3", "X:4", "Y:5", "Z:6"});
    QCOMPARE(readings.size(), 2);
    QCOMPARE(readings.at(1).lostBefore, 0);
}

void tst_CBoardLineParser::rejected_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("banner") << QByteArray("Magnetometer ready");
    QTest::newRow("banner with axes") << QByteArray("reading x and y");
    QTest::newRow("two numbers") << QByteArray("1.5 2.5");
    QTest::newRow("six numbers") << QByteArray("1 2 3 4 5 6");
    QTest::newRow("not a number") << QByteArray("1 nan 3");
    QTest::newRow("empty column") << QByteArray("1,,3");
    QTest::newRow("two points") << QByteArray("1.2.3 4 5");
    QTest::newRow("a lone sign") << QByteArray("1 - 3");
    QTest::newRow("a sign before no number") << QByteArray("X: - Y: 2 Z: 3");
    QTest::newRow("beyond a float") << QByteArray("1e39 4 5");
    QTest::newRow("beyond a float in another unit") << QByteArray("X: 1 Y: -3e35 Z: 3 T");
    QTest::newRow("zero with a last digit beyond") << QByteArray("1 0e300 3");
    QTest::newRow("infinite") << QByteArray("X: inf Y: -inf Z: 3");
    QTest::newRow("overflow") << QByteArray("1e999 4 5");
    QTest::newRow("labelled overflow") << QByteArray("X:1e999 Y:4 Z:5");
    QTest::newRow("labelled, two points") << QByteArray("X: 1.2.3 Y: 4 Z: 5");
    QTest::newRow("two lines run together") << QByteArray("X: 1 Y: 2 X: 3 Y: 4 Z: 5");
    QTest::newRow("two units") << QByteArray("X: 1 uT Y: 2 mT Z: 3 uT");
    QTest::newRow("control characters") << QByteArray("1\x00 2 3", 6);
    QTest::newRow("bytes of another speed") << QByteArray("\xF8\x80\xFE\x1F\x98");
    QTest::newRow("endless") << QByteArray(5000, '1');
    QTest::newRow("no axis") << QByteArray("heading: 12.5 pitch: 3");
    QTest::newRow("empty JSON") << QByteArray("{\"x\":}");
}

void tst_CBoardLineParser::rejected()
{
    QFETCH(QByteArray, line);
    CBoardLineParser parser;
    QVERIFY(!parser.Feed(line));
    QCOMPARE(parser.RejectedLines(), 1);
    // The next good line is read.
    QVERIFY(parser.Feed("X: 1 Y: 2 Z: 3"));
}

QTEST_APPLESS_MAIN(tst_CBoardLineParser)
#include "tst_CBoardLineParser.moc"
