// SPDX-License-Identifier: MIT
#include "CSampleQueue.h"

#include <algorithm>

void CSampleQueue::Push(const QVector<BoardSample>& samples)
{
    if (samples.isEmpty())
        return;
    const QMutexLocker lock(&m_mutex);
    m_samples += samples;
    if (m_samples.size() > kMaxSamples)
        m_samples.remove(0, m_samples.size() - kMaxSamples / 2);
    m_hasSamples.wakeOne();
}

QVector<BoardSample> CSampleQueue::Take(int count, unsigned long timeoutMs)
{
    const QMutexLocker lock(&m_mutex);
    if (m_samples.isEmpty())
        m_hasSamples.wait(&m_mutex, timeoutMs);
    const QVector<BoardSample> taken = m_samples.mid(0, count);
    m_samples.remove(0, taken.size());
    return taken;
}

void CSampleQueue::Clear()
{
    const QMutexLocker lock(&m_mutex);
    m_samples.clear();
}
