// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMotionModel.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

/// A machine behind a pseudo-terminal, in a thread of its own. The derived class speaks its language.
class CMachineResponder
{
public:
    CMachineResponder();
    virtual ~CMachineResponder();
    CMachineResponder(const CMachineResponder&) = delete;
    CMachineResponder& operator=(const CMachineResponder&) = delete;

    /// Begins to answer.
    void Run();
    QString Port() const { return m_port; }
    /// What came, a line each; single bytes that act at once are left out.
    QList<QByteArray> Lines() const;
    int CountOf(const QByteArray& beginning) const;
    void ForgetLines();
    CMotionModel::Place Place() const;
    bool IsMoving() const;

    std::atomic<bool> IsMute{false};     ///< answers nothing any more, and its motion goes on
    std::atomic<bool> IsBabbling{false}; ///< nor does what it says without a pause make any sense

protected:
    /// Both are called with the lock held.
    virtual void OnByte(char byte) = 0;
    virtual void OnTick() = 0;
    void end();
    void send(const QByteArray& line);
    void note(const QByteArray& line) { m_lines.append(line); }

    CMotionModel m_motion;

private:
    void loop();
    void babble(double elapsedS);

    int m_master = -1;
    int m_slave = -1;
    QString m_port;
    double m_sinceBabbleS = 0;
    std::thread m_thread;
    std::atomic<bool> m_isToEnd{false};
    mutable std::mutex m_mutex; ///< of all below, and of the derived class's
    QList<QByteArray> m_lines;
};
