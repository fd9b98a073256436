// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

/// The settings file of the industrial-I/O magnetometers, "KestrixIndustrialIo.ini" in the per-user
/// directory. Its keys are told in docs/hardware.md; a missing key, or a missing file, leaves the default.
struct IioSettings
{
    // Contexts
    bool usesLocal = true;
    QStringList hosts; ///< of network contexts: name or address, with ":port" if it is not the usual one
    double timeoutS = 3;

    // Capture
    bool mayBuffer = true;
    QString trigger; ///< of the kernel, for devices that have none; empty: the device's own

    // Sensor
    double range = 0;       ///< gauss; 0 is unknown
    double uncertainty = 0; ///< gauss; 0: half of a count
    QString manufacturer;
    QDate calibrationDate;

    int TimeoutMs() const;
    /// Addresses of all contexts as the library takes them.
    QStringList Uris() const;

    static QString FilePath();
    static IioSettings Load();
};
