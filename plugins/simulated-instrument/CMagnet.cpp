// SPDX-License-Identifier: MIT
#include "CMagnet.h"

#include <cmath>

namespace {

/// Magnetic constant over 4 pi, T m / A.
constexpr double kMu0Over4Pi = 1e-7;
constexpr double kMetresPerMillimetre = 1e-3;
constexpr double kRadiansPerDegree = 0.017453292519943295;

/// Turns with the inverse of Rz(roll) Rx(pitch) Ry(yaw), which takes the probe's axes to the mapper's: the
/// three turns back, in the opposite order.
FieldVector toProbeFrame(const FieldVector& field, const ProbePose& pose)
{
    const double cosRoll = std::cos(pose.roll * kRadiansPerDegree);
    const double sinRoll = std::sin(pose.roll * kRadiansPerDegree);
    const double cosPitch = std::cos(pose.pitch * kRadiansPerDegree);
    const double sinPitch = std::sin(pose.pitch * kRadiansPerDegree);
    const double cosYaw = std::cos(pose.yaw * kRadiansPerDegree);
    const double sinYaw = std::sin(pose.yaw * kRadiansPerDegree);

    const FieldVector unrolled{cosRoll * field.x + sinRoll * field.y, cosRoll * field.y - sinRoll * field.x,
                               field.z};
    const FieldVector unpitched{unrolled.x, cosPitch * unrolled.y + sinPitch * unrolled.z,
                                cosPitch * unrolled.z - sinPitch * unrolled.y};
    return {cosYaw * unpitched.x - sinYaw * unpitched.z, unpitched.y,
            cosYaw * unpitched.z + sinYaw * unpitched.x};
}

} // namespace

CMagnet::CMagnet(const FieldVector& center, const FieldVector& moment, double radius)
    : m_center(center), m_moment(moment), m_radius(radius)
{
}

FieldVector CMagnet::FieldAt(const FieldVector& place) const
{
    // Griffiths, Introduction to Electrodynamics, 5.4.3: B = mu0/4pi (3 n (n m) - m) / r^3 outside and
    // mu0/4pi 2 m / R^3 inside, n being the direction from the centre.
    const FieldVector distance = (place - m_center) * kMetresPerMillimetre;
    const double r = distance.Norm();
    const double radius = m_radius * kMetresPerMillimetre;
    if (r < radius)
        return m_moment * (2 * kMu0Over4Pi / (radius * radius * radius));
    const FieldVector direction = distance.Normalized();
    return (direction * (3 * dot(direction, m_moment)) - m_moment) * (kMu0Over4Pi / (r * r * r));
}

FieldVector CMagnet::FieldOfProbe(const ProbePose& pose) const
{
    return toProbeFrame(FieldAt({pose.x, pose.y, pose.z}), pose);
}
