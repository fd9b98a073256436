// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMachineResponder.h"

#include <QMap>

#include <deque>
#include <optional>

/// Answers as a GRBL 1.1 controller does, as far as its documents tell.
class CGrblResponder : public CMachineResponder
{
public:
    CGrblResponder();
    ~CGrblResponder() override;

    // Before Run().
    QMap<int, double> Settings;
    CMotionModel::Place WorkOffset{};
    bool IsLocked = false;        ///< by an alarm, until `$X` or `$H`
    bool IsReportingWork = false; ///< WPos instead of MPos
    bool IsReportingMuch = false; ///< status reports come late, before the answer to the next line
    bool IsHomingSilent = false;  ///< `$H` is answered by nothing, and nothing else is meanwhile
    /// `G4` is acknowledged before the moves are done, which begin late: it says Idle where it was.
    bool IsBarrierInstant = false;
    std::optional<CMotionModel::Place> OffsetAfterStop; ///< the second restart ends one that is not kept
    int ErrorOfMoves = 0;                               ///< answers moves with it
    double AlarmBeyondX = 1e9;                          ///< a limit switch
    QByteArray Noise;                                   ///< before the banner
    // Of lines that begin so, the next ones are lost, or are done without an answer.
    QByteArray LostBeginning;
    int NumLinesToLose = 0;
    QByteArray MuteBeginning;
    int NumAnswersToLose = 0;

    CMotionModel& Motion() { return m_motion; }
    int NumResets() const { return m_numResets; }
    int NumHolds() const { return m_numHolds; }
    /// X where the machine was held.
    double HeldAtX() const { return m_heldAtX; }

protected:
    void OnByte(char byte) override;
    void OnTick() override;

private:
    using Clock = std::chrono::steady_clock;

    void handleNext();
    void handle(const QByteArray& line);
    void move(const QByteArray& line);
    void answerOk(const QByteArray& line);
    void sendSettings();
    void sendStatus();
    void restart();
    QByteArray state() const;
    static double word(const QByteArray& line, char letter, double missing);

    QByteArray m_line;
    std::deque<QByteArray> m_waiting;
    QByteArray m_barrier; ///< a dwell that waits for the moves before it
    Clock::time_point m_homedAt;
    Clock::time_point m_beginsAt;
    bool m_isToBegin = false;
    bool m_isHoming = false;
    bool m_isHalted = false; ///< by a limit switch: deaf to all but a reset
    double m_feed = 0;
    int m_numReports = 0;
    std::atomic<int> m_numResets{0};
    std::atomic<int> m_numHolds{0};
    std::atomic<double> m_heldAtX{0};
};
