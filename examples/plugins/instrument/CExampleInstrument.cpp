// SPDX-License-Identifier: MIT
#include "CMinimalInstrument.h"

#include <cmath>

namespace {

constexpr double kFieldMicroTesla[] = {20.0, 0.0, 40.0};
constexpr double kUncertaintyMicroTesla = 0.01;
constexpr qint64 kNanosecondsPerSecond = 1000000000;
constexpr qint64 kNanosecondsPerMillisecond = 1000000;

void setBound(CBoundedParm* bound, double min, double max, double value)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(value);
}

} // namespace

CMinimalInstrument::CMinimalInstrument()
{
    // What the list shows before anybody connects.
    SetName(QStringLiteral("Minimal instrument"));
    SetSerialNumber(QStringLiteral("0001"));
    SetRessourceName(QStringLiteral("example"));
    SetInterface(CInstrumentInterface::USB);
    connect(&m_timer, &QTimer::timeout, this, &CMinimalInstrument::deliverBlock);
}

void CMinimalInstrument::SendTrigger()
{
    if (IsRunning())
        deliverBlock();
}

bool CMinimalInstrument::Connect()
{
    SetManufacturer(QStringLiteral("Example"));
    SetModel(QStringLiteral("Minimal"));
    SetFirmwareVersion(QStringLiteral("1.0"));
    SetUnitList({CUnits::MICRO_TESLA});
    SetRangeList({0.0001F});
    SetTriggerList({CTrigger::CONTINUOUS});
    setBound(AveragingBound(), 1, 1, 1);
    setBound(BlockSizeBound(), 1, 1000, 10);
    setBound(AcquisitionRateBound(), 1, 1000, 100);
    setBound(KestrixAcquisitionRateBound(), 1, 1000, 100);
    setBound(DisplayRateBound(), 1, 50, 10);
    setBound(KestrixDisplayRateBound(), 1, 50, 10);
    setBound(FrequencyMinBound(), 0, 500, 0);
    setBound(FrequencyMaxBound(), 0.5, 500, 50);
    SetStatusString(QStringLiteral("Ready"));
    SetIsConnected(true);
    return true;
}

void CMinimalInstrument::Disconnect()
{
    StopMeasurement();
    SetIsConnected(false);
}

void CMinimalInstrument::StartMeasurement()
{
    if (!IsConnected() || !MeasurementParameters() || MeasurementParameters()->DisplayRate() <= 0)
        return;
    m_timer.start(static_cast<int>(std::lround(1000.0 / MeasurementParameters()->DisplayRate())));
    SetIsRunning(true);
}

void CMinimalInstrument::StopMeasurement()
{
    m_timer.stop();
    SetIsRunning(false);
}

void CMinimalInstrument::CalibrateZeroOffset(bool forceCalibration)
{
    Q_UNUSED(forceCalibration)
}

void CMinimalInstrument::RestoreZeroOffsetToFactory() {}

void CMinimalInstrument::deliverBlock()
{
    const int count = qMax(1, MeasurementParameters()->BlockSize());
    const double rate = MeasurementParameters()->AcquisitionRate();
    const qint64 period = rate > 0 ? std::llround(kNanosecondsPerSecond / rate) : 0;
    const qint64 end = QDateTime::currentMSecsSinceEpoch() * kNanosecondsPerMillisecond;

    auto block = QSharedPointer<CMeasureBlock>::create();
    block->Bprime.SetZ(1);
    block->Results.reserve(count);
    for (int i = 0; i < count; ++i)
        block->Results.append(sampleAt(end - (count - 1 - i) * period));
    emit OnNewMeasureBlock(block);
}

QSharedPointer<CFieldIntensityResult> CMinimalInstrument::sampleAt(qint64 nanosecondsSinceEpoch) const
{
    // Values are delivered in the unit that the parameters ask for.
    const CUnits::UnitType unit = MeasurementParameters()->Units();
    const auto inUnit = [unit](double microTesla) {
        tFlux value = 0;
        ConvertUnits(CUnits::MICRO_TESLA, unit, value, static_cast<tFlux>(microTesla));
        return value;
    };
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    result->Timestamp = QDateTime::fromMSecsSinceEpoch(nanosecondsSinceEpoch / kNanosecondsPerMillisecond);
    result->TimestampNanoseconds = static_cast<quint32>(nanosecondsSinceEpoch % kNanosecondsPerSecond);
    result->SetBx(inUnit(kFieldMicroTesla[0]));
    result->SetBy(inUnit(kFieldMicroTesla[1]));
    result->SetBz(inUnit(kFieldMicroTesla[2]));
    result->SetB(inUnit(std::hypot(kFieldMicroTesla[0], kFieldMicroTesla[1], kFieldMicroTesla[2])));
    result->SetBBprime(inUnit(kFieldMicroTesla[2]));
    result->SetDB(inUnit(kUncertaintyMicroTesla));
    return result;
}
