// SPDX-License-Identifier: GPL-3.0-or-later
#include "CheckerPool.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

#include <atomic>
#include <thread>
#include <vector>

namespace {

constexpr int kNumBesideEachOther = 24;
constexpr int kLimitMs = 120000;

} // namespace

void CheckerPool::Run(CheckerRun& run)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KESTRIX_FAKE"), run.fake);
    environment.insert(QStringLiteral("KESTRIX_BAD"), run.bad);
    // What leaks of Qt at the exit depends on the moment; that is no fault of a plug-in which has one
    // already.
    if (!run.bad.isEmpty())
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(CHECKER), QStringList{QStringLiteral("--json")} + run.arguments);
    if (!process.waitForFinished(kLimitMs) || process.exitStatus() != QProcess::NormalExit)
        return;
    run.exitCode = process.exitCode();
    run.report = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    const QJsonArray findings = run.report.value(QLatin1String("findings")).toArray();
    for (const QJsonValue& finding : findings)
        run.codes.append(finding.toObject().value(QLatin1String("code")).toString());
    run.codes.removeDuplicates();
}

void CheckerPool::RunAll(QVector<CheckerRun>& runs)
{
    CheckerRun* const first = runs.data();
    const int count = runs.size();
    std::atomic<int> next{0};
    std::vector<std::thread> threads;
    threads.reserve(kNumBesideEachOther);
    for (int i = 0; i < kNumBesideEachOther; ++i) {
        threads.emplace_back([first, count, &next] {
            for (int index = next++; index < count; index = next++)
                Run(first[index]);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
