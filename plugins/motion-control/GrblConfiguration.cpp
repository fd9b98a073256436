// SPDX-License-Identifier: MIT
#include "GrblConfiguration.h"

#include <QCoreApplication>

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr char kAxisLetters[] = "XYZ";
/// Less than what a command's three digits can tell.
constexpr double kTravelTolerance = 1e-6;

bool takeAxis(StagePlace& values, int first, int number, double value)
{
    if (number < first || number > first + 2)
        return false;
    values[static_cast<size_t>(number - first)] = value;
    return true;
}

/// What is no byte is no setting of this kind.
int wholeOf(double value)
{
    return value >= 0 && value <= 255 ? static_cast<int>(value) : 0;
}

} // namespace

void GrblConfiguration::TakeSetting(int number, double value)
{
    switch (number) {
    case 1:
        idleDelayMs = wholeOf(value);
        return;
    case 13:
        isInInches = value != 0;
        return;
    case 20:
        hasSoftLimits = value != 0;
        return;
    case 22:
        hasHoming = value != 0;
        return;
    case 23:
        homingMask = wholeOf(value);
        return;
    default:
        if (!takeAxis(maxRate, 110, number, value))
            takeAxis(travel, 130, number, value);
    }
}

void GrblConfiguration::TakeOptions(const QByteArray& letters)
{
    hasForcedOrigin = letters.contains('Z');
}

double GrblConfiguration::ReportFactor() const
{
    return isInInches ? kMillimetresPerInch : 1;
}

bool GrblConfiguration::HasTravelLimits() const
{
    return hasSoftLimits || (hasHoming && isHomed);
}

std::optional<QString> GrblConfiguration::WhyOutside(const StagePlace& machinePlace) const
{
    if (!HasTravelLimits())
        return std::nullopt;
    for (size_t axis = 0; axis < machinePlace.size(); ++axis) {
        if (travel[axis] <= 0)
            continue;
        // Machine coordinates run from minus the travel to zero, unless the origin is where it homed.
        const bool isUpwards = hasForcedOrigin && ((homingMask >> axis) & 1) != 0;
        const double low = isUpwards ? 0 : -travel[axis];
        const double high = isUpwards ? travel[axis] : 0;
        if (machinePlace[axis] < low - kTravelTolerance || machinePlace[axis] > high + kTravelTolerance)
            return QCoreApplication::translate("GrblConfiguration",
                                               "%1 %2 mm is beyond the machine's travel of %3 to %4 mm")
                .arg(QLatin1Char(kAxisLetters[axis]))
                .arg(machinePlace[axis])
                .arg(low)
                .arg(high);
    }
    return std::nullopt;
}
