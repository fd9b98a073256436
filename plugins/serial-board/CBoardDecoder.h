// SPDX-License-Identifier: MIT
#pragma once

#include "BoardSample.h"
#include "CBoardClock.h"
#include "CBoardLineParser.h"
#include "CLineSplitter.h"

#include <QByteArray>
#include <QVector>

#include <optional>

/// Makes samples of the bytes of a board: cuts lines, reads them, places them in time and brings them to one
/// unit. No thread of its own; one object per opened port.
class CBoardDecoder
{
public:
    /// `unit` counts for values that name none, UNKNOWN if that is not known; `scale` multiplies all values.
    CBoardDecoder(CUnits::UnitType unit, double scale, const QVector<CBoardLineParser::Column>& columns);

    /// The port was opened.
    void Begin(qint64 timeNs) { m_beginNs = timeNs; }
    /// Bytes that arrived together.
    QVector<BoardSample> Feed(const QByteArray& bytes, qint64 arrivalNs);

    bool HasReadings() const { return m_hasReadings; } ///< a line was understood
    int RejectedLines() const { return m_parser.RejectedLines(); }
    CUnits::UnitType Unit() const { return m_unit; }       ///< of the samples; UNKNOWN: it has to be told
    bool IsSettled() const { return m_clock.IsSettled(); } ///< samples come, and their rate is known
    double Rate() const { return m_clock.Rate(); }         ///< samples per second
    bool UsesDeviceTime() const { return m_clock.UsesDeviceTime(); }

private:
    std::optional<BoardSample> sampleOf(const TimedReading& timed) const;
    void judgeClock();

    const CUnits::UnitType m_toldUnit; ///< for values that name none
    CUnits::UnitType m_unit;           ///< of the samples
    double m_scale;
    CLineSplitter m_splitter;
    CBoardLineParser m_parser;
    CBoardClock m_clock;
    bool m_hasReadings = false;
    std::optional<qint64> m_beginNs; ///< until the first bytes
    qint64 m_lastArrivalNs = 0;
};
