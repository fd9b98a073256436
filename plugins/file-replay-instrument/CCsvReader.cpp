// SPDX-License-Identifier: MIT
#include "CCsvReader.h"

#include "NumberText.h"

#include <algorithm>
#include <cmath>

namespace {

using ColumnHeading::TimeKind;

constexpr int kMaxHeadLines = 200;
// Seconds beyond this count from 1970, not from the start of the recording.
constexpr qint64 kFirstEpochNs = 100000000LL * 1000000000LL;

// Older programs write the micro sign in Latin-1.
QString decode(const QByteArray& text)
{
    const QString decoded = QString::fromUtf8(text);
    return decoded.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(text) : decoded;
}

QByteArray unquoted(const QByteArray& text)
{
    const QByteArray trimmed = text.trimmed();
    return trimmed.size() >= 2 && trimmed.startsWith('"') && trimmed.endsWith('"')
               ? trimmed.mid(1, trimmed.size() - 2)
               : trimmed;
}

bool looksLikeRow(const QByteArray& line)
{
    const char first = line.trimmed().at(0);
    return (first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.';
}

// Power of ten that turns a time into nanoseconds.
int nanosecondDecimals(TimeKind kind)
{
    switch (kind) {
    case TimeKind::Milliseconds:
        return 6;
    case TimeKind::Microseconds:
        return 3;
    case TimeKind::Nanoseconds:
        return 0;
    default:
        return 9;
    }
}

} // namespace

bool CCsvReader::ReadHead()
{
    QByteArray line;
    QByteArray lastComment;
    for (int i = 0; i < kMaxHeadLines && ReadLine(line); ++i) {
        if (i == 0 && line.startsWith("\xEF\xBB\xBF"))
            line.remove(0, 3);
        if (line.contains('\0'))
            return false;
        const QByteArray trimmed = line.trimmed();
        if (trimmed.isEmpty())
            continue;
        if (trimmed.startsWith('#')) {
            lastComment = trimmed.mid(1);
            continue;
        }
        if (!looksLikeRow(trimmed))
            return readHeadings(line);
        // Some programs write the headings as a comment.
        UnreadLine();
        return readHeadings(lastComment);
    }
    return false;
}

bool CCsvReader::readHeadings(const QByteArray& line)
{
    m_separator = line.contains(';') ? ';' : line.contains('\t') ? '\t' : ',';
    QStringList headings;
    const QList<QByteArray> cells = line.split(m_separator);
    for (const QByteArray& heading : cells)
        headings.append(decode(unquoted(heading)));
    const auto columns = ColumnHeading::find(headings);
    if (!columns)
        return false;
    m_columns = *columns;
    m_timeParser = CTimeParser(m_columns.time.isUtc ? CTimeParser::Zone::Utc : CTimeParser::Zone::Local);
    m_columnsNeeded = m_columns.time.index + 1;
    for (const auto& component : m_columns.components)
        m_columnsNeeded = std::max(m_columnsNeeded, component.index + 1);
    m_info.format = QStringLiteral("CSV");
    m_info.unit = m_columns.components[0].unit;
    return true;
}

std::optional<qint64> CCsvReader::parseTime(const QByteArray& text)
{
    if (text.contains(':')) {
        m_info.hasDate = true;
        return m_timeParser.Parse(text);
    }
    const std::optional<qint64> timeNs =
        NumberText::toScaledInteger(text, nanosecondDecimals(m_columns.time.kind), hasDecimalComma());
    if (timeNs && *timeNs >= kFirstEpochNs)
        m_info.hasDate = true;
    return timeNs;
}

std::optional<double> CCsvReader::parseField(const QByteArray& text, CUnits::UnitType unit) const
{
    const std::optional<double> value = NumberText::toDouble(text, hasDecimalComma());
    if (!value || isMissingMarker(*value))
        return std::nullopt;
    if (unit == m_info.unit)
        return value;
    tFlux converted = 0;
    ConvertUnits(unit, m_info.unit, converted, static_cast<tFlux>(*value));
    return static_cast<double>(converted);
}

CTextReader::Row CCsvReader::ParseRow(const QByteArray& line, RecordedSample& sample)
{
    if (line.startsWith('#'))
        return Row::None;
    const QList<QByteArray> texts = line.split(m_separator);
    if (texts.size() < m_columnsNeeded)
        return Row::None;
    const std::optional<qint64> timeNs = parseTime(unquoted(texts.at(m_columns.time.index)));
    if (!timeNs)
        return Row::None;
    sample = {};
    sample.timeNs = *timeNs;
    std::array<double, 3> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto& column = m_columns.components[i];
        const std::optional<double> value = parseField(unquoted(texts.at(column.index)), column.unit);
        if (!value)
            return Row::Missing;
        values[i] = *value;
    }
    sample.field = {values[0], values[1], values[2]};
    const auto& magnitude = m_columns.magnitude;
    if (magnitude.index >= 0 && magnitude.index < texts.size())
        sample.magnitude =
            parseField(unquoted(texts.at(magnitude.index)), magnitude.unit).value_or(RecordedSample::kNone);
    return Row::Sample;
}

int CCsvReader::DecimalPlaces(const QByteArray& line) const
{
    const QList<QByteArray> texts = line.split(m_separator);
    int places = 0;
    for (const auto& component : m_columns.components)
        places = std::max(places, NumberText::decimalPlaces(unquoted(texts.at(component.index))));
    return places;
}
