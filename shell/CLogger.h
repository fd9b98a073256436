// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QTextStream>

/// Writes the log file "Kestrix.log", which holds one run and has no limit of size.
class CLogger : public QObject
{
    Q_OBJECT

public:
    /// Makes `folder`, with its parents, if it is missing, and begins a new file there. Without a file that
    /// can be opened, lines are lost without notice.
    explicit CLogger(const QString& folder, QObject* parent = nullptr);

    /// Appends one line, which is on the device when the call returns. Callable from any thread. The line
    /// carries the type as it came. A message that writing itself brings about is not written.
    void Write(QtMsgType type, const QMessageLogContext& context, const QString& message);

private:
    QTextStream m_standardOutput;
    QMutex m_mutex; ///< guards m_file and m_stream
    QFile m_file;
    QTextStream m_stream;
};
