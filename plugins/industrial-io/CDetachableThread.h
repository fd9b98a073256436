// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <thread>

/// A thread for calls that may never return. Whoever wants it to end waits for a bounded time and leaves it
/// to itself after that: so what it works on must be shared with it, and it must touch nothing else.
/// A write to a broken connection gives an error in it, and no signal.
class CDetachableThread
{
public:
    explicit CDetachableThread(std::function<void()> body);
    ~CDetachableThread(); ///< leaves it to itself if it has not ended
    CDetachableThread(const CDetachableThread&) = delete;
    CDetachableThread& operator=(const CDetachableThread&) = delete;

    /// Whether it ended within `timeoutMs`; otherwise it is left to itself.
    bool Finish(int timeoutMs);

private:
    struct End;

    std::shared_ptr<End> m_end;
    std::thread m_thread;
};
