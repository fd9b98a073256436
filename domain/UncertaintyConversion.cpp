// SPDX-License-Identifier: MIT
#include "UncertaintyConversion.h"

#include <cmath>
#include <limits>

tFlux ConvertUncertainty(tFlux dB, tFlux B, CUnits::UnitType displayUnits,
                         CUnits::UnitType displayUncertaintyUnits)
{
    constexpr double kSmallestMagnitude = 0.0001;
    constexpr tFlux kLargestPercentage = 9.0F;

    if (displayUncertaintyUnits != CUnits::PERCENT) {
        tFlux converted = 0;
        ConvertUnits(displayUnits, displayUncertaintyUnits, converted, dB);
        return converted;
    }
    constexpr tFlux kNotANumber = std::numeric_limits<tFlux>::quiet_NaN();
    if (std::abs(static_cast<double>(B)) <= kSmallestMagnitude)
        return kNotANumber;
    const auto percentage = static_cast<tFlux>(static_cast<double>(dB) * 100.0 / static_cast<double>(B));
    return std::abs(percentage) <= kLargestPercentage ? percentage : kNotANumber;
}
