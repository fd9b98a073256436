// SPDX-License-Identifier: MIT
#include "SixDigitText.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int kDigits = 6;
constexpr quint64 kScaledLimit = 1000000; // 10^kDigits

// Within these bounds all products below fit 64 bits, so that the digits are exact.
constexpr tFlux kSmallestExact = 1e-11F;
constexpr tFlux kLargestExact = 1e12F;

constexpr std::array<quint64, 18> powersOf(quint64 base)
{
    std::array<quint64, 18> powers{};
    quint64 power = 1;
    for (quint64& entry : powers) {
        entry = power;
        power *= base;
    }
    return powers;
}

constexpr std::array<quint64, 18> kPowersOf5 = powersOf(5);
constexpr std::array<quint64, 18> kPowersOf10 = powersOf(10);

struct Scaled
{
    quint64 truncated;
    quint64 rounded; ///< ties away from zero
};

/// mantissa * 2^exponent2 * 10^exponent10
Scaled scale(quint64 mantissa, int exponent2, int exponent10)
{
    if (exponent10 >= 0) {
        const quint64 product = mantissa * kPowersOf5[static_cast<size_t>(exponent10)];
        const int shift = -(exponent2 + exponent10);
        if (shift <= 0)
            return {product << -shift, product << -shift};
        const quint64 truncated = product >> shift;
        return {truncated, truncated + ((product >> (shift - 1)) & 1U)};
    }
    const quint64 numerator = exponent2 >= 0 ? mantissa << exponent2 : mantissa;
    const quint64 power = kPowersOf10[static_cast<size_t>(-exponent10)];
    const quint64 denominator = exponent2 >= 0 ? power : power << -exponent2;
    const quint64 truncated = numerator / denominator;
    const quint64 rest = numerator % denominator;
    return {truncated, truncated + (2 * rest >= denominator ? 1 : 0)};
}

struct Decimal
{
    std::array<char, kDigits> digits;
    int count;    ///< digits up to the last that is not 0
    int exponent; ///< of the first digit
};

Decimal toDecimal(tFlux magnitude)
{
    constexpr int kMantissaBits = 24;
    int exponent2 = 0;
    const auto mantissa = static_cast<quint64>(std::ldexp(std::frexp(magnitude, &exponent2), kMantissaBits));
    // floor((exponent2 - 1) * log10(2)): the decimal exponent or one less.
    int exponent = ((exponent2 - 1) * 1233) >> 12;
    exponent2 -= kMantissaBits;
    Scaled scaled = scale(mantissa, exponent2, kDigits - 1 - exponent);
    if (scaled.truncated >= kScaledLimit) {
        ++exponent;
        scaled = scale(mantissa, exponent2, kDigits - 1 - exponent);
    }
    quint64 number = scaled.rounded;
    if (number >= kScaledLimit) {
        number /= 10;
        ++exponent;
    }

    Decimal decimal{{}, kDigits, exponent};
    for (auto digit = decimal.digits.rbegin(); digit != decimal.digits.rend(); ++digit) {
        *digit = static_cast<char>('0' + number % 10);
        number /= 10;
    }
    while (decimal.count > 1 && decimal.digits[static_cast<size_t>(decimal.count - 1)] == '0')
        --decimal.count;
    return decimal;
}

void append(TextBuffer& text, char character)
{
    text.append(QLatin1Char(character));
}

void appendZeros(TextBuffer& text, int count)
{
    for (int i = 0; i < count; ++i)
        append(text, '0');
}

void appendDigits(TextBuffer& text, const Decimal& decimal, int from, int to)
{
    for (int i = from; i < to; ++i)
        append(text, decimal.digits[static_cast<size_t>(i)]);
}

void appendExponentForm(TextBuffer& text, const Decimal& decimal)
{
    append(text, decimal.digits[0]);
    if (decimal.count > 1) {
        append(text, '.');
        appendDigits(text, decimal, 1, decimal.count);
    }
    append(text, 'e');
    append(text, decimal.exponent < 0 ? '-' : '+');
    appendInteger(text, static_cast<quint32>(std::abs(decimal.exponent)), 2);
}

void appendDecimalForm(TextBuffer& text, const Decimal& decimal)
{
    if (decimal.exponent < 0) {
        append(text, '0');
        append(text, '.');
        appendZeros(text, -decimal.exponent - 1);
        appendDigits(text, decimal, 0, decimal.count);
        return;
    }
    const int integerDigits = decimal.exponent + 1;
    appendDigits(text, decimal, 0, std::min(integerDigits, decimal.count));
    appendZeros(text, integerDigits - decimal.count);
    if (decimal.count > integerDigits) {
        append(text, '.');
        appendDigits(text, decimal, integerDigits, decimal.count);
    }
}

} // namespace

void appendSixDigits(TextBuffer& text, tFlux value)
{
    const tFlux magnitude = std::fabs(value);
    if (!(magnitude >= kSmallestExact && magnitude < kLargestExact)) {
        const QString number = QString::number(static_cast<double>(value), 'g', kDigits);
        text.append(number.constData(), number.size());
        return;
    }
    if (value < 0)
        append(text, '-');
    const Decimal decimal = toDecimal(magnitude);
    if (decimal.exponent < -4 || decimal.exponent >= kDigits)
        appendExponentForm(text, decimal);
    else
        appendDecimalForm(text, decimal);
}

void appendInteger(TextBuffer& text, quint32 value, int width)
{
    constexpr int kMaxDigits = 10;
    QChar digits[kMaxDigits];
    int first = kMaxDigits;
    do {
        digits[--first] = QLatin1Char(static_cast<char>('0' + value % 10));
        value /= 10;
    } while (value != 0);
    appendZeros(text, width - (kMaxDigits - first));
    text.append(digits + first, kMaxDigits - first);
}
