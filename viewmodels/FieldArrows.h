// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFieldIntensityResult.h"

#include <QQuaternion>
#include <QSharedPointer>
#include <QVector3D>
#include <QVector>

#include <optional>

/// In which sense the field turns about a view axis within a block, counted as in a right-handed system.
enum class RotationSense { None, Positive, Negative };

/// The rotation that takes the unit vector `from` to the direction of (x, y, z), whatever its length. The
/// identity for a null vector.
QQuaternion arrowRotation(const QVector3D& from, double x, double y, double z);

/// The rotation that takes (0, 0, 1) to the direction of (x, y, z), whatever its length. The identity for a
/// null vector.
QQuaternion fieldArrowRotation(double x, double y, double z);

/// The axis along which the camera of the 3-D view looks, for a camera preset from 0 to 18; nothing for
/// others.
std::optional<QVector3D> viewAxisOfCameraPreset(int cameraPreset);

/// The sense of rotation about `viewAxis` if all pairs of consecutive samples agree on it. A pair that does
/// not turn, and a block without pairs, give None.
RotationSense detectRotation(const QVector<QSharedPointer<CFieldIntensityResult>>& samples,
                             const QVector3D& viewAxis);

/// Orientation of the rotation arrow, whose ring lies about the X axis, for a sense other than None.
QQuaternion rotationArrowOrientation(const QVector3D& viewAxis, RotationSense sense);
