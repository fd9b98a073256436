// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <atomic>
#include <functional>
#include <thread>

/// What a board sends at a time, in seconds from its start.
struct PtyWrite
{
    double atS = 0;
    QByteArray bytes;
};

/// A board at the other end of a pseudo-terminal, which sends on a thread of its own whether anybody listens
/// or not. Its port is a link of a fixed name, as a device's is, so that it can go and come back.
class PtyBoard
{
public:
    explicit PtyBoard(const QString& linkPath);
    ~PtyBoard();
    PtyBoard(const PtyBoard&) = delete;
    PtyBoard& operator=(const PtyBoard&) = delete;

    const QString& Path() const { return m_path; }
    /// The port comes into being.
    bool Plug();
    /// It goes.
    void Unplug();

    /// `next` gives what is sent next, again and again; nothing sent at a negative time ends it.
    void Start(std::function<PtyWrite()> next);
    void Stop();
    /// Steady clock at the start, nanoseconds.
    qint64 StartNs() const { return m_startNs; }
    /// What was sent latest after its time, because the computer had other things to do. Seconds.
    double LargestLatenessS() const { return m_largestLatenessS; }

private:
    void run(const std::function<PtyWrite()>& next);

    QString m_path;
    std::atomic<int> m_master{-1};
    int m_slave = -1;
    std::thread m_thread;
    std::atomic<bool> m_isStopping{false};
    std::atomic<qint64> m_startNs{0};
    std::atomic<double> m_largestLatenessS{0};
};
