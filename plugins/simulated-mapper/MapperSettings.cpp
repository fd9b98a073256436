// SPDX-License-Identifier: MIT
#include "MapperSettings.h"

#include "CIniReader.h"

#include <algorithm>

namespace {

constexpr double kMinSpeed = 1e-6;
constexpr double kMinSpacing = 1e-3;
constexpr int kMaxLines = 10000;

void readPlace(const CIniReader& reader, const QByteArray& key, ProbePose& pose)
{
    reader.Read((key + 'X').constData(), pose.x);
    reader.Read((key + 'Y').constData(), pose.y);
    reader.Read((key + 'Z').constData(), pose.z);
}

} // namespace

MapperSettings MapperSettings::Load()
{
    MapperSettings settings;
    const CIniReader reader(CIniReader::PathOf(QStringLiteral("KestrixSimulatedMapper.ini")));

    readPlace(reader, "Gantry/Min", settings.min);
    readPlace(reader, "Gantry/Max", settings.max);
    reader.Read("Gantry/Speed", settings.speed);
    reader.Read("Gantry/AngularSpeed", settings.angularSpeed);
    reader.ReadInteger("Gantry/SettleMs", settings.settleMs);

    readPlace(reader, "Mover/From", settings.from);
    readPlace(reader, "Mover/To", settings.to);
    reader.Read("Mover/Roll", settings.from.roll);
    reader.Read("Mover/Pitch", settings.from.pitch);
    reader.Read("Mover/Yaw", settings.from.yaw);
    reader.ReadInteger("Mover/Lines", settings.lines);
    reader.Read("Mover/Spacing", settings.spacing);
    reader.Read("Mover/Speed", settings.moverSpeed);
    reader.Read("Mover/Repeat", settings.isRepeated);

    settings.speed = std::max(settings.speed, kMinSpeed);
    settings.angularSpeed = std::max(settings.angularSpeed, kMinSpeed);
    settings.moverSpeed = std::max(settings.moverSpeed, kMinSpeed);
    settings.spacing = std::max(settings.spacing, kMinSpacing);
    settings.lines = std::clamp(settings.lines, 1, kMaxLines);
    return settings;
}
