// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMachineResponder.h"

#include <chrono>
#include <deque>

/// Answers as a printer with Marlin does, as far as its documents tell.
class CMarlinResponder : public CMachineResponder
{
public:
    ~CMarlinResponder() override;

    // Before Run().
    bool IsHomingNeeded = false;
    bool IsHomingSilent = false;
    bool IsTellingBusy = false;
    double TopSpeedOfZ = 50; ///< millimetres per second
    CMotionModel::Place Min{-500, -500, -500};
    CMotionModel::Place Max{500, 500, 500};
    bool AreLimitsTold = true;
    QByteArray ErrorOfMoves;
    QByteArray DamagedBeginning; ///< commands that begin so come damaged
    int NumLinesToDamage = 0;
    QByteArray LostBeginning;
    int NumLinesToLose = 0;
    QByteArray MuteBeginning;
    int NumAnswersToLose = 0;

    CMotionModel& Motion() { return m_motion; }
    int NumBusy() const { return m_numBusy; }

protected:
    void OnByte(char byte) override;
    void OnTick() override;

private:
    using Clock = std::chrono::steady_clock;

    /// The command in a line with number and checksum; false if it was refused.
    bool unwrap(QByteArray& line);
    void refuse(const QByteArray& reason);
    void handle(const QByteArray& command);
    void move(const QByteArray& command);
    void sendPlace();
    void answerOk(const QByteArray& command);

    QByteArray m_line;
    std::deque<QByteArray> m_waiting;
    QByteArray m_barrier; ///< waits for the end of the moves
    Clock::time_point m_busyAt;
    Clock::time_point m_homedAt;
    long m_lastNumber = 0;
    double m_feed = 1500;
    bool m_isHomed = false;
    std::atomic<int> m_numBusy{0};
};
