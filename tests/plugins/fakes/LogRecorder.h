// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

/// Collects the log messages of the main thread while it lives and keeps them from the test's output. One at
/// a time.
class LogRecorder
{
public:
    LogRecorder();
    ~LogRecorder();

    /// Level and text of each message, "WARN text", in their order.
    QStringList Messages() const { return m_messages; }
    /// Texts of one level.
    QStringList Texts(QtMsgType type) const;

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);

    QStringList m_messages;
    QtMessageHandler m_previous;

    Q_DISABLE_COPY(LogRecorder)
};
