// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The per-user directory of all settings files and of the log. Computed while static objects are made,
/// before any organisation or application name is set, so that neither is part of it.
extern const QString SettingsDirectoryPath;
