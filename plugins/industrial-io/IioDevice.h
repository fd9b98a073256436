// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

/// A magnetometer of three axes that a context has.
struct IioDevice
{
    QString uri; ///< of the context
    QString id;  ///< within the context: "iio:device0"; may change with the next start of the system
    QString name;
    QString label;  ///< what the system's description of the hardware calls it; mostly empty
    QString place;  ///< where the hardware is, or its serial number; empty if that is not known
    QString kernel; ///< version
    bool isUsb = false;
    QString identity; ///< tells magnetometers apart; fit for file names

    bool IsNetwork() const { return uri != QLatin1String("local:"); }
    /// As messages name it.
    QString Location() const { return uri + QLatin1Char(' ') + id; }
};

/// Where the device with this path below /sys is: the serial number of the USB device that it is part of, or
/// the name of its bus address ("1-001e").
void findPlace(IioDevice& device, const QString& path);

/// Gives each of the devices of one context its identity: its name with its place, or else its label or its
/// number. A device at another computer has that one's name in it.
void identify(QList<IioDevice>& devices);
