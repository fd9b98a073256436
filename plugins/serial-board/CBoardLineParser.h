// SPDX-License-Identifier: MIT
#pragma once

#include "BoardReading.h"

#include <QByteArray>
#include <QVector>

#include <array>
#include <optional>

/// Reads the text lines that boards with a three-axis sensor print: labelled values ("X: 1.2 Y: 3.4 Z: 5.6
/// uT", "magX[1.2] ...", plotter lines, JSON with or without quoted keys), one axis to a line, or columns of
/// numbers with or without a header line. A line that is none of these gives nothing and is counted. The unit
/// is the one that a line or the header names; it is never guessed. A line that has another number of columns
/// than those before it, or no unit where they had one, is what a broken transmission has left, until enough
/// such lines in a row tell that the board prints something else now.
class CBoardLineParser
{
public:
    /// What a column of bare numbers holds.
    enum class Column { X, Y, Z, Time, Temperature, Other };

    /// `columns` tells what bare numbers mean, for boards without labels and header; empty leaves it to the
    /// header, or else to the number of columns: three are X, Y, Z; five have the time before and the
    /// temperature behind; of four the first is the time if it grows from line to line, else the last is the
    /// temperature.
    explicit CBoardLineParser(QVector<Column> columns = {});

    /// One line, with or without its end. The reading that the line completes, if it does.
    std::optional<BoardReading> Feed(const QByteArray& line);

    /// Forgets an unfinished sample, after a gap in the data. The header stays known.
    void Interrupt();

    /// Of four columns without a name the first was taken for a clock, because it grew so far.
    bool HasGuessedClock() const;
    /// What has become of that guess. Without a word here a first number that falls ends it, too.
    void JudgeGuessedClock(bool isClock);

    /// Lines since construction that were neither empty, nor a header, nor part of a sample.
    int RejectedLines() const { return m_rejectedLines; }

private:
    struct Labelled;

    std::optional<BoardReading> readLabelled(const QByteArray& line);
    std::optional<BoardReading> readColumns(const QByteArray& line);
    std::optional<BoardReading> readRow(const QVector<double>& numbers, CUnits::UnitType unit);
    std::optional<BoardReading> checked(std::optional<BoardReading> reading);
    bool hasUsualSize(int numColumns);
    const QVector<Column>& columnsOf(const QVector<double>& numbers);
    bool readHeader(const QByteArray& line);
    std::nullopt_t reject();

    QVector<Column> m_configured;
    QVector<Column> m_header;
    CUnits::UnitType m_headerUnit = CUnits::UNKNOWN;
    BoardTimeUnit m_headerTimeUnit = BoardTimeUnit::Unknown;

    // Axes of a sample of which not all have come.
    std::array<std::optional<double>, 3> m_pending;
    CUnits::UnitType m_pendingUnit = CUnits::UNKNOWN;
    double m_pendingStep = 0;
    bool m_isAxisByAxis = false;

    // Four columns without a header: first numbers of the lines so far, until their meaning is clear.
    QVector<double> m_firstNumbers;
    QVector<Column> m_fourColumns;
    double m_lastFirstNumber = 0;
    bool m_isClockSure = false;

    // What the lines so far had in common, and how many in a row differed from it.
    int m_usualSize = 0;
    int m_otherSize = 0;
    int m_numOfOtherSize = 0;
    bool m_isUnitUsual = false;
    int m_numWithoutUnit = 0;

    int m_lost = 0; ///< samples since the last reading
    int m_rejectedLines = 0;
};
