// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCheckReport.h"

#include "CheckOptions.h"
#include "FindingCatalog.h"

#include <QJsonDocument>
#include <QStringList>

namespace {

constexpr int kExitViolations = 1;
constexpr int kExitCrash = 3;
constexpr int kExitHang = 4;

const QLatin1String kCode("code");
const QLatin1String kDetail("detail");
const QLatin1String kName("name");
const QLatin1String kPhase("phase");
const QLatin1String kSeverity("severity");
const QLatin1String kType("type");
const QLatin1String kErrorText("error");

QString textOf(const QJsonValue& value)
{
    QStringList texts;
    const QJsonArray array = value.isArray() ? value.toArray() : QJsonArray{value};
    for (const QJsonValue& entry : array)
        texts.append(entry.isDouble() ? QString::number(entry.toDouble()) : entry.toString());
    return texts.join(QLatin1String(", "));
}

} // namespace

CCheckReport::CCheckReport(const CheckOptions& options) : m_options(options) {}

void CCheckReport::Add(const QVector<QJsonObject>& records)
{
    for (const QJsonObject& record : records) {
        const QString type = record.value(kType).toString();
        const QString name = record.value(kName).toString();
        if (type == kPhase) {
            m_phase = name;
            m_activity.clear();
        } else if (type == QLatin1String("begin")) {
            m_activity = name;
        } else if (type == QLatin1String("return")) {
            m_activity.clear();
            const double ms = record.value(QLatin1String("ms")).toDouble();
            if (ms >= m_callTimesMs.value(name).toDouble())
                m_callTimesMs.insert(name, ms);
        } else if (type == QLatin1String("finding")) {
            AddFinding(record.value(kCode).toString(), record.value(kDetail).toString());
        } else if (type == QLatin1String("kind")) {
            m_kinds.append(name);
        } else if (type == QLatin1String("fact")) {
            m_facts.insert(name, record.value(QLatin1String("value")));
        } else if (type == QLatin1String("end")) {
            m_isComplete = true;
            m_activity.clear();
            m_phase = QStringLiteral("end of the process");
        }
    }
}

void CCheckReport::AddFinding(const QString& code, const QString& detail)
{
    QJsonObject finding;
    finding.insert(kCode, code);
    finding.insert(kSeverity,
                   FindingCatalog::isError(code) ? QString(kErrorText) : QStringLiteral("warning"));
    finding.insert(kPhase, m_phase);
    finding.insert(kDetail, detail);
    finding.insert(QLatin1String("meaning"), FindingCatalog::meaningOf(code));
    m_findings.append(finding);
}

QString CCheckReport::LastActivity() const
{
    return m_activity.isEmpty() ? m_phase : m_activity;
}

int CCheckReport::countOf(bool isError) const
{
    int count = 0;
    for (const QJsonValue& finding : m_findings) {
        if ((finding.toObject().value(kSeverity).toString() == kErrorText) == isError)
            ++count;
    }
    return count;
}

int CCheckReport::ExitCode() const
{
    if (m_end == End::Crash)
        return kExitCrash;
    if (m_end == End::Hang)
        return kExitHang;
    const bool isViolated = countOf(true) > 0 || (m_options.isStrict && countOf(false) > 0);
    return isViolated ? kExitViolations : 0;
}

QString CCheckReport::resultText() const
{
    switch (ExitCode()) {
    case 0:
        return QStringLiteral("clean");
    case kExitCrash:
        return QStringLiteral("crash");
    case kExitHang:
        return QStringLiteral("hang");
    default:
        return QStringLiteral("violations");
    }
}

QString CCheckReport::Text() const
{
    QString text =
        QStringLiteral("%1: %2\n")
            .arg(m_options.pluginPath, m_kinds.isEmpty() ? QStringLiteral("no plug-in")
                                                         : textOf(m_kinds) + QStringLiteral(" plug-in"));
    for (auto fact = m_facts.constBegin(); fact != m_facts.constEnd(); ++fact)
        text += QStringLiteral("  %1: %2\n").arg(fact.key(), textOf(fact.value()));
    for (const QJsonValue& value : m_findings) {
        const QJsonObject finding = value.toObject();
        text += QStringLiteral("%1 %2 [%3] %4\n    %5\n")
                    .arg(finding.value(kSeverity).toString(), finding.value(kCode).toString(),
                         finding.value(kPhase).toString(), finding.value(kDetail).toString(),
                         finding.value(QLatin1String("meaning")).toString());
    }
    if (m_options.isVerbose) {
        for (auto call = m_callTimesMs.constBegin(); call != m_callTimesMs.constEnd(); ++call)
            text += QStringLiteral("  %1 took up to %2 ms\n").arg(call.key()).arg(call.value().toDouble());
    }
    if (!m_output.isEmpty() && (m_options.isVerbose || m_end != End::Regular))
        text += QStringLiteral("Output of the plug-in:\n%1\n").arg(m_output);
    text += QStringLiteral("%1: %2 errors, %3 warnings\n")
                .arg(resultText())
                .arg(countOf(true))
                .arg(countOf(false));
    return text;
}

QByteArray CCheckReport::Json() const
{
    QJsonObject report;
    report.insert(QLatin1String("tool"), QLatin1String("kestrix-plugin-check"));
    report.insert(QLatin1String("version"), QLatin1String(KESTRIX_VERSION));
    report.insert(QLatin1String("contract"), QLatin1String(KESTRIX_CONTRACT_VERSION));
    report.insert(QLatin1String("plugin"), m_options.pluginPath);
    report.insert(QLatin1String("kinds"), m_kinds);
    report.insert(QLatin1String("result"), resultText());
    report.insert(QLatin1String("exitCode"), ExitCode());
    report.insert(QLatin1String("errors"), countOf(true));
    report.insert(QLatin1String("warnings"), countOf(false));
    report.insert(QLatin1String("findings"), m_findings);
    report.insert(QLatin1String("facts"), m_facts);
    report.insert(QLatin1String("callTimesMs"), m_callTimesMs);
    report.insert(QLatin1String("output"), m_output);
    return QJsonDocument(report).toJson();
}
