// SPDX-License-Identifier: GPL-3.0-or-later
// Files go from the program to the Python module kestrix_records and back.

#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr int kBlocks = 20;
constexpr int kSamples = 50;
const QDateTime kStart(QDate(2024, 3, 1), QTime(23, 59, 58));

/// Nanoseconds behind kStart; goes over midnight.
qint64 timeOf(int block, int sample)
{
    return (block * kSamples + sample) * 4000003LL;
}

/// With few enough digits for the file to hold all of them.
double fluxOf(int block, int sample, int column)
{
    return (block * 1000 + sample - 500 * column) / 4.0;
}

void fill(CMeasureBlock& block, int number)
{
    block.SetComment(QStringLiteral("block %1").arg(number));
    for (int i = 0; i < kSamples; ++i) {
        auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->Timestamp = kStart.addMSecs(timeOf(number, i) / 1000000);
        sample->TimestampNanoseconds = static_cast<quint32>(timeOf(number, i) % 1000000000);
        const auto flux = [&](int column) { return static_cast<tFlux>(fluxOf(number, i, column)); };
        sample->SetB(flux(0));
        sample->SetBBprime(flux(1));
        sample->SetBx(flux(2));
        sample->SetBy(flux(3));
        sample->SetBz(flux(4));
        sample->SetDB(flux(5));
        sample->SetTemperature(static_cast<quint16>(number * 100 + i));
        block.Results.append(sample);
    }
}

/// Of any size, so that each way to write a number comes up.
void fillAtRandom(CMeasureBlock& block)
{
    std::mt19937 random(7);
    const auto flux = [&random] {
        const auto scale = static_cast<float>(random() % 30) - 15;
        return std::ldexp(static_cast<tFlux>(random() % 20000001) - 10000000, static_cast<int>(scale));
    };
    for (int i = 0; i < 2000; ++i) {
        auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->Timestamp = kStart.addSecs(60);
        sample->SetB(flux());
        sample->SetBx(flux());
        sample->SetBy(i % 100 == 0 ? std::numeric_limits<tFlux>::quiet_NaN() : flux());
        sample->SetBz(i % 100 == 1 ? -std::numeric_limits<tFlux>::infinity() : flux());
        sample->SetDB(i % 100 == 2 ? -0.0F : flux());
        block.Results.append(sample);
    }
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

/// The second line of a CSV file tells the second in which it was saved.
QList<QByteArray> linesWithoutTime(const QString& path)
{
    QList<QByteArray> lines = contentOf(path).split('\n');
    lines.removeAt(1);
    return lines;
}

} // namespace

class tst_RecordsTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (QStringLiteral(PYTHON_PATH).endsWith(QLatin1String("NOTFOUND")))
            QSKIP("there is no python3");
        m_settings.SetSaveRecordingsAsCsv(true);
        m_parameters.SetUnits(CUnits::MICRO_TESLA);
        m_parameters.SetTriggerMode(CTrigger::TIMER);
        m_parameters.SetRange(0.3F);
        m_parameters.SetDisplayRate(5);
        m_parameters.SetAcquisitionRate(250);
    }

    void measurementOfTheProgram()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.DataSet()->SetMeasurementParameters(&m_parameters);
        for (int i = 0; i < kBlocks; ++i) {
            const auto block = QSharedPointer<CMeasureBlock>::create();
            fill(*block, i);
            manager.AddMeasureBlock(block);
        }
        const auto last = QSharedPointer<CMeasureBlock>::create();
        fillAtRandom(*last);
        manager.AddMeasureBlock(last);
        manager.SetBodyComment(QStringLiteral("\u00b5 <all> & \"everything\""));
        manager.Save(pathOf("measurement.qdr.xml"));

        checkFilesOfTheProgram("measurement");
        const QList<QByteArray> rows = contentOf(pathOf("measurement.table.csv")).split('\n');
        QCOMPARE(rows.size(), 1 + kBlocks * kSamples + 2000 + 1);
        for (int i = 0; i < kBlocks * kSamples && !QTest::currentTestFailed(); ++i)
            compareRow(rows[i + 1], i, 1);
    }

    void mappingOfTheProgram()
    {
        CRecordingManagerMapping manager(m_settings);
        manager.DataSet()->SetMeasurementParameters(&m_parameters);
        for (int i = 0; i < kBlocks; ++i) {
            const auto block = QSharedPointer<CMeasureBlockMapping>::create();
            fill(*block, i);
            block->Position.SetX(i * 0.25);
            block->Position.SetY(-i);
            block->Position.SetZ(1e-7 * i);
            block->Orientation.SetYaw(359.5);
            manager.AddMeasureBlock(block);
        }
        manager.Save(pathOf("mapping.qdr.xml"));

        checkFilesOfTheProgram("mapping");
        const QList<QByteArray> rows = contentOf(pathOf("mapping.table.csv")).split('\n');
        QCOMPARE(rows.size(), 1 + kBlocks * kSamples + 1);
        for (int i = 0; i < kBlocks * kSamples && !QTest::currentTestFailed(); ++i) {
            compareRow(rows[i + 1], i, 7);
            const QList<QByteArray> texts = rows[i + 1].split(';');
            QCOMPARE(texts[1].toDouble(), i / kSamples * 0.25);
            QCOMPARE(texts[6].toDouble(), 359.5);
        }
    }

    void recordsOfTheModule()
    {
        run({QStringLiteral(SCRIPT_PATH), m_directory.path(), QString::number(kBlocks),
             QString::number(kSamples)});

        CRecordingManagerMeasure measurement(m_settings);
        QVERIFY(measurement.Load(pathOf("made-measurement.qdr.xml")));
        checkMadeByTheModule(*measurement.DataSet());
        CRecordingManagerMapping mapping(m_settings);
        QVERIFY(mapping.Load(pathOf("made-mapping.qdr.xml")));
        checkMadeByTheModule(*mapping.DataSet());
        for (int i = 0; i < kBlocks; ++i) {
            const CMeasureBlockMapping& block =
                *mapping.DataSet()->MeasureBlocks()->at(static_cast<size_t>(i));
            QCOMPARE(block.Position.Y(), i * 0.5);
            QCOMPARE(block.Orientation.Pitch(), -1.25 * i);
        }
    }

private:
    QString pathOf(const char* name) const { return m_directory.filePath(QLatin1String(name)); }

    void run(const QStringList& arguments)
    {
        QProcess python;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PYTHONPATH"), QStringLiteral(MODULE_PATH));
        environment.insert(QStringLiteral("PYTHONDONTWRITEBYTECODE"), QStringLiteral("1"));
        python.setProcessEnvironment(environment);
        python.start(QStringLiteral(PYTHON_PATH), arguments);
        QVERIFY2(python.waitForFinished(60000), qPrintable(python.errorString()));
        QVERIFY2(python.exitCode() == 0,
                 (python.readAllStandardOutput() + python.readAllStandardError()).constData());
    }

    /// The module finds nothing wrong, and writes the same record and CSV file.
    void checkFilesOfTheProgram(const char* name)
    {
        const QString stem = pathOf(name);
        const QString record = stem + QStringLiteral(".qdr.xml");
        const QString module = QStringLiteral("kestrix_records");
        const QString option = QStringLiteral("-m");
        run({option, module, QStringLiteral("check"), record});
        run({option, module, QStringLiteral("table"), record});
        run({option, module, QStringLiteral("rewrite"), QStringLiteral("--strict"), record});
        run({option, module, QStringLiteral("csv"), record, QStringLiteral("-o"),
             stem + QStringLiteral(".made.csv")});
        // The program's own side file is named after the record without its last suffix.
        QCOMPARE(linesWithoutTime(stem + QStringLiteral(".made.csv")),
                 linesWithoutTime(stem + QStringLiteral(".qdr.csv")));
        QCOMPARE(contentOf(stem + QStringLiteral(".rewritten.qdr.xml")), contentOf(record));
    }

    static void compareRow(const QByteArray& row, int index, int columnOfTime)
    {
        const int block = index / kSamples;
        const int sample = index % kSamples;
        const QList<QByteArray> texts = row.split(';');
        QCOMPARE(texts.size(), columnOfTime + 8);
        QCOMPARE(texts[0].toInt(), block + 1);
        const qint64 ns = timeOf(block, sample);
        const QString time = kStart.addMSecs(ns / 1000000).toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss.")) +
                             QStringLiteral("%1").arg(ns % 1000000000, 9, 10, QLatin1Char('0'));
        QCOMPARE(QString::fromLatin1(texts[columnOfTime]), time);
        for (int column = 0; column < 5; ++column)
            QCOMPARE(texts[columnOfTime + 1 + column].toDouble(), fluxOf(block, sample, column));
        QCOMPARE(texts[columnOfTime + 6].toInt(), block * 100 + sample);
        QCOMPARE(texts[columnOfTime + 7].toDouble(), fluxOf(block, sample, 5));
    }

    template <class Dataset> static void checkMadeByTheModule(const Dataset& dataset)
    {
        QCOMPARE(dataset.Comment(), QStringLiteral("\u00b5 <made> & \"done\""));
        QCOMPARE(dataset.InstrumentName(), QStringLiteral("Probe 7"));
        const CMeasurementParameters& parameters = *dataset.MeasurementParameters();
        QCOMPARE(parameters.Units(), CUnits::MILLI_GAUSS);
        QCOMPARE(parameters.TriggerMode(), CTrigger::EXTERNAL);
        QCOMPARE(parameters.AcquisitionRate(), 500.0);
        QCOMPARE(parameters.BlockSize(), kSamples);
        QVERIFY(parameters.AutoRange());
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(kBlocks));
        for (int b = 0; b < kBlocks; ++b) {
            const auto& block = *dataset.MeasureBlocks()->at(static_cast<size_t>(b));
            QCOMPARE(block.Comment(), QStringLiteral("made %1").arg(b));
            QCOMPARE(block.Results.size(), kSamples);
            for (int i = 0; i < kSamples; ++i) {
                const CFieldIntensityResult& result = *block.Results[i];
                const qint64 ns = timeOf(b, i);
                QCOMPARE(result.Timestamp, kStart.addMSecs(ns / 1000000));
                QCOMPARE(result.TimestampNanoseconds, static_cast<quint32>(ns % 1000000000));
                QCOMPARE(result.B(), static_cast<tFlux>(fluxOf(b, i, 0)));
                QCOMPARE(result.BBprime(), static_cast<tFlux>(fluxOf(b, i, 1)));
                QCOMPARE(result.Bx(), static_cast<tFlux>(fluxOf(b, i, 2)));
                QCOMPARE(result.By(), static_cast<tFlux>(fluxOf(b, i, 3)));
                QCOMPARE(result.Bz(), static_cast<tFlux>(fluxOf(b, i, 4)));
                QCOMPARE(result.dB(), static_cast<tFlux>(fluxOf(b, i, 5)));
                QCOMPARE(result.Temperature(), static_cast<quint16>(b * 100 + i));
            }
        }
    }

    QTemporaryDir m_directory;
    CSettings m_settings{QString()};
    CMeasurementParameters m_parameters;
};

QTEST_GUILESS_MAIN(tst_RecordsTool)
#include "tst_RecordsTool.moc"
