// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DMeterData.h"
#include "OperationFixture.h"

#include <memory>

using Mode = CChart2DMeterData::AveragingModes;

struct OpenChart : CChart2DMeterData
{
    using CChart2DMeterData::CChart2DMeterData;
    const CFieldsHistory& history() const { return History(); }
    double x(std::size_t i) const { return History().X(i); }
    double lastX() const { return History().X(History().TimeStamps().size() - 1); }
};

/// The chart of the meter page over an operation of its own.
struct MeterChartFixture : OperationFixture
{
    /// Everything anew, at its defaults.
    void start()
    {
        m_chart.reset();
        OperationFixture::start();
        makeChart();
    }
    void makeChart() { m_chart = std::make_unique<OpenChart>(m_operation.get(), m_settings.get()); }

    std::unique_ptr<OpenChart> m_chart;
};
