// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CUnits.h"

#include <QObject>

/// One band of the exposure limits.
class FrequencyRange : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double UpperFrequencyLimitValue READ UpperFrequencyLimitValue WRITE SetUpperFrequencyLimitValue
                   NOTIFY UpperFrequencyLimitValueChanged)
    Q_PROPERTY(CUnits::UnitType UpperFrequencyLimitUnit READ UpperFrequencyLimitUnit WRITE
                   SetUpperFrequencyLimitUnit NOTIFY UpperFrequencyLimitUnitChanged)
    Q_PROPERTY(double ExposureLimitValue READ ExposureLimitValue WRITE SetExposureLimitValue NOTIFY
                   ExposureLimitValueChanged)
    Q_PROPERTY(CUnits::UnitType ExposureLimitUnit READ ExposureLimitUnit WRITE SetExposureLimitUnit NOTIFY
                   ExposureLimitUnitChanged)

public:
    using QObject::QObject;

    double UpperFrequencyLimitValue() const
    {
        return m_upperFrequencyLimitValue;
    } ///< upper end of the band, taken as hertz
    CUnits::UnitType UpperFrequencyLimitUnit() const
    {
        return m_upperFrequencyLimitUnit;
    } ///< as the file gives it; never applied to the number
    double ExposureLimitValue() const
    {
        return m_exposureLimitValue;
    } ///< largest allowed field, in the display unit once the file is converted
    CUnits::UnitType ExposureLimitUnit() const { return m_exposureLimitUnit; } ///< as the file gives it

    void SetUpperFrequencyLimitValue(double value);
    void SetUpperFrequencyLimitUnit(CUnits::UnitType value);
    void SetExposureLimitValue(double value);
    void SetExposureLimitUnit(CUnits::UnitType value);

signals:
    void UpperFrequencyLimitValueChanged(double value);
    void UpperFrequencyLimitUnitChanged(CUnits::UnitType value);
    void ExposureLimitValueChanged(double value);
    void ExposureLimitUnitChanged(CUnits::UnitType value);

private:
    double m_upperFrequencyLimitValue = 0;
    CUnits::UnitType m_upperFrequencyLimitUnit = CUnits::UNKNOWN;
    double m_exposureLimitValue = 0;
    CUnits::UnitType m_exposureLimitUnit = CUnits::UNKNOWN;
};
