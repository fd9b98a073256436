// SPDX-License-Identifier: MIT
#include "IioDevice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

namespace {

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed() : QString();
}

// Neither a folder nor the border between the name and the number of an instrument.
QString cleaned(QString identity)
{
    for (const char separator : {'/', '\\', ':'})
        identity.replace(QLatin1Char(separator), QLatin1Char('-'));
    return identity.replace(QLatin1String(" - "), QLatin1String("-"));
}

} // namespace

void findPlace(IioDevice& device, const QString& path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    // What is no link into the tree of the hardware tells no place.
    if (real.isEmpty() || real == QDir::cleanPath(path))
        return;
    QDir folder = QFileInfo(real).dir();
    device.place = folder.dirName();
    for (; !folder.isRoot(); folder = QFileInfo(folder.path()).dir()) {
        if (!folder.exists(QStringLiteral("idVendor")))
            continue;
        device.isUsb = true;
        const QString serial = textOf(folder.filePath(QStringLiteral("serial")));
        if (!serial.isEmpty())
            device.place = serial;
        return;
    }
}

void identify(QList<IioDevice>& devices)
{
    QSet<QString> taken;
    for (IioDevice& device : devices) {
        QString place = device.place;
        if (place.isEmpty())
            place = device.label.isEmpty() ? device.id : device.label;
        QString identity = device.name == place ? place : device.name + QLatin1Char(' ') + place;
        if (taken.contains(identity))
            identity += QLatin1Char(' ') + device.id;
        taken.insert(identity);
        if (device.IsNetwork())
            identity += QLatin1Char('@') + device.uri.section(QLatin1Char(':'), 1);
        device.identity = cleaned(identity);
    }
}
