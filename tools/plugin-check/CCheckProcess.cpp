// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCheckProcess.h"

#include "CCheckJournal.h"
#include "CheckOptions.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace {

constexpr int kProcessPollMs = 20;
constexpr int kMaxOutput = 20000;

} // namespace

CCheckProcess::CCheckProcess(const CheckOptions& options, const QStringList& arguments)
    : m_options(options), m_arguments(arguments), m_report(options)
{
}

bool CCheckProcess::Run(QString& error)
{
    const QTemporaryDir directory;
    const QString journalPath = directory.filePath(QStringLiteral("journal"));
    CCheckJournal journal(journalPath);
    if (!directory.isValid() || !QFile(journalPath).open(QIODevice::WriteOnly) || !journal.OpenForReading()) {
        error = QStringLiteral("No temporary file can be made in %1").arg(directory.path());
        return false;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString outputPath = directory.filePath(QStringLiteral("output"));
    process.setStandardOutputFile(outputPath);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationFilePath(),
                  QStringList{QStringLiteral("--journal"), journalPath} + m_arguments);
    if (!process.waitForStarted()) {
        error = process.errorString();
        return false;
    }
    m_sinceStart.start();
    watch(process, journal);

    QFile output(outputPath);
    if (output.open(QIODevice::ReadOnly)) {
        output.seek(qMax<qint64>(0, output.size() - kMaxOutput));
        m_report.SetOutput(QString::fromLocal8Bit(output.readAll()).trimmed());
    }
    return true;
}

void CCheckProcess::watch(QProcess& process, CCheckJournal& journal)
{
    m_sinceRecord.start();
    while (!process.waitForFinished(kProcessPollMs) && process.state() != QProcess::NotRunning) {
        take(journal);
        if (!isOverdue())
            continue;
        m_report.AddFinding(QStringLiteral("hang"), m_report.LastActivity());
        m_report.SetEnd(CCheckReport::End::Hang);
        process.kill();
        process.waitForFinished();
        return;
    }
    take(journal);
    if (process.exitStatus() == QProcess::CrashExit || !m_report.IsComplete()) {
        const QString how = process.exitStatus() == QProcess::CrashExit
                                ? QStringLiteral("%1: signal or exception %2")
                                : QStringLiteral("%1: the process was ended with exit code %2");
        m_report.AddFinding(QStringLiteral("crash"),
                            how.arg(m_report.LastActivity()).arg(process.exitCode()));
        m_report.SetEnd(CCheckReport::End::Crash);
    } else if (process.exitCode() != 0) {
        m_report.AddFinding(QStringLiteral("exit-status"),
                            QStringLiteral("exit code %1").arg(process.exitCode()));
    }
}

void CCheckProcess::take(CCheckJournal& journal)
{
    const QVector<QJsonObject> records = journal.ReadNew();
    if (records.isEmpty())
        return;
    m_report.Add(records);
    m_sinceRecord.start();
    m_activityLimitMs = static_cast<qint64>(records.constLast().value(QLatin1String("limitMs")).toDouble());
}

bool CCheckProcess::isOverdue() const
{
    // What lies between two records is this program's own work, or the loading and the end of the process.
    return m_sinceRecord.elapsed() > m_activityLimitMs + m_options.callLimitMs ||
           m_sinceStart.elapsed() > m_options.timeLimitMs;
}
