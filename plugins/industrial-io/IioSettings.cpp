// SPDX-License-Identifier: MIT
#include "IioSettings.h"

#include "CIniReader.h"
#include "SteadyTime.h"

#include <QSettings>

#include <algorithm>

namespace {

constexpr double kMinTimeoutS = 0.2;
constexpr double kMaxTimeoutS = 60;
const QLatin1String kNetwork("ip:");

// Commas make a list of what a settings file holds.
QStringList readHosts()
{
    const QSettings file(IioSettings::FilePath(), QSettings::IniFormat);
    const QStringList words = file.value(QStringLiteral("Contexts/Hosts"))
                                  .toStringList()
                                  .join(QLatin1Char(' '))
                                  .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QStringList hosts;
    for (const QString& word : words) {
        const QString host = word.startsWith(kNetwork) ? word.mid(kNetwork.size()) : word;
        if (!host.isEmpty() && !hosts.contains(host))
            hosts.append(host);
    }
    return hosts;
}

} // namespace

QString IioSettings::FilePath()
{
    return CIniReader::PathOf(QStringLiteral("KestrixIndustrialIo.ini"));
}

IioSettings IioSettings::Load()
{
    IioSettings settings;
    const CIniReader reader(FilePath());

    reader.Read("Contexts/Local", settings.usesLocal);
    settings.hosts = readHosts();
    reader.Read("Contexts/TimeoutS", settings.timeoutS);
    settings.timeoutS = std::clamp(settings.timeoutS, kMinTimeoutS, kMaxTimeoutS);

    reader.Read("Capture/Buffered", settings.mayBuffer);
    settings.trigger = reader.Text("Capture/Trigger");

    reader.Read("Sensor/Range", settings.range);
    settings.range = std::max(0.0, settings.range);
    reader.Read("Sensor/Uncertainty", settings.uncertainty);
    settings.uncertainty = std::max(0.0, settings.uncertainty);
    settings.manufacturer = reader.Text("Sensor/Manufacturer");
    settings.calibrationDate = QDate::fromString(reader.Text("Sensor/CalibrationDate"), Qt::ISODate);
    return settings;
}

int IioSettings::TimeoutMs() const
{
    return static_cast<int>(timeoutS * kMsPerSecond);
}

QStringList IioSettings::Uris() const
{
    QStringList uris;
    if (usesLocal)
        uris.append(QStringLiteral("local:"));
    for (const QString& host : hosts)
        uris.append(kNetwork + host);
    return uris;
}
