// SPDX-License-Identifier: MIT
#include "CSimulatedGantry.h"

#include "MapperPose.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>

namespace {

/// Limits that are the wrong way round leave no room but the lower one. What is no number stays as it is.
double within(double goal, double min, double max, double present)
{
    return std::isnan(goal) ? present : std::max(min, std::min(goal, max));
}

double angle(double goal, double present)
{
    return std::isfinite(goal) ? goal : present;
}

} // namespace

CSimulatedGantry::CSimulatedGantry(QObject* parent) : CMapperPluginStopAndGo(parent)
{
    Name = tr("Simulated gantry");
}

CSimulatedGantry::~CSimulatedGantry()
{
    halt();
}

void CSimulatedGantry::Start()
{
    halt();
    m_settings = MapperSettings::Load();
    m_isToEnd = false;
    m_thread = std::thread([this] { run(); });
    SimulatedBench::Mount(this, [this](qint64 epochNs) { return poseAt(epochNs); });
}

void CSimulatedGantry::Stop()
{
    halt();
}

void CSimulatedGantry::halt()
{
    // The bench asks for the pose under its own lock: it comes first, here and there.
    SimulatedBench::Dismount(this);
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const ProbePose here = m_motion.At(ProbeMotion::NowNs());
        m_motion = {here, here, 0, 0};
        m_isMoving = false;
        m_isToEnd = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

CPosition CSimulatedGantry::GetPosition()
{
    return positionOf(poseAt(ProbeMotion::NowNs()));
}

COrientation CSimulatedGantry::GetOrientation()
{
    return orientationOf(poseAt(ProbeMotion::NowNs()));
}

void CSimulatedGantry::Shutdown()
{
    halt();
}

void CSimulatedGantry::MoveTo(CPosition& position, COrientation& orientation)
{
    if (!m_thread.joinable())
        return;
    using namespace std::chrono;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const qint64 nowNs = ProbeMotion::NowNs();
        const ProbePose here = m_motion.At(nowNs);
        const ProbePose goal = reachable(poseOf(position, orientation), here);
        const qint64 durationNs =
            ProbeMotion::DurationNs(here, goal, m_settings.speed, m_settings.angularSpeed);
        m_motion = {here, goal, nowNs, durationNs};
        m_reportAt = steady_clock::now() + nanoseconds(durationNs) + milliseconds(m_settings.settleMs);
        m_isMoving = true;
    }
    m_changed.notify_all();
}

ProbePose CSimulatedGantry::reachable(const ProbePose& goal, const ProbePose& present) const
{
    const ProbePose& min = m_settings.min;
    const ProbePose& max = m_settings.max;
    ProbePose place{within(goal.x, min.x, max.x, present.x), within(goal.y, min.y, max.y, present.y),
                    within(goal.z, min.z, max.z, present.z), angle(goal.roll, present.roll),
                    angle(goal.pitch, present.pitch),        angle(goal.yaw, present.yaw)};
    if (place.x != goal.x || place.y != goal.y || place.z != goal.z)
        qWarning("The simulated gantry cannot reach (%g, %g, %g) mm and goes to (%g, %g, %g) mm", goal.x,
                 goal.y, goal.z, place.x, place.y, place.z);
    return place;
}

ProbePose CSimulatedGantry::poseAt(qint64 epochNs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_motion.At(epochNs);
}

void CSimulatedGantry::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isToEnd) {
        if (!m_isMoving) {
            m_changed.wait(lock);
        } else if (std::chrono::steady_clock::now() < m_reportAt) {
            m_changed.wait_until(lock, m_reportAt);
        } else {
            m_isMoving = false;
            lock.unlock();
            emit Ready();
            lock.lock();
        }
    }
}
