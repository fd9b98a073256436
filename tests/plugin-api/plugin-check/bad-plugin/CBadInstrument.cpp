// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBadInstrument.h"

#include "BadMode.h"

#include <QSignalBlocker>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr double kRate = 1000; // Hz
constexpr qint64 kPeriodNs = 1000000;
constexpr qint64 kNsPerMs = 1000000;
constexpr qint64 kNsPerSecond = 1000000000;
constexpr qint64 kMsPerSecond = 1000;
constexpr int kMaxBlockSize = 1000;
constexpr int kLateMs = 30;

void setBound(CBoundedParm* bound, double min, double max, double value)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(value);
}

QList<CTrigger::TriggerMode> triggerModes()
{
    if (isBad("triggers-empty"))
        return {};
    if (isBad("trigger-order"))
        return {CTrigger::IMMEDIATE, CTrigger::CONTINUOUS};
    if (isBad("trigger-position"))
        return {CTrigger::CONTINUOUS, CTrigger::TIMER};
    // All modes only where they matter: each takes its time.
    if (isBad("") || isBad("external-no-block"))
        return {CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL};
    if (isBad("immediate-rate"))
        return {CTrigger::CONTINUOUS, CTrigger::IMMEDIATE};
    return {CTrigger::CONTINUOUS};
}

QList<CUnits::UnitType> units()
{
    if (isBad("units-empty"))
        return {};
    if (isBad("unit-invalid"))
        return {CUnits::MICRO_TESLA, CUnits::PERCENT};
    if (isBad("unit-order"))
        return {CUnits::ADC, CUnits::MICRO_TESLA};
    if (isBad("list-duplicate"))
        return {CUnits::MICRO_TESLA, CUnits::MICRO_TESLA};
    return {CUnits::MICRO_TESLA, CUnits::NANO_TESLA};
}

QList<tFlux> ranges()
{
    if (isBad("ranges-empty"))
        return {};
    if (isBad("range-invalid"))
        return {-1.0F};
    if (isBad("range-order"))
        return {1.0F, 0.1F};
    return {0.1F, 1.0F};
}

} // namespace

CBadInstrument::CBadInstrument(const QString& serialNumber)
{
    SetName(QStringLiteral("Bad"));
    SetSerialNumber(serialNumber);
    SetInterface(isBad("enum-value") ? static_cast<CInstrumentInterface::Interface>(99)
                                     : CInstrumentInterface::USB);
    // The clock of an instrument need not be set.
    m_nextNs = QDateTime(QDate(2024, 3, 1), QTime(12, 0)).toMSecsSinceEpoch() * kNsPerMs;
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { onTimer(); });
    connect(this, &CInstrument::MeasurementParametersChanged, this, [this] { watchParameters(); });
}

bool CBadInstrument::Connect()
{
    ++m_numConnects;
    if (isBad("connect-failed") || (isBad("reconnect-failed") && m_numConnects > 1))
        return false;
    if (!isBad("identity-empty"))
        SetManufacturer(QStringLiteral("Bad"));
    SetModel(QStringLiteral("Bad"));
    fillLists();
    fillBounds();
    SetIsConnected(!isBad("state"));
    if (isBad("property-silent")) {
        const QSignalBlocker blocker(this);
        SetLastMessage(QStringLiteral("connected"));
    }
    takeOverParameters();
    return true;
}

void CBadInstrument::fillLists()
{
    SetUnitList(units());
    SetRangeList(ranges());
    SetTriggerList(triggerModes());
}

void CBadInstrument::fillBounds()
{
    setBound(AveragingBound(), 1, isBad("bound-averaging") ? 99 : 100, 1);
    setBound(BlockSizeBound(), 1, kMaxBlockSize, 20);
    for (CBoundedParm* bound : {AcquisitionRateBound(), KestrixAcquisitionRateBound()})
        setBound(bound, 1, kRate, kRate);
    for (CBoundedParm* bound : {DisplayRateBound(), KestrixDisplayRateBound()})
        setBound(bound, 1, 100, 50);
    setBound(FrequencyMinBound(), 0, kRate / 2, 0);
    setBound(FrequencyMaxBound(), 1, kRate / 2, kRate / 2);
    if (isBad("bound-inverted"))
        AveragingBound()->SetMin(101);
    if (isBad("bound-default"))
        AveragingBound()->SetDefault(101);
    if (isBad("bound-invalid"))
        BlockSizeBound()->SetMax(100000);
    if (isBad("bound-frequency")) {
        FrequencyMaxBound()->SetMax(kRate / 4);
        FrequencyMaxBound()->SetDefault(kRate / 4);
    }
}

void CBadInstrument::Disconnect()
{
    StopMeasurement();
    SetIsConnected(false);
    if (isBad("disconnect-threw"))
        throw std::runtime_error("told to throw");
}

void CBadInstrument::watchParameters()
{
    if (m_watched)
        disconnect(m_watched, nullptr, this, nullptr);
    m_watched = MeasurementParameters();
    if (!m_watched)
        return;
    using Parameters = CMeasurementParameters;
    const auto takeOver = [this] { takeOverParameters(); };
    connect(m_watched, &Parameters::ApplyConfigurationChanged, this, takeOver);
    connect(m_watched, &Parameters::BlockSizeChanged, this, takeOver);
    connect(m_watched, &Parameters::DisplayRateChanged, this, takeOver);
    connect(m_watched, &Parameters::TriggerModeChanged, this, takeOver);
    connect(m_watched, &Parameters::TriggerPluginChanged, this, takeOver);
    connect(m_watched, &Parameters::UnitsChanged, this, [this] { onUnitsChanged(); });
    takeOverParameters();
}

void CBadInstrument::onUnitsChanged()
{
    if (isBad("unit-stale") && IsRunning())
        emitBlock();
    takeOverParameters();
}

void CBadInstrument::takeOverParameters()
{
    if (!m_watched || m_isTakingOver || !(m_watched->ApplyConfiguration() || isBad("apply-early")))
        return;
    if (!isBad("immediate-rate")) {
        m_isTakingOver = true;
        m_watched->SetImmediateAcquisitionRate(kRate);
        m_isTakingOver = false;
    }
    if (!isBad("unit-ignored"))
        m_units = m_watched->Units();
    if (isBad("apply-missed") && IsRunning())
        return;
    m_mode = m_watched->TriggerMode();
    m_blockSize = std::clamp(m_watched->BlockSize(), 1, kMaxBlockSize);
    disconnect(m_trigger);
    if (m_watched->TriggerPlugin())
        m_trigger =
            connect(m_watched->TriggerPlugin(), &CTriggerPlugin::Trigger, this, [this] { SendTrigger(); });
    if (m_timer.isActive())
        startTimer();
}

void CBadInstrument::StartMeasurement()
{
    if (isBad("list-update-missing"))
        SetRangeList(RangeList().size() == 1 ? ranges() : QList<tFlux>{1.0F});
    if (m_mode == CTrigger::IMMEDIATE)
        ++m_numRequested;
    if (m_timer.isActive())
        return;
    m_numBlocks = 0;
    if (m_mode != CTrigger::EXTERNAL && !isBad("no-block"))
        startTimer();
    if (!isBad("not-running"))
        SetIsRunning(true);
}

void CBadInstrument::StopMeasurement()
{
    const bool wasMeasuring = m_timer.isActive();
    m_timer.stop();
    m_numRequested = 0;
    m_last.clear();
    if (!isBad("still-running"))
        SetIsRunning(false);
    if (isBad("block-after-stop") && wasMeasuring)
        QTimer::singleShot(kLateMs, this, [this] { emitBlock(); });
}

void CBadInstrument::SendTrigger()
{
    if (IsRunning() && m_mode == CTrigger::EXTERNAL && !isBad("external-no-block"))
        emitBlock();
}

void CBadInstrument::CalibrateZeroOffset(bool /*forceCalibration*/) {}

void CBadInstrument::RestoreZeroOffsetToFactory() {}

void CBadInstrument::startTimer()
{
    m_timer.start(static_cast<int>(m_blockSize * kPeriodNs / kNsPerMs));
}

void CBadInstrument::onTimer()
{
    emitBlock();
    if (m_mode == CTrigger::IMMEDIATE && --m_numRequested <= 0)
        StopMeasurement();
}

void CBadInstrument::emitBlock()
{
    if (isBad("block-null") && m_numBlocks == 0)
        emit OnNewMeasureBlock({});
    if (isBad("block-changed") && m_last)
        m_last->Results.constFirst()->SetBx(-1);
    m_last = makeBlock();
    ++m_numBlocks;
    emit OnNewMeasureBlock(m_last);
}

QSharedPointer<CMeasureBlock> CBadInstrument::makeBlock()
{
    auto block = QSharedPointer<CMeasureBlock>::create();
    block->Bprime.SetX(1);
    const bool isShort = isBad("block-size") && m_numBlocks % 2 == 0;
    for (int i = 0; i < m_blockSize - (isShort ? 1 : 0); ++i)
        block->Results.append(makeSample(i));
    if (isBad("sample-null"))
        block->Results.last().clear();
    return block;
}

QSharedPointer<CFieldIntensityResult> CBadInstrument::makeSample(int index)
{
    tFlux field = 0;
    ConvertUnits(CUnits::MICRO_TESLA, m_units, field, 50.0F);
    auto sample = QSharedPointer<CFieldIntensityResult>::create();
    sample->SetBx(field);
    sample->SetB(field);
    sample->SetBBprime(field);
    sample->SetDB(isBad("uncertainty-negative") ? -1.0F : 0.0F);
    if (isBad("converted-set"))
        sample->SetDBConverted(1.0F);
    stamp(*sample, index);
    m_nextNs += isBad("sample-period") ? 2 * kPeriodNs : kPeriodNs;
    return sample;
}

void CBadInstrument::stamp(CFieldIntensityResult& sample, int index) const
{
    // The second sample is behind the third one, or where the first one is.
    qint64 ns = m_nextNs;
    if (isBad("timestamp-backwards") && index == 1)
        ns += 3 * kPeriodNs / 2;
    if (isBad("timestamp-equal") && index == 1)
        ns -= kPeriodNs;
    sample.Timestamp = QDateTime::fromMSecsSinceEpoch(ns / kNsPerMs);
    sample.TimestampNanoseconds = static_cast<quint32>(ns % kNsPerSecond);
    if (isBad("timestamp-invalid"))
        sample.Timestamp = QDateTime();
    if (isBad("nanoseconds-range"))
        sample.TimestampNanoseconds += kNsPerSecond;
    if (isBad("timestamp-fraction")) {
        const qint64 ms = ns / kNsPerMs;
        const qint64 second = ms - ms % kMsPerSecond;
        sample.Timestamp = QDateTime::fromMSecsSinceEpoch(second + (ms + kMsPerSecond / 2) % kMsPerSecond);
    }
}
