// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlockMapping.h"

#include <QMap>

#include <array>
#include <cfloat>
#include <cmath>
#include <deque>
#include <vector>

/// The plot of a mapping written down step by step, with a map that is built anew for each drawing: an
/// implementation of its own to compare the model with.
struct ReferenceMappingPlot
{
    using Row = std::array<float, 7>;
    struct Entry
    {
        std::vector<double> stamps;
        std::array<std::vector<float>, 7> series;
    };

    int axis = 0; // 0 is time, 1 to 3 a coordinate
    int mode = 0;
    unsigned n = 1;
    int mostRows = 401;
    quint64 limit = 1000000;
    std::array<bool, 7> visible{true, true, true, true, true, true, true};

    std::deque<QSharedPointer<CMeasureBlockMapping>> blocks;
    std::deque<double> stamps;
    QMultiMap<double, Entry> map;
    std::vector<double> rowX;
    std::vector<Row> rows;
    float low = FLT_MAX;
    float high = -FLT_MAX;

    void add(const QSharedPointer<CMeasureBlockMapping>& block)
    {
        blocks.push_back(block);
        for (const auto& result : block->Results)
            stamps.push_back(stampOf(*result));
        const auto size = static_cast<quint64>(block->Results.size());
        while (blocks.size() * size > limit) {
            blocks.pop_front();
            for (quint64 i = 0; i < size && !stamps.empty(); ++i)
                stamps.pop_front();
        }
    }

    void draw()
    {
        rebuild();
        rowX.clear();
        rows.clear();
        low = FLT_MAX;
        high = -FLT_MAX;
        const int b = map.size();
        if (b < 1)
            return;
        const int r = int(map.first().stamps.size());
        const int m = mostRows;
        int shown = b;
        int perBlock = r;
        if (m < b) {
            shown = m;
            perBlock = 1;
        } else if (m < r * b) {
            perBlock = m / b;
        }
        const float sb = float(b) / shown;
        const float sr = float(r) / perBlock;
        const float start = (b - 1) - (shown - 1) * sb;
        const float rstart = (r - 1) - (perBlock - 1) * sr;
        for (float u = start; u < b; u += sb) {
            const int i = std::min(int(lroundf(u)), b - 1);
            auto it = map.constBegin();
            for (int step = 0; step < i; ++step)
                ++it;
            for (float v = rstart; v < r; v += sr) {
                const int k = std::min(int(lroundf(v)), int(it->stamps.size()) - 1);
                rowX.push_back(axis == 0 ? it->stamps[size_t(k)] - stamps.front() : it.key());
                Row row{};
                for (size_t s = 0; s < 7; ++s)
                    row[s] = it->series[s][size_t(k)];
                rows.push_back(row);
            }
        }
        if (rows.size() == 1) {
            rowX.push_back(0.1);
            rows.push_back(rows[0]);
        }
        for (const Row& row : rows) {
            for (size_t s = 0; s < 7; ++s) {
                if (visible[s]) {
                    low = std::min(low, row[s]);
                    high = std::max(high, row[s]);
                }
            }
        }
    }

    static double stampOf(const CFieldIntensityResult& result)
    {
        return double(result.Timestamp.toSecsSinceEpoch()) + result.TimestampNanoseconds / 1e9;
    }

private:
    void rebuild()
    {
        map.clear();
        for (const auto& block : blocks) {
            if (mode != 0 && n == 0)
                break;
            Entry entry;
            for (const auto& result : block->Results) {
                entry.stamps.push_back(stampOf(*result));
                const float values[7] = {result->B(),
                                         result->BBprime(),
                                         result->Bx(),
                                         result->By(),
                                         result->Bz(),
                                         result->B() - result->dB(),
                                         result->B() + result->dB()};
                for (size_t s = 0; s < 7; ++s)
                    entry.series[s].push_back(values[s]);
            }
            for (auto& series : entry.series)
                average(series);
            const double keys[] = {entry.stamps[0], block->Position.X(), block->Position.Y(),
                                   block->Position.Z()};
            map.insert(keys[axis], entry);
        }
    }

    void average(std::vector<float>& x) const
    {
        if (mode == 1) {
            const double a = 1.0 / double(float(n));
            const double b = (n - 1.0) * a;
            float y = x[0];
            for (float& value : x) {
                y = float(double(value) * a + double(y) * b);
                value = y;
            }
        } else if (mode == 2) {
            std::vector<float> out;
            float sum = x[0] * float(n);
            for (int j = 0; j < int(x.size()); ++j) {
                const int behind = j - int(n) > 0 ? j - int(n) : 0;
                sum += x[size_t(j)] - x[size_t(behind)];
                out.push_back(sum / float(n));
            }
            x = out;
        }
    }
};
