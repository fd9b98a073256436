// SPDX-License-Identifier: MIT
#include "CSampleStamper.h"

#include "CTimestampableResult.h"
#include "TimeUnits.h"

namespace {

// Rounds down for times before 1970, too.
qint64 floorModulo(qint64 value, qint64 divisor)
{
    const qint64 remainder = value % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

} // namespace

void CSampleStamper::Stamp(CTimestampableResult& result, qint64 epochNs)
{
    const qint64 ms = (epochNs - floorModulo(epochNs, kNsPerMs)) / kNsPerMs;
    if (ms != m_cachedMs) {
        m_cached = QDateTime::fromMSecsSinceEpoch(ms);
        m_cachedMs = ms;
    }
    result.Timestamp = m_cached;
    result.TimestampNanoseconds = static_cast<quint32>(floorModulo(epochNs, kNsPerSecond));
}
