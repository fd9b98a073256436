// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CTimestampableResult.h"

#include <QDate>
#include <QDateTime>
#include <QStringView>

/// Reads the time of a sample, "yyyy.MM.ddTHH:mm:ss.fffffffff", as local time. The fraction is padded or cut
/// to nine digits; a text without "T" or without the point behind it gives an invalid time and 0 nanoseconds.
///
/// Making a local QDateTime is dear, since the C library is asked for the offset; the parser keeps the last
/// one, which serves all samples of the same millisecond.
class TimestampParser
{
public:
    void parse(QStringView text, CTimestampableResult& result);

private:
    bool parseUsualForm(QStringView text, CTimestampableResult& result);

    quint32 m_lastDay = 0; ///< yyyyMMdd as a number
    QDate m_lastDate;
    int m_lastMillisecondOfDay = -1;
    QDateTime m_lastTimestamp;
};
