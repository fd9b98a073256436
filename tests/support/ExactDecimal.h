// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Decimal texts of doubles, made from all digits of the exact value by written-out arithmetic: a reference
/// for the formatting of numbers that shares no code with it. Exact ties are rounded away from zero; a value
/// that rounds to zero keeps its sign, zero itself has none.
namespace ExactDecimal {

/// `decimals` digits behind the point.
QString fixed(double value, int decimals);

/// `digits` significant digits without trailing zeros, with an exponent of two digits or more where the
/// decimal exponent is below -4 or not below `digits`.
QString general(double value, int digits);

} // namespace ExactDecimal
