// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Directory of the executable, beside which plug-ins and help lie. Empty until the entry function sets it,
/// before the application object is made.
extern QString ApplicationDirPath;
