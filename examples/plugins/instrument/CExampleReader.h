// SPDX-License-Identifier: MIT
#pragma once

#include <CMeasureBlock.h>
#include <CTrigger.h>
#include <CUnits.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// What is asked of the device: a copy, since the parameters themselves belong to the main thread.
struct Acquisition
{
    CTrigger::TriggerMode triggerMode = CTrigger::CONTINUOUS;
    int blockSize = 1;          ///< samples
    double acquisitionRate = 1; ///< samples per second
    double displayRate = 1;     ///< blocks per second
    CUnits::UnitType units = CUnits::TESLA;

    bool operator==(const Acquisition& other) const;
    /// Blocks come one by one, when they are asked for.
    bool IsOnRequest() const;
};

/// Reads the device in a thread of its own, because the main thread must never wait for it. Start(),
/// RequestBlock() and Stop() are called from the main thread.
class CExampleReader
{
public:
    /// Called in the thread of the reader, with a block that belongs to the main thread already.
    using Deliver = std::function<void(const QSharedPointer<CMeasureBlock>& block)>;

    CExampleReader() = default;
    ~CExampleReader();
    CExampleReader(const CExampleReader&) = delete;
    CExampleReader& operator=(const CExampleReader&) = delete;

    void Start(const Acquisition& acquisition, const Deliver& deliver);
    /// One block more, if they come on request.
    void RequestBlock();
    /// Returns when the thread has ended: nothing is delivered afterwards.
    void Stop();

private:
    void run(const Acquisition& acquisition, const Deliver& deliver);
    /// False if the measurement was stopped meanwhile.
    bool waitForRequest();
    bool waitUntil(std::chrono::steady_clock::time_point time);

    std::thread m_thread;
    std::mutex m_mutex; ///< of all below
    std::condition_variable m_changed;
    int m_numRequests = 0;
    bool m_isToEnd = false;
};
