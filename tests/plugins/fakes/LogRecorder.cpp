// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogRecorder.h"

#include <QCoreApplication>
#include <QThread>

namespace {

LogRecorder* currentRecorder = nullptr;

QString levelText(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("DEBUG ");
    case QtInfoMsg:
        return QStringLiteral("INFO ");
    case QtWarningMsg:
        return QStringLiteral("WARN ");
    case QtCriticalMsg:
        return QStringLiteral("CRIT ");
    case QtFatalMsg:
        break;
    }
    return QStringLiteral("FATAL ");
}

} // namespace

LogRecorder::LogRecorder()
{
    currentRecorder = this;
    m_previous = qInstallMessageHandler(&LogRecorder::handle);
}

LogRecorder::~LogRecorder()
{
    qInstallMessageHandler(m_previous);
    currentRecorder = nullptr;
}

QStringList LogRecorder::Texts(QtMsgType type) const
{
    const QString level = levelText(type);
    QStringList texts;
    for (const QString& message : m_messages) {
        if (message.startsWith(level))
            texts.append(message.mid(level.size()));
    }
    return texts;
}

void LogRecorder::handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    // The offscreen platform says this of every dialog.
    if (text == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    const bool isOnMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
    if (isOnMainThread && type != QtFatalMsg)
        currentRecorder->m_messages.append(levelText(type) + text);
    else
        currentRecorder->m_previous(type, context, text);
}
