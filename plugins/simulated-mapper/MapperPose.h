// SPDX-License-Identifier: MIT
#pragma once

#include "COrientation.h"
#include "CPosition.h"
#include "SimulatedBench.h"

/// Between the pose of the bench and what the application knows.
inline CPosition positionOf(const ProbePose& pose)
{
    CPosition position;
    position.SetX(pose.x);
    position.SetY(pose.y);
    position.SetZ(pose.z);
    return position;
}

inline COrientation orientationOf(const ProbePose& pose)
{
    COrientation orientation;
    orientation.SetRoll(pose.roll);
    orientation.SetPitch(pose.pitch);
    orientation.SetYaw(pose.yaw);
    return orientation;
}

inline ProbePose poseOf(const CPosition& position, const COrientation& orientation)
{
    return {position.X(),       position.Y(),        position.Z(),
            orientation.Roll(), orientation.Pitch(), orientation.Yaw()};
}
