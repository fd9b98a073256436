// SPDX-License-Identifier: MIT
#include "BoardPort.h"

#include <QFileInfo>
#include <QSerialPortInfo>

#include <algorithm>

namespace {

bool isPath(const QString& port)
{
    return port.contains(QLatin1Char('/'));
}

// Two names of one port, one of which may be a link to the other.
bool isAt(const BoardPort& port, const QString& asGiven)
{
    if (port.location == asGiven || QFileInfo(port.location).fileName() == asGiven)
        return true;
    const QString real = QFileInfo(asGiven).canonicalFilePath();
    return isPath(asGiven) && !real.isEmpty() && real == QFileInfo(port.location).canonicalFilePath();
}

} // namespace

QList<BoardPort> availableBoardPorts()
{
    QList<BoardPort> ports;
    const QList<QSerialPortInfo> available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : available) {
        BoardPort port;
        port.location = info.systemLocation();
        port.serialNumber = info.serialNumber().trimmed();
        port.manufacturer = info.manufacturer().trimmed();
        port.description = info.description().trimmed();
        port.vendor = info.hasVendorIdentifier() ? info.vendorIdentifier() : 0;
        port.product = info.hasProductIdentifier() ? info.productIdentifier() : 0;
        ports.append(port);
    }
    return ports;
}

QString identityOf(const BoardPort& port, const QString& portAsGiven)
{
    QString identity = port.serialNumber;
    if (identity.isEmpty()) {
        QString place = portAsGiven;
        while (place.startsWith(QLatin1Char('/')))
            place.remove(0, 1);
        identity = port.IsUsb() ? QStringLiteral("%1-%2 %3")
                                      .arg(port.vendor, 4, 16, QLatin1Char('0'))
                                      .arg(port.product, 4, 16, QLatin1Char('0'))
                                      .arg(place)
                                : place;
    }
    // Neither a folder nor the border between the name and the number of an instrument.
    identity.replace(QLatin1Char('/'), QLatin1Char('-')).replace(QLatin1Char('\\'), QLatin1Char('-'));
    return identity.replace(QLatin1String(" - "), QLatin1String("-"));
}

std::optional<BoardPort> findBoard(const WantedBoard& wanted, const QList<BoardPort>& available)
{
    if (wanted.port.isEmpty())
        return std::nullopt;
    const auto fits = [&wanted](const BoardPort& port) {
        return wanted.identity.isEmpty() || identityOf(port, wanted.port) == wanted.identity;
    };
    const auto atPort = std::find_if(available.cbegin(), available.cend(),
                                     [&wanted](const BoardPort& port) { return isAt(port, wanted.port); });
    if (atPort != available.cend() && fits(*atPort))
        return *atPort;
    // A pseudo-terminal is in no list.
    if (atPort == available.cend() && isPath(wanted.port) && QFileInfo::exists(wanted.port)) {
        BoardPort port;
        port.location = wanted.port;
        if (fits(port))
            return port;
    }
    // A serial number tells a board wherever it is.
    const auto elsewhere =
        std::find_if(available.cbegin(), available.cend(), [&wanted, &fits](const BoardPort& port) {
            return !wanted.identity.isEmpty() && !port.serialNumber.isEmpty() && fits(port);
        });
    if (elsewhere != available.cend())
        return *elsewhere;
    return std::nullopt;
}
