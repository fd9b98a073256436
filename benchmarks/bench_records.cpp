// SPDX-License-Identifier: GPL-3.0-or-later
// Saves and loads records of 120,000 samples and compares the times with those of peers, measured in the same
// run.

#include "CInstrumentSupervisor.h"
#include "CMappingOperationViewModel.h"
#include "CMeterOperationViewModel.h"
#include "COperationMapping.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "CUserNotifier.h"
#include "LocalTimeZone.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

constexpr int kSamples = 120000;
constexpr int kRuns = 7;
constexpr int kTurns = 25;
constexpr int kMappingBlocks = 10000;
constexpr int kMappingSamples = 100 * kMappingBlocks;

struct Shape
{
    const char* name;
    qint64 periodNs;
    int blockSize;
};

constexpr Shape kShapes[]{
    {"10 kHz, blocks of 100", 100000, 100},
    {"20 Hz, blocks of 2", 50000000, 2},
    {"10 Hz, blocks of 10", 100000000, 10},
};

// Arguments of a process that loads one record.
const QString kLoadMeasurement = QStringLiteral("--load-measurement");
const QString kLoadMapping = QStringLiteral("--load-mapping");

double bestOf(
    const std::function<void()>& work, const std::function<void()>& prepare = [] {})
{
    double best = HUGE_VAL;
    for (int run = 0; run < kRuns; ++run) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    return best;
}

size_t allocatedBytes()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}

void fill(CRecordingManagerMeasure& manager, const Shape& shape)
{
    constexpr qint64 kStartMs = 1709287200000;
    constexpr double kEarthFieldUt = 48.2;
    QSharedPointer<CMeasureBlock> block;
    for (int i = 0; i < kSamples; ++i) {
        if (i % shape.blockSize == 0)
            block = QSharedPointer<CMeasureBlock>::create();
        const qint64 ns = i * shape.periodNs;
        auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->Timestamp = QDateTime::fromMSecsSinceEpoch(kStartMs + ns / 1000000);
        sample->TimestampNanoseconds = static_cast<quint32>(ns % 1000000000);
        const double wave = std::sin(i * 0.01);
        sample->SetBx(static_cast<tFlux>(21.3 + wave));
        sample->SetBy(static_cast<tFlux>(-0.0317 * wave));
        sample->SetBz(static_cast<tFlux>(-43.1 + 0.1 * wave));
        sample->SetB(static_cast<tFlux>(kEarthFieldUt + 0.3 * wave));
        sample->SetBBprime(static_cast<tFlux>(47.9 + 0.2 * wave));
        sample->SetDB(static_cast<tFlux>(0.0123 + 1e-6 * i));
        sample->SetTemperature(static_cast<quint16>(20000 + i % 100));
        block->Results.append(sample);
        if (block->Results.size() == shape.blockSize)
            manager.AddMeasureBlock(block);
    }
}

void walk(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&file);
    while (!reader.atEnd())
        reader.readNext();
}

void writeReadyMade(const QString& path, const QVector<QString>& texts)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&file);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("dataset"));
    for (const QString& text : texts) {
        writer.writeStartElement(QStringLiteral("measurements"));
        writer.writeTextElement(QStringLiteral("comment"), QString());
        writer.writeTextElement(QStringLiteral("flux"), text);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
}

/// Milliseconds that pandas needs for the side file, timestamps parsed; not a number without pandas.
double pandasMs(const QString& csvPath)
{
    const QString script = QStringLiteral(R"(
import sys, time
import pandas
best = float('inf')
for run in range(%1):
    start = time.perf_counter()
    frame = pandas.read_csv(sys.argv[1], sep=';', skiprows=11, skip_blank_lines=True)
    frame['Timestamp'] = pandas.to_datetime(frame['Timestamp'], format='%Y.%m.%dT%H:%M:%S.%f')
    best = min(best, time.perf_counter() - start)
assert len(frame) == %2, len(frame)
print(best * 1000)
)")
                               .arg(QString::number(kRuns), QString::number(kSamples));
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), script, csvPath});
    if (!python.waitForFinished(120000) || python.exitCode() != 0)
        return std::nan("");
    return python.readAllStandardOutput().trimmed().toDouble();
}

void printRow(QTextStream& out, const char* what, double ms, const char* peer, double peerMs, double aim)
{
    out << QStringLiteral("| %1 | %2 | %3 %4 | %5 | %6 |\n")
               .arg(QLatin1String(what))
               .arg(ms, 0, 'f', 1)
               .arg(QLatin1String(peer))
               .arg(peerMs, 0, 'f', 1)
               .arg(ms / peerMs, 0, 'f', 2)
               .arg(aim);
}

void measure(const Shape& shape, const CSettings& settings, const QString& directory, QTextStream& out)
{
    const QString path = directory + QStringLiteral("/record.qdr.xml");
    const QString readyMadePath = directory + QStringLiteral("/readymade.xml");
    CMeasurementParameters parameters;
    parameters.SetUnits(CUnits::MICRO_TESLA);

    CRecordingManagerMeasure manager(settings);
    manager.DataSet()->SetMeasurementParameters(&parameters);
    fill(manager, shape);
    QVector<QString> texts;
    for (const auto& block : *manager.DataSet()->MeasureBlocks())
        texts.append(block->FormatBlockAsText(QStringLiteral(";")));

    const double readyMadeMs = bestOf([&] { writeReadyMade(readyMadePath, texts); });
    const double saveMs = bestOf([&] {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        manager.XMLResultsSerializer()->WriteMeasurement(*manager.DataSet(), &file);
    });
    QFile csv(directory + QStringLiteral("/record.csv"));
    csv.open(QIODevice::WriteOnly);
    manager.CSVResultsSerializer()->WriteMeasurement(*manager.DataSet(), &csv);
    csv.close();
    manager.DataSet()->Clear();

    const double walkMs = bestOf([&] { walk(path); });
    const double loadMs = bestOf(
        [&] {
            QFile file(path);
            file.open(QIODevice::ReadOnly);
            manager.XMLResultsSerializer()->ReadMeasurement(&file, *manager.DataSet());
        },
        [&] { manager.DataSet()->Clear(); });
    manager.DataSet()->Clear();
    const size_t before = allocatedBytes();
    manager.Load(path);
    const double bytesPerSample = static_cast<double>(allocatedBytes() - before) / kSamples;
    const double csvMs = pandasMs(csv.fileName());

    out << "\n**" << shape.name << "** (" << QFileInfo(path).size() / 1000 << " kB, "
        << manager.DataSet()->ResultsCount() << " samples)\n\n"
        << "| what | ms | peer, ms | ratio | aim |\n|---|---|---|---|---|\n";
    printRow(out, "save", saveMs, "stream writer, ready-made strings", readyMadeMs, 3);
    printRow(out, "load", loadMs, "stream reader walk", walkMs, 3);
    printRow(out, "load", loadMs, "pandas, side file", csvMs, 0.6);
    out << "\nMemory per loaded sample: " << QString::number(bytesPerSample, 'f', 0) << " bytes (aim 320)\n";
    out.flush();
}

/// A mapping record of so many blocks, with the samples of a measurement's dataset.
void writeMapping(const QString& path, int blocks, const CDataSetMeasurement& measurement,
                  CRecordingManagerMapping& manager)
{
    const auto& made = *measurement.MeasureBlocks();
    for (int i = 0; i < blocks; ++i) {
        const auto block = QSharedPointer<CMeasureBlockMapping>::create();
        block->Results = made[static_cast<size_t>(i) % made.size()]->Results;
        block->Position.SetX(i % 100);
        block->Position.SetY(0.125 * (i / 100));
        block->Orientation.SetYaw(i % 360);
        manager.DataSet()->MeasureBlocks()->push_back(block);
    }
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    manager.XMLResultsSerializer()->WriteMapping(*manager.DataSet(), &file);
    manager.DataSet()->Clear();
}

class SilentNotifier : public CUserNotifier
{
public:
    void ShowTrayMessage(const QString&, const QString&) override {}
    void Beep() override {}
};

double cpuMs()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// What a page does behind a load of its own.
void finishLoad(const COperationMeasure& operation)
{
    Q_UNUSED(operation)
}

void finishLoad(COperationMapping& operation)
{
    for (const auto& block : *operation.RecordingManager()->DataSet()->MeasureBlocks())
        block->SetRotAppliedOnMeasBlock(true);
}

/// Loads the record once and shows it on its page, and prints how many milliseconds of the processor each of
/// the two took.
template <class Operation, class Page> void loadOnce(CSettings& settings, const QString& path)
{
    CPluginsManager pluginsManager(settings);
    CInstrumentSupervisor supervisor(&settings);
    Operation operation(&settings, &pluginsManager, &supervisor);
    SilentNotifier notifier;
    const double begin = cpuMs();
    operation.RecordingManager()->Load(path);
    const double loaded = cpuMs();
    finishLoad(operation);
    const Page page(&operation, &settings, &notifier);
    std::printf("%f %f\n", loaded - begin, cpuMs() - loaded);
}

struct Record
{
    const char* what;
    QString argument;
    QString path;
    int samples;
    std::vector<double> loadNs = {}; ///< a sample, one entry a turn
    std::vector<double> showNs = {};
    std::vector<double> bothNs = {};
};

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? std::nan("") : values[values.size() / 2];
}

/// Loads the record in a process of its own, which has no memory yet from loads before.
void load(Record& record)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {record.argument, record.path});
    process.waitForFinished(120000);
    const QList<QByteArray> times = process.readAllStandardOutput().trimmed().split('\n').last().split(' ');
    if (times.size() != 2)
        return;
    const double nsPerMs = 1e6 / record.samples;
    record.loadNs.push_back(times.at(0).toDouble() * nsPerMs);
    record.showNs.push_back(times.at(1).toDouble() * nsPerMs);
    record.bothNs.push_back(record.loadNs.back() + record.showNs.back());
}

/// A long mapping against the records of measurements that a full dataset makes, loaded in turns.
void measureMapping(const CSettings& settings, const QString& directory, QTextStream& out)
{
    CMeasurementParameters parameters;
    parameters.SetBlockSize(100);
    std::vector<Record> records{
        {"measurement, blocks of 2", kLoadMeasurement, directory + QStringLiteral("/blocks2.xml"), kSamples},
        {"measurement, blocks of 10", kLoadMeasurement, directory + QStringLiteral("/blocks10.xml"),
         kSamples},
        {"measurement, blocks of 100", kLoadMeasurement, directory + QStringLiteral("/blocks100.xml"),
         kSamples},
        {"mapping, blocks of 100", kLoadMapping, directory + QStringLiteral("/mapping.xml"), kMappingSamples},
    };
    CRecordingManagerMeasure measurement(settings);
    measurement.DataSet()->SetMeasurementParameters(&parameters);
    const Shape shapes[] = {kShapes[1], kShapes[2], kShapes[0]};
    for (size_t i = 0; i < std::size(shapes); ++i) {
        measurement.DataSet()->Clear();
        fill(measurement, shapes[i]);
        measurement.Save(records[i].path);
    }
    CRecordingManagerMapping mapping(settings);
    mapping.DataSet()->SetMeasurementParameters(&parameters);
    writeMapping(records.back().path, kMappingBlocks, *measurement.DataSet(), mapping);
    measurement.DataSet()->Clear();

    for (int turn = 0; turn < kTurns; ++turn) {
        for (Record& record : records)
            load(record);
    }
    const Record& last = records.back();
    out << "\n**A mapping of " << kMappingSamples << " samples against measurements of " << kSamples
        << "**, medians of " << kTurns
        << " turns\n\n| record | load, ns of the processor a sample | mapping to it | show on its page | "
           "both | mapping to it | aim |\n|---|---|---|---|---|---|---|\n";
    for (const Record& record : records) {
        out << QStringLiteral("| %1 | %2 | %3 | %4 | %5 | %6 | 1 |\n")
                   .arg(QLatin1String(record.what))
                   .arg(medianOf(record.loadNs), 0, 'f', 0)
                   .arg(medianOf(last.loadNs) / medianOf(record.loadNs), 0, 'f', 2)
                   .arg(medianOf(record.showNs), 0, 'f', 0)
                   .arg(medianOf(record.bothNs), 0, 'f', 0)
                   .arg(medianOf(last.bothNs) / medianOf(record.bothNs), 0, 'f', 2);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const bool isTimeZoneKept = !application.arguments().contains(QStringLiteral("--without-time-zone"));
    if (isTimeZoneKept)
        keepLocalTimeZone();
    const QStringList arguments = application.arguments();
    if (arguments.size() == 3) {
        CSettings settings(QCoreApplication::applicationDirPath());
        if (arguments.at(1) == kLoadMapping)
            loadOnce<COperationMapping, CMappingOperationViewModel>(settings, arguments.at(2));
        else
            loadOnce<COperationMeasure, CMeterOperationViewModel>(settings, arguments.at(2));
        return 0;
    }
    QTextStream out(stdout);
    out << "Best of " << kRuns << " runs each; TZ=" << qgetenv("TZ") << "\n";
    QTemporaryDir directory;
    const CSettings settings(directory.path());
    if (!application.arguments().contains(QStringLiteral("--mapping-only"))) {
        for (const Shape& shape : kShapes)
            measure(shape, settings, directory.path(), out);
    }
    measureMapping(settings, directory.path(), out);
    return 0;
}
