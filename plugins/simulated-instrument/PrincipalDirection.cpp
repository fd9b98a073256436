// SPDX-License-Identifier: MIT
#include "PrincipalDirection.h"

namespace {

constexpr int kMinSamples = 8;
constexpr int kIterations = 50;

} // namespace

FieldVector principalDirection(const QVector<FieldVector>& fields, const FieldVector& fallback)
{
    if (fields.size() < kMinSamples)
        return fallback;
    FieldVector mean;
    for (const FieldVector& field : fields)
        mean = mean + field * (1.0 / fields.size());

    // Rows of the covariance matrix, whose dominant eigenvector the power iteration finds.
    FieldVector rowX;
    FieldVector rowY;
    FieldVector rowZ;
    for (const FieldVector& field : fields) {
        const FieldVector deviation = field - mean;
        rowX = rowX + deviation * deviation.x;
        rowY = rowY + deviation * deviation.y;
        rowZ = rowZ + deviation * deviation.z;
    }
    const FieldVector* start = &rowX;
    for (const FieldVector* row : {&rowY, &rowZ}) {
        if (row->Norm() > start->Norm())
            start = row;
    }
    FieldVector direction = start->Normalized();
    for (int i = 0; i < kIterations; ++i)
        direction =
            FieldVector{dot(rowX, direction), dot(rowY, direction), dot(rowZ, direction)}.Normalized();
    if (direction.Norm() == 0)
        return fallback;
    return dot(direction, fallback) < 0 ? direction * -1 : direction;
}
