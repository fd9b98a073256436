// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

/// The triangle of the compass, as fractions of the drawing. `width` carries the sign of the component along
/// the probe axis. `height` falls below 0 when the components are larger than the magnitude they are compared
/// with.
struct CompassTriangle
{
    double width;
    double height;
};

/// Compares the component of (x, y, z) along an axis, 0 to 2 for X to Z, and the part across it with the
/// magnitude n. No triangle for a magnitude of 0, nor for another axis.
std::optional<CompassTriangle> computeCompassTriangle(int axis, double x, double y, double z, double n);
