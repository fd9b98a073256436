// SPDX-License-Identifier: MIT
#include "ProbeMotion.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

constexpr double kNsPerSecond = 1e9;
/// A motion may not outlast the clock.
constexpr double kLongestS = 1e8;

} // namespace

ProbePose ProbeMotion::At(qint64 epochNs) const
{
    if (epochNs <= startNs && durationNs > 0)
        return from;
    if (epochNs >= EndNs())
        return to;
    const double part = static_cast<double>(epochNs - startNs) / static_cast<double>(durationNs);
    const auto between = [part](double a, double b) { return a + (b - a) * part; };
    return {between(from.x, to.x),       between(from.y, to.y),         between(from.z, to.z),
            between(from.roll, to.roll), between(from.pitch, to.pitch), between(from.yaw, to.yaw)};
}

qint64 ProbeMotion::DurationNs(const ProbePose& from, const ProbePose& to, double speed, double angularSpeed)
{
    const double distance = std::sqrt((to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y) +
                                      (to.z - from.z) * (to.z - from.z));
    const double angle = std::max(
        {std::abs(to.roll - from.roll), std::abs(to.pitch - from.pitch), std::abs(to.yaw - from.yaw)});
    const double seconds = std::max(distance / speed, angle / angularSpeed);
    return static_cast<qint64>(std::min(seconds, kLongestS) * kNsPerSecond);
}

qint64 ProbeMotion::NowNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}
