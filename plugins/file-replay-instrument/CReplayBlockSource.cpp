// SPDX-License-Identifier: MIT
#include "CReplayBlockSource.h"

#include "TimeUnits.h"

#include <QThread>

#include <cmath>

CReplayBlockSource::CReplayBlockSource(std::unique_ptr<CRecordingReader> reader, bool isLooping)
    : m_reader(std::move(reader)), m_isLooping(isLooping)
{
}

void CReplayBlockSource::Rewind()
{
    m_isAtEnd = !m_reader->Rewind();
    m_pending.clear();
    m_hasFirst = false;
    m_isShiftKnown = false;
    m_shiftNs = 0;
}

QSharedPointer<CMeasureBlock> CReplayBlockSource::NextBlock(const AcquisitionParameters& parameters,
                                                            const BlockTimes& times)
{
    RecordedSample sample;
    while (m_pending.size() < parameters.blockSize && nextSample(sample)) {
        if (!m_isShiftKnown) {
            m_shiftNs = Info().hasDate ? 0 : times.originNs - sample.timeNs;
            m_isShiftKnown = true;
        }
        sample.timeNs += m_shiftNs;
        m_pending.append(sample);
    }
    // What was read before an interruption belongs to the next block.
    if (m_pending.isEmpty() || QThread::currentThread()->isInterruptionRequested())
        return nullptr;
    const QVector<RecordedSample> samples = m_pending.mid(0, parameters.blockSize);
    m_pending.remove(0, samples.size());
    auto block = QSharedPointer<CMeasureBlock>::create();
    fillBlock(*block, samples, parameters.units);
    return block;
}

bool CReplayBlockSource::nextSample(RecordedSample& sample)
{
    if (m_isAtEnd)
        return false;
    if (!m_reader->Next(sample)) {
        if (QThread::currentThread()->isInterruptionRequested())
            return false;
        // A pass without any sample would go round for ever.
        if (!m_isLooping || !m_hasFirst || !m_reader->Rewind() || !m_reader->Next(sample)) {
            m_isAtEnd = true;
            return false;
        }
        // The next pass follows the last one in time.
        m_shiftNs += m_lastNs - m_firstNs + std::llround(kNsPerSecond / Info().rate);
        m_hasFirst = false;
    }
    if (!m_hasFirst)
        m_firstNs = sample.timeNs;
    m_hasFirst = true;
    m_lastNs = sample.timeNs;
    return true;
}

void CReplayBlockSource::fillBlock(CMeasureBlock& block, const QVector<RecordedSample>& samples,
                                   CUnits::UnitType units)
{
    const RecordingInfo& info = Info();
    const auto converted = [&info, units](double value) {
        tFlux result = 0;
        ConvertUnits(info.unit, units, result, static_cast<tFlux>(value));
        return result;
    };

    // Without a recorded component along B', the direction of the mean field serves as B'.
    const bool hasBprime = !std::isnan(samples.first().alongBprime);
    FieldVector direction;
    if (!hasBprime) {
        for (const RecordedSample& sample : samples)
            direction = direction + sample.field;
        direction = direction.Normalized();
        block.Bprime.SetX(direction.x);
        block.Bprime.SetY(direction.y);
        block.Bprime.SetZ(direction.z);
    }

    block.Results.reserve(samples.size());
    for (const RecordedSample& sample : samples) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        m_stamper.Stamp(*result, sample.timeNs);
        result->SetBx(converted(sample.field.x));
        result->SetBy(converted(sample.field.y));
        result->SetBz(converted(sample.field.z));
        result->SetB(converted(std::isnan(sample.magnitude) ? sample.field.Norm() : sample.magnitude));
        result->SetBBprime(converted(hasBprime ? sample.alongBprime : dot(sample.field, direction)));
        const bool hasUncertainty = !std::isnan(sample.uncertainty) || hasBprime;
        result->SetDB(converted(hasUncertainty ? sample.uncertainty : info.uncertainty));
        result->SetTemperature(sample.temperature);
        block.Results.append(result);
    }
}
