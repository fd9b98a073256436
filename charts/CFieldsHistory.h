// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FieldSeries.h"

#include <QDate>
#include <QSharedPointer>

#include <deque>

class CFieldIntensityResult;

/// Everything that a field plot has received, oldest first: the results as they came, the filtered results
/// that the plot shows, and a time stamp of each. The results are shared with whoever else holds them.
///
/// The plotted values of the filtered results are kept beside them as plain numbers, 28 bytes a result, since
/// the plot reads them all up to fifty times a second and the results lie scattered over the heap. So a
/// result must not change its field values once it is in here.
class CFieldsHistory
{
public:
    using Result = QSharedPointer<CFieldIntensityResult>;

    const std::deque<Result>& Raw() const { return m_raw; }
    const std::deque<Result>& Filtered() const { return m_filtered; }
    const std::deque<double>& TimeStamps() const { return m_timeStamps; }      ///< seconds since the epoch
    const std::deque<FieldSeries::Values>& Values() const { return m_values; } ///< one per filtered result

    void AppendRaw(const Result& result);
    void AppendFiltered(const Result& result);
    /// Counts a result's time only, and returns it. A chart that keeps the results itself does without the
    /// rest.
    double AppendTimeStampOf(const CFieldIntensityResult& result);
    /// Drops the oldest entry of all. There must be one.
    void DropOldest();
    /// Drops the oldest filtered result. There must be one.
    void DropOldestFiltered();
    /// Drops the oldest time stamp. There must be one.
    void DropOldestTimeStamp();
    void ClearRaw();
    void ClearFiltered();

    /// X counts from the oldest result from now on. Without results nothing changes.
    void MoveOriginToOldest();

    /// Time stamp from which X counts.
    double Origin() const { return m_origin; }
    /// Seconds from the origin to result `index`. Throws std::out_of_range.
    double X(std::size_t index) const { return m_timeStamps.at(index) - m_origin; }

    /// The last result, from the end down to the second one, whose X is at most `x`; else 0.
    int LowerIndex(double x) const;
    /// The newest result if `x` is at or past its X; else the first result whose X is at least `x`. 0 without
    /// results.
    int UpperIndex(double x) const;

private:
    double TimeStampOf(const CFieldIntensityResult& result);
    void AppendTimeStamp(double timeStamp);

    std::deque<Result> m_raw;
    std::deque<Result> m_filtered;
    std::deque<FieldSeries::Values> m_values;
    std::deque<double> m_timeStamps;
    double m_origin = 0.0;
    /// Neighbours among the time stamps that go back in time. A binary search is right while there are none.
    std::size_t m_backwardSteps = 0;

    /// The last whole second of local time that was converted.
    struct
    {
        QDate date;
        int secondOfDay = -1;
        bool daylightTime = false;
        qint64 sinceEpoch = 0;
    } m_second;
};
