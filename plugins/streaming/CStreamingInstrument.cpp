// SPDX-License-Identifier: MIT
#include "CStreamingInstrument.h"

#include <QLoggingCategory>

CStreamingInstrument::CStreamingInstrument(QObject* parent) : CInstrument(parent)
{
    connect(this, &CInstrument::MeasurementParametersChanged, this, [this] { attachParameters(); });
}

CStreamingInstrument::~CStreamingInstrument()
{
    joinThread();
}

void CStreamingInstrument::SendTrigger()
{
    if (m_worker)
        QMetaObject::invokeMethod(m_worker, &CAcquisitionWorker::Trigger, Qt::QueuedConnection);
}

void CStreamingInstrument::StartMeasurement()
{
    if (!IsConnected()) {
        qWarning() << "Measurement not started, the instrument is not connected:" << Name();
        return;
    }
    onParameterChanged();
    if (IsRunning()) {
        if (m_worker && m_applied.triggerMode == CTrigger::IMMEDIATE) {
            ++m_requested;
            QMetaObject::invokeMethod(m_worker, &CAcquisitionWorker::RequestBlock, Qt::QueuedConnection);
        }
        return;
    }
    ++m_session;
    PrepareRun();
    startThread();
    SetStatusString(tr("Measuring"));
    SetIsRunning(true);
}

void CStreamingInstrument::StopMeasurement()
{
    ++m_session;
    joinThread();
    if (IsRunning())
        SetStatusString(tr("Ready"));
    SetIsRunning(false);
}

void CStreamingInstrument::ApplyParameters()
{
    onParameterChanged();
}

void CStreamingInstrument::attachParameters()
{
    CMeasurementParameters* parameters = MeasurementParameters();
    if (m_watched)
        disconnect(m_watched, nullptr, this, nullptr);
    m_watched = parameters;
    if (!parameters)
        return;
    // A cascade of rates ends in the rise of the commit flag. Fields outside the cascades change while the
    // flag stays up.
    const auto watch = [this, parameters](auto signal) {
        connect(parameters, signal, this, &CStreamingInstrument::onParameterChanged);
    };
    watch(&CMeasurementParameters::ApplyConfigurationChanged);
    watch(&CMeasurementParameters::AveragingChanged);
    watch(&CMeasurementParameters::AcquisitionRateChanged);
    watch(&CMeasurementParameters::BlockSizeChanged);
    watch(&CMeasurementParameters::DisplayRateChanged);
    watch(&CMeasurementParameters::UnitsChanged);
    watch(&CMeasurementParameters::AutoRangeChanged);
    watch(&CMeasurementParameters::RangeChanged);
    watch(&CMeasurementParameters::TriggerModeChanged);
    watch(&CMeasurementParameters::TriggerPluginChanged);
    connect(parameters, &QObject::destroyed, this, [this] { SetMeasurementParameters(nullptr); });
    onParameterChanged();
}

void CStreamingInstrument::onParameterChanged()
{
    // Writing back the rate of IMMEDIATE mode changes parameters in its turn.
    if (!m_watched || !m_watched->ApplyConfiguration() || !IsConnected() || m_isApplying)
        return;
    m_isApplying = true;
    AcquisitionParameters parameters = copyWithinBounds(*m_watched, *this);
    parameters.immediateAcquisitionRate = ImmediateRate(parameters);
    m_watched->SetImmediateAcquisitionRate(parameters.immediateAcquisitionRate);
    parameters = copyWithinBounds(*m_watched, *this);
    parameters.immediateAcquisitionRate = ImmediateRate(parameters);
    const bool isNew = !(parameters == m_applied);
    const bool isNewTiming = !haveSameTiming(parameters, m_applied);
    m_applied = parameters;
    m_isApplying = false;

    ParametersApplied(*m_watched);
    if (!isNew || !IsRunning())
        return;
    if (isNewTiming) {
        joinThread();
        startThread();
    } else if (m_worker) {
        QMetaObject::invokeMethod(
            m_worker, [worker = m_worker.data(), parameters] { worker->SetParameters(parameters); },
            Qt::QueuedConnection);
    }
}

void CStreamingInstrument::startThread()
{
    const int session = m_session;
    const int serial = ++m_serial;
    m_thread = std::make_unique<QThread>();
    m_thread->setObjectName(Name());
    auto* worker = new CAcquisitionWorker(Source(), m_applied, Pacing());
    m_worker = worker;
    worker->moveToThread(m_thread.get());
    connect(m_thread.get(), &QThread::started, worker, &CAcquisitionWorker::Run);
    connect(m_thread.get(), &QThread::finished, worker, &QObject::deleteLater);
    connect(
        worker, &CAcquisitionWorker::BlockReady, this,
        [this, session](const QSharedPointer<CMeasureBlock>& block, CUnits::UnitType units) {
            onBlockReady(session, block, units);
        },
        Qt::QueuedConnection);
    connect(
        worker, &CAcquisitionWorker::RequestsDone, this,
        [this, serial](int delivered) { onRequestsDone(serial, delivered); }, Qt::QueuedConnection);
    connect(
        worker, &CAcquisitionWorker::Exhausted, this, [this, serial] { onExhausted(serial); },
        Qt::QueuedConnection);
    if (m_applied.triggerMode == CTrigger::EXTERNAL && m_applied.triggerPlugin)
        connect(m_applied.triggerPlugin, &CTriggerPlugin::Trigger, worker, &CAcquisitionWorker::Trigger,
                Qt::QueuedConnection);
    m_thread->start();
    m_requested = 0;
    if (m_applied.triggerMode == CTrigger::IMMEDIATE) {
        m_requested = 1;
        QMetaObject::invokeMethod(worker, &CAcquisitionWorker::RequestBlock, Qt::QueuedConnection);
    }
}

void CStreamingInstrument::joinThread()
{
    ++m_serial;
    if (!m_thread)
        return;
    m_thread->requestInterruption();
    m_thread->quit();
    m_thread->wait();
    m_thread.reset();
}

void CStreamingInstrument::onBlockReady(int session, const QSharedPointer<CMeasureBlock>& block,
                                        CUnits::UnitType units)
{
    if (session != m_session)
        return;
    // The receiver may stop the instrument, or drop it.
    const QPointer<CStreamingInstrument> self(this);
    // The receiver reads every block in the unit in force: one that was under way when that changed is lost.
    if (units == m_applied.units)
        emit OnNewMeasureBlock(block);
    if (self && m_worker)
        QMetaObject::invokeMethod(m_worker, &CAcquisitionWorker::BlockTaken, Qt::QueuedConnection);
}

void CStreamingInstrument::onRequestsDone(int serial, int delivered)
{
    if (serial == m_serial && delivered == m_requested)
        StopMeasurement();
}

void CStreamingInstrument::onExhausted(int serial)
{
    if (serial != m_serial)
        return;
    StopMeasurement();
    RunExhausted();
}
