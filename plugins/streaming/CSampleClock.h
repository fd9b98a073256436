// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Times of equally spaced samples in whole nanoseconds. The rate is held as a ratio of integers and a time
/// is computed from the sample's index, so that nothing accumulates: a period of a whole number of
/// nanoseconds is kept exactly, any other one to the nanosecond below, for ever.
class CSampleClock
{
public:
    /// `rate` in Hz, positive; other values count as 1 Hz.
    explicit CSampleClock(double rate = 1);

    /// Time from sample 0 to sample `index`.
    qint64 OffsetNs(quint64 index) const;

    double Rate() const { return m_rate; }

private:
    double m_rate;
    // rate = m_numerator / m_denominator
    quint64 m_numerator = 1;
    quint64 m_denominator = 1;
};
