// SPDX-License-Identifier: MIT
#include "CSimulatedMover.h"

#include "MapperPose.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

/// A path has an end, whatever the settings say.
constexpr int kMaxStepsOfLine = 10000;
/// A path of one place that is repeated, or a speed beyond all sense, must not flood the application.
constexpr qint64 kShortestLegNs = 10000000;

double between(double a, double b, double part)
{
    return a + (b - a) * part;
}

} // namespace

CSimulatedMover::CSimulatedMover(QObject* parent) : CMapperPluginOnTheFly(parent)
{
    Name = tr("Simulated mover");
}

CSimulatedMover::~CSimulatedMover()
{
    halt();
}

void CSimulatedMover::Start()
{
    halt();
    const MapperSettings settings = MapperSettings::Load();
    m_isToEnd = false;
    m_motion = {settings.from, settings.from, 0, 0};
    SimulatedBench::Mount(this, [this](qint64 epochNs) { return poseAt(epochNs); });
    m_thread = std::thread([this, settings] { run(settings); });
}

void CSimulatedMover::Stop()
{
    halt();
}

void CSimulatedMover::halt()
{
    // The bench asks for the pose under its own lock: it comes first, here and there.
    SimulatedBench::Dismount(this);
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isToEnd = true;
    }
    m_changed.notify_all();
    m_thread.join();
    const ProbePose here = m_motion.At(ProbeMotion::NowNs());
    m_motion = {here, here, 0, 0};
}

CPosition CSimulatedMover::GetPosition()
{
    return positionOf(poseAt(ProbeMotion::NowNs()));
}

COrientation CSimulatedMover::GetOrientation()
{
    return orientationOf(poseAt(ProbeMotion::NowNs()));
}

void CSimulatedMover::Shutdown()
{
    halt();
}

std::vector<ProbePose> CSimulatedMover::Path(const MapperSettings& settings)
{
    const ProbePose& from = settings.from;
    const ProbePose& to = settings.to;
    const double length = std::abs(to.x - from.x);
    // The rounding of a length that is a whole number of spacings must not cost the last point.
    const int steps = static_cast<int>(std::min<double>(length / settings.spacing + 1e-9, kMaxStepsOfLine));
    std::vector<ProbePose> path;
    for (int line = 0; line < settings.lines; ++line) {
        const double part = settings.lines > 1 ? line / (settings.lines - 1.0) : 0.0;
        for (int i = 0; i <= steps; ++i) {
            const int step = line % 2 == 0 ? i : steps - i;
            ProbePose point = from;
            point.x += std::copysign(step * settings.spacing, to.x - from.x);
            point.y = between(from.y, to.y, part);
            point.z = between(from.z, to.z, part);
            path.push_back(point);
        }
    }
    return path;
}

void CSimulatedMover::run(const MapperSettings& settings)
{
    const std::vector<ProbePose> path = Path(settings);
    do {
        for (const ProbePose& point : path) {
            moveTo(point, settings.moverSpeed);
            if (!waitUntilArrival())
                return;
            emit Acquire(positionOf(point), orientationOf(point));
        }
    } while (settings.isRepeated);
}

void CSimulatedMover::moveTo(const ProbePose& goal, double speed)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // From the end of the leg before, not from now: the delays of the waits must not add up.
    const ProbePose here = m_motion.to;
    const qint64 nowNs = ProbeMotion::NowNs();
    const qint64 startNs = m_motion.startNs == 0 ? nowNs : m_motion.EndNs();
    const qint64 durationNs = ProbeMotion::DurationNs(here, goal, speed, speed);
    m_motion = {here, goal, startNs, std::max(durationNs, kShortestLegNs)};
}

bool CSimulatedMover::waitUntilArrival()
{
    using namespace std::chrono;
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto arrival = steady_clock::now() + nanoseconds(m_motion.EndNs() - ProbeMotion::NowNs());
    m_changed.wait_until(lock, arrival, [this] { return m_isToEnd; });
    return !m_isToEnd;
}

ProbePose CSimulatedMover::poseAt(qint64 epochNs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_motion.At(epochNs);
}
