// SPDX-License-Identifier: MIT
#pragma once

#include "CMachineController.h"
#include "MarlinLine.h"

/// A machine with Marlin, such as a 3-D printer. Lines go one at a time, with numbers and checksums, so that
/// one that was damaged on its way is asked for again. Nothing here ever touches a heater or a fan. A stop
/// works at once as long as the machine is not asked to report the end of a move: that is done when the move
/// ought to be over.
class CMarlinController : public CMachineController
{
public:
    using CMachineController::CMachineController;

    MachineResult Connect() override;
    MachineResult Prepare() override;
    void Halt() override;

protected:
    MachineResult moveTo(const StagePlace& place, double feed) override;
    bool take(const QByteArray& bytes) override;
    MachineResult trouble() const override;

private:
    /// What the lines since the last question told.
    struct Heard
    {
        bool isOk = false;
        bool isStart = false;
        bool isNotHomed = false;
        bool hasPlace = false;
        std::optional<long> resend;
        QByteArray error;
    };

    MachineResult greet();
    MachineResult home();
    MachineResult askPlace();
    /// Until the move ought to be over.
    MachineResult passTime(const StagePlace& from, const StagePlace& to, double seconds);
    /// Sends a line and waits for its `ok`. No sign of life for `limitMs` makes it be sent again, and then
    /// count as silence.
    MachineResult command(const QByteArray& line, qint64 limitMs);
    /// After a request to send from some line on: false if the machine has this one.
    bool isToBeSentAgain();
    double secondsOf(const StagePlace& from, const StagePlace& to, double feed) const;
    std::optional<QString> whyOutside(const StagePlace& place) const;

    /// Lets the answers to what was sent before come, until nothing has come for a while. False if the way to
    /// the machine is lost.
    bool letFinish();

    std::optional<MarlinLine> m_limits;
    StagePlace m_maxFeed{}; ///< millimetres per second; 0 where not told
    StagePlace m_workPlace{};
    long m_lineNumber = 0;
    Heard m_heardOf;
    bool m_hasEmergencyParser = false;
    bool m_isHomed = false;
    bool m_isHoming = false;
    bool m_isBusy = false; ///< something may be moving
    bool m_isHalting = false;
};
