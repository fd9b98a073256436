// SPDX-License-Identifier: MIT
#pragma once

#include "CUnits.h"
#include "KestrixApi.h"
#include "tFlux.h"

/// The uncertainty `dB` of a sample of magnitude `B`, both in `displayUnits`, as it is shown in
/// `displayUncertaintyUnits`. As a percentage it is not-a-number for |B| up to 0.0001 and when it is above 9
/// %: an uncertainty that large shows as empty and not as a number.
KESTRIX_API tFlux ConvertUncertainty(tFlux dB, tFlux B, CUnits::UnitType displayUnits,
                                     CUnits::UnitType displayUncertaintyUnits);
