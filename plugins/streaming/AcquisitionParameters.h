// SPDX-License-Identifier: MIT
#pragma once

#include "CTrigger.h"
#include "CTriggerPlugin.h"
#include "CUnits.h"
#include "tFlux.h"

class CInstrument;
class CMeasurementParameters;

/// What an instrument takes over from the application's parameters: a copy made on the main thread, which the
/// acquisition thread may read. Its values lie within the bounds of the instrument.
struct AcquisitionParameters
{
    double acquisitionRate = 20;          ///< samples per second
    double immediateAcquisitionRate = 20; ///< samples per second of a block in IMMEDIATE mode
    int blockSize = 2;                    ///< samples of a block
    double displayRate = 10;              ///< blocks per second in TIMER mode
    int averaging = 1;                    ///< raw readings of one sample
    CUnits::UnitType units = CUnits::TESLA;
    bool autoRange = true;
    tFlux range = 0; ///< tesla
    CTrigger::TriggerMode triggerMode = CTrigger::CONTINUOUS;
    CTriggerPlugin* triggerPlugin = nullptr; ///< for comparison and connection on the main thread only

    /// Rate of the samples in the trigger mode in force.
    double EffectiveRate() const
    {
        return triggerMode == CTrigger::IMMEDIATE ? immediateAcquisitionRate : acquisitionRate;
    }
};

bool operator==(const AcquisitionParameters& a, const AcquisitionParameters& b);

/// Whether both give blocks of the same samples at the same times, so that only their values differ.
bool haveSameTiming(const AcquisitionParameters& a, const AcquisitionParameters& b);

/// Copies the parameters and moves what lies outside the instrument's bounds to the nearest bound. The rate
/// of IMMEDIATE mode is left for the instrument to set.
AcquisitionParameters copyWithinBounds(const CMeasurementParameters& parameters, CInstrument& instrument);
