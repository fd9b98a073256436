// SPDX-License-Identifier: MIT
#pragma once

#include "FieldVector.h"
#include "SimulationSettings.h"

/// The field that the simulated probe is in, as a function of time; no noise and no error of the sensor.
class CFieldModel
{
public:
    explicit CFieldModel(const SimulationSettings& settings);

    /// The field in tesla, `timeS` seconds after the connection: a constant part, a sine with its third and
    /// fifth harmonic (all of phase 0), a part that turns about Z, and a linear drift.
    FieldVector FieldAt(double timeS) const;

private:
    FieldVector m_dc;
    double m_acFrequency;
    FieldVector m_ac;
    FieldVector m_acThird;
    FieldVector m_acFifth;
    double m_rotatingAmplitude;
    double m_rotatingFrequency;
    FieldVector m_driftPerS;
};
