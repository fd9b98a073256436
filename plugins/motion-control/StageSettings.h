// SPDX-License-Identifier: MIT
#pragma once

#include "StagePlace.h"

#include <QString>

#include <limits>

/// The settings of a machine that carries the probe, an INI file in the per-user directory. Its keys are told
/// in docs/hardware-machines.md. Lengths in millimetres, feeds in millimetres per minute, angles in degrees.
/// A missing key leaves the default; without a port there is no machine.
struct StageSettings
{
    static constexpr double kNoLimit = std::numeric_limits<double>::infinity();

    QString port;
    int baudRate = 115200;
    double feed = 1000; ///< 0: as fast as the machine can
    int settleMs = 300; ///< from the arrival to the report that the probe is at rest
    bool isHoming = false;
    bool isUnlocking = false; ///< of a machine that is locked by an alarm when a session begins
    StagePlace offset{};      ///< added to a place of the application to give one of the machine
    StagePlace min{-kNoLimit, -kNoLimit,
                   -kNoLimit}; ///< of the machine's coordinates, on top of its own limits
    StagePlace max{kNoLimit, kNoLimit, kNoLimit};
    StagePlace angles{}; ///< roll, pitch and yaw of the probe in its holder

    // The path of a mapper that does not stop at its points.
    StagePlace scanFrom{0, 0, 0};
    StagePlace scanTo{50, 50, 0};
    int scanLines = 6;
    double scanSpacing = 10;
    double scanFeed = 600;

    bool HasPort() const { return !port.isEmpty(); }
    /// The same line to the machine.
    bool IsSamePort(const StageSettings& other) const
    {
        return port == other.port && baudRate == other.baudRate;
    }

    static QString PathOf(const QString& fileName);
    static StageSettings Load(const QString& fileName);
    /// Writes all keys but limits that are not set. False if the file cannot be written.
    bool Save(const QString& fileName) const;
};
