// SPDX-License-Identifier: GPL-3.0-or-later
#include "SampleTime.h"

#include "CTimestampableResult.h"

qint64 millisecondsSinceEpoch(const CTimestampableResult& result)
{
    constexpr int kNanosecondsPerMillisecond = 1000000;
    const qint64 time = result.Timestamp.toMSecsSinceEpoch();
    return result.Timestamp.time().msec() == 0
               ? time + result.TimestampNanoseconds / kNanosecondsPerMillisecond
               : time;
}
