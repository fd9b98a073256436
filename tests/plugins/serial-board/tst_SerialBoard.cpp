// SPDX-License-Identifier: GPL-3.0-or-later
#include "BoardPort.h"
#include "MotionFile.h"
#include "PluginDriver.h"
#include "PtyBoard.h"
#include "SerialBoardSettings.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <chrono>
#include <cmath>
#include <memory>

namespace {

const QString kSettings = QStringLiteral("KestrixSerialBoard.ini");
const QString kMemory = QStringLiteral("KestrixSerialBoardPort.ini");
constexpr double kRate = 2000.0 / 7;
constexpr double kBootS = 0.25; // a board that was started anew says nothing at first
constexpr int kNumRows = 6000;
constexpr int kSpeed = 115200;

qint64 epochOfSteadyClock()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count() -
           duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

double sampleTimeS(int index)
{
    return kBootS + index / kRate;
}

bool isSame(double value, double expected)
{
    // Numbers are held as floats, printed to a thousandth of a microtesla.
    return std::abs(value - expected) <= 6e-4 + 3e-7 * std::abs(expected);
}

bool isSame(const CFieldIntensityResult& sample, const FieldVector& row)
{
    return isSame(static_cast<double>(sample.Bx()), row.x) &&
           isSame(static_cast<double>(sample.By()), row.y) && isSame(static_cast<double>(sample.Bz()), row.z);
}

bool isStrictlyAdvancing(const QVector<QSharedPointer<CFieldIntensityResult>>& samples)
{
    for (int i = 1; i < samples.size(); ++i) {
        if (epochNs(*samples.at(i)) <= epochNs(*samples.at(i - 1)))
            return false;
    }
    return true;
}

} // namespace

class tst_SerialBoard : public QObject
{
    Q_OBJECT

private:
    QVector<FieldVector> m_rows;
    std::unique_ptr<PtyBoard> m_board;
    std::unique_ptr<PluginDriver> m_driver;

    /// Sends the rows one by one, again and again, as `format`, each passed through `disturb`.
    void send(const NamedFormat& format, const std::function<PtyWrite(int, PtyWrite)>& disturb = {})
    {
        m_board->Start([this, format, disturb, index = -1]() mutable {
            const double timeS = sampleTimeS(++index);
            const PtyWrite write{timeS, (index == 0 ? format.head : QByteArray()) +
                                            format.print(m_rows.at(index % m_rows.size()), timeS)};
            return disturb ? disturb(index, write) : write;
        });
    }
    NamedFormat format(const char* name) const
    {
        const QVector<NamedFormat> formats = allFormats();
        for (const NamedFormat& format : formats) {
            if (qstrcmp(format.name, name) == 0)
                return format;
        }
        qFatal("No format %s", name);
    }
    QSharedPointer<CInstrument> listed()
    {
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        if (!m_driver->Start())
            return {};
        m_driver->Provider()->SetSerialPortSettings(m_board->Path(), kSpeed);
        return m_driver->Instruments().value(0);
    }
    /// Index of the row that a run of samples without a loss begins with; -1 if there is none.
    int firstRow(const QVector<QSharedPointer<CFieldIntensityResult>>& samples) const
    {
        for (int first = 0; first + samples.size() <= m_rows.size(); ++first) {
            int i = 0;
            while (i < samples.size() && isSame(*samples.at(i), m_rows.at(first + i)))
                ++i;
            if (i == samples.size())
                return first;
        }
        return -1;
    }
    double errorMs(const CFieldIntensityResult& sample, int row) const
    {
        const double startNs =
            static_cast<double>(epochNs(sample) - epochOfSteadyClock() - m_board->StartNs());
        return startNs * 1e-6 - sampleTimeS(row) * 1e3;
    }

private slots:
    void initTestCase()
    {
        m_rows = readMotionFile(kNumRows);
        if (m_rows.isEmpty())
            QSKIP("The real recordings are not at hand");
        QCOMPARE(m_rows.size(), kNumRows);
    }
    void init()
    {
        removeSettings(kMemory);
        writeSettings(kSettings, "[Board]\nUnit=uT\n[Port]\nTimeoutS=2\n");
        m_board = std::make_unique<PtyBoard>(QDir::current().filePath(QStringLiteral("board")));
        QVERIFY(m_board->Plug());
    }
    void cleanup()
    {
        m_board->Stop();
        m_driver.reset();
        m_board.reset();
    }

    void formats_data()
    {
        QTest::addColumn<int>("index");
        const QVector<NamedFormat> formats = allFormats();
        for (int i = 0; i < formats.size(); ++i)
            QTest::newRow(formats.at(i).name) << i;
    }
    void formats()
    {
        QFETCH(int, index);
        const NamedFormat format = allFormats().at(index);
        if (format.hasUnit)
            writeSettings(kSettings, "[Port]\nTimeoutS=2\n");
        const QSharedPointer<CInstrument> instrument = listed();
        QVERIFY(instrument);
        QCOMPARE(instrument->Interface(), CInstrumentInterface::Serial);
        QCOMPARE(instrument->RessourceName(), m_board->Path());

        send(format);
        QVERIFY2(instrument->Connect(), qPrintable(instrument->StatusString()));
        QVERIFY(instrument->IsConnected());
        const CUnits::UnitType unit = instrument->UnitList().first();
        tFlux microtesla = 0;
        ConvertUnits(unit, CUnits::MICRO_TESLA, microtesla, 1.0F);
        QVERIFY(std::abs(static_cast<double>(microtesla) - format.microteslaPerUnit) < 1e-6);

        // A board that sends as it likes has one rate.
        const CBoundedParm* rate = instrument->AcquisitionRateBound();
        QVERIFY2(std::abs(rate->Default() / kRate - 1) < 0.01, qPrintable(QString::number(rate->Default())));
        QCOMPARE(rate->Min(), rate->Max());
        QCOMPARE(instrument->KestrixAcquisitionRateBound()->Min(), rate->Min());
        QCOMPARE(instrument->KestrixAcquisitionRateBound()->Max(), rate->Max());
        QCOMPARE(instrument->FrequencyMaxBound()->Max(), rate->Max() / 2);

        Session session(instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, rate->Default(), 20, rate->Default() / 20);
        instrument->StartMeasurement();
        QVERIFY(instrument->IsRunning());
        QTRY_VERIFY(session.blocks.size() >= 4);
        instrument->StopMeasurement();
        QVERIFY(!instrument->IsRunning());

        const auto samples = session.Samples().mid(0, 80);
        QVERIFY(isStrictlyAdvancing(samples));
        const int first = firstRow(samples);
        QVERIFY(first > 0);
        double mean = 0;
        double squares = 0;
        for (int i = 0; i < samples.size(); ++i)
            mean += errorMs(*samples.at(i), first + i) / samples.size();
        for (int i = 0; i < samples.size(); ++i)
            squares += std::pow(errorMs(*samples.at(i), first + i) - mean, 2);
        const double jitterMs = std::sqrt(squares / samples.size());
        qInfo("times by the %s: %.2f ms late, jitter %.3f ms", format.hasTime ? "board" : "arrivals", mean,
              jitterMs);
        // A busy machine sends late, which is not the clock's fault.
        QVERIFY(std::abs(mean) < 25);
        QVERIFY(jitterMs < 2);
        QVERIFY(samples.first()->B() > 0);
        QVERIFY(samples.first()->dB() > 0);
    }

    // Half lines, garbage, bursts, lost lines and a pause, all in one run.
    void disturbedLine()
    {
        const QSharedPointer<CInstrument> instrument = listed();
        constexpr int kFirst = 350; // disturbances begin after the connection
        constexpr int kPauseAt = 620;
        constexpr double kPauseS = 0.4;
        send(format("labels"), [](int index, PtyWrite write) {
            if (index >= kPauseAt)
                write.atS += kPauseS;
            if (index < kFirst)
                return write;
            if (index % 50 == 10)
                write.bytes = write.bytes.left(14); // the rest is lost, and the next line runs into it
            if (index % 50 == 20)
                write.bytes = QByteArray("\xFE\x00\x91\xFF", 4) + write.bytes.mid(9);
            if (index % 50 == 30)
                write.bytes = "0.5\r\n" + write.bytes;
            if (index >= 450 && index < 530 && index % 8 != 0)
                write.atS = sampleTimeS(index - index % 8 + 8); // eight at once
            return write;
        });
        QVERIFY2(instrument->Connect(), qPrintable(instrument->StatusString()));
        Session session(instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        const double rate = instrument->AcquisitionRateBound()->Default();
        session.Configure(CTrigger::CONTINUOUS, rate, 10, rate / 10);
        instrument->StartMeasurement();
        QTRY_VERIFY(session.Samples().size() >= 500);
        instrument->StopMeasurement();

        const auto samples = session.Samples();
        QVERIFY(isStrictlyAdvancing(samples));
        // Every sample is a row of the file, in the order of the file, and none is made of two.
        int row = -1;
        int numFar = 0;
        double largestMs = 0;
        qint64 largestStepNs = 0;
        for (int i = 0; i < samples.size(); ++i) {
            int next = row + 1;
            const int limit = row < 0 ? m_rows.size() : std::min(row + 12, m_rows.size());
            while (next < limit && !isSame(*samples.at(i), m_rows.at(next)))
                ++next;
            QVERIFY2(next < limit, qPrintable(QStringLiteral("sample %1 after row %2").arg(i).arg(row)));
            // Rows repeat: where the search began is known from the time alone.
            if (row < 0) {
                const double timeS = errorMs(*samples.at(i), 0) * 1e-3;
                next = std::max(next, static_cast<int>(timeS * kRate) - 5);
                while (!isSame(*samples.at(i), m_rows.at(next)))
                    ++next;
            }
            row = next;
            const double error = errorMs(*samples.at(i), row) - (row >= kPauseAt ? kPauseS * 1e3 : 0);
            largestMs = std::max(largestMs, std::abs(error));
            numFar += std::abs(error) > 10 ? 1 : 0;
            if (i > 0)
                largestStepNs =
                    std::max(largestStepNs, epochNs(*samples.at(i)) - epochNs(*samples.at(i - 1)));
        }
        QVERIFY(row > kPauseAt);
        QVERIFY2(largestStepNs > 0.35e9, qPrintable(QString::number(largestStepNs)));
        QVERIFY(largestStepNs < 0.5e9);
        qInfo("times off by %.1f ms at most, %d of %d by more than 10 ms", largestMs, numFar, samples.size());
        QVERIFY(numFar < samples.size() / 5);
    }

    void portGoesAndComesBack()
    {
        QSharedPointer<CInstrument> instrument = listed();
        QVERIFY(instrument);
        const QString serialNumber = instrument->SerialNumber();
        QVERIFY(!serialNumber.isEmpty() && !serialNumber.contains(QLatin1Char('/')));
        send(format("labels"));
        QVERIFY(instrument->Connect());
        auto session = std::make_unique<Session>(instrument);
        session->Configure(CTrigger::CONTINUOUS, 286, 10, 28.6);
        instrument->StartMeasurement();
        QTRY_VERIFY(!session->blocks.isEmpty());

        QSignalSpy updated(m_driver->Provider(), &CInstrumentListProvider::InstrumentListUpdated);
        m_board->Unplug();
        QVERIFY(updated.wait());
        QVERIFY(m_driver->Instruments().isEmpty());
        QTRY_VERIFY(!instrument->IsConnected());
        QVERIFY(!instrument->IsRunning());
        instrument->Disconnect();
        const QPointer<CInstrument> old = instrument.data();
        session.reset();

        updated.clear();
        QVERIFY(m_board->Plug());
        QVERIFY(updated.wait());
        const QSharedPointer<CInstrument> again = m_driver->Instruments().value(0);
        QVERIFY(again);
        QVERIFY(again != instrument);
        instrument.clear();
        QVERIFY(!old);
        QCOMPARE(again->SerialNumber(), serialNumber);
        send(format("labels"));
        QVERIFY2(again->Connect(), qPrintable(again->StatusString()));
        Session second(again);
        second.Configure(CTrigger::CONTINUOUS, 286, 10, 28.6);
        again->StartMeasurement();
        QTRY_VERIFY(!second.blocks.isEmpty());
        QCOMPARE(m_driver->Instruments().value(0), again);
    }

    void modesAndParameters()
    {
        const QSharedPointer<CInstrument> instrument = listed();
        send(format("labels"));
        QVERIFY2(instrument->Connect(), qPrintable(instrument->StatusString()));
        QCOMPARE(instrument->TriggerList(),
                 (QList<CTrigger::TriggerMode>{CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER,
                                               CTrigger::EXTERNAL}));
        const double rate = instrument->AcquisitionRateBound()->Default();
        Session session(instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);

        // Another rate than the board's own is corrected.
        session.Configure(CTrigger::CONTINUOUS, 1000, 100, 10);
        QTRY_COMPARE(session.parameters.AcquisitionRate(), rate);
        QVERIFY(session.parameters.ApplyConfiguration());

        session.Configure(CTrigger::IMMEDIATE, rate, 20, rate / 20);
        QCOMPARE(session.parameters.ImmediateAcquisitionRate(), rate);
        instrument->StartMeasurement();
        QTRY_VERIFY(!instrument->IsRunning());
        QCOMPARE(session.blocks.size(), 1);
        QCOMPARE(session.blocks.first()->Results.size(), 20);

        // Blocks of 10 samples last 35 ms: at 5 blocks a second there is a pause behind each.
        session.blocks.clear();
        session.Configure(CTrigger::TIMER, rate, 10, 5);
        instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() >= 3);
        instrument->StopMeasurement();
        const double periodS = 1e-9 * static_cast<double>(epochNs(*session.blocks.at(2)->Results.first()) -
                                                          epochNs(*session.blocks.at(1)->Results.first()));
        QVERIFY2(std::abs(periodS - 0.2) < 0.1, qPrintable(QString::number(periodS)));

        session.blocks.clear();
        FakeTrigger trigger;
        session.parameters.SetTriggerPlugin(&trigger);
        session.Configure(CTrigger::EXTERNAL, rate, 10, rate / 10);
        instrument->StartMeasurement();
        emit trigger.Trigger();
        QTRY_COMPARE(session.blocks.size(), 1);
        // While a block is taken others are lost.
        instrument->SendTrigger();
        instrument->SendTrigger();
        emit trigger.Trigger();
        QTRY_COMPARE(session.blocks.size(), 2);
        instrument->SendTrigger();
        QTRY_COMPARE(session.blocks.size(), 3);
        instrument->StopMeasurement();
        instrument->StopMeasurement();
        session.parameters.SetTriggerPlugin(nullptr);

        // The mean of five readings at a fifth of the rate. The times are those of the middle reading.
        session.blocks.clear();
        session.Configure(CTrigger::CONTINUOUS, rate, 20, rate / 20);
        session.parameters.SetAveraging(5);
        const double fifth = QString::number(rate / 5, 'g', 6).toDouble();
        QTRY_COMPARE(session.parameters.AcquisitionRate(), fifth);
        QCOMPARE(instrument->AcquisitionRateBound()->Min(), fifth);
        QCOMPARE(instrument->AcquisitionRateBound()->Max(), fifth);
        session.Configure(CTrigger::CONTINUOUS, fifth, 8, fifth / 8);
        instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() >= 2);
        instrument->StopMeasurement();
        const auto means = session.Samples();
        const double stepS = 1e-9 * static_cast<double>(epochNs(*means.at(10)) - epochNs(*means.at(0))) / 10;
        QVERIFY2(std::abs(stepS * fifth - 1) < 0.05, qPrintable(QString::number(stepS)));
        bool isFound = false;
        for (int first = 0; !isFound && first + 50 <= m_rows.size(); ++first) {
            isFound = true;
            for (int i = 0; isFound && i < 10; ++i) {
                FieldVector sum;
                for (int k = 0; k < 5; ++k)
                    sum = sum + m_rows.at(first + 5 * i + k);
                isFound = isSame(*means.at(i), sum * 0.2);
            }
        }
        QVERIFY(isFound);

        // Nothing comes after the end.
        const int numBlocks = session.blocks.size();
        QTest::qWait(100);
        QCOMPARE(session.blocks.size(), numBlocks);
        instrument->Disconnect();
        instrument->Disconnect();
        QVERIFY(!instrument->IsConnected());
        QCOMPARE(instrument->StatusString(), QStringLiteral("Disconnected"));
    }

    void failedConnections_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QString>("status");
        QTest::newRow("silence") << QByteArray() << QByteArray() << QStringLiteral("sends nothing");
        QTest::newRow("wrong speed") << QByteArray("\xF8\x80\xFE\x1F\x98\n") << QByteArray()
                                     << QStringLiteral("is no reading of three axes");
        QTest::newRow("no unit") << QByteArray("1,2,3\n") << QByteArray()
                                 << QStringLiteral("does not tell its unit");
    }
    void failedConnections()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, settings);
        QFETCH(QString, status);
        writeSettings(kSettings, "[Port]\nTimeoutS=0.5\n" + settings);
        if (line.contains(','))
            writeSettings(kSettings, "[Port]\nTimeoutS=2\n");
        const QSharedPointer<CInstrument> instrument = listed();
        m_board->Start([line, index = 0]() mutable { return PtyWrite{++index / 100.0, line}; });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(status));
        QVERIFY(!instrument->Connect());
        QVERIFY(!instrument->IsConnected());
        QVERIFY2(instrument->StatusString().contains(status), qPrintable(instrument->StatusString()));
    }

    void portThatCannotBeOpened()
    {
        const QSharedPointer<CInstrument> instrument = listed();
        QVERIFY(instrument);
        m_board->Unplug();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be opened")));
        QVERIFY(!instrument->Connect());
        QVERIFY(instrument->StatusString().contains(QStringLiteral("cannot be opened")));
    }

    // The application tells the port when the user chooses it, and not at its next start.
    void portIsKept()
    {
        QVERIFY(listed());
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY(m_driver->Start());
        QCOMPARE(m_driver->Instruments().size(), 1);
        m_driver->Provider()->SetSerialPortSettings({}, 9600);
        QVERIFY(m_driver->Instruments().isEmpty());
        // A port in the settings file goes before.
        writeSettings(kSettings, "[Port]\nName=" + m_board->Path().toUtf8() + "\n");
        m_driver->Provider()->SetSerialPortSettings(QStringLiteral("ttyNone"), 9600);
        QCOMPARE(m_driver->Instruments().size(), 1);
        QCOMPARE(m_driver->Instruments().first()->RessourceName(), m_board->Path());
        QVERIFY(m_board->Path().endsWith(QStringLiteral("board")));
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

QTEST_GUILESS_MAIN(tst_SerialBoard)
#include "tst_SerialBoard.moc"
