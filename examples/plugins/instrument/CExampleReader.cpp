// SPDX-License-Identifier: MIT
#include "CExampleReader.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cmath>

using std::chrono::nanoseconds;
using std::chrono::steady_clock;

namespace {

constexpr double kFieldMicroTesla[] = {20.0, 0.0, 40.0};
constexpr double kUncertaintyMicroTesla = 0.01;
constexpr qint64 kNanosecondsPerSecond = 1000000000;
constexpr qint64 kNanosecondsPerMillisecond = 1000000;

/// This is where a driver reads its device. Values are in the unit that the parameters ask for.
QSharedPointer<CFieldIntensityResult> readSample(qint64 nanosecondsSinceEpoch, CUnits::UnitType units)
{
    const auto inUnit = [units](double microTesla) {
        tFlux value = 0;
        ConvertUnits(CUnits::MICRO_TESLA, units, value, static_cast<tFlux>(microTesla));
        return value;
    };
    auto sample = QSharedPointer<CFieldIntensityResult>::create();
    sample->Timestamp = QDateTime::fromMSecsSinceEpoch(nanosecondsSinceEpoch / kNanosecondsPerMillisecond);
    sample->TimestampNanoseconds = static_cast<quint32>(nanosecondsSinceEpoch % kNanosecondsPerSecond);
    sample->SetBx(inUnit(kFieldMicroTesla[0]));
    sample->SetBy(inUnit(kFieldMicroTesla[1]));
    sample->SetBz(inUnit(kFieldMicroTesla[2]));
    sample->SetB(inUnit(std::hypot(kFieldMicroTesla[0], kFieldMicroTesla[1], kFieldMicroTesla[2])));
    sample->SetBBprime(inUnit(kFieldMicroTesla[2]));
    sample->SetDB(inUnit(kUncertaintyMicroTesla));
    return sample;
}

} // namespace

bool Acquisition::operator==(const Acquisition& other) const
{
    return triggerMode == other.triggerMode && blockSize == other.blockSize &&
           acquisitionRate == other.acquisitionRate && displayRate == other.displayRate &&
           units == other.units;
}

bool Acquisition::IsOnRequest() const
{
    return triggerMode == CTrigger::IMMEDIATE || triggerMode == CTrigger::EXTERNAL;
}

CExampleReader::~CExampleReader()
{
    Stop();
}

void CExampleReader::Start(const Acquisition& acquisition, const Deliver& deliver)
{
    Stop();
    m_isToEnd = false;
    m_numRequests = 0;
    m_thread = std::thread([this, acquisition, deliver] { run(acquisition, deliver); });
}

void CExampleReader::RequestBlock()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_numRequests;
    }
    m_changed.notify_all();
}

void CExampleReader::Stop()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isToEnd = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void CExampleReader::run(const Acquisition& acquisition, const Deliver& deliver)
{
    QThread* const mainThread = QCoreApplication::instance()->thread();
    const qint64 periodNs = std::llround(kNanosecondsPerSecond / acquisition.acquisitionRate);
    const qint64 blockNs = acquisition.blockSize * periodNs;
    // In TIMER mode there may be a pause between the blocks.
    const qint64 intervalNs =
        acquisition.triggerMode == CTrigger::TIMER
            ? std::max<qint64>(blockNs, std::llround(kNanosecondsPerSecond / acquisition.displayRate))
            : blockNs;
    // The time of day is asked for once: it may be set meanwhile, and samples must not go backwards.
    const qint64 startNs = QDateTime::currentMSecsSinceEpoch() * kNanosecondsPerMillisecond;
    const steady_clock::time_point start = steady_clock::now();

    qint64 beginNs = 0;
    while (true) {
        if (acquisition.IsOnRequest()) {
            if (!waitForRequest())
                return;
            const qint64 nowNs = nanoseconds(steady_clock::now() - start).count();
            beginNs = std::max(beginNs, nowNs);
        }
        if (!waitUntil(start + nanoseconds(beginNs + blockNs)))
            return;

        auto block = QSharedPointer<CMeasureBlock>::create();
        block->Bprime.SetZ(1);
        block->Results.reserve(acquisition.blockSize);
        for (int i = 0; i < acquisition.blockSize; ++i) {
            block->Results.append(readSample(startNs + beginNs + i * periodNs, acquisition.units));
            // Objects belong to the thread that made them; only that thread can give them away.
            block->Results.constLast()->moveToThread(mainThread);
        }
        block->moveToThread(mainThread);
        deliver(block);
        beginNs += intervalNs;
    }
}

bool CExampleReader::waitForRequest()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isToEnd || m_numRequests > 0; });
    --m_numRequests;
    return !m_isToEnd;
}

bool CExampleReader::waitUntil(steady_clock::time_point time)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_changed.wait_until(lock, time, [this] { return m_isToEnd; });
}
