// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CTrigger.h"

class CInstrument;
class CMeasurementParameters;

/// Rates with which an instrument is measured with: within its bounds, and quick where they allow it.
struct MeasurementPlan
{
    double acquisitionRate = 0;
    double displayRate = 0;
    double otherDisplayRate = 0; ///< gives another block size; 0 if the bounds allow none
    int averaging = 1;

    static MeasurementPlan Of(CInstrument& instrument);

    /// Sets the parameters in one go, as the application does.
    void Configure(CMeasurementParameters& parameters, const CInstrument& instrument,
                   CTrigger::TriggerMode mode) const;
};
