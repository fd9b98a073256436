// SPDX-License-Identifier: MIT
#pragma once

#include "AcquisitionParameters.h"
#include "CAcquisitionWorker.h"
#include "CBlockSource.h"
#include "CInstrument.h"

#include <QPointer>
#include <QThread>

#include <memory>

/// An instrument whose blocks are made by a CBlockSource on a thread of its own while it runs. Follows the
/// application's parameters, honours their commit flag and serves all four trigger modes. Everything but the
/// making of blocks happens on the main thread, OnNewMeasureBlock included: so nothing is delivered any more
/// once StopMeasurement() has returned, and nothing in another unit than the one in force.
class CStreamingInstrument : public CInstrument
{
    Q_OBJECT

public:
    explicit CStreamingInstrument(QObject* parent = nullptr);
    ~CStreamingInstrument() override;

public slots:
    /// In EXTERNAL mode one block, as by the trigger plug-in; otherwise without effect.
    void SendTrigger() override;
    /// In IMMEDIATE mode every call gives one block; otherwise a call while running is without effect.
    void StartMeasurement() override;
    /// Waits until the acquisition thread has ended.
    void StopMeasurement() override;

protected:
    /// Parameters in force.
    const AcquisitionParameters& Applied() const { return m_applied; }
    /// Takes the parameters over anew, after the bounds or the source have changed.
    void ApplyParameters();

    /// The source of the blocks, not null while connected.
    virtual std::shared_ptr<CBlockSource> Source() = 0;
    virtual AcquisitionPacing Pacing() const = 0;
    /// Rate of a block in IMMEDIATE mode, which is reported to the application.
    virtual double ImmediateRate(const AcquisitionParameters& parameters) const = 0;
    /// A run begins, in IMMEDIATE mode with every start after the blocks asked for were delivered.
    virtual void PrepareRun() {}
    /// The parameters were taken over.
    virtual void ParametersApplied(CMeasurementParameters& /*parameters*/) {}
    /// The source had no more blocks; the run has ended.
    virtual void RunExhausted() {}

private:
    void attachParameters();
    void onParameterChanged();
    void startThread();
    void joinThread();
    void onBlockReady(int session, const QSharedPointer<CMeasureBlock>& block, CUnits::UnitType units);
    void onRequestsDone(int serial, int delivered);
    void onExhausted(int serial);

    QPointer<CMeasurementParameters> m_watched;
    AcquisitionParameters m_applied;
    std::unique_ptr<QThread> m_thread;
    QPointer<CAcquisitionWorker> m_worker; ///< lives in m_thread, which deletes it at its end
    int m_session = 0;                     ///< counts starts and stops; blocks of an older one are dropped
    int m_serial = 0;                      ///< counts threads
    int m_requested = 0;                   ///< blocks asked of the present worker in IMMEDIATE mode
    bool m_isApplying = false;
};
