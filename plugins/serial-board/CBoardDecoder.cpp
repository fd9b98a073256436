// SPDX-License-Identifier: MIT
#include "CBoardDecoder.h"

#include <cmath>
#include <limits>

namespace {

// A line does not stop half-way for so long, unless its end is lost.
constexpr qint64 kMaxPauseNs = 500000000;
// The first bytes after so long a silence are the beginning of a line. A board that was started anew by the
// opening of its port may print a header then, once.
constexpr qint64 kSilenceNs = 50000000;

double teslaPer(CUnits::UnitType unit)
{
    switch (unit) {
    case CUnits::MILLI_TESLA:
        return 1e-3;
    case CUnits::MICRO_TESLA:
        return 1e-6;
    case CUnits::NANO_TESLA:
        return 1e-9;
    case CUnits::GAUSS:
        return 1e-4;
    case CUnits::MILLI_GAUSS:
        return 1e-7;
    default:
        return 1;
    }
}

} // namespace

CBoardDecoder::CBoardDecoder(CUnits::UnitType unit, double scale,
                             const QVector<CBoardLineParser::Column>& columns)
    : m_toldUnit(unit), m_unit(unit), m_scale(scale), m_parser(columns)
{
    // The board is in the middle of a line.
    m_splitter.Interrupt();
}

QVector<BoardSample> CBoardDecoder::Feed(const QByteArray& bytes, qint64 arrivalNs)
{
    if (m_splitter.HasPartialLine() && arrivalNs - m_lastArrivalNs > kMaxPauseNs) {
        m_splitter.Interrupt();
        m_parser.Interrupt();
    }
    if (m_beginNs && arrivalNs - *m_beginNs > kSilenceNs)
        m_splitter.BeginLine();
    m_beginNs.reset();
    m_lastArrivalNs = arrivalNs;

    QVector<BoardReading> readings;
    const QList<QByteArray> lines = m_splitter.Feed(bytes);
    for (const QByteArray& line : lines) {
        if (const auto reading = m_parser.Feed(line))
            readings.append(*reading);
    }
    // What the board says goes before what the user says; all samples have the unit that stood at their
    // first.
    if (!readings.isEmpty() && readings.last().unit != CUnits::UNKNOWN && !IsSettled())
        m_unit = readings.last().unit;
    m_hasReadings |= !readings.isEmpty();

    QVector<BoardSample> samples;
    const bool wasSettled = m_clock.IsSettled();
    const QVector<TimedReading> timed = m_clock.Arrive(readings, arrivalNs);
    if (!wasSettled && m_clock.IsSettled())
        judgeClock();
    samples.reserve(timed.size());
    for (const TimedReading& reading : timed) {
        if (const auto sample = sampleOf(reading))
            samples.append(*sample);
    }
    return samples;
}

// A field that grows for a while looks like a clock, but does not run like one.
void CBoardDecoder::judgeClock()
{
    if (!m_parser.HasGuessedClock())
        return;
    m_parser.JudgeGuessedClock(m_clock.UsesDeviceTime());
    if (!m_clock.UsesDeviceTime())
        m_clock = {};
}

// Nothing if it has come to be in a unit that nobody tells.
std::optional<BoardSample> CBoardDecoder::sampleOf(const TimedReading& timed) const
{
    const BoardReading& reading = timed.reading;
    const CUnits::UnitType unit = reading.unit == CUnits::UNKNOWN ? m_toldUnit : reading.unit;
    if (unit == CUnits::UNKNOWN && m_unit != CUnits::UNKNOWN)
        return std::nullopt;
    double factor = m_scale;
    if (unit != m_unit)
        factor *= teslaPer(unit) / teslaPer(m_unit);
    BoardSample sample;
    sample.timeNs = timed.timeNs;
    sample.field = reading.field * factor;
    sample.temperature = reading.temperature.value_or(std::numeric_limits<double>::quiet_NaN());
    sample.step = reading.step * std::abs(factor);
    return sample;
}
