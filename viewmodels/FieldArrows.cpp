// SPDX-License-Identifier: GPL-3.0-or-later
#include "FieldArrows.h"

#include <cmath>

namespace {

constexpr QVector3D kXAxis(1, 0, 0);
constexpr QVector3D kYAxis(0, 1, 0);
constexpr QVector3D kZAxis(0, 0, 1);

QVector3D toVector(const CFieldIntensityResult& sample)
{
    return {sample.Bx(), sample.By(), sample.Bz()};
}

} // namespace

QQuaternion arrowRotation(const QVector3D& from, double x, double y, double z)
{
    // Normalised in double: a field given in tesla is too small for QVector3D::normalize, which takes a
    // squared length of 1e-12 for zero.
    const double length = std::hypot(x, y, z);
    if (length > 0) {
        x /= length;
        y /= length;
        z /= length;
    }
    const QVector3D direction(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    return QQuaternion::rotationTo(from, direction);
}

QQuaternion fieldArrowRotation(double x, double y, double z)
{
    return arrowRotation(kZAxis, x, y, z);
}

std::optional<QVector3D> viewAxisOfCameraPreset(int cameraPreset)
{
    if (cameraPreset < 0 || cameraPreset > 18)
        return std::nullopt;
    if (cameraPreset <= 2)
        return kZAxis; // front
    if (cameraPreset <= 8)
        return kXAxis; // left and right
    if (cameraPreset <= 11)
        return kZAxis; // behind
    if (cameraPreset <= 13)
        return kXAxis; // isometric left
    if (cameraPreset <= 15)
        return kZAxis; // isometric right
    return kYAxis;     // from above
}

RotationSense detectRotation(const QVector<QSharedPointer<CFieldIntensityResult>>& samples,
                             const QVector3D& viewAxis)
{
    if (samples.size() < 2)
        return RotationSense::None;
    bool allPositive = true;
    bool allNegative = true;
    QVector3D previous = toVector(*samples.first());
    for (int i = 1; i < samples.size(); ++i) {
        const QVector3D current = toVector(*samples.at(i));
        const float turn = QVector3D::dotProduct(viewAxis, QVector3D::crossProduct(previous, current));
        allPositive = allPositive && turn > 0;
        allNegative = allNegative && turn < 0;
        previous = current;
    }
    if (allPositive)
        return RotationSense::Positive;
    return allNegative ? RotationSense::Negative : RotationSense::None;
}

QQuaternion rotationArrowOrientation(const QVector3D& viewAxis, RotationSense sense)
{
    const bool positive = sense == RotationSense::Positive;
    if (viewAxis.x() != 0)
        return QQuaternion::fromEulerAngles(0, positive ? 0 : 180, 0);
    if (viewAxis.y() != 0)
        return QQuaternion::fromEulerAngles(positive ? 180 : 0, 0, -90);
    return QQuaternion::fromEulerAngles(0, positive ? -90 : 90, 0);
}
