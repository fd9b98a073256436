// SPDX-License-Identifier: MIT
#include "StageSettings.h"

#include "CIniReader.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace {

constexpr char kStageAxisKeys[] = "XYZ";
constexpr int kMaxScanLines = 10000;
constexpr double kMinScanSpacing = 0.01;
constexpr double kMinFeed = 1;

void readStagePlace(const CIniReader& reader, const char* key, StagePlace& place)
{
    for (size_t axis = 0; axis < place.size(); ++axis)
        reader.Read((QByteArray(key) + kStageAxisKeys[axis]).constData(), place[axis]);
}

void writeStagePlace(QSettings& file, const char* key, const StagePlace& place)
{
    for (size_t axis = 0; axis < place.size(); ++axis) {
        if (std::isfinite(place[axis]))
            file.setValue(QLatin1String(QByteArray(key) + kStageAxisKeys[axis]),
                          QString::number(place[axis], 'g', 12));
    }
}

} // namespace

QString StageSettings::PathOf(const QString& fileName)
{
    return CIniReader::PathOf(fileName);
}

StageSettings StageSettings::Load(const QString& fileName)
{
    StageSettings settings;
    const CIniReader reader(PathOf(fileName));
    settings.port = reader.Text("Machine/Port");
    reader.ReadInteger("Machine/BaudRate", settings.baudRate);
    reader.Read("Machine/Feed", settings.feed);
    reader.ReadInteger("Machine/SettleMs", settings.settleMs);
    reader.Read("Machine/Home", settings.isHoming);
    reader.Read("Machine/Unlock", settings.isUnlocking);
    readStagePlace(reader, "Machine/Offset", settings.offset);
    readStagePlace(reader, "Machine/Min", settings.min);
    readStagePlace(reader, "Machine/Max", settings.max);
    reader.Read("Machine/Roll", settings.angles[0]);
    reader.Read("Machine/Pitch", settings.angles[1]);
    reader.Read("Machine/Yaw", settings.angles[2]);

    readStagePlace(reader, "Scan/From", settings.scanFrom);
    readStagePlace(reader, "Scan/To", settings.scanTo);
    reader.ReadInteger("Scan/Lines", settings.scanLines);
    reader.Read("Scan/Spacing", settings.scanSpacing);
    reader.Read("Scan/Feed", settings.scanFeed);

    settings.baudRate = std::max(settings.baudRate, 1);
    settings.feed = settings.feed > 0 ? std::max(settings.feed, kMinFeed) : 0;
    settings.scanLines = std::clamp(settings.scanLines, 1, kMaxScanLines);
    settings.scanSpacing = std::max(settings.scanSpacing, kMinScanSpacing);
    settings.scanFeed = std::max(settings.scanFeed, kMinFeed);
    return settings;
}

bool StageSettings::Save(const QString& fileName) const
{
    const QString path = PathOf(fileName);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSettings file(path, QSettings::IniFormat);
    const auto write = [&file](const char* key, const QString& text) {
        file.setValue(QLatin1String(key), text);
    };
    const auto number = [](double value) { return QString::number(value, 'g', 12); };
    const auto truth = [](bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); };

    write("Machine/Port", port);
    write("Machine/BaudRate", QString::number(baudRate));
    write("Machine/Feed", number(feed));
    write("Machine/SettleMs", QString::number(settleMs));
    write("Machine/Home", truth(isHoming));
    write("Machine/Unlock", truth(isUnlocking));
    writeStagePlace(file, "Machine/Offset", offset);
    writeStagePlace(file, "Machine/Min", min);
    writeStagePlace(file, "Machine/Max", max);
    write("Machine/Roll", number(angles[0]));
    write("Machine/Pitch", number(angles[1]));
    write("Machine/Yaw", number(angles[2]));
    writeStagePlace(file, "Scan/From", scanFrom);
    writeStagePlace(file, "Scan/To", scanTo);
    write("Scan/Lines", QString::number(scanLines));
    write("Scan/Spacing", number(scanSpacing));
    write("Scan/Feed", number(scanFeed));
    file.sync();
    return file.status() == QSettings::NoError;
}
