// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QHash>
#include <QString>
#include <QVector>

#include <functional>

/// The flat form of the settings files: a root "SETTINGS" with one text element for each key.

struct SettingsEntry
{
    const char* key;
    QString text;
};

/// What is done with the text of each key.
using SettingsReaders = QHash<QString, std::function<void(const QString& text)>>;

/// Hands the text of each child of the root to the reader of that name; other children are skipped. A file
/// that does not exist is no error; any other failure is logged, and the texts that were read whole before it
/// stay.
void ReadSettingsFile(const QString& path, const SettingsReaders& readers);

/// Writes the entries to an open file and closes it.
void WriteSettingsFile(QFile& file, const QVector<SettingsEntry>& entries);
