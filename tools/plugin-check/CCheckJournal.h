// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QJsonObject>
#include <QString>
#include <QVector>

/// What the process that loads the plug-in tells the one that watches it: one JSON object a line, in a file,
/// since the plug-in may write to the standard output and may end the process at any time. What has been
/// written reaches the reader even if the writer crashes right afterwards.
class CCheckJournal
{
public:
    explicit CCheckJournal(const QString& path);

    bool OpenForWriting();
    /// One record of this type.
    void Write(const char* type, QJsonObject record = {});

    bool OpenForReading();
    /// The records that were written since the last call.
    QVector<QJsonObject> ReadNew();

private:
    QFile m_file;
    QByteArray m_unfinishedLine;
};
