// SPDX-License-Identifier: GPL-3.0-or-later
// Saves and loads records of 120,000 samples and compares the times with those of peers, measured in the same
// run.

#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
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

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

constexpr int kSamples = 120000;
constexpr int kRuns = 7;

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

/// Loads the record once and prints how many milliseconds that took, by the clock and of the processor.
template <class Manager> void loadOnce(const CSettings& settings, const QString& path)
{
    Manager manager(settings);
    const std::clock_t cpuBefore = std::clock();
    QElapsedTimer timer;
    timer.start();
    manager.Load(path);
    const double wallMs = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    std::printf("%f %f\n", wallMs, 1000.0 * static_cast<double>(std::clock() - cpuBefore) / CLOCKS_PER_SEC);
}

struct LoadTimes
{
    double wallMs = HUGE_VAL;
    double cpuMs = HUGE_VAL;
};

/// Loads the record in a process of its own, which has no memory yet from loads before, and keeps what took
/// less than before.
void load(const QString& kind, const QString& path, LoadTimes& best)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {kind, path});
    process.waitForFinished(120000);
    const QList<QByteArray> times = process.readAllStandardOutput().trimmed().split(' ');
    if (times.size() != 2)
        return;
    best.wallMs = std::min(best.wallMs, times.at(0).toDouble());
    best.cpuMs = std::min(best.cpuMs, times.at(1).toDouble());
}

/// A short and a long mapping against the record of a measurement with as many samples in a block, loaded in
/// turns.
void measureMapping(const CSettings& settings, const QString& directory, QTextStream& out)
{
    const QString measurementPath = directory + QStringLiteral("/measurement.qdr.xml");
    const QString mappingPath = directory + QStringLiteral("/mapping.qdr.xml");
    out << "\n**Mapping records, blocks of 100**\n\n| samples | load, ms | million samples a second | "
           "measurement record | ratio | ratio of processor time | aim |\n|---|---|---|---|---|---|---|\n";
    out.flush();
    for (const int blocks : {1200, 10000}) {
        CMeasurementParameters parameters;
        CRecordingManagerMeasure measurement(settings);
        CRecordingManagerMapping mapping(settings);
        measurement.DataSet()->SetMeasurementParameters(&parameters);
        mapping.DataSet()->SetMeasurementParameters(&parameters);
        fill(measurement, kShapes[0]);
        measurement.Save(measurementPath);
        writeMapping(mappingPath, blocks, *measurement.DataSet(), mapping);
        measurement.DataSet()->Clear();

        LoadTimes ofMeasurement;
        LoadTimes ofMapping;
        for (int run = 0; run < kRuns; ++run) {
            load(kLoadMeasurement, measurementPath, ofMeasurement);
            load(kLoadMapping, mappingPath, ofMapping);
        }
        const double sampleRatio = blocks * 100.0 / kSamples;
        out << QStringLiteral("| %1 | %2 | %3 | %4 | %5 | %6 | 1 |\n")
                   .arg(blocks * 100)
                   .arg(ofMapping.wallMs, 0, 'f', 1)
                   .arg(blocks * 100 / ofMapping.wallMs / 1000, 0, 'f', 2)
                   .arg(kSamples / ofMeasurement.wallMs / 1000, 0, 'f', 2)
                   .arg(ofMapping.wallMs / ofMeasurement.wallMs / sampleRatio, 0, 'f', 2)
                   .arg(ofMapping.cpuMs / ofMeasurement.cpuMs / sampleRatio, 0, 'f', 2);
        out.flush();
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
        const CSettings settings(QCoreApplication::applicationDirPath());
        if (arguments.at(1) == kLoadMapping)
            loadOnce<CRecordingManagerMapping>(settings, arguments.at(2));
        else
            loadOnce<CRecordingManagerMeasure>(settings, arguments.at(2));
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
