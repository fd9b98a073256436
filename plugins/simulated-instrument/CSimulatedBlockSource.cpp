// SPDX-License-Identifier: MIT
#include "CSimulatedBlockSource.h"

#include "PrincipalDirection.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The converter has 18 bits with sign.
constexpr double kAdcFullScale = 131072;
constexpr int kZeroFieldReadings = 10000;
constexpr quint16 kTemperatureCount = 2980;

double clampTo(double value, double limit)
{
    return std::clamp(value, -limit, limit);
}

tFlux fromTesla(double value, double range, CUnits::UnitType units)
{
    if (units == CUnits::ADC)
        return static_cast<tFlux>(std::round(value / range * kAdcFullScale));
    tFlux converted = 0;
    ConvertUnits(CUnits::TESLA, units, converted, static_cast<tFlux>(value));
    return converted;
}

FieldVector noise(std::mt19937_64& random, std::normal_distribution<double>& normal, double deviation)
{
    const double x = normal(random);
    const double y = normal(random);
    const double z = normal(random);
    return FieldVector{x, y, z} * deviation;
}

bool isEvery(int count, int every)
{
    return every > 0 && count % every == 0;
}

} // namespace

CSimulatedBlockSource::CSimulatedBlockSource(const SimulationSettings& settings, const QList<tFlux>& ranges,
                                             qint64 epochNs)
    : m_settings(settings), m_model(settings),
      m_magnet(settings.magnetCenter, settings.magnetMoment, settings.magnetRadius), m_ranges(ranges),
      m_epochNs(epochNs), m_random(settings.seed != 0 ? settings.seed : std::random_device()()),
      m_zeroFieldRandom(m_random())
{
}

void CSimulatedBlockSource::BeginRun()
{
    m_blocksOfRun = 0;
}

QSharedPointer<CMeasureBlock> CSimulatedBlockSource::NextBlock(const AcquisitionParameters& parameters,
                                                               const BlockTimes& times)
{
    ++m_blocksOfRun;
    auto block = QSharedPointer<CMeasureBlock>::create();
    if (isEvery(m_blocksOfRun, m_settings.emptyBlockEvery))
        return block;

    FieldVector correction;
    {
        const std::lock_guard<std::mutex> lock(m_correctionMutex);
        correction = m_correction;
    }
    QVector<FieldVector> fields = fieldsAt(times, parameters.blockSize);
    const double range = chooseRange(parameters, fields);
    const double deviation = m_settings.noise * range / std::sqrt(parameters.averaging);
    const bool isNan = isEvery(m_blocksOfRun, m_settings.nanBlockEvery);
    for (FieldVector& field : fields) {
        field = field + noise(m_random, m_normal, deviation);
        // The converter saturates; what is subtracted digitally afterwards shifts the limit with it.
        field = FieldVector{clampTo(field.x, range), clampTo(field.y, range), clampTo(field.z, range)};
        field = field - correction;
        if (isNan)
            field.x = field.y = field.z = std::numeric_limits<double>::quiet_NaN();
    }

    FieldVector direction = m_settings.bprime.Normalized();
    if (m_settings.estimateBprime && !isNan)
        direction = principalDirection(fields, direction);
    block->Bprime.SetX(direction.x);
    block->Bprime.SetY(direction.y);
    block->Bprime.SetZ(direction.z);

    block->Results.reserve(fields.size());
    for (int i = 0; i < fields.size(); ++i) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        m_stamper.Stamp(*result, times.SampleNs(i));
        fillSample(*result, fields[i], direction, range, parameters.units);
        block->Results.append(result);
    }
    return block;
}

QVector<FieldVector> CSimulatedBlockSource::fieldsAt(const BlockTimes& times, int count) const
{
    const bool isProbeMounted = SimulatedBench::IsProbeMounted();
    QVector<FieldVector> fields(count);
    for (int i = 0; i < fields.size(); ++i) {
        const qint64 sampleNs = times.SampleNs(i);
        std::optional<ProbePose> pose;
        if (isProbeMounted)
            pose = SimulatedBench::PoseAt(sampleNs);
        const FieldVector field = pose ? m_magnet.FieldOfProbe(*pose)
                                       : m_model.FieldAt(static_cast<double>(sampleNs - m_epochNs) * 1e-9);
        fields[i] = field + m_settings.offset;
    }
    return fields;
}

double CSimulatedBlockSource::chooseRange(const AcquisitionParameters& parameters,
                                          const QVector<FieldVector>& fields) const
{
    if (!parameters.autoRange)
        return static_cast<double>(parameters.range);
    double largest = 0;
    for (const FieldVector& field : fields)
        largest = std::max(largest, field.LargestComponent());
    for (const tFlux range : m_ranges) {
        if (largest <= static_cast<double>(range))
            return static_cast<double>(range);
    }
    return static_cast<double>(m_ranges.last());
}

void CSimulatedBlockSource::fillSample(CFieldIntensityResult& result, const FieldVector& reading,
                                       const FieldVector& direction, double range,
                                       CUnits::UnitType units) const
{
    const double magnitude = reading.Norm();
    const double uncertainty = m_settings.accuracyOfReading * magnitude + m_settings.accuracyOfRange * range;
    result.SetBx(fromTesla(reading.x, range, units));
    result.SetBy(fromTesla(reading.y, range, units));
    result.SetBz(fromTesla(reading.z, range, units));
    result.SetB(fromTesla(magnitude, range, units));
    result.SetBBprime(fromTesla(dot(reading, direction), range, units));
    result.SetDB(fromTesla(uncertainty, range, units));
    result.SetTemperature(kTemperatureCount);
}

FieldVector CSimulatedBlockSource::MeasureZeroField()
{
    // Taken on the smallest range, whose noise averages out.
    const double deviation = m_settings.noise * static_cast<double>(m_ranges.first());
    return m_settings.offset + m_settings.chamberField +
           noise(m_zeroFieldRandom, m_zeroFieldNormal,
                 deviation / std::sqrt(static_cast<double>(kZeroFieldReadings)));
}

void CSimulatedBlockSource::SetZeroCorrection(const FieldVector& correction)
{
    const std::lock_guard<std::mutex> lock(m_correctionMutex);
    m_correction = correction;
}
