// SPDX-License-Identifier: GPL-3.0-or-later
#include "CompassGeometry.h"

#include <cmath>

std::optional<CompassTriangle> computeCompassTriangle(int axis, double x, double y, double z, double n)
{
    if (axis < 0 || axis > 2 || n == 0)
        return std::nullopt;
    const double components[] = {x, y, z};
    const double along = components[axis];
    const double first = components[(axis + 1) % 3];
    const double second = components[(axis + 2) % 3];
    return CompassTriangle{along / n, 1.0 - std::sqrt(first * first + second * second) / n};
}
