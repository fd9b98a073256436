// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DSpectrumData.h"
#include "OperationFixture.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <memory>
#include <vector>

/// What a spectrum chart has to publish for a window, worked out bucket by bucket.
struct ReferenceSpectrumDrawing
{
    qint64 length = 0;
    std::vector<double> x;
    std::vector<float> y;
    bool hasRange = false; ///< whether `min` and `max` are stored
    float min = FLT_MAX;
    float max = FLT_MIN;

    ReferenceSpectrumDrawing(const std::vector<float>& spectrum, double xMin, double xMax, double resolution,
                             int mostPoints)
    {
        const auto rows = static_cast<qint64>(spectrum.size());
        const auto first = std::max<qint64>(0, static_cast<qint64>(std::floor(xMin / resolution)));
        const auto last = std::min(rows - 1, static_cast<qint64>(std::ceil(xMax / resolution)));
        length = last - first > mostPoints ? mostPoints : last - first + 1;
        hasRange = first < rows;
        if (!hasRange || length < 1)
            return;
        const double step = static_cast<double>(last - first) / static_cast<double>(length);
        x.push_back(static_cast<double>(first) * resolution);
        y.push_back(spectrum[static_cast<std::size_t>(first)]);
        fold(y);
        qint64 begin = first;
        for (qint64 row = 1; row < length; ++row) {
            const qint64 end =
                std::min(rows, first + static_cast<qint64>(std::ceil(static_cast<double>(row) * step)));
            const std::vector<float> bucket(spectrum.begin() + begin,
                                            spectrum.begin() + std::max(end, begin + 1));
            const float before = y.back();
            x.push_back(static_cast<double>(end) * resolution);
            y.push_back(*std::max_element(bucket.begin(), bucket.end(), [before](float a, float b) {
                return std::fabs(before - a) < std::fabs(before - b);
            }));
            fold(bucket);
            begin = end;
        }
    }

private:
    void fold(const std::vector<float>& values)
    {
        min = std::min(min, *std::min_element(values.begin(), values.end()));
        max = std::max(max, *std::max_element(values.begin(), values.end()));
    }
};

/// A spectrum chart over an operation of its own.
struct SpectrumChartFixture : OperationFixture
{
    void start()
    {
        m_chart.reset();
        OperationFixture::start();
        m_chart = std::make_unique<CChart2DSpectrumData>(m_operation.get());
    }

    /// A block of one field, B, with all others at 0.
    Block blockOf(const std::vector<float>& signal)
    {
        auto block = Block::create();
        for (const float b : signal)
            block->Results.append(makeResult(m_nextSample++ * m_spacingNs, {b, 0, 0, 0, 0, 0}));
        return block;
    }

    /// A spectrum of `bins` bins, 1 Hz apart, with a window over all of them.
    void showRandom(int bins)
    {
        const int samples = 2 * (bins - 1);
        recordParameters(samples, samples, 0.0, bins - 1);
        m_chart->UpdateSpectrum(makeBlock(samples), 0);
    }

    std::unique_ptr<CChart2DSpectrumData> m_chart;
};
