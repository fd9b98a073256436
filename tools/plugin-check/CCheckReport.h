// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

struct CheckOptions;

/// What was found, put together from the journal, as text or JSON.
class CCheckReport
{
public:
    enum class End { Regular, Crash, Hang };

    explicit CCheckReport(const CheckOptions& options);

    void Add(const QVector<QJsonObject>& records);
    /// A finding of the watching process.
    void AddFinding(const QString& code, const QString& detail);
    void SetEnd(End end) { m_end = end; }
    void SetOutput(const QString& output) { m_output = output; }

    /// Whether the checking process came to the end of its work.
    bool IsComplete() const { return m_isComplete; }
    /// What was going on last: a call, a wait or the name of a phase.
    QString LastActivity() const;

    int ExitCode() const;
    QString Text() const;
    QByteArray Json() const;

private:
    int countOf(bool isError) const;
    QString resultText() const;

    const CheckOptions& m_options;
    QJsonArray m_findings;
    QJsonArray m_kinds;
    QJsonObject m_facts;
    QJsonObject m_callTimesMs; ///< the longest of each call
    QString m_phase;
    QString m_activity; ///< empty between two calls
    QString m_output;   ///< what the plug-in wrote to the standard output and error
    End m_end = End::Regular;
    bool m_isComplete = false;
};
