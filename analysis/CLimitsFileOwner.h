// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CUnits.h"

#include <QString>

/// What an exposure limits file needs of the operation that owns it.
class CLimitsFileOwner
{
public:
    /// Unit into which the limits are converted.
    virtual CUnits::UnitType LimitsDisplayUnits() const = 0;
    /// Path of the file last chosen, empty without one.
    virtual QString LimitsFilePath() const = 0;
    /// Empties path and name of the file; the path is announced even if it was empty.
    virtual void ForgetLimitsFile() = 0;

    /// Whether limits are in force.
    virtual bool LimitsFileLoaded() const = 0;
    virtual void SetLimitsFileLoaded(bool value) = 0;

protected:
    ~CLimitsFileOwner() = default;
};
