// SPDX-License-Identifier: MIT
#include "CDetachableThread.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>

namespace {

// A library that writes to a connection whose other end is gone must not end the program.
void blockBrokenPipes()
{
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &broken, nullptr);
}

} // namespace

struct CDetachableThread::End
{
    std::mutex mutex;
    std::condition_variable changed;
    bool isReached = false;
};

CDetachableThread::CDetachableThread(std::function<void()> body) : m_end(std::make_shared<End>())
{
    m_thread = std::thread([end = m_end, work = std::move(body)]() mutable {
        blockBrokenPipes();
        work();
        // What it shares is let go before the end is told.
        work = nullptr;
        const std::lock_guard<std::mutex> lock(end->mutex);
        end->isReached = true;
        end->changed.notify_all();
    });
}

CDetachableThread::~CDetachableThread()
{
    Finish(0);
}

bool CDetachableThread::Finish(int timeoutMs)
{
    if (!m_thread.joinable())
        return true;
    bool isReached = false;
    {
        std::unique_lock<std::mutex> lock(m_end->mutex);
        isReached = m_end->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                            [this] { return m_end->isReached; });
    }
    if (isReached)
        m_thread.join();
    else
        m_thread.detach();
    return isReached;
}
