// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <optional>

/// What the system tells about a serial port.
struct BoardPort
{
    QString location; ///< path, or name on systems without paths
    QString serialNumber;
    QString manufacturer;
    QString description;
    quint16 vendor = 0; ///< USB identifiers; 0 for a port of another kind
    quint16 product = 0;

    bool IsUsb() const { return vendor != 0; }
};

/// The board that is looked for.
struct WantedBoard
{
    QString port;     ///< name or path as the user gave it
    QString identity; ///< of the board that was there; empty: whichever is
};

/// All ports that the system knows.
QList<BoardPort> availableBoardPorts();

/// Tells boards apart: the USB serial number; without one, the kind of the board and the port, or the port
/// alone. Fit for file names.
QString identityOf(const BoardPort& port, const QString& portAsGiven);

/// The board that is looked for, wherever it is plugged in now; nothing if it is away, even if another board
/// has taken its port. A path that exists counts as a port, known to the system or not.
std::optional<BoardPort> findBoard(const WantedBoard& wanted, const QList<BoardPort>& available);
