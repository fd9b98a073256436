// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DFieldsData.h"
#include "CFieldIntensityResult.h"
#include "CMeasurementParameters.h"

#include <QSignalSpy>
#include <QStringList>

#include <array>
#include <cmath>

/// A second in the middle of nowhere, far from changes of clocks.
constexpr qint64 kBaseSecond = 1600000000;

/// The six fields in the order B, B.B', Bx, By, Bz, dB.
using SixFields = std::array<float, 6>;

/// `nanoseconds` count from kBaseSecond and may exceed a second.
inline QSharedPointer<CFieldIntensityResult> makeResult(qint64 nanoseconds, const SixFields& fields)
{
    constexpr qint64 kNs = 1000000000;
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    qint64 second = nanoseconds / kNs;
    qint64 fraction = nanoseconds % kNs;
    if (fraction < 0) {
        fraction += kNs;
        --second;
    }
    result->Timestamp = QDateTime::fromMSecsSinceEpoch((kBaseSecond + second) * 1000 + fraction / 1000000);
    result->TimestampNanoseconds = static_cast<quint32>(fraction);
    result->SetB(fields[0]);
    result->SetBBprime(fields[1]);
    result->SetBx(fields[2]);
    result->SetBy(fields[3]);
    result->SetBz(fields[4]);
    result->SetDB(fields[5]);
    return result;
}

inline qint64 toNanoseconds(double seconds)
{
    return std::llround(seconds * 1e9);
}

/// The simplest chart: what comes in is shown as it is.
class PlainChart : public CChart2DFieldsData
{
public:
    using CChart2DFieldsData::CChart2DFieldsData;
    using CChart2DFieldsData::SetDirty;

    void add(const QVector<QSharedPointer<CFieldIntensityResult>>& results)
    {
        for (const auto& result : results)
            History().AppendRaw(result);
        UpdateFilter();
        History().MoveOriginToOldest();
        SetDirty(true);
        const std::size_t count = History().Raw().size();
        SetMeasureResultCount(count);
        SetMeasureResultMinX(0.0);
        if (count > 0)
            SetMeasureResultMaxX(History().X(count - 1) + MinDeltaAxisX());
    }

    unsigned ComputeDeltaX() override { return 0; }
    void UpdateFilter() override
    {
        for (std::size_t i = History().Filtered().size(); i < History().Raw().size(); ++i)
            History().AppendFiltered(History().Raw()[i]);
    }

    const CFieldsHistory& history() const { return History(); }
    double x(std::size_t i) const { return History().X(i); }
    /// Window over everything, whatever the live window says.
    void showAll()
    {
        SetXmin(0.0);
        SetXmax(History().X(History().TimeStamps().size() - 1));
    }
};

/// A value of one series at a row of the published table.
inline float seriesValue(const QAbstractItemModel& model, int row, int series)
{
    return model.data(model.index(row, series + 1)).toFloat();
}

inline double xValue(const QAbstractItemModel& model, int row)
{
    return model.data(model.index(row, 0)).toDouble();
}
