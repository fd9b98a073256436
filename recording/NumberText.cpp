// SPDX-License-Identifier: GPL-3.0-or-later
#include "NumberText.h"

#include <QString>

#include <array>
#include <cstdlib>
#include <limits>

namespace {

// Up to these bounds a decimal converts to double with a single rounding, of the product or quotient of two
// exact numbers.
constexpr int kMaxExactDigits = 15;
constexpr int kMaxExactExponent = 22;
constexpr std::array<double, kMaxExactExponent + 1> kPowersOf10{
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// A run of digits; returns how many there are. Too many overflow the number, without further harm.
int readDigits(const QChar*& position, const QChar* end, quint64& number)
{
    const QChar* const first = position;
    for (; position != end; ++position) {
        const unsigned digit = static_cast<unsigned>(position->unicode()) - u'0';
        if (digit > 9)
            break;
        number = number * 10 + digit;
    }
    return static_cast<int>(position - first);
}

} // namespace

bool readPlainDecimal(const QChar*& position, const QChar* end, double& value)
{
    const bool isNegative = position != end && *position == QLatin1Char('-');
    if (isNegative)
        ++position;

    quint64 mantissa = 0;
    int digits = readDigits(position, end, mantissa);
    if (digits == 0)
        return false;
    int exponent = 0;
    if (position != end && *position == QLatin1Char('.')) {
        ++position;
        const int decimals = readDigits(position, end, mantissa);
        if (decimals == 0)
            return false;
        digits += decimals;
        exponent = -decimals;
    }
    if (digits > kMaxExactDigits)
        return false;
    if (position != end && *position == QLatin1Char('e')) {
        ++position;
        const bool isExponentNegative = position != end && *position == QLatin1Char('-');
        if (isExponentNegative || (position != end && *position == QLatin1Char('+')))
            ++position;
        quint64 number = 0;
        const int exponentDigits = readDigits(position, end, number);
        if (exponentDigits == 0 || exponentDigits > 3)
            return false;
        exponent += isExponentNegative ? -static_cast<int>(number) : static_cast<int>(number);
    }
    if (std::abs(exponent) > kMaxExactExponent)
        return false;

    const double power = kPowersOf10[static_cast<size_t>(std::abs(exponent))];
    value = exponent < 0 ? static_cast<double>(mantissa) / power : static_cast<double>(mantissa) * power;
    if (isNegative)
        value = -value;
    return true;
}

tFlux toFluxValue(QStringView text)
{
    const QChar* position = text.begin();
    double value = 0;
    if (readPlainDecimal(position, text.end(), value) && position == text.end())
        return static_cast<tFlux>(value);
    return text.toString().toFloat();
}

quint16 toCount(QStringView text)
{
    constexpr int kDigitsThatFit = 5;
    quint64 number = 0;
    const QChar* position = text.begin();
    const int digits = readDigits(position, text.end(), number);
    const bool isPlain = digits > 0 && digits <= kDigitsThatFit && position == text.end();
    if (isPlain && number <= std::numeric_limits<quint16>::max())
        return static_cast<quint16>(number);
    return text.toString().toUShort();
}
