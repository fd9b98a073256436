// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>

/// One entry of the log list. QML knows the class only for its levels.
class CLogMessage : public QObject
{
    Q_OBJECT
    Q_PROPERTY(eLevel Level READ Level WRITE SetLevel NOTIFY LevelChanged)
    Q_PROPERTY(QDateTime Timestamp READ Timestamp WRITE SetTimestamp NOTIFY TimestampChanged)
    Q_PROPERTY(QString Message READ Message WRITE SetMessage NOTIFY MessageChanged)

public:
    enum eLevel { DEBUG = 0, INFO = 1, WARNING = 2, CRITICAL = 3, FATAL = 4 };
    Q_ENUM(eLevel)

    using QObject::QObject;

    eLevel Level() const { return m_level; }
    QDateTime Timestamp() const { return m_timestamp; } ///< local time at which the message was logged
    QString Message() const { return m_message; }

    void SetLevel(eLevel value);
    void SetTimestamp(const QDateTime& value);
    void SetMessage(const QString& value);

    /// Level of a message in the list. Warnings of the QML engine count as debug messages there, and so does
    /// a type that is none of the five.
    static eLevel LevelOf(QtMsgType type, const QString& message);

    /// Text of a level in the status bar's line: "DEBUG", "INFO", "WARN", "CRIT" or "FATAL".
    static QString LevelText(eLevel level);

signals:
    void LevelChanged(CLogMessage::eLevel value);
    void TimestampChanged(const QDateTime& value);
    void MessageChanged(const QString& value);

private:
    eLevel m_level = DEBUG;
    QDateTime m_timestamp;
    QString m_message;
};
