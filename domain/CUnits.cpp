// SPDX-License-Identifier: MIT
#include "CUnits.h"

#include <QHash>

#include <array>

namespace {

struct UnitText
{
    CUnits::UnitType unit;
    QString text;
};

const std::array<UnitText, 17>& unitTexts()
{
    static const std::array<UnitText, 17> texts{{
        {CUnits::TESLA, QStringLiteral("T")},
        {CUnits::MILLI_TESLA, QStringLiteral("mT")},
        {CUnits::MICRO_TESLA, QStringLiteral("\u00B5T")},
        {CUnits::NANO_TESLA, QStringLiteral("nT")},
        {CUnits::GAUSS, QStringLiteral("G")},
        {CUnits::KILO_GAUSS, QStringLiteral("kG")},
        {CUnits::MILLI_GAUSS, QStringLiteral("mG")},
        {CUnits::MEGA_HERTZ_PROTON, QStringLiteral("MHzp")},
        {CUnits::AMPERE_PER_METER, QStringLiteral("A/m")},
        {CUnits::KILO_AMPERE_PER_METER, QStringLiteral("kA/m")},
        {CUnits::MILLI_AMPERE_PER_METER, QStringLiteral("mA/m")},
        {CUnits::ADC, QStringLiteral("ADC")},
        {CUnits::HZ, QStringLiteral("Hz")},
        {CUnits::DEGREE, QStringLiteral("\u00B0")},
        {CUnits::DECIBEL, QStringLiteral("dB")},
        {CUnits::PERCENT, QStringLiteral("%")},
        {CUnits::UNKNOWN, QStringLiteral(" ")},
    }};
    return texts;
}

constexpr int kFieldUnitCount = 12;

} // namespace

QString UnitToText(CUnits::UnitType unit)
{
    for (const UnitText& entry : unitTexts()) {
        if (entry.unit == unit)
            return entry.text;
    }
    return {};
}

CUnits::UnitType TextToUnit(const QString& text)
{
    for (const UnitText& entry : unitTexts()) {
        if (entry.text == text)
            return entry.unit;
    }
    return CUnits::UNKNOWN;
}

int UnitTableIndex(CUnits::UnitType unit)
{
    const int index = static_cast<int>(unit) - CUnits::TESLA;
    return index >= 0 && index < kFieldUnitCount ? index : 0;
}

CUnits::UnitType GetUncertaintyUnit(CUnits::UnitType unit)
{
    static const QHash<int, CUnits::UnitType> uncertaintyUnits{
        {CUnits::TESLA, CUnits::MILLI_TESLA},
        {CUnits::MILLI_TESLA, CUnits::MILLI_TESLA},
        {CUnits::MICRO_TESLA, CUnits::MICRO_TESLA},
        {CUnits::GAUSS, CUnits::MILLI_GAUSS},
        {CUnits::KILO_GAUSS, CUnits::MILLI_GAUSS},
        {CUnits::MILLI_GAUSS, CUnits::MILLI_GAUSS},
        {CUnits::MEGA_HERTZ_PROTON, CUnits::MEGA_HERTZ_PROTON},
        {CUnits::AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER},
        {CUnits::KILO_AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER},
        {CUnits::MILLI_AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER},
        {CUnits::ADC, CUnits::ADC},
        {CUnits::PERCENT, CUnits::PERCENT},
        {CUnits::UNKNOWN, CUnits::PERCENT},
    };
    return uncertaintyUnits.value(unit, unit);
}

bool ConvertUnits(CUnits::UnitType from, CUnits::UnitType to, tFlux& result, tFlux value)
{
    // Single-precision constants: what is multiplied is each one widened to double, not the decimal number.
    // clang-format off
    static constexpr float kFactors[kFieldUnitCount][kFieldUnitCount] = {
        // T            mT            uT            nT            G             kG            mG            MHzp             A/m              kA/m             mA/m          ADC
        {1.0F,          1e3F,         1e6F,         1e9F,         1e4F,         10.0F,        1e7F,         42.576385F,      795.7747F,       795774.7F,       7.957747e7F,  -1.0F}, // T
        {0.001F,        1.0F,         1e3F,         1e6F,         10.0F,        0.01F,        1e4F,         0.042576384F,    0.7957747F,      795.7747F,       79577.47F,    -1.0F}, // mT
        {1e-6F,         0.001F,       1.0F,         1e3F,         0.01F,        1e-5F,        10.0F,        4.2576386e-5F,   0.00079577474F,  0.7957747F,      79.57747F,    -1.0F}, // uT
        {1e-9F,         1e-6F,        0.001F,       1.0F,         1e-5F,        1e-8F,        0.01F,        4.2576385e-8F,   7.957747e-7F,    0.00079577474F,  0.07957747F,  -1.0F}, // nT
        {0.0001F,       0.1F,         100.0F,       1e5F,         1.0F,         0.001F,       1e3F,         0.0042576385F,   0.07957747F,     79.57747F,       79577.47F,    -1.0F}, // G
        {0.1F,          100.0F,       1e5F,         1e8F,         1e3F,         1.0F,         1e6F,         4.2576385F,      79.57747F,       79577.47F,       7.957747e7F,  -1.0F}, // kG
        {1e-7F,         0.0001F,      0.1F,         100.0F,       0.001F,       1e-6F,        1.0F,         4.2576385e-6F,   7.957747e-5F,    0.007957747F,    7.957747F,    -1.0F}, // mG
        {0.0234872F,    23.487198F,   23487.2F,     23487198.0F,  234.87198F,   0.23487198F,  234871.98F,   1.0F,            33881.21F,       33881212.0F,     1869051.9F,   -1.0F}, // MHzp
        {0.012566371F,  12.566371F,   1256.6371F,   1256637.0F,   12.566371F,   0.012566371F, 12566.371F,   0.53503066F,     1.0F,            1e3F,            1e6F,         -1.0F}, // A/m
        {1.25664e-5F,   0.012566371F, 12.566371F,   12566.371F,   0.012566371F, 1.25664e-5F,  125.663704F,  0.000535031F,    0.001F,          1.0F,            1e3F,         -1.0F}, // kA/m
        {1.25664e-8F,   1.25664e-5F,  0.012566371F, 12.566371F,   1.25664e-5F,  1.25664e-8F,  0.12566371F,  5.35031e-7F,     1e-6F,           0.001F,          1.0F,         -1.0F}, // mA/m
        {-1.0F,         -1.0F,        -1.0F,        -1.0F,        -1.0F,        -1.0F,        -1.0F,        -1.0F,           -1.0F,           -1.0F,           -1.0F,        1.0F},  // ADC
    };
    // clang-format on
    const double factor = kFactors[UnitTableIndex(from)][UnitTableIndex(to)];
    result = static_cast<tFlux>(static_cast<double>(value) * factor);
    return true;
}
