// SPDX-License-Identifier: MIT
#pragma once

#include "CRecordingReader.h"

#include <QByteArray>
#include <QFile>

/// Base of the readers of text with a head and a row for each sample.
class CTextReader : public CRecordingReader
{
public:
    explicit CTextReader(const QString& path);

    /// Reads the head and some rows; false if the file is not of this format.
    bool Open();

    bool Next(RecordedSample& sample) override;
    bool Rewind() override;

protected:
    enum class Row {
        Sample,  ///< complete
        Missing, ///< a time without a complete sample
        None,    ///< neither
    };

    /// Reads up to the first row, through ReadLine(), and fills in `m_info` but for rate and uncertainty.
    virtual bool ReadHead() = 0;
    virtual Row ParseRow(const QByteArray& line, RecordedSample& sample) = 0;
    /// Decimal places of the components in this row.
    virtual int DecimalPlaces(const QByteArray& line) const = 0;

    /// The next line without its end; false at the end of the file. A line beyond any sensible length comes
    /// in pieces.
    bool ReadLine(QByteArray& line);
    /// Puts the line just read back, to be read again.
    void UnreadLine();

private:
    bool inspectRows();

    QFile m_file;
    qint64 m_lineStart = 0;
    qint64 m_firstRow = 0;
};

/// Whether `value` stands for a value that is not there: 88888.00, 99999.00 or 99999.99.
bool isMissingMarker(double value);

/// Rate of samples at these ascending indices and times, leaving out what does not fit the most common
/// distance.
double estimateRate(const QVector<qint64>& timesNs);
