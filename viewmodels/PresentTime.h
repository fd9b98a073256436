// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The present local time for texts in files and for their names: in the digits of the C locale.
QString presentTime(const QString& format);
