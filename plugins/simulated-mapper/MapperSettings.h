// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedBench.h"

/// The settings file of the simulated mappers, "KestrixSimulatedMapper.ini" in the per-user directory. Its
/// keys are told in docs/simulated-mapper.md; a missing key, or a missing file, leaves the default. Lengths
/// in millimetres, angles in degrees, speeds in these per second, above 0.
struct MapperSettings
{
    // Gantry; of the limits only the positions count.
    ProbePose min{-500, -500, -500, 0, 0, 0};
    ProbePose max{500, 500, 500, 0, 0, 0};
    double speed = 200;
    double angularSpeed = 90;
    int settleMs = 50; ///< from the arrival to the report that the probe is at rest

    // Mover
    ProbePose from{-50, -50, 0, 0, 0, 0};
    ProbePose to{50, 50, 0, 0, 0, 0};
    int lines = 11;
    double spacing = 10;
    double moverSpeed = 50;
    bool isRepeated = false;

    static MapperSettings Load();
};
