// SPDX-License-Identifier: MIT
#pragma once

#include "CTextReader.h"
#include "CTimeParser.h"

/// IAGA-2002 text of observatories: a head of 70 columns, then date, time in UTC, day of the year and four
/// values in nT. Of the head only the names of the components are used: its coordinates are not reliable.
class CIagaReader : public CTextReader
{
public:
    using CTextReader::CTextReader;

protected:
    bool ReadHead() override;
    Row ParseRow(const QByteArray& line, RecordedSample& sample) override;
    int DecimalPlaces(const QByteArray& line) const override;

private:
    CTimeParser m_timeParser{CTimeParser::Zone::Utc};
    bool m_isDeclination = false; ///< components are H, D (in minutes of arc), Z
    bool m_hasMagnitude = false;
};
