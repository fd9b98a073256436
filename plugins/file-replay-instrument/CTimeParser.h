// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

/// Reads dates with times of the forms "2022-08-10T00:00:00.000", with a blank for the "T", and
/// "2022.08.10T00:00:00.000000000", each with up to nine decimals. The time of the whole second is kept from
/// row to row, since a local time is expensive to convert.
class CTimeParser
{
public:
    /// What a time without "Z" and without an offset from UTC means.
    enum class Zone { Utc, Local };

    explicit CTimeParser(Zone zone) : m_zone(zone) {}

    /// Nanoseconds since 1970-01-01 UTC.
    std::optional<qint64> Parse(const QByteArray& text);

private:
    std::optional<qint64> parseSeconds(const QByteArray& text, bool isUtc) const;

    Zone m_zone;
    QByteArray m_cachedText;
    bool m_cachedIsUtc = false;
    qint64 m_cachedSeconds = 0;
};
