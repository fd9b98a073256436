// SPDX-License-Identifier: MIT
#include "CTimeParser.h"

#include "NumberText.h"
#include "TimeUnits.h"

#include <QDateTime>

namespace {

constexpr int kSecondsLength = 19; // yyyy-MM-ddTHH:mm:ss
constexpr int kFractionDigits = 9;

// A number of exactly `length` digits; -1 for anything else.
int digitsAt(const QByteArray& text, int position, int length)
{
    if (position + length > text.size())
        return -1;
    int value = 0;
    for (int i = position; i < position + length; ++i) {
        if (!NumberText::isDigit(text.at(i)))
            return -1;
        value = value * 10 + (text.at(i) - '0');
    }
    return value;
}

// Seconds east of UTC of "Z", "+01:00", "+0100" or "+01".
std::optional<int> offsetFromUtc(const QByteArray& text)
{
    if (text == "Z" || text == "z")
        return 0;
    if (text.isEmpty() || (text.at(0) != '+' && text.at(0) != '-'))
        return std::nullopt;
    const int hours = digitsAt(text, 1, 2);
    int minutes = 0;
    if (text.size() > 3)
        minutes = digitsAt(text, text.at(3) == ':' ? 4 : 3, 2);
    if (hours < 0 || minutes < 0)
        return std::nullopt;
    const int seconds = hours * 3600 + minutes * 60;
    return text.at(0) == '-' ? -seconds : seconds;
}

} // namespace

std::optional<qint64> CTimeParser::Parse(const QByteArray& text)
{
    const QByteArray trimmed = text.trimmed();
    if (trimmed.size() < kSecondsLength)
        return std::nullopt;

    int at = kSecondsLength;
    qint64 fractionNs = 0;
    if (at < trimmed.size() && (trimmed.at(at) == '.' || trimmed.at(at) == ',')) {
        ++at;
        int digits = 0;
        for (; at < trimmed.size() && NumberText::isDigit(trimmed.at(at)); ++at) {
            if (digits++ < kFractionDigits)
                fractionNs = fractionNs * 10 + (trimmed.at(at) - '0');
        }
        for (; digits < kFractionDigits; ++digits)
            fractionNs *= 10;
    }
    int offsetS = 0;
    bool isUtc = m_zone == Zone::Utc;
    if (at < trimmed.size()) {
        const std::optional<int> offset = offsetFromUtc(trimmed.mid(at));
        if (!offset)
            return std::nullopt;
        offsetS = *offset;
        isUtc = true;
    }

    const QByteArray secondsText = trimmed.left(kSecondsLength);
    if (secondsText != m_cachedText || isUtc != m_cachedIsUtc) {
        const std::optional<qint64> seconds = parseSeconds(secondsText, isUtc);
        if (!seconds)
            return std::nullopt;
        m_cachedText = secondsText;
        m_cachedIsUtc = isUtc;
        m_cachedSeconds = *seconds;
    }
    return (m_cachedSeconds - offsetS) * kNsPerSecond + fractionNs;
}

std::optional<qint64> CTimeParser::parseSeconds(const QByteArray& text, bool isUtc) const
{
    const char separator = text.at(4);
    const bool isFormed = (separator == '-' || separator == '.') && text.at(7) == separator &&
                          (text.at(10) == 'T' || text.at(10) == ' ') && text.at(13) == ':' &&
                          text.at(16) == ':';
    const QDate date(digitsAt(text, 0, 4), digitsAt(text, 5, 2), digitsAt(text, 8, 2));
    const QTime time(digitsAt(text, 11, 2), digitsAt(text, 14, 2), digitsAt(text, 17, 2));
    if (!isFormed || !date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, isUtc ? Qt::UTC : Qt::LocalTime).toSecsSinceEpoch();
}
