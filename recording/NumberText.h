// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tFlux.h"

#include <QStringView>

/// The conversions QString::toFloat and QString::toUShort to the same results, 0 for a bad number included,
/// without their detours for the usual plain decimal.
tFlux toFluxValue(QStringView text);
quint16 toCount(QStringView text);

/// Reads a decimal "[-]digits[.digits][e[+-]digits]" from the front of a text and moves `position` behind it.
/// The value is the one that QString::toDouble gives for the same characters. False for a number of another
/// form or with too many digits for an exact result; `position` is undefined then.
bool readPlainDecimal(const QChar*& position, const QChar* end, double& value);
