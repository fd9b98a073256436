// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

/// The sampling rates that a device can be set to, in Hz: some values, or all between two limits, with or
/// without a step.
class CSamplingRates
{
public:
    CSamplingRates() = default; ///< none is known

    /// The one rate; none if it is not positive.
    static CSamplingRates Fixed(double rate);
    /// All rates between two positive limits.
    static CSamplingRates Between(double min, double max);
    /// The text of an attribute: "10 20 40 80" or "[1 0.5 100]", least value, step and largest value. What is
    /// no positive number is passed over; none is known if nothing is left.
    static CSamplingRates Parse(const QByteArray& text);

    bool IsEmpty() const { return m_max <= 0; }
    double Min() const { return m_min; }
    double Max() const { return m_max; }
    /// The least rate that is not below `wanted`, or else the largest. Not to be asked of an empty one.
    double Pick(double wanted) const;

    friend bool operator==(const CSamplingRates& a, const CSamplingRates& b)
    {
        return a.m_values == b.m_values && a.m_min == b.m_min && a.m_max == b.m_max && a.m_step == b.m_step;
    }

private:
    QVector<double> m_values; ///< ascending; empty if all between the limits will do
    double m_min = 0;
    double m_max = 0;
    double m_step = 0; ///< from m_min on; 0: any rate
};
