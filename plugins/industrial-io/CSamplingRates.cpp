// SPDX-License-Identifier: MIT
#include "CSamplingRates.h"

#include "IioText.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// A rate that was divided by an averaging count and kept with six digits is still the same one.
constexpr double kSame = 1e-5;

QVector<double> positiveNumbers(const QByteArray& text)
{
    QVector<double> numbers;
    const QList<QByteArray> words = text.simplified().split(' ');
    for (const QByteArray& word : words) {
        const std::optional<double> number = numberOfAttribute(word);
        if (number && *number > 0)
            numbers.append(*number);
    }
    return numbers;
}

} // namespace

CSamplingRates CSamplingRates::Fixed(double rate)
{
    return Between(rate, rate);
}

CSamplingRates CSamplingRates::Between(double min, double max)
{
    CSamplingRates rates;
    if (min > 0 && max >= min) {
        rates.m_min = min;
        rates.m_max = max;
    }
    return rates;
}

CSamplingRates CSamplingRates::Parse(const QByteArray& text)
{
    const QByteArray trimmed = QByteArray(text.constData()).trimmed();
    if (trimmed.startsWith('[') && trimmed.endsWith(']')) {
        const QList<QByteArray> words = trimmed.mid(1, trimmed.size() - 2).simplified().split(' ');
        if (words.size() != 3)
            return {};
        CSamplingRates rates =
            Between(numberOfAttribute(words.at(0)).value_or(0), numberOfAttribute(words.at(2)).value_or(0));
        if (!rates.IsEmpty())
            rates.m_step = std::fmax(0, numberOfAttribute(words.at(1)).value_or(0));
        return rates;
    }
    QVector<double> values = positiveNumbers(trimmed);
    if (values.isEmpty())
        return {};
    std::sort(values.begin(), values.end());
    CSamplingRates rates = Between(values.first(), values.last());
    rates.m_values = values;
    return rates;
}

double CSamplingRates::Pick(double wanted) const
{
    const double least = wanted * (1 - kSame);
    if (std::isnan(wanted) || least <= m_min)
        return m_min;
    if (least >= m_max)
        return m_max;
    if (!m_values.isEmpty())
        return *std::lower_bound(m_values.cbegin(), m_values.cend(), least);
    if (m_step > 0)
        return std::fmin(m_max, m_min + std::ceil((least - m_min) / m_step) * m_step);
    return wanted;
}
