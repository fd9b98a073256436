// SPDX-License-Identifier: MIT
#pragma once

#include "BoardSample.h"

#include <QMutex>
#include <QVector>
#include <QWaitCondition>

/// Hands samples from the thread that reads a board to the one that makes blocks. Safe from any thread.
class CSampleQueue
{
public:
    /// What is left of so many samples when nobody takes them are the newest.
    static constexpr int kMaxSamples = 1 << 16;

    void Push(const QVector<BoardSample>& samples);
    /// At most `count` of the oldest samples. Waits until there are any, or for `timeoutMs`.
    QVector<BoardSample> Take(int count, unsigned long timeoutMs);
    void Clear();

private:
    QMutex m_mutex;
    QWaitCondition m_hasSamples;
    QVector<BoardSample> m_samples;
};
