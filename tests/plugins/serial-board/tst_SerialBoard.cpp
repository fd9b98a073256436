// SPDX-License-Identifier: GPL-3.0-or-later
#include "MotionFile.h"
#include "PluginDriver.h"
#include "PtyBoard.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <vector>

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

/// Lets events of the calling thread happen until then. False if the test's patience ends.
bool waitFor(const std::function<bool()>& isDone)
{
    QElapsedTimer waited;
    waited.start();
    while (!isDone() && waited.elapsed() < kLongWaitMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(2);
    }
    return isDone();
}

} // namespace

// For functions that return what is wrong, in threads that the test framework knows nothing of.
#define EXPECT(condition)                                                                                    \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            return QStringLiteral(#condition);                                                               \
    } while (false)

class tst_SerialBoard : public QObject
{
    Q_OBJECT

private:
    QVector<FieldVector> m_rows;
    std::unique_ptr<PtyBoard> m_board;
    std::unique_ptr<PluginDriver> m_driver;

    void send(const NamedFormat& format, const std::function<PtyWrite(int, PtyWrite)>& disturb = {})
    {
        send(*m_board, format, disturb);
    }
    /// Sends the rows one by one, again and again, as `format`, each passed through `disturb`.
    void send(PtyBoard& board, const NamedFormat& format,
              const std::function<PtyWrite(int, PtyWrite)>& disturb = {}) const
    {
        board.Start([this, format, disturb, index = -1]() mutable {
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
    static double errorMs(const PtyBoard& board, const CFieldIntensityResult& sample, int row)
    {
        const double startNs = static_cast<double>(epochNs(sample) - epochOfSteadyClock() - board.StartNs());
        return startNs * 1e-6 - sampleTimeS(row) * 1e3;
    }

    /// Measures a board of this format. What is wrong with it, or nothing.
    QString replay(const NamedFormat& format, int number) const
    {
        PtyBoard board(QDir::current().filePath(QStringLiteral("board-%1").arg(number)));
        PluginDriver driver(QStringLiteral(PLUGIN_PATH));
        EXPECT(board.Plug() && driver.Start());
        driver.Provider()->SetSerialPortSettings(board.Path(), kSpeed);
        const QSharedPointer<CInstrument> instrument = driver.Instruments().value(0);
        EXPECT(instrument && instrument->Interface() == CInstrumentInterface::Serial);
        EXPECT(instrument->RessourceName() == board.Path());
        send(board, format);
        if (!instrument->Connect())
            return instrument->StatusString();
        EXPECT(instrument->IsConnected());
        tFlux microtesla = 0;
        ConvertUnits(instrument->UnitList().first(), CUnits::MICRO_TESLA, microtesla, 1.0F);
        EXPECT(std::abs(static_cast<double>(microtesla) - format.microteslaPerUnit) < 1e-6);

        // A board that sends as it likes has one rate.
        const CBoundedParm* rate = instrument->AcquisitionRateBound();
        EXPECT(std::abs(rate->Default() / kRate - 1) < 0.05);
        EXPECT(rate->Min() == rate->Max());
        EXPECT(instrument->KestrixAcquisitionRateBound()->Min() == rate->Min());
        EXPECT(instrument->KestrixAcquisitionRateBound()->Max() == rate->Max());
        EXPECT(instrument->FrequencyMaxBound()->Max() == rate->Max() / 2);

        Session session(instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, rate->Default(), 20, rate->Default() / 20);
        instrument->StartMeasurement();
        EXPECT(instrument->IsRunning());
        EXPECT(waitFor([&session] { return session.blocks.size() >= 4; }));
        instrument->StopMeasurement();
        EXPECT(!instrument->IsRunning());

        const auto samples = session.Samples().mid(0, 80);
        EXPECT(isStrictlyAdvancing(samples));
        const int first = firstRow(samples);
        EXPECT(first > 0);
        EXPECT(samples.first()->B() > 0 && samples.first()->dB() > 0);
        double mean = 0;
        double squares = 0;
        for (int i = 0; i < samples.size(); ++i)
            mean += errorMs(board, *samples.at(i), first + i) / samples.size();
        for (int i = 0; i < samples.size(); ++i)
            squares += std::pow(errorMs(board, *samples.at(i), first + i) - mean, 2);
        const double jitterMs = std::sqrt(squares / samples.size());
        const double latenessMs = board.LargestLatenessS() * 1e3;
        qInfo("%s: times by the %s, %.2f ms late, jitter %.3f ms; sent up to %.1f ms late", format.name,
              format.hasTime ? "board" : "arrivals", mean, jitterMs, latenessMs);
        // A busy machine sends late, and reads late, which is not the clock's fault.
        EXPECT(std::abs(mean) < 50 + 3 * latenessMs);
        EXPECT(jitterMs < 20 + 2 * latenessMs);
        return {};
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
        writeSettings(kSettings, "[Board]\nUnit=uT\n[Port]\nTimeoutS=20\n");
        m_board = std::make_unique<PtyBoard>(QDir::current().filePath(QStringLiteral("board")));
        QVERIFY(m_board->Plug());
    }
    void cleanup()
    {
        m_board->Stop();
        m_driver.reset();
        m_board.reset();
    }

    // All formats at once, each on a board, a plug-in and a thread of its own: together they take no longer
    // than one.
    void formats_data()
    {
        QTest::addColumn<bool>("hasUnit");
        QTest::newRow("unit in the lines") << true;
        QTest::newRow("unit in the settings") << false;
    }
    void formats()
    {
        QFETCH(bool, hasUnit);
        writeSettings(kSettings,
                      hasUnit ? "[Port]\nTimeoutS=20\n" : "[Board]\nUnit=uT\n[Port]\nTimeoutS=20\n");
        QVector<NamedFormat> formats = allFormats();
        formats.erase(
            std::remove_if(formats.begin(), formats.end(),
                           [hasUnit](const NamedFormat& format) { return format.hasUnit != hasUnit; }),
            formats.end());
        QVERIFY(formats.size() > 3);
        std::vector<QString> faults(static_cast<size_t>(formats.size()));
        std::vector<std::unique_ptr<QThread>> threads;
        for (int i = 0; i < formats.size(); ++i) {
            QString* const fault = &faults.at(static_cast<size_t>(i));
            threads.emplace_back(
                QThread::create([this, fault, i, format = formats.at(i)] { *fault = replay(format, i); }));
            threads.back()->start();
        }
        for (const auto& thread : threads)
            thread->wait();
        for (int i = 0; i < formats.size(); ++i) {
            const QString& fault = faults.at(static_cast<size_t>(i));
            QVERIFY2(fault.isEmpty(),
                     qPrintable(QLatin1String(formats.at(i).name) + QLatin1String(": ") + fault));
        }
    }

    // Half lines, garbage, bursts, lost lines and a pause, all in one run.
    void disturbedLine()
    {
        const QSharedPointer<CInstrument> instrument = listed();
        constexpr int kFirst = 300; // disturbances begin after the connection
        constexpr int kPauseAt = 500;
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
            if (index >= 400 && index < 480 && index % 8 != 0)
                write.atS = sampleTimeS(index - index % 8 + 8); // eight at once
            return write;
        });
        QVERIFY2(instrument->Connect(), qPrintable(instrument->StatusString()));
        Session session(instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        const double rate = instrument->AcquisitionRateBound()->Default();
        session.Configure(CTrigger::CONTINUOUS, rate, 10, rate / 10);
        instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(session.Samples().size() >= 330, kLongWaitMs);
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
                const double timeS = errorMs(*m_board, *samples.at(i), 0) * 1e-3;
                next = std::max(next, static_cast<int>(timeS * kRate) - 5);
                while (!isSame(*samples.at(i), m_rows.at(next)))
                    ++next;
            }
            row = next;
            const double error =
                errorMs(*m_board, *samples.at(i), row) - (row >= kPauseAt ? kPauseS * 1e3 : 0);
            largestMs = std::max(largestMs, std::abs(error));
            numFar += std::abs(error) > 10 + 2 * m_board->LargestLatenessS() * 1e3 ? 1 : 0;
            if (i > 0)
                largestStepNs =
                    std::max(largestStepNs, epochNs(*samples.at(i)) - epochNs(*samples.at(i - 1)));
        }
        QVERIFY(row > kPauseAt);
        QVERIFY2(largestStepNs > 0.35e9, qPrintable(QString::number(largestStepNs)));
        const double latenessMs = m_board->LargestLatenessS() * 1e3;
        QVERIFY(static_cast<double>(largestStepNs) < 0.5e9 + 3e6 * latenessMs);
        qInfo("times off by %.1f ms at most, %d of %d by more than 10 ms", largestMs, numFar, samples.size());
        QVERIFY(numFar < samples.size() / 2);
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
        QTRY_VERIFY_WITH_TIMEOUT(!session->blocks.isEmpty(), kLongWaitMs);

        QSignalSpy updated(m_driver->Provider(), &CInstrumentListProvider::InstrumentListUpdated);
        m_board->Unplug();
        QVERIFY(updated.wait());
        QVERIFY(m_driver->Instruments().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!instrument->IsConnected(), kLongWaitMs);
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
        QTRY_VERIFY_WITH_TIMEOUT(!second.blocks.isEmpty(), kLongWaitMs);
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
        const auto rate = [&instrument] { return instrument->AcquisitionRateBound()->Default(); };
        Session session(instrument);
        session.parameters.SetUnits(CUnits::MICRO_TESLA);

        // Another rate than the board's own is corrected.
        session.Configure(CTrigger::CONTINUOUS, 1000, 100, 10);
        QTRY_COMPARE_WITH_TIMEOUT(session.parameters.AcquisitionRate(), rate(), kLongWaitMs);
        QVERIFY(session.parameters.ApplyConfiguration());

        session.Configure(CTrigger::IMMEDIATE, rate(), 20, rate() / 20);
        QCOMPARE(session.parameters.ImmediateAcquisitionRate(), rate());
        instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!instrument->IsRunning(), kLongWaitMs);
        QCOMPARE(session.blocks.size(), 1);
        QCOMPARE(session.blocks.first()->Results.size(), 20);

        // Blocks of 10 samples last 35 ms: at 5 blocks a second there is a pause behind each. A rate that is
        // found to be another one at the start changes the size of the blocks with it.
        session.blocks.clear();
        do {
            instrument->StopMeasurement();
            session.blocks.clear();
            session.Configure(CTrigger::TIMER, rate(), 10, 5);
            instrument->StartMeasurement();
        } while (session.parameters.DisplayRate() != 5);
        QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 3, kLongWaitMs);
        instrument->StopMeasurement();
        const double periodS = 1e-9 * static_cast<double>(epochNs(*session.blocks.at(2)->Results.first()) -
                                                          epochNs(*session.blocks.at(1)->Results.first()));
        // Two that are late by as much as a block are 0.2 s apart still; without a pause they were 35 ms.
        QVERIFY2(periodS > 0.1, qPrintable(QString::number(periodS)));

        session.blocks.clear();
        FakeTrigger trigger;
        session.parameters.SetTriggerPlugin(&trigger);
        session.Configure(CTrigger::EXTERNAL, rate(), 10, rate() / 10);
        instrument->StartMeasurement();
        emit trigger.Trigger();
        QTRY_COMPARE_WITH_TIMEOUT(session.blocks.size(), 1, kLongWaitMs);
        // While a block is taken others are lost.
        instrument->SendTrigger();
        instrument->SendTrigger();
        emit trigger.Trigger();
        QTRY_COMPARE_WITH_TIMEOUT(session.blocks.size(), 2, kLongWaitMs);
        instrument->SendTrigger();
        QTRY_COMPARE_WITH_TIMEOUT(session.blocks.size(), 3, kLongWaitMs);
        instrument->StopMeasurement();
        instrument->StopMeasurement();
        session.parameters.SetTriggerPlugin(nullptr);

        // The mean of five readings at a fifth of the rate. The times are those of the middle reading.
        session.blocks.clear();
        session.Configure(CTrigger::CONTINUOUS, rate(), 20, rate() / 20);
        const double full = rate();
        session.parameters.SetAveraging(5);
        const double fifth = QString::number(full / 5, 'g', 6).toDouble();
        QTRY_COMPARE_WITH_TIMEOUT(session.parameters.AcquisitionRate(), fifth, kLongWaitMs);
        QCOMPARE(rate(), fifth);
        QCOMPARE(instrument->AcquisitionRateBound()->Min(), fifth);
        QCOMPARE(instrument->AcquisitionRateBound()->Max(), fifth);
        session.Configure(CTrigger::CONTINUOUS, fifth, 8, fifth / 8);
        instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(session.blocks.size() >= 2, kLongWaitMs);
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

    // A rate that is known better by the time of a start counts from then on, and costs no sample of a block.
    void rateIsRefined()
    {
        const QSharedPointer<CInstrument> instrument = listed();
        // Soon after the connection the board is a little slower, so that there is something to learn.
        send(format("labels"), [](int /*index*/, PtyWrite write) {
            write.atS += std::max(0.0, write.atS - 1.1) * 0.009;
            return write;
        });
        QVERIFY2(instrument->Connect(), qPrintable(instrument->StatusString()));
        const double first = instrument->AcquisitionRateBound()->Default();
        Session session(instrument);
        session.Configure(CTrigger::CONTINUOUS, first, 28, first / 28);
        const auto refine = [&instrument] {
            instrument->StartMeasurement();
            instrument->StopMeasurement();
            return instrument->AcquisitionRateBound()->Default();
        };
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(refine() * 1.009 / kRate - 1) < 0.003, kLongWaitMs);
        m_board->Stop();
        const double rate = refine();
        QCOMPARE(instrument->AcquisitionRateBound()->Min(), rate);
        QCOMPARE(instrument->KestrixAcquisitionRateBound()->Max(), rate);
        QCOMPARE(session.parameters.AcquisitionRate(), rate);
        // What a busy machine learnt at first may be far off.
        if (std::abs(first / rate - 1) < 0.01)
            QCOMPARE(session.parameters.BlockSize(), 28);
        QVERIFY(session.parameters.ApplyConfiguration());
        QCOMPARE(refine(), rate);
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
        writeSettings(kSettings,
                      line.contains(',') ? "[Port]\nTimeoutS=20\n" : "[Port]\nTimeoutS=0.2\n" + settings);
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
        QSignalSpy updated(m_driver->Provider(), &CInstrumentListProvider::InstrumentListUpdated);
        m_driver->Provider()->SetSerialPortSettings({}, 9600);
        QVERIFY(m_driver->Instruments().isEmpty());
        // The caller is in the middle of saving, and hears of it afterwards.
        QCOMPARE(updated.count(), 0);
        QTRY_COMPARE(updated.count(), 1);
        // A port in the settings file goes before.
        writeSettings(kSettings, "[Port]\nName=" + m_board->Path().toUtf8() + "\n");
        m_driver->Provider()->SetSerialPortSettings(QStringLiteral("ttyNone"), 9600);
        QCOMPARE(m_driver->Instruments().size(), 1);
        QCOMPARE(m_driver->Instruments().first()->RessourceName(), m_board->Path());
        QVERIFY(m_board->Path().endsWith(QStringLiteral("board")));
    }
};

QTEST_GUILESS_MAIN(tst_SerialBoard)
#include "tst_SerialBoard.moc"
