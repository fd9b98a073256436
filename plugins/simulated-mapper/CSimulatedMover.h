// SPDX-License-Identifier: MIT
#pragma once

#include "CMapperPluginOnTheFly.h"
#include "MapperSettings.h"
#include "ProbeMotion.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// Carries the probe along the lines of an area, to and fro, without stopping, and asks for a block at equal
/// distances on each line. Acquire() comes from a thread of its own. Its settings file is read again at every
/// start.
class CSimulatedMover : public CMapperPluginOnTheFly
{
    Q_OBJECT

public:
    explicit CSimulatedMover(QObject* parent = nullptr);
    ~CSimulatedMover() override;

    /// Begins the path at its first point.
    void Start() override;
    void Stop() override;
    /// Where the probe is now, also between two points.
    CPosition GetPosition() override;
    COrientation GetOrientation() override;
    void Shutdown() override;

    /// The points of the path at which blocks are asked for.
    static std::vector<ProbePose> Path(const MapperSettings& settings);

private:
    void halt();
    void run(const MapperSettings& settings);
    bool waitUntilArrival();
    void moveTo(const ProbePose& goal, double speed);
    ProbePose poseAt(qint64 epochNs);

    std::thread m_thread;

    std::mutex m_mutex; ///< of all below
    std::condition_variable m_changed;
    ProbeMotion m_motion;
    bool m_isToEnd = false;
};
