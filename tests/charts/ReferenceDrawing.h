// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cfloat>
#include <cmath>
#include <vector>

/// The drawing of a field plot written down step by step, without regard to speed: an implementation of its
/// own to compare the model with.
struct ReferenceDrawing
{
    // What it draws
    std::vector<double> x;
    std::vector<std::array<float, 7>> samples;
    std::array<bool, 7> visible{true, true, true, true, true, true, true};
    int mostRows = 401;

    // The axes before and after
    double xMin = 0;
    double xMax = 0;
    bool autoScaling = true;
    bool mayChooseY = true; // YminMaxReseted
    double yMin = 0.001;
    double yMax = 10.0;
    double yMinAll = DBL_MIN;
    double yMaxAll = DBL_MAX;
    int yTicks = 11;

    // What it draws into
    int length = 0;
    bool drawn = false; // FirstDataInit
    std::vector<double> rowX;
    std::vector<std::array<float, 7>> rows;
    std::vector<double> yMinAllWrites;
    std::vector<double> yMaxAllWrites;

    void draw()
    {
        m_min = FLT_MAX;
        m_max = -FLT_MAX;
        rowX.clear();
        rows.clear();
        if (samples.size() == 1) {
            rowX = {0.0, 0.1};
            rows = {samples[0], samples[0]};
            foldAll(0);
            length = 2;
            mayChooseY = true;
            drawn = true;
            chooseY();
            return;
        }
        const int upper = upperIndex(xMax);
        const int lower = lowerIndex(xMin);
        const int span = upper - lower;
        const int wanted = span >= mostRows ? mostRows : span + 1;
        if (wanted < 1) {
            length = wanted;
            drawn = true;
            chooseY();
            return;
        }
        double step = double(span) / wanted;
        if (!(step > 1.0))
            step = 1.0;
        const int count = int(samples.size());
        int previous = 0;
        for (int i = 0; i < wanted; ++i) {
            if (lower >= count) {
                length = 0;
                return;
            }
            if (i == 0) {
                rowX.push_back(x[size_t(lower)]);
                rows.push_back(samples[size_t(lower)]);
                foldAll(size_t(lower));
                previous = lower;
                continue;
            }
            const int end = lower + int(std::round(i * step));
            const int stop = end < count - 1 ? end : count - 1;
            std::array<float, 7> best{};
            std::array<float, 7> row{};
            const std::array<float, 7> before = rows.back();
            int j = previous + 1;
            bool first = true;
            do {
                for (size_t s = 0; s < 7; ++s) {
                    const float y = samples[size_t(j)][s];
                    if (first)
                        row[s] = y;
                    const float distance = std::fabs(before[s] - y);
                    if (distance > best[s]) {
                        best[s] = distance;
                        row[s] = y;
                    }
                }
                foldAll(size_t(j));
                first = false;
                ++j;
            } while (j < stop);
            rowX.push_back(x[size_t(stop)]);
            rows.push_back(row);
            previous = end;
        }
        length = wanted;
        drawn = true;
        chooseY();
    }

private:
    float m_min = FLT_MAX;
    float m_max = -FLT_MAX;

    int lowerIndex(double value) const
    {
        for (int i = int(x.size()) - 1; i >= 1; --i) {
            if (value >= x[size_t(i)])
                return i;
        }
        return 0;
    }

    int upperIndex(double value) const
    {
        if (x.empty())
            return 0;
        if (value >= x.back())
            return int(x.size()) - 1;
        for (size_t i = 0; i < x.size(); ++i) {
            if (value <= x[i])
                return int(i);
        }
        return int(x.size()) - 1;
    }

    void foldAll(size_t sample)
    {
        for (size_t s = 0; s < 7; ++s) {
            if (!visible[s])
                continue;
            const float y = samples[sample][s];
            if (y < m_min)
                m_min = y;
            if (y > m_max)
                m_max = y;
            if (double(y) < yMinAll || yMinAll == DBL_MIN) {
                yMinAll = double(y);
                yMinAllWrites.push_back(yMinAll);
            }
            if (double(y) > yMaxAll || yMaxAll == DBL_MAX) {
                yMaxAll = double(y);
                yMaxAllWrites.push_back(yMaxAll);
            }
        }
    }

    void niceY(double low, double high)
    {
        const int n = yTicks < 2 ? 11 : yTicks;
        const double raw = (high - low) / (n - 1);
        const double power = std::pow(10, std::floor(std::log10(raw)));
        const double fraction = raw / power;
        const double tick = (fraction < 1.5 ? 1 : fraction < 3 ? 2 : fraction < 7 ? 5 : 10) * power;
        const double from = std::floor(low / tick);
        const double to = std::ceil(high / tick);
        const double intervals = to - from;
        int ticks = std::isnan(intervals) ? 1 : int(intervals) + 1;
        if (ticks > 11)
            ticks = int(intervals) / 2 + 1;
        yTicks = ticks;
        yMin = from * tick;
        yMax = to * tick;
    }

    void chooseY()
    {
        if (m_min == FLT_MAX || m_max == FLT_MIN) {
            yMin = 0.001;
            yMax = 10.0;
            yTicks = 11;
            mayChooseY = true;
            return;
        }
        if (!autoScaling && !mayChooseY)
            return;
        niceY(double(m_min), double(m_max));
        if (yMaxAll < yMax || yMaxAll == DBL_MAX) {
            yMaxAll = yMax;
            yMaxAllWrites.push_back(yMaxAll);
        }
        if (yMin < yMinAll || yMinAll == DBL_MIN) {
            yMinAll = yMin;
            yMinAllWrites.push_back(yMinAll);
        }
        mayChooseY = true;
        if (!autoScaling) {
            yMin = yMinAll;
            yMax = yMaxAll;
            if (length > 1)
                mayChooseY = false;
        }
    }
};
