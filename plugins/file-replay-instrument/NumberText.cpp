// SPDX-License-Identifier: MIT
#include "NumberText.h"

#include <cmath>
#include <limits>

namespace {

QByteArray withPoint(const QByteArray& text, bool decimalComma)
{
    QByteArray trimmed = text.trimmed();
    if (decimalComma)
        trimmed.replace(',', '.');
    return trimmed;
}

} // namespace

bool NumberText::isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::optional<double> NumberText::toDouble(const QByteArray& text, bool decimalComma)
{
    bool ok = false;
    const double value = withPoint(text, decimalComma).toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<qint64> NumberText::toScaledInteger(const QByteArray& text, int decimals, bool decimalComma)
{
    constexpr qint64 kLimit = std::numeric_limits<qint64>::max() / 10 - 1;
    const QByteArray number = withPoint(text, decimalComma);
    int at = 0;
    const bool isNegative = number.startsWith('-');
    if (isNegative || number.startsWith('+'))
        ++at;
    qint64 value = 0;
    bool hasDigit = false;
    int places = -1; // behind the point; -1 before it
    for (; at < number.size(); ++at) {
        const char c = number.at(at);
        if (c == '.' && places < 0) {
            places = 0;
        } else if (NumberText::isDigit(c)) {
            hasDigit = true;
            if (places >= decimals)
                continue;
            if (value > kLimit)
                return std::nullopt;
            value = value * 10 + (c - '0');
            if (places >= 0)
                ++places;
        } else {
            break;
        }
    }
    if (at < number.size()) {
        const std::optional<double> real = toDouble(number, false);
        const double scaled = real ? *real * std::pow(10.0, decimals) : 0;
        if (!real || std::abs(scaled) > static_cast<double>(kLimit))
            return std::nullopt;
        return std::llround(scaled);
    }
    if (!hasDigit)
        return std::nullopt;
    for (int missing = decimals - std::max(places, 0); missing > 0; --missing) {
        if (value > kLimit)
            return std::nullopt;
        value *= 10;
    }
    return isNegative ? -value : value;
}

int NumberText::decimalPlaces(const QByteArray& text)
{
    const QByteArray number = withPoint(text, true);
    const int point = number.indexOf('.');
    if (point < 0)
        return 0;
    int places = 0;
    while (point + 1 + places < number.size() && NumberText::isDigit(number.at(point + 1 + places)))
        ++places;
    return places;
}
