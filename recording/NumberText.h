// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tFlux.h"

#include <QStringView>

/// The conversions QString::toFloat and QString::toUShort to the same results, 0 for a bad number included,
/// without their detours for the usual plain decimal.
tFlux toFluxValue(QStringView text);
quint16 toCount(QStringView text);
