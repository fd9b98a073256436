// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>

#include <algorithm>
#include <cmath>
#include <cstdlib>

/// The middle of the pixels that differ between two pictures, how many they are, and what the first one shows
/// there on the average.
struct Difference
{
    QPointF middle;
    int count = 0;
    QColor colourBefore;
};

inline Difference compare(const QImage& before, const QImage& after, const QRect& place)
{
    Difference difference;
    QPointF sum;
    int colours[3] = {0, 0, 0};
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const QRgb a = before.pixel(x, y);
            const QRgb b = after.pixel(x, y);
            if (std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                    std::abs(qBlue(a) - qBlue(b)) <
                60)
                continue;
            sum += QPointF(x, y);
            ++difference.count;
            colours[0] += qRed(a);
            colours[1] += qGreen(a);
            colours[2] += qBlue(a);
        }
    }
    if (const int count = difference.count; count > 0) {
        difference.middle = sum / count;
        difference.colourBefore = QColor(colours[0] / count, colours[1] / count, colours[2] / count);
    }
    return difference;
}

/// In degrees.
inline double angleBetween(const QPointF& a, const QPointF& b)
{
    const double cosine = QPointF::dotProduct(a, b) / (std::hypot(a.x(), a.y()) * std::hypot(b.x(), b.y()));
    return std::acos(std::min(1.0, std::max(-1.0, cosine))) * 180 / 3.14159265358979323846;
}
