// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CCheckReport.h"

#include <QElapsedTimer>
#include <QStringList>

class CCheckJournal;
class QProcess;

/// Runs the check in a process of its own, so that a plug-in that crashes or hangs takes nothing with it, and
/// watches it by its journal.
class CCheckProcess
{
public:
    /// `arguments` are those of this program, without its name.
    CCheckProcess(const CheckOptions& options, const QStringList& arguments);

    /// Blocks until the check has ended or was ended. False if it could not be started, with the reason.
    bool Run(QString& error);
    const CCheckReport& Report() const { return m_report; }

private:
    void watch(QProcess& process, CCheckJournal& journal);
    bool isOverdue() const;
    void take(CCheckJournal& journal);

    const CheckOptions& m_options;
    QStringList m_arguments;
    CCheckReport m_report;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceRecord;
    qint64 m_activityLimitMs = 0; ///< of what the last record began
};
