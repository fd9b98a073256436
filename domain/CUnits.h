// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"
#include "tFlux.h"

#include <QObject>
#include <QString>

/// Names every unit in which a value is shown. Creatable in QML only for its enumerators.
class KESTRIX_API CUnits : public QObject
{
    Q_OBJECT

public:
    // Of fixed type, as the other enumerations of files and QML are: numbers that are no unit come in there.
    enum UnitType : int {
        TESLA = 1,
        MILLI_TESLA = 2,
        MICRO_TESLA = 3,
        NANO_TESLA = 4,
        GAUSS = 5,
        KILO_GAUSS = 6,
        MILLI_GAUSS = 7,
        MEGA_HERTZ_PROTON = 8, ///< proton resonance, 42.576385 MHz per tesla
        AMPERE_PER_METER = 9,
        KILO_AMPERE_PER_METER = 10,
        MILLI_AMPERE_PER_METER = 11,
        ADC = 12, ///< raw counts of the instrument
        HZ = 13,
        DEGREE = 14,
        DECIBEL = 15,
        PERCENT = 16,
        UNKNOWN = 17
    };
    Q_ENUM(UnitType)

    using QObject::QObject;
};

Q_DECLARE_METATYPE(QList<CUnits::UnitType>)

/// Text of a unit, "µT" with U+00B5; empty for a value that is no unit.
KESTRIX_API QString UnitToText(CUnits::UnitType unit);

/// The unit with exactly this text; UNKNOWN for any other text.
KESTRIX_API CUnits::UnitType TextToUnit(const QString& text);

/// Row and column of a field unit in the conversion table, 0 to 11. Every other unit gives 0, the index of
/// tesla.
KESTRIX_API int UnitTableIndex(CUnits::UnitType unit);

/// Unit in which an uncertainty of a value in `unit` is shown by default.
KESTRIX_API CUnits::UnitType GetUncertaintyUnit(CUnits::UnitType unit);

/// Converts a field value by one entry of a fixed table. The table, not physics, defines the displayed
/// values: its entries do not form inverse pairs, and between ADC and a field unit the value is negated.
/// Never fails: the result is always true. Pure; callable from any thread.
KESTRIX_API bool ConvertUnits(CUnits::UnitType from, CUnits::UnitType to, tFlux& result, tFlux value);
