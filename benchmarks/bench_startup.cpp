// SPDX-License-Identifier: GPL-3.0-or-later
// Time from the start of the process to its first frame, of Kestrix and of a bare window, in turns. Needs a
// display.
//   bench_startup [RUNS]

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

struct Program
{
    QByteArray what;
    QString executable;
    QString home;
    std::vector<double> times; ///< milliseconds
};

qint64 monotonicNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000000000LL + now.tv_nsec;
}

/// A home in which the simulated instrument is the default one.
void writeDefaultInstrument(const QString& home)
{
    const QString directory = home + QStringLiteral("/.local/share/Kestrix");
    QDir().mkpath(directory);
    QFile file(directory + QStringLiteral("/KestrixConnectionSettings.xml"));
    if (file.open(QIODevice::WriteOnly))
        file.write(
            "<SETTINGS><Name>Simulated instrument</Name><SerialNumber>SIM-0001</SerialNumber></SETTINGS>");
}

bool start(Program& program)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), program.home);
    environment.remove(QStringLiteral("XDG_DATA_HOME"));
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.remove(QStringLiteral("XDG_CACHE_HOME"));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    const qint64 startNs = monotonicNs();
    process.start(program.executable, QStringList());
    if (!process.waitForFinished() || process.exitCode() != 0)
        return false;
    const qint64 frameNs = process.readAllStandardOutput().trimmed().toLongLong();
    if (frameNs <= startNs)
        return false;
    program.times.push_back(static_cast<double>(frameNs - startNs) / 1e6);
    return true;
}

double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int runs = arguments.size() > 1 ? arguments.at(1).toInt() : 15;
    const QString directory = QCoreApplication::applicationDirPath();
    const QTemporaryDir home;
    const QTemporaryDir homeWithInstrument;
    writeDefaultInstrument(homeWithInstrument.path());
    std::vector<Program> programs{
        {"bare window", directory + QStringLiteral("/startup_bare"), home.path(), {}},
        {"Kestrix, instrument selection page",
         directory + QStringLiteral("/startup_kestrix"),
         home.path(),
         {}},
        {"Kestrix, meter page of the default instrument",
         directory + QStringLiteral("/startup_kestrix"),
         homeWithInstrument.path(),
         {}}};

    // The first round warms the caches of the system.
    for (int run = 0; run <= runs; ++run) {
        for (Program& program : programs) {
            if (!start(program)) {
                std::fprintf(stderr, "no frame: %s\n", program.what.constData());
                return 1;
            }
            if (run == 0)
                program.times.clear();
        }
    }

    const double bare = median(programs.front().times);
    std::printf("%d runs each, in turns; milliseconds from process start to first frame\n\n", runs);
    std::printf("| %-46s | %6s | %6s | %6s | ratio |\n|---|---|---|---|---|\n", "what", "median", "min",
                "max");
    for (const Program& program : programs) {
        const auto range = std::minmax_element(program.times.begin(), program.times.end());
        const double time = median(program.times);
        std::printf("| %-46s | %6.0f | %6.0f | %6.0f | %5.2f |\n", program.what.constData(), time,
                    *range.first, *range.second, time / bare);
    }
    return 0;
}
