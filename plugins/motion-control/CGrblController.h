// SPDX-License-Identifier: MIT
#pragma once

#include "CMachineController.h"
#include "GrblConfiguration.h"
#include "GrblLine.h"

/// A machine with GRBL 1.1 or a relative of it. An `ok` says that a line was taken, not that it is done: the
/// probe has arrived when a dwell behind the move was acknowledged and a status report says that the machine
/// is idle, at the place asked for.
class CGrblController : public CMachineController
{
public:
    using CMachineController::CMachineController;

    MachineResult Connect() override;
    MachineResult Prepare() override;
    void Halt() override;

    const GrblConfiguration& Configuration() const { return m_configuration; }

protected:
    MachineResult moveTo(const StagePlace& place, double feed) override;
    bool take(const QByteArray& bytes) override;
    MachineResult trouble() const override;

private:
    /// What the lines since the last question told.
    struct Heard
    {
        bool isOk = false;
        bool isBanner = false;
        bool hasStatus = false;
        std::optional<int> error;
        std::optional<int> alarm;
    };
    enum class Arrival { Arrived, NotThere, Trouble };

    MachineResult awaitBanner();
    MachineResult readConfiguration();
    MachineResult leaveAlarm();
    MachineResult home();
    /// NotThere: the machine is idle elsewhere. Trouble: `result` tells.
    Arrival awaitArrival(const StagePlace& place, MachineResult& result);
    /// Sends a line and waits until it is accepted. It is sent again if it got lost on its way, so doing it
    /// twice must be as good as once.
    MachineResult command(const QByteArray& line);
    MachineResult askStatus();
    MachineResult askWorkOffset();
    /// The end of a stop. A machine that does not answer is not waited for.
    void reset(bool isAnswering);

    void takeStatus(const GrblLine& line);
    void poll();
    bool send(const QByteArray& line);
    void noteSlowAxes() const;
    void noteHold();
    QString errorText() const;

    bool isState(const char* name) const { return m_status.state == name; }
    bool isMoving() const { return isState("Run") || isState("Jog") || isState("Home"); }
    bool isAt(const StagePlace& place) const;

    GrblConfiguration m_configuration;
    QByteArray m_banner;
    GrblLine m_status; ///< the last one
    StagePlace m_workPlace{};
    std::optional<StagePlace> m_workOffset;
    Heard m_heardOf;
    QElapsedTimer m_polled;
    bool m_isBusy = false; ///< something may be moving
    bool m_isHoming = false;
    bool m_mayBeLocked = true; ///< what is under way can be done in spite of an alarm, or ends it
    bool m_isHoldTold = false;
};
