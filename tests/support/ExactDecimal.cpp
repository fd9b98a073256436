// SPDX-License-Identifier: GPL-3.0-or-later
#include "ExactDecimal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace ExactDecimal {

namespace {

struct Digits
{
    std::string integer;
    std::string fraction;
};

/// number * factor^count
void multiply(std::string& number, int factor, int count)
{
    constexpr int kAtOnce = 8;
    for (; count > 0; count -= kAtOnce) {
        const int power = static_cast<int>(std::pow(factor, std::min(count, kAtOnce)));
        int carry = 0;
        for (auto digit = number.rbegin(); digit != number.rend(); ++digit) {
            const int product = (*digit - '0') * power + carry;
            *digit = static_cast<char>('0' + product % 10);
            carry = product / 10;
        }
        if (carry > 0)
            number.insert(0, std::to_string(carry));
    }
}

Digits exactDigits(double magnitude)
{
    constexpr int kMantissaBits = 53;
    int exponent = 0;
    const double mantissa = std::ldexp(std::frexp(magnitude, &exponent), kMantissaBits);
    exponent -= kMantissaBits;
    std::string number = std::to_string(static_cast<std::uint64_t>(mantissa));
    multiply(number, 2, exponent);
    if (exponent >= 0)
        return {number, {}};
    // m / 2^k = m * 5^k / 10^k
    const auto places = static_cast<std::size_t>(-exponent);
    multiply(number, 5, -exponent);
    if (number.size() <= places)
        number.insert(0, places + 1 - number.size(), '0');
    return {number.substr(0, number.size() - places), number.substr(number.size() - places)};
}

/// The first `count` digits, rounded by the one that follows. One digit longer if the rounding carries over.
std::string rounded(const std::string& digits, std::size_t count)
{
    std::string result = digits.substr(0, count);
    result.append(count - result.size(), '0');
    if (count >= digits.size() || digits[count] < '5')
        return result;
    for (auto digit = result.rbegin(); digit != result.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return result;
        }
        *digit = '0';
    }
    return "1" + result;
}

QString text(bool isNegative, const std::string& digits)
{
    return QLatin1String(isNegative ? "-" : "") + QString::fromStdString(digits);
}

QString notFinite(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    return value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
}

} // namespace

QString fixed(double value, int decimals)
{
    if (!std::isfinite(value))
        return notFinite(value);
    const Digits exact = exactDigits(std::fabs(value));
    const auto places = static_cast<std::size_t>(decimals);
    std::string number = rounded(exact.integer + exact.fraction, exact.integer.size() + places);
    if (decimals > 0)
        number.insert(number.size() - places, 1, '.');
    return text(value < 0, number);
}

QString general(double value, int digits)
{
    if (!std::isfinite(value))
        return notFinite(value);
    if (value == 0)
        return QStringLiteral("0");
    const Digits exact = exactDigits(std::fabs(value));
    const std::string all = exact.integer + exact.fraction;
    const std::size_t first = all.find_first_not_of('0');
    const auto count = static_cast<std::size_t>(digits);
    int exponent = static_cast<int>(exact.integer.size()) - 1 - static_cast<int>(first);
    std::string number = rounded(all.substr(first), count);
    if (number.size() > count) {
        number.resize(count);
        ++exponent;
    }
    const auto withoutTrailingZeros = [](std::string fraction) {
        while (!fraction.empty() && fraction.back() == '0')
            fraction.pop_back();
        return fraction.empty() ? fraction : "." + fraction;
    };
    if (exponent < -4 || exponent >= digits) {
        std::string power = std::to_string(std::abs(exponent));
        if (power.size() < 2)
            power.insert(0, 1, '0');
        return text(value < 0, number.substr(0, 1) + withoutTrailingZeros(number.substr(1)) +
                                   (exponent < 0 ? "e-" : "e+") + power);
    }
    if (exponent < 0)
        return text(value < 0, "0" + withoutTrailingZeros(
                                         std::string(static_cast<std::size_t>(-exponent - 1), '0') + number));
    const auto integerDigits = static_cast<std::size_t>(exponent) + 1;
    return text(value < 0,
                number.substr(0, integerDigits) + withoutTrailingZeros(number.substr(integerDigits)));
}

} // namespace ExactDecimal
