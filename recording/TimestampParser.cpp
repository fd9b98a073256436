// SPDX-License-Identifier: GPL-3.0-or-later
#include "TimestampParser.h"

#include <QString>

namespace {

constexpr int kFractionDigits = 9;
constexpr quint32 kNanosecondsPerMillisecond = 1000000;

/// Reads digits and the separators between them from a text of which the length has been checked.
class DigitReader
{
public:
    explicit DigitReader(QStringView text) : m_position(text.begin()), m_end(text.end()) {}

    quint32 number(int digits)
    {
        quint32 value = 0;
        for (int i = 0; i < digits; ++i)
            value = value * 10 + digit();
        return value;
    }

    void expect(char character) { m_isGood &= *m_position++ == QLatin1Char(character); }

    quint32 fraction()
    {
        quint32 value = 0;
        int digits = 0;
        for (; m_position != m_end && m_isGood; ++digits) {
            const quint32 next = digit();
            if (digits < kFractionDigits)
                value = value * 10 + next;
        }
        for (; digits < kFractionDigits; ++digits)
            value *= 10;
        return value;
    }

    bool isGood() const { return m_isGood; }

private:
    quint32 digit()
    {
        const auto value = static_cast<quint32>(m_position++->unicode()) - u'0';
        m_isGood &= value <= 9;
        return value;
    }

    const QChar* m_position;
    const QChar* m_end;
    bool m_isGood = true;
};

/// Length of the part in front of the first such character, or of the whole text.
int endOfPart(QStringView text, QLatin1Char character)
{
    const auto position = static_cast<int>(text.indexOf(character));
    return position < 0 ? static_cast<int>(text.size()) : position;
}

void parseAnyForm(QStringView text, CTimestampableResult& result)
{
    const QLatin1Char timeMark('T');
    const auto date = static_cast<int>(text.indexOf(timeMark));
    if (date < 0)
        return;
    QStringView time = text.mid(date + 1);
    time = time.left(endOfPart(time, timeMark));
    const int timeOfDay = endOfPart(time, QLatin1Char('.'));
    if (timeOfDay == time.size())
        return;
    QStringView fraction = time.mid(timeOfDay + 1);
    fraction = fraction.left(endOfPart(fraction, QLatin1Char('.')));

    result.TimestampNanoseconds =
        fraction.left(kFractionDigits).toString().leftJustified(kFractionDigits, QLatin1Char('0')).toUInt();
    result.Timestamp =
        QDateTime(QDate::fromString(text.left(date).toString(), QStringLiteral("yyyy.MM.dd")),
                  QTime::fromString(time.left(timeOfDay).toString(), QStringLiteral("HH:mm:ss")))
            .addMSecs(result.TimestampNanoseconds / kNanosecondsPerMillisecond);
}

} // namespace

void TimestampParser::parse(QStringView text, CTimestampableResult& result)
{
    if (!parseUsualForm(text, result))
        parseAnyForm(text, result);
}

bool TimestampParser::parseUsualForm(QStringView text, CTimestampableResult& result)
{
    constexpr int kLengthWithOneDecimal = 21;
    if (text.size() < kLengthWithOneDecimal)
        return false;
    DigitReader reader(text);
    const quint32 year = reader.number(4);
    reader.expect('.');
    const quint32 month = reader.number(2);
    reader.expect('.');
    const quint32 day = reader.number(2);
    reader.expect('T');
    const quint32 hour = reader.number(2);
    reader.expect(':');
    const quint32 minute = reader.number(2);
    reader.expect(':');
    const quint32 second = reader.number(2);
    reader.expect('.');
    const quint32 nanoseconds = reader.fraction();
    if (!reader.isGood() || hour > 23 || minute > 59 || second > 59)
        return false;

    const quint32 dayNumber = (year * 100 + month) * 100 + day;
    const auto millisecondOfDay = static_cast<int>(((hour * 60 + minute) * 60 + second) * 1000 +
                                                   nanoseconds / kNanosecondsPerMillisecond);
    if (dayNumber != m_lastDay || millisecondOfDay != m_lastMillisecondOfDay) {
        if (dayNumber != m_lastDay) {
            const QDate date(static_cast<int>(year), static_cast<int>(month), static_cast<int>(day));
            if (!date.isValid())
                return false;
            m_lastDate = date;
            m_lastDay = dayNumber;
        }
        m_lastTimestamp = QDateTime(m_lastDate, QTime::fromMSecsSinceStartOfDay(millisecondOfDay));
        m_lastMillisecondOfDay = millisecondOfDay;
    }
    result.Timestamp = m_lastTimestamp;
    result.TimestampNanoseconds = nanoseconds;
    return true;
}
