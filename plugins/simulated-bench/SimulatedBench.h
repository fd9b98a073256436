// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

#ifdef KESTRIX_SIMULATED_BENCH_BUILD
#define KESTRIX_SIMULATED_BENCH_API Q_DECL_EXPORT
#else
#define KESTRIX_SIMULATED_BENCH_API Q_DECL_IMPORT
#endif

/// Where the probe is and how it is turned, in the frame of the mapper.
struct ProbePose
{
    // Millimetres.
    double x = 0;
    double y = 0;
    double z = 0;
    // Degrees. The probe is turned by Rz(roll) Rx(pitch) Ry(yaw), yaw first.
    double roll = 0;
    double pitch = 0;
    double yaw = 0;
};

/// The bench on which the simulated devices stand: by it the instrument knows where a mapper holds the probe.
/// It is a library of its own, which the plug-ins share, since the application lets no plug-in know of
/// another. All functions may be called from any thread.
namespace SimulatedBench {

/// Time in nanoseconds since 1970-01-01 UTC, as samples have it.
using PoseAtTime = std::function<ProbePose(qint64 epochNs)>;

/// `carrier` holds the probe from now on, at the place that `poseAt` tells. The last of several carriers
/// counts. `poseAt` is called from any thread, and not any more once Dismount() has returned.
KESTRIX_SIMULATED_BENCH_API void Mount(const void* carrier, PoseAtTime poseAt);
/// Without effect for a carrier that holds nothing.
KESTRIX_SIMULATED_BENCH_API void Dismount(const void* carrier);

KESTRIX_SIMULATED_BENCH_API bool IsProbeMounted();
/// Nothing while no mapper is at work.
KESTRIX_SIMULATED_BENCH_API std::optional<ProbePose> PoseAt(qint64 epochNs);

} // namespace SimulatedBench
