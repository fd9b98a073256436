// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogMessage.h"

#include "Property.h"

void CLogMessage::SetLevel(eLevel value)
{
    storeAndEmitOnChange(this, m_level, value, &CLogMessage::LevelChanged);
}

void CLogMessage::SetTimestamp(const QDateTime& value)
{
    storeAndEmitOnChange(this, m_timestamp, value, &CLogMessage::TimestampChanged);
}

void CLogMessage::SetMessage(const QString& value)
{
    storeAndEmitOnChange(this, m_message, value, &CLogMessage::MessageChanged);
}

CLogMessage::eLevel CLogMessage::LevelOf(QtMsgType type, const QString& message)
{
    switch (type) {
    case QtDebugMsg:
        return DEBUG;
    case QtInfoMsg:
        return INFO;
    case QtWarningMsg:
        for (const auto mark : {QLatin1String("qrc:"), QLatin1String("QQuick"), QLatin1String("qml")}) {
            if (message.contains(mark))
                return DEBUG;
        }
        return WARNING;
    case QtCriticalMsg:
        return CRITICAL;
    case QtFatalMsg:
        return FATAL;
    }
    return DEBUG;
}

QString CLogMessage::LevelText(eLevel level)
{
    switch (level) {
    case DEBUG:
        return QStringLiteral("DEBUG");
    case INFO:
        return QStringLiteral("INFO");
    case WARNING:
        return QStringLiteral("WARN");
    case CRITICAL:
        return QStringLiteral("CRIT");
    case FATAL:
        return QStringLiteral("FATAL");
    }
    return {};
}
