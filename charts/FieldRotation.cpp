// SPDX-License-Identifier: GPL-3.0-or-later
#include "FieldRotation.h"

#include "CMeasureBlockMapping.h"

#include <cmath>

namespace FieldRotation {

Matrix matrixOf(const COrientation& orientation)
{
    constexpr float kRadiansPerDegree = 0.017453292F;
    constexpr auto kFactor = static_cast<double>(kRadiansPerDegree);
    const double c1 = std::cos(orientation.Roll() * kFactor);
    const double s1 = std::sin(orientation.Roll() * kFactor);
    const double c2 = std::cos(orientation.Pitch() * kFactor);
    const double s2 = std::sin(orientation.Pitch() * kFactor);
    const double c3 = std::cos(orientation.Yaw() * kFactor);
    const double s3 = std::sin(orientation.Yaw() * kFactor);
    const auto row = [](double x, double y, double z) {
        return Vector{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    };
    return {row(c1 * c3 - s1 * s2 * s3, -s1 * c2, c1 * s3 + s1 * s2 * c3),
            row(s1 * c3 + c1 * s2 * s3, c1 * c2, s1 * s3 - c1 * s2 * c3), row(-c2 * s3, s2, c2 * c3)};
}

Vector rotated(const Matrix& matrix, const Vector& vector)
{
    Vector turned{};
    for (std::size_t i = 0; i < turned.size(); ++i)
        turned[i] = matrix[i][0] * vector[0] + matrix[i][1] * vector[1] + matrix[i][2] * vector[2];
    return turned;
}

Vector rotated(const COrientation& orientation, const Vector& vector)
{
    return rotated(matrixOf(orientation), vector);
}

void applyOnce(CMeasureBlockMapping& block)
{
    if (block.RotAppliedOnMeasBlock())
        return;
    const Matrix matrix = matrixOf(block.Orientation);
    for (const auto& result : qAsConst(block.Results)) {
        const Vector turned = rotated(matrix, {result->Bx(), result->By(), result->Bz()});
        result->SetBx(turned[0]);
        result->SetBy(turned[1]);
        result->SetBz(turned[2]);
    }
    block.SetRotAppliedOnMeasBlock(true);
}

} // namespace FieldRotation
