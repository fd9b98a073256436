// SPDX-License-Identifier: GPL-3.0-or-later
#include "MachineBench.h"

namespace {

std::mutex logMutex;
QStringList logTexts;

void keep(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    const std::lock_guard<std::mutex> lock(logMutex);
    logTexts.append(text);
}

} // namespace

QByteArray textOf(const StagePlace& place)
{
    QByteArray text;
    for (const double value : place)
        text += QByteArray::number(value, 'f', 2) + ' ';
    return text.trimmed();
}

ThreadLog::ThreadLog() : m_previous(qInstallMessageHandler(keep))
{
    const std::lock_guard<std::mutex> lock(logMutex);
    logTexts.clear();
}

ThreadLog::~ThreadLog()
{
    qInstallMessageHandler(m_previous);
}

bool ThreadLog::Contains(const char* text)
{
    const std::lock_guard<std::mutex> lock(logMutex);
    return !logTexts.filter(QLatin1String(text)).isEmpty();
}
