// SPDX-License-Identifier: MIT
#include "SimulatedBench.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

struct Carrier
{
    const void* id;
    SimulatedBench::PoseAtTime poseAt;
};

struct Bench
{
    std::mutex mutex;
    std::vector<Carrier> carriers;
};

Bench& bench()
{
    static Bench instance;
    return instance;
}

void remove(std::vector<Carrier>& carriers, const void* id)
{
    carriers.erase(std::remove_if(carriers.begin(), carriers.end(),
                                  [id](const Carrier& carrier) { return carrier.id == id; }),
                   carriers.end());
}

} // namespace

namespace SimulatedBench {

void Mount(const void* carrier, PoseAtTime poseAt)
{
    const std::lock_guard<std::mutex> lock(bench().mutex);
    remove(bench().carriers, carrier);
    bench().carriers.push_back({carrier, std::move(poseAt)});
}

void Dismount(const void* carrier)
{
    const std::lock_guard<std::mutex> lock(bench().mutex);
    remove(bench().carriers, carrier);
}

bool IsProbeMounted()
{
    const std::lock_guard<std::mutex> lock(bench().mutex);
    return !bench().carriers.empty();
}

std::optional<ProbePose> PoseAt(qint64 epochNs)
{
    const std::lock_guard<std::mutex> lock(bench().mutex);
    if (bench().carriers.empty())
        return std::nullopt;
    return bench().carriers.back().poseAt(epochNs);
}

} // namespace SimulatedBench
