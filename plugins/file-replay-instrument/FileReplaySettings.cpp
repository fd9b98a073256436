// SPDX-License-Identifier: MIT
#include "FileReplaySettings.h"

#include <QSettings>
#include <QStandardPaths>

#include <cmath>

QString FileReplaySettings::FilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Kestrix/KestrixFileReplay.ini");
}

FileReplaySettings FileReplaySettings::Load()
{
    const QSettings file(FilePath(), QSettings::IniFormat);
    FileReplaySettings settings;
    // An unquoted path with a comma reads as a list.
    settings.folder =
        file.value(QStringLiteral("Replay/Folder")).toStringList().join(QStringLiteral(", ")).trimmed();
    if (settings.folder.isEmpty())
        settings.folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    bool ok = false;
    const double speed = file.value(QStringLiteral("Replay/Speed")).toDouble(&ok);
    if (ok && std::isfinite(speed) && speed >= 0)
        settings.speed = speed;
    settings.loop = file.value(QStringLiteral("Replay/Loop")).toBool();
    return settings;
}
