// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFieldsHistory.h"

#include "CFieldIntensityResult.h"

#include <algorithm>

namespace {

qint64 wholeSeconds(const QDateTime& timestamp)
{
    constexpr qint64 kMillisecondsPerSecond = 1000;
    const qint64 milliseconds = timestamp.toMSecsSinceEpoch();
    const qint64 beyond = milliseconds % kMillisecondsPerSecond;
    return milliseconds / kMillisecondsPerSecond - (beyond < 0 ? 1 : 0);
}

} // namespace

void CFieldsHistory::AppendRaw(const Result& result)
{
    m_raw.push_back(result);
    AppendTimeStampOf(*result);
}

void CFieldsHistory::AppendFiltered(const Result& result)
{
    m_filtered.push_back(result);
    m_values.push_back(FieldSeries::valuesOf(*result));
}

double CFieldsHistory::AppendTimeStampOf(const CFieldIntensityResult& result)
{
    AppendTimeStamp(TimeStampOf(result));
    return m_timeStamps.back();
}

void CFieldsHistory::DropOldest()
{
    m_raw.pop_front();
    DropOldestTimeStamp();
    if (!m_filtered.empty())
        DropOldestFiltered();
}

void CFieldsHistory::DropOldestFiltered()
{
    m_filtered.pop_front();
    m_values.pop_front();
}

void CFieldsHistory::ClearRaw()
{
    m_raw.clear();
    m_timeStamps.clear();
    m_backwardSteps = 0;
}

void CFieldsHistory::ClearFiltered()
{
    m_filtered.clear();
    m_values.clear();
}

void CFieldsHistory::MoveOriginToOldest()
{
    if (!m_timeStamps.empty())
        m_origin = m_timeStamps.front();
}

int CFieldsHistory::LowerIndex(double x) const
{
    if (m_timeStamps.empty())
        return 0;
    if (m_backwardSteps == 0) {
        const auto after = std::partition_point(m_timeStamps.begin(), m_timeStamps.end(),
                                                [&](double stamp) { return x >= stamp - m_origin; });
        return after == m_timeStamps.begin() ? 0 : static_cast<int>(after - m_timeStamps.begin()) - 1;
    }
    for (std::size_t i = m_timeStamps.size() - 1; i >= 1; --i) {
        if (x >= m_timeStamps[i] - m_origin)
            return static_cast<int>(i);
    }
    return 0;
}

int CFieldsHistory::UpperIndex(double x) const
{
    if (m_timeStamps.empty())
        return 0;
    const int last = static_cast<int>(m_timeStamps.size()) - 1;
    if (x >= m_timeStamps.back() - m_origin)
        return last;
    const auto before = [&](double stamp) { return !(x <= stamp - m_origin); };
    const auto found = m_backwardSteps == 0
                           ? std::partition_point(m_timeStamps.begin(), m_timeStamps.end(), before)
                           : std::find_if_not(m_timeStamps.begin(), m_timeStamps.end(), before);
    return found == m_timeStamps.end() ? last : static_cast<int>(found - m_timeStamps.begin());
}

double CFieldsHistory::TimeStampOf(const CFieldIntensityResult& result)
{
    constexpr double kNanosecondsPerSecond = 1e9;
    constexpr int kMillisecondsPerSecond = 1000;
    const QDateTime& timestamp = result.Timestamp;
    const double fraction = result.TimestampNanoseconds / kNanosecondsPerSecond;
    if (timestamp.timeSpec() != Qt::LocalTime || !timestamp.isValid())
        return static_cast<double>(wholeSeconds(timestamp)) + fraction;

    // Local time goes through the time zone's rules at each conversion, which costs more than all the rest.
    const QDate date = timestamp.date();
    const int secondOfDay = timestamp.time().msecsSinceStartOfDay() / kMillisecondsPerSecond;
    const bool daylightTime = timestamp.isDaylightTime();
    if (secondOfDay != m_second.secondOfDay || daylightTime != m_second.daylightTime ||
        date != m_second.date) {
        m_second = {date, secondOfDay, daylightTime, wholeSeconds(timestamp)};
    }
    return static_cast<double>(m_second.sinceEpoch) + fraction;
}

void CFieldsHistory::AppendTimeStamp(double timeStamp)
{
    if (!m_timeStamps.empty() && timeStamp < m_timeStamps.back())
        ++m_backwardSteps;
    m_timeStamps.push_back(timeStamp);
}

void CFieldsHistory::DropOldestTimeStamp()
{
    if (m_timeStamps.size() > 1 && m_timeStamps[1] < m_timeStamps[0])
        --m_backwardSteps;
    m_timeStamps.pop_front();
}
