// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CFieldIntensityResult;
class CPosition;

/// An arrow of the mapping's 3-D view: where it stands, how it is turned from the direction +Y of its mesh to
/// that of the field, and the magnitude of the field.
struct VectorRecord
{
    double scale = 0;
    double posX = 0;
    double posY = 0;
    double posZ = 0;
    double quatX = 0;
    double quatY = 0;
    double quatZ = 0;
    double quatScalar = 0;
};

/// The arrow of one sample, in the direction of its components as they stand. A field of zero keeps the
/// direction of the mesh.
VectorRecord makeVectorRecord(const CFieldIntensityResult& sample, const CPosition& position);
