// SPDX-License-Identifier: MIT
#pragma once

#include "StagePlace.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What a GRBL controller told of itself by `$$` and `$I`, as far as it matters here. Millimetres.
struct GrblConfiguration
{
    bool hasSoftLimits = false;   ///< $20
    bool hasHoming = false;       ///< $22
    bool isInInches = false;      ///< $13: reports, not commands
    bool hasForcedOrigin = false; ///< built to call the place where it homed zero
    bool isHomed = false;         ///< since its last restart, by us
    int homingMask = 0;           ///< $23: axes that home towards their negative end
    int idleDelayMs = 255;        ///< $1; 255: the motors stay on
    StagePlace maxRate{};         ///< $110 to $112, millimetres per minute; 0 where not told
    StagePlace travel{};          ///< $130 to $132

    void TakeSetting(int number, double value);
    void TakeOptions(const QByteArray& letters);

    /// Millimetres of a number in a status report.
    double ReportFactor() const;
    /// Whether the travel is a limit: if the controller keeps to it itself, or if its zero is known.
    bool HasTravelLimits() const;
    /// Why a machine place cannot be reached; nothing if it can.
    std::optional<QString> WhyOutside(const StagePlace& machinePlace) const;
};
