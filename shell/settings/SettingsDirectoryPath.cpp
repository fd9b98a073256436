// SPDX-License-Identifier: GPL-3.0-or-later
#include "SettingsDirectoryPath.h"

#include <QStandardPaths>

const QString SettingsDirectoryPath =
    QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/Kestrix");
