// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

/// Numbers as recordings write them, independent of the locale.
namespace NumberText {

bool isDigit(char c);

/// A finite decimal number; with `decimalComma` a comma may stand for the point. Nothing for any other text,
/// "nan" and an empty text included.
std::optional<double> toDouble(const QByteArray& text, bool decimalComma);

/// Like toDouble, times ten to the power of `decimals` and as an integer, without passing through floating
/// point unless the text has an exponent. Digits beyond are cut off.
std::optional<qint64> toScaledInteger(const QByteArray& text, int decimals, bool decimalComma);

/// Digits behind the decimal point or comma.
int decimalPlaces(const QByteArray& text);

} // namespace NumberText
