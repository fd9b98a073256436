// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>
#include <QVector>
#include <QXmlStreamReader>

#include <functional>

/// The flat form of the settings files: a root "SETTINGS" with one text element for each key.

struct SettingsEntry
{
    const char* key;
    QString text;
};

/// Calls `readElement` at the start of each child of the root; it must read or skip that element whole. A
/// file that does not exist is no error; any other failure is logged, and what was read before it stays.
void ReadSettingsFile(const QString& path, const std::function<void(QXmlStreamReader&)>& readElement);

/// Writes the entries to an open file and closes it.
void WriteSettingsFile(QFile& file, const QVector<SettingsEntry>& entries);
