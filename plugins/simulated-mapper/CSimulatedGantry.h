// SPDX-License-Identifier: MIT
#pragma once

#include "CMapperPluginStopAndGo.h"
#include "MapperSettings.h"
#include "ProbeMotion.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// A gantry that carries the probe in software only. It moves in straight lines with a finite speed, within
/// limits of travel: a place beyond them leads to the nearest one that it can reach. Ready() comes from a
/// thread of its own. Its settings file is read again at every start.
class CSimulatedGantry : public CMapperPluginStopAndGo
{
    Q_OBJECT

public:
    explicit CSimulatedGantry(QObject* parent = nullptr);
    ~CSimulatedGantry() override;

    void Start() override;
    /// Halts where it is, without a report.
    void Stop() override;
    CPosition GetPosition() override;
    COrientation GetOrientation() override;
    void Shutdown() override;
    /// A further call while it moves gives it a new goal. Without effect while it is stopped.
    void MoveTo(CPosition& position, COrientation& orientation) override;

private:
    void halt();
    void run();
    ProbePose reachable(const ProbePose& goal, const ProbePose& present) const;
    ProbePose poseAt(qint64 epochNs);

    MapperSettings m_settings;
    std::thread m_thread;

    std::mutex m_mutex; ///< of all below
    std::condition_variable m_changed;
    ProbeMotion m_motion;
    bool m_isMoving = false;
    bool m_isToEnd = false;
    std::chrono::steady_clock::time_point m_reportAt;
};
