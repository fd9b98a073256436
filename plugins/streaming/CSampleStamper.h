// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

#include <limits>

class CTimestampableResult;

/// Writes times into samples: local time with milliseconds, and the nanoseconds beyond the whole second. To
/// make a local date-time costs more than the rest of a sample, so samples within one millisecond share it.
/// One object per thread.
class CSampleStamper
{
public:
    /// `epochNs`: nanoseconds since 1970-01-01 UTC.
    void Stamp(CTimestampableResult& result, qint64 epochNs);

private:
    qint64 m_cachedMs = std::numeric_limits<qint64>::min();
    QDateTime m_cached;
};
