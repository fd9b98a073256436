// SPDX-License-Identifier: MIT
#pragma once

#include "CUnits.h"
#include "FieldVector.h"

#include <QString>

#include <limits>
#include <memory>

/// One sample of a recording, in the recording's unit. A value that the recording does not have is
/// not-a-number.
struct RecordedSample
{
    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    qint64 timeNs = 0; ///< since 1970-01-01 UTC, or since an arbitrary time if the recording knows no date
    FieldVector field;
    double magnitude = kNone;
    double alongBprime = kNone;
    double uncertainty = kNone;
    quint16 temperature = 0;
};

/// What the beginning of a recording tells about it.
struct RecordingInfo
{
    QString format; ///< for the user, "CSV" for example
    CUnits::UnitType unit = CUnits::UNKNOWN;
    double rate = 1;        ///< samples per second
    bool hasDate = false;   ///< times are absolute
    double uncertainty = 0; ///< half a step of the last digit written, for samples that have none
};

/// Reads the samples of a recording one after the other. Reading stops early when an interruption of the
/// thread is requested.
class CRecordingReader
{
public:
    CRecordingReader() = default;
    virtual ~CRecordingReader();
    CRecordingReader(const CRecordingReader&) = delete;
    CRecordingReader& operator=(const CRecordingReader&) = delete;

    /// A reader at the beginning of the file, or null if the file is no recording in a format known here.
    /// Reads the head of the file only.
    static std::unique_ptr<CRecordingReader> Open(const QString& path);

    const RecordingInfo& Info() const { return m_info; }

    /// The next sample that is complete; false at the end. Rows with missing values are passed over.
    virtual bool Next(RecordedSample& sample) = 0;
    /// Back to the first sample; false if the file cannot be read any more.
    virtual bool Rewind() = 0;

protected:
    RecordingInfo m_info;
};
