// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QDateTime>
#include <QObject>

/// The time of one sample.
class KESTRIX_API CTimestampableResult : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Local time of the sample, with milliseconds where its source knows them; invalid until set. The
    /// fraction of a second that counts is `TimestampNanoseconds`.
    QDateTime Timestamp;
    /// Nanoseconds beyond the whole second of `Timestamp`, 0 to 999999999.
    quint32 TimestampNanoseconds = 0;
};
