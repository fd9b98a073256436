// SPDX-License-Identifier: MIT
#pragma once

#include "CTextReader.h"
#include "CTimeParser.h"
#include "ColumnHeading.h"

/// Table with a row of headings: columns separated by semicolon, tab or comma, lines of comment behind "#",
/// and with another separator than the comma a decimal comma, too.
class CCsvReader : public CTextReader
{
public:
    using CTextReader::CTextReader;

protected:
    bool ReadHead() override;
    Row ParseRow(const QByteArray& line, RecordedSample& sample) override;
    int DecimalPlaces(const QByteArray& line) const override;

private:
    bool readHeadings(const QByteArray& line);
    std::optional<qint64> parseTime(const QByteArray& text);
    std::optional<double> parseField(const QByteArray& text, CUnits::UnitType unit) const;
    bool hasDecimalComma() const { return m_separator != ','; }

    char m_separator = ',';
    ColumnHeading::Columns m_columns;
    CTimeParser m_timeParser{CTimeParser::Zone::Local};
    int m_columnsNeeded = 0;
};
