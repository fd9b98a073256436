// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCheckJournal.h"

#include <QJsonDocument>

CCheckJournal::CCheckJournal(const QString& path) : m_file(path) {}

bool CCheckJournal::OpenForWriting()
{
    return m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void CCheckJournal::Write(const char* type, QJsonObject record)
{
    record.insert(QLatin1String("type"), QLatin1String(type));
    m_file.write(QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n');
}

bool CCheckJournal::OpenForReading()
{
    return m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

QVector<QJsonObject> CCheckJournal::ReadNew()
{
    QVector<QJsonObject> records;
    m_unfinishedLine += m_file.readAll();
    int end = 0;
    while ((end = m_unfinishedLine.indexOf('\n')) >= 0) {
        records.append(QJsonDocument::fromJson(m_unfinishedLine.left(end)).object());
        m_unfinishedLine.remove(0, end + 1);
    }
    return records;
}
