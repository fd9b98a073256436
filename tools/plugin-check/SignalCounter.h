// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <atomic>

/// Counts the emits of a signal, in the thread and at the time of the emit.
class SignalCounter
{
public:
    /// How long nothing may come after a stop.
    static constexpr int kQuietMs = 150;

    template <class Sender, class Class, class... Arguments>
    SignalCounter(const Sender* sender, void (Class::*signal)(Arguments...))
    {
        QObject::connect(
            sender, signal, &m_context, [this] { ++m_count; }, Qt::DirectConnection);
    }
    SignalCounter(const SignalCounter&) = delete;
    SignalCounter& operator=(const SignalCounter&) = delete;

    int Count() const { return m_count; }
    void Reset() { m_count = 0; }

private:
    std::atomic<int> m_count{0};
    QObject m_context;
};
