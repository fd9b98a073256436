// SPDX-License-Identifier: MIT
#pragma once

#include "FieldVector.h"
#include "SimulatedBench.h"

/// The magnet on the bench, which a simulated mapper carries the probe around: a uniformly magnetised sphere.
/// Outside it is a magnetic dipole, exactly; inside, the field is the same everywhere, so that no place is
/// without a finite field. Lengths in millimetres.
class CMagnet
{
public:
    /// `moment` in A m^2. `radius` is above 0.
    CMagnet(const FieldVector& center, const FieldVector& moment, double radius);

    /// Tesla, in the frame of the mapper.
    FieldVector FieldAt(const FieldVector& place) const;
    /// What the axes of the probe see of it, tesla.
    FieldVector FieldOfProbe(const ProbePose& pose) const;

private:
    FieldVector m_center;
    FieldVector m_moment;
    double m_radius;
};
