// SPDX-License-Identifier: GPL-3.0-or-later
#include "VectorRecord.h"

#include "CFieldIntensityResult.h"
#include "CPosition.h"
#include "FieldArrows.h"

VectorRecord makeVectorRecord(const CFieldIntensityResult& sample, const CPosition& position)
{
    const QQuaternion rotation =
        arrowRotation(QVector3D(0, 1, 0), static_cast<double>(sample.Bx()), static_cast<double>(sample.By()),
                      static_cast<double>(sample.Bz()));
    return {static_cast<double>(sample.B()),
            position.X(),
            position.Y(),
            position.Z(),
            static_cast<double>(rotation.x()),
            static_cast<double>(rotation.y()),
            static_cast<double>(rotation.z()),
            static_cast<double>(rotation.scalar())};
}
