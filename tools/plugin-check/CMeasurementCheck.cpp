// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasurementCheck.h"

#include "CCheckRun.h"
#include "CInstrument.h"
#include "CPropertyWatch.h"
#include "EnumTexts.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMinQuietMs = 100;
constexpr int kMaxQuietMs = 2000;
constexpr int kSettleMs = 20;
constexpr int kMinTriggerMs = 20;
// A unit that differs by less cannot be told from a field that changes.
constexpr double kClearRatio = 10;
constexpr double kSameRatio = 3;

bool isSameMagnitude(double value, double expected)
{
    return value < expected * kSameRatio && value * kSameRatio > expected;
}

} // namespace

CTickingTrigger::CTickingTrigger()
{
    Name = QStringLiteral("kestrix-plugin-check");
    QObject::connect(&m_timer, &QTimer::timeout, this, &CTriggerPlugin::Trigger);
}

CMeasurementCheck::CMeasurementCheck(CCheckRun& run, CInstrument& instrument, CPropertyWatch& watch)
    : m_run(run), m_instrument(instrument), m_watch(watch), m_plan(MeasurementPlan::Of(instrument)),
      m_recorder(instrument)
{
}

CMeasurementCheck::~CMeasurementCheck()
{
    // The parameters outlive this object, its trigger source does not.
    const QList<CMeasurementParameters*> all =
        QCoreApplication::instance()->findChildren<CMeasurementParameters*>();
    for (CMeasurementParameters* parameters : all) {
        if (parameters->TriggerPlugin() == &m_trigger)
            parameters->SetTriggerPlugin(nullptr);
    }
}

QString CMeasurementCheck::phaseOf(const QString& name) const
{
    return QStringLiteral("%1, %2").arg(m_instrument.SerialNumber(), name);
}

void CMeasurementCheck::Execute()
{
    const QList<CTrigger::TriggerMode> modes = m_instrument.TriggerList();
    for (const CTrigger::TriggerMode mode : modes) {
        if (mode >= CTrigger::CONTINUOUS && mode <= CTrigger::EXTERNAL)
            checkMode(mode);
    }
    if (modes.contains(CTrigger::CONTINUOUS) || modes.contains(CTrigger::TIMER)) {
        checkApply();
        checkUnits();
    }
}

CTrigger::TriggerMode CMeasurementCheck::ongoingMode() const
{
    const QList<CTrigger::TriggerMode> modes = m_instrument.TriggerList();
    for (const CTrigger::TriggerMode mode : {CTrigger::CONTINUOUS, CTrigger::TIMER}) {
        if (modes.contains(mode))
            return mode;
    }
    return modes.value(0, CTrigger::CONTINUOUS);
}

void CMeasurementCheck::configure(CTrigger::TriggerMode mode)
{
    // Each mode has parameters of its own, like each operation; none of them goes before the plug-in.
    m_parameters = new CMeasurementParameters(QCoreApplication::instance());
    m_run.Call("take-over of new MeasurementParameters",
               [this] { m_instrument.SetMeasurementParameters(m_parameters); });
    m_run.Call("change of the parameters", [this, mode] {
        if (mode == CTrigger::EXTERNAL)
            m_parameters->SetTriggerPlugin(&m_trigger);
        m_plan.Configure(*m_parameters, m_instrument, mode);
    });
    // A driver may correct what it cannot do.
    m_run.Rest("parameters settle", kSettleMs);
    m_trigger.SetIntervalMs(std::max(kMinTriggerMs, 2 * blockMs()));
    m_recorder.Clear();
}

void CMeasurementCheck::start()
{
    m_run.Call("StartMeasurement()", [this] { m_instrument.StartMeasurement(); });
    if (!m_instrument.IsRunning() && m_recorder.Count() == 0)
        m_run.Find("not-running", QString());
}

void CMeasurementCheck::stop()
{
    m_run.Call("StopMeasurement()", [this] { m_instrument.StopMeasurement(); });
    CheckEnd(CBlockRecorder::NowNs());
}

void CMeasurementCheck::CheckEnd(qint64 stopNs)
{
    if (m_instrument.IsRunning())
        m_run.Find("still-running", QString());
    m_run.Rest("no further block", std::clamp(3 * blockMs(), kMinQuietMs, kMaxQuietMs));
    const int numLate = m_recorder.BlocksSince(stopNs).size();
    if (numLate > 0)
        m_run.Find("block-after-stop", QStringLiteral("%1 blocks").arg(numLate));
}

int CMeasurementCheck::blockMs() const
{
    const double rate = m_parameters->AcquisitionRate();
    const double seconds = rate > 0 ? m_parameters->BlockSize() / rate : 0;
    return static_cast<int>(std::min(seconds * 1e3, 1e6));
}

int CMeasurementCheck::limitMs(int numBlocks) const
{
    return m_run.Options().waitMs + 2 * numBlocks * blockMs();
}

bool CMeasurementCheck::waitForBlocks(int numBlocks)
{
    m_run.Wait("blocks", limitMs(numBlocks),
               [this, numBlocks] { return m_recorder.Count() >= numBlocks || !m_instrument.IsRunning(); });
    // A single block may be told of after the end of its measurement.
    return m_run.Wait("blocks", kMinQuietMs, [this, numBlocks] { return m_recorder.Count() >= numBlocks; });
}

void CMeasurementCheck::checkMode(CTrigger::TriggerMode mode)
{
    m_run.Phase(phaseOf(TriggerModeToText(mode)));
    configure(mode);
    if (mode == CTrigger::IMMEDIATE && !(m_parameters->ImmediateAcquisitionRate() > 0))
        m_run.Find("immediate-rate", QString::number(m_parameters->ImmediateAcquisitionRate()));
    BlockExpectation expected;
    expected.blockSize = m_parameters->BlockSize();
    expected.rate = mode == CTrigger::IMMEDIATE ? m_parameters->ImmediateAcquisitionRate()
                                                : m_parameters->AcquisitionRate();
    start();
    takeBlocks(mode);
    expected.mayEndShort = !m_instrument.IsRunning();
    stop();
    checkBlocks(m_run, m_recorder.Blocks(), expected);
    m_watch.CheckWhileConnected();
    m_run.Fact(m_instrument.SerialNumber() + QStringLiteral(" blocks, ") + TriggerModeToText(mode),
               QStringLiteral("%1 of %2 samples").arg(m_recorder.Count()).arg(expected.blockSize));
}

void CMeasurementCheck::takeBlocks(CTrigger::TriggerMode mode)
{
    if (mode == CTrigger::EXTERNAL) {
        takeTriggeredBlocks();
        return;
    }
    int numWanted = m_run.Options().numBlocks;
    if (mode == CTrigger::IMMEDIATE) {
        // A mapping asks for one block at each place.
        numWanted = 2;
        waitForBlocks(1);
    }
    // A mapping starts it at each place, whether it is running or not.
    start();
    const bool isDone = waitForBlocks(numWanted);
    const bool isExhausted =
        !m_instrument.IsRunning() && m_recorder.Count() > 0 && mode != CTrigger::IMMEDIATE;
    if (!isDone && !isExhausted)
        m_run.Find("no-block", QStringLiteral("%1 of %2 blocks came").arg(m_recorder.Count()).arg(numWanted));
}

void CMeasurementCheck::takeTriggeredBlocks()
{
    constexpr int kNumWanted = 2;
    m_trigger.Start();
    const bool isDone = waitForBlocks(kNumWanted);
    m_trigger.Stop();
    if (isDone)
        return;
    m_run.Call("SendTrigger()", [this] { m_instrument.SendTrigger(); });
    if (!waitForBlocks(m_recorder.Count() + 1))
        m_run.Find("external-no-block", QString());
}

bool CMeasurementCheck::StartOngoing(int numBlocks)
{
    configure(ongoingMode());
    start();
    if (waitForBlocks(numBlocks))
        return true;
    m_run.Find("no-block", QStringLiteral("%1 of %2 blocks came").arg(m_recorder.Count()).arg(numBlocks));
    return false;
}

void CMeasurementCheck::checkApply()
{
    if (m_plan.otherDisplayRate <= 0)
        return;
    m_run.Phase(phaseOf(QStringLiteral("ApplyConfiguration")));
    if (StartOngoing(1)) {
        const int quietMs = std::clamp(3 * blockMs(), kMinQuietMs, kMaxQuietMs);
        const qint64 changeNs = CBlockRecorder::NowNs();
        m_run.Call("change of the parameters", [this] {
            m_parameters->SetApplyConfiguration(false);
            m_parameters->SetDisplayRate(m_plan.otherDisplayRate);
        });
        const int newSize = m_parameters->BlockSize();
        const auto hasNewSize = [this, newSize](qint64 sinceNs) {
            const QVector<RecordedBlock> blocks = m_recorder.BlocksSince(sinceNs);
            return std::any_of(blocks.cbegin(), blocks.cend(), [newSize](const RecordedBlock& recorded) {
                return recorded.block && recorded.block->Results.size() == newSize;
            });
        };
        m_run.Rest("blocks before the commit", quietMs);
        if (hasNewSize(changeNs))
            m_run.Find("apply-early", QStringLiteral("BlockSize %1").arg(newSize));
        const qint64 commitNs = CBlockRecorder::NowNs();
        m_run.Call("ApplyConfiguration becomes true", [this] { m_parameters->SetApplyConfiguration(true); });
        if (!m_run.Wait("blocks after the commit", limitMs(3), [&] { return hasNewSize(commitNs); }))
            m_run.Find("apply-missed", QStringLiteral("BlockSize %1").arg(newSize));
    }
    stop();
}

void CMeasurementCheck::checkUnits()
{
    const QList<CUnits::UnitType> units = m_instrument.UnitList();
    const CUnits::UnitType unit = units.value(0, CUnits::UNKNOWN);
    CUnits::UnitType other = CUnits::UNKNOWN;
    for (const CUnits::UnitType candidate : units) {
        tFlux ratio = 1;
        ConvertUnits(unit, candidate, ratio, 1.0F);
        const bool isClear = ratio >= kClearRatio || (ratio > 0 && ratio * kClearRatio <= 1);
        if (other == CUnits::UNKNOWN && unit != CUnits::ADC && candidate != CUnits::ADC && isClear)
            other = candidate;
    }
    if (other == CUnits::UNKNOWN)
        return;
    m_run.Phase(phaseOf(QStringLiteral("Units")));
    if (StartOngoing(1)) {
        const QSharedPointer<CMeasureBlock> before = m_recorder.Blocks().constLast().block;
        tFlux expected = 0;
        if (before)
            ConvertUnits(unit, other, expected, static_cast<tFlux>(medianMagnitude(*before)));
        const qint64 changeNs = CBlockRecorder::NowNs();
        m_run.Call("change of Units", [this, other] {
            m_parameters->SetDisplayUnits(other);
            m_parameters->SetUnits(other);
        });
        const int numBlocks = m_run.Options().numBlocks;
        m_run.Wait("blocks in the new unit", limitMs(numBlocks),
                   [&] { return m_recorder.BlocksSince(changeNs).size() >= numBlocks; });
        QVector<bool> areRight;
        const QVector<RecordedBlock> blocks = m_recorder.BlocksSince(changeNs);
        for (const RecordedBlock& recorded : blocks) {
            const double magnitude = recorded.block ? medianMagnitude(*recorded.block) : 0;
            if (magnitude > 0)
                areRight.append(isSameMagnitude(magnitude, static_cast<double>(expected)));
        }
        const QString detail = QStringLiteral("%1 to %2").arg(UnitToText(unit), UnitToText(other));
        if (expected > 0 && !areRight.isEmpty() && !areRight.constLast())
            m_run.Find("unit-ignored", detail);
        else if (expected > 0 && areRight.contains(false))
            m_run.Find("unit-stale", detail);
    }
    stop();
}
