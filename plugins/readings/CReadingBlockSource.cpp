// SPDX-License-Identifier: MIT
#include "CReadingBlockSource.h"

#include "CUnits.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace {

// How long a trigger, a stop or another unit may wait for its turn.
constexpr unsigned long kTurnMs = 10;
// The temperature of a sample is a count: tenths of a degree.
constexpr double kCountsPerDegree = 10;

qint64 epochOfSteadyClock()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count() -
           duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

// The mean of `count` samples from `first` on, at the mean of their times.
BoardSample meanOf(const BoardSample* first, int count)
{
    BoardSample mean;
    mean.temperature = first->temperature;
    qint64 sinceFirstNs = 0;
    for (const BoardSample* sample = first; sample != first + count; ++sample) {
        mean.field = mean.field + sample->field;
        mean.step = std::max(mean.step, sample->step);
        sinceFirstNs += sample->timeNs - first->timeNs;
    }
    mean.field = mean.field * (1.0 / count);
    mean.timeNs = first->timeNs + sinceFirstNs / count;
    return mean;
}

quint16 temperatureCount(double temperature)
{
    if (std::isnan(temperature))
        return 0;
    return static_cast<quint16>(std::clamp(std::round(temperature * kCountsPerDegree), 0.0,
                                           static_cast<double>(std::numeric_limits<quint16>::max())));
}

} // namespace

CReadingBlockSource::CReadingBlockSource(std::shared_ptr<CSampleQueue> queue, CUnits::UnitType unit,
                                         double uncertainty)
    : m_queue(std::move(queue)), m_unit(unit), m_uncertainty(uncertainty)
{
}

void CReadingBlockSource::BeginRun()
{
    m_epochNs = epochOfSteadyClock();
    m_collected.clear();
    m_queue->Clear();
}

QSharedPointer<CMeasureBlock> CReadingBlockSource::NextBlock(const AcquisitionParameters& parameters,
                                                             const BlockTimes& /*times*/)
{
    if (parameters.triggerMode != CTrigger::CONTINUOUS) {
        m_collected.clear();
        m_queue->Clear();
    }
    if (!collect(parameters))
        return nullptr;
    auto block = QSharedPointer<CMeasureBlock>::create();
    fillBlock(*block, parameters);
    m_collected.remove(0, parameters.blockSize * parameters.averaging);
    return block;
}

// False if it is interrupted. What has come by then belongs to the next block of a continuous run.
bool CReadingBlockSource::collect(const AcquisitionParameters& parameters)
{
    const int wanted = parameters.blockSize * parameters.averaging;
    while (m_collected.size() < wanted) {
        m_collected += m_queue->Take(wanted - m_collected.size(), kTurnMs);
        dropFormerSeries();
        QCoreApplication::processEvents();
        if (QThread::currentThread()->isInterruptionRequested())
            return false;
    }
    return true;
}

void CReadingBlockSource::dropFormerSeries()
{
    if (m_collected.isEmpty() || m_collected.first().series == m_collected.last().series)
        return;
    const auto isFormer = [series = m_collected.last().series](const BoardSample& sample) {
        return sample.series != series;
    };
    m_collected.erase(std::remove_if(m_collected.begin(), m_collected.end(), isFormer), m_collected.end());
}

void CReadingBlockSource::fillBlock(CMeasureBlock& block, const AcquisitionParameters& parameters)
{
    const auto converted = [this, &parameters](double value) {
        tFlux result = 0;
        ConvertUnits(m_unit, parameters.units, result, static_cast<tFlux>(value));
        return result;
    };

    QVector<BoardSample> samples;
    samples.reserve(parameters.blockSize);
    FieldVector sum;
    const BoardSample* first = m_collected.constData();
    for (int i = 0; i < parameters.blockSize; ++i, first += parameters.averaging) {
        samples.append(meanOf(first, parameters.averaging));
        sum = sum + samples.last().field;
    }
    // The direction of the mean field serves as B'.
    const FieldVector direction = sum.Normalized();
    block.Bprime.SetX(direction.x);
    block.Bprime.SetY(direction.y);
    block.Bprime.SetZ(direction.z);

    block.Results.reserve(samples.size());
    for (const BoardSample& sample : qAsConst(samples)) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        m_stamper.Stamp(*result, m_epochNs + sample.timeNs);
        result->SetBx(converted(sample.field.x));
        result->SetBy(converted(sample.field.y));
        result->SetBz(converted(sample.field.z));
        result->SetB(converted(sample.field.Norm()));
        result->SetBBprime(converted(dot(sample.field, direction)));
        result->SetDB(converted(m_uncertainty > 0 ? m_uncertainty : sample.step / 2));
        result->SetTemperature(temperatureCount(sample.temperature));
        block.Results.append(result);
    }
}
