// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

class CMeasureBlockMapping;
class COrientation;

/// Turns field components from the frame of the probe into that of the mapper.
namespace FieldRotation {

using Vector = std::array<float, 3>;
using Matrix = std::array<Vector, 3>; ///< rows

/// Rz(Roll) Rx(Pitch) Ry(Yaw). The factor from degrees to radians has single precision.
Matrix matrixOf(const COrientation& orientation);

/// In single precision.
Vector rotated(const Matrix& matrix, const Vector& vector);

/// Turns one vector by an orientation.
Vector rotated(const COrientation& orientation, const Vector& vector);

/// Turns all results of a block by its orientation, in place, and marks the block. A marked one stays as it
/// is.
void applyOnce(CMeasureBlockMapping& block);

} // namespace FieldRotation
