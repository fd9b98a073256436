// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BlockRules.h"
#include "CBlockRecorder.h"
#include "CTriggerPlugin.h"
#include "MeasurementPlan.h"

#include <QTimer>

class CCheckRun;
class CInstrument;
class CMeasurementParameters;
class CPropertyWatch;

/// A trigger source for EXTERNAL mode.
class CTickingTrigger : public CTriggerPlugin
{
public:
    CTickingTrigger();

    void Start() override { m_timer.start(); }
    void Stop() override { m_timer.stop(); }
    void Shutdown() override { Stop(); }
    void SetIntervalMs(int ms) { m_timer.setInterval(ms); }

private:
    QTimer m_timer;
};

/// Lets a connected instrument measure, as a session does.
class CMeasurementCheck
{
public:
    CMeasurementCheck(CCheckRun& run, CInstrument& instrument, CPropertyWatch& watch);
    ~CMeasurementCheck();

    /// Every trigger mode that it offers, then changes of the parameters while it measures.
    void Execute();

    /// Begins a measurement that goes on, and waits for its first blocks. False if none came.
    bool StartOngoing(int numBlocks);
    /// Reports blocks emitted since `stopNs`, when the measurement was ended, and an instrument that still
    /// says that it is running.
    void CheckEnd(qint64 stopNs);

private:
    void checkMode(CTrigger::TriggerMode mode);
    void takeBlocks(CTrigger::TriggerMode mode);
    void takeTriggeredBlocks();
    void checkApply();
    void checkUnits();
    void configure(CTrigger::TriggerMode mode);
    void start();
    void stop();
    CTrigger::TriggerMode ongoingMode() const;
    int blockMs() const;
    int limitMs(int numBlocks) const;
    bool waitForBlocks(int numBlocks);
    QString phaseOf(const QString& name) const;

    CCheckRun& m_run;
    CInstrument& m_instrument;
    CPropertyWatch& m_watch;
    MeasurementPlan m_plan;
    CBlockRecorder m_recorder;
    CTickingTrigger m_trigger;
    CMeasurementParameters* m_parameters = nullptr; ///< of the measurement at hand
};
