// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogger.h"

#include <QDateTime>
#include <QDir>
#include <QMutexLocker>
#include <QScopedValueRollback>

#include <cstdio>

namespace {

// A message raised by the write itself would wait for the mutex that its own thread holds.
thread_local bool isWriting = false;

QString levelText(QtMsgType type)
{
    switch (type) {
    case QtWarningMsg:
        return QStringLiteral("WARN");
    case QtCriticalMsg:
        return QStringLiteral("CRIT");
    case QtFatalMsg:
        return QStringLiteral("FATAL");
    case QtInfoMsg:
        return QStringLiteral("INFO");
    case QtDebugMsg:
        break;
    }
    return QStringLiteral("DEBUG");
}

} // namespace

CLogger::CLogger(const QString& folder, QObject* parent)
    : QObject(parent), m_standardOutput(stdout),
      m_file(QDir(folder).filePath(QStringLiteral("Kestrix.log")), this), m_stream(&m_file)
{
    QDir().mkpath(folder);
    if (m_file.exists())
        m_file.remove();
    m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
    m_stream.setCodec("UTF-8");
}

void CLogger::Write(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (isWriting || !m_file.isOpen())
        return;
    const QScopedValueRollback<bool> writing(isWriting, true);
    const QMutexLocker lock(&m_mutex);

    // One arg() for all: text of the message that looks like a place marker stays as it is.
    m_stream << QStringLiteral("[%1] %2 - %3 (%4:%5, %6)\n")
                    .arg(levelText(type), QDateTime::currentDateTime().toString(Qt::ISODateWithMs), message,
                         QString::fromUtf8(context.file), QString::number(context.line),
                         QString::fromUtf8(context.function));
    m_stream.flush();
}
