// SPDX-License-Identifier: GPL-3.0-or-later
#include "CUnits.h"
#include "MetaObjectTable.h"

#include <QTest>

#include <cmath>
#include <cstdlib>

using namespace MetaObjectTable;

namespace {

constexpr int kUnitCount = 12;

// Row: from, column: to, both in the order of the enumeration.
const char* const kMatrix[kUnitCount][kUnitCount] = {
    {"1", "1e3", "1e6", "1e9", "1e4", "10", "1e7", "42.576385", "795.7747", "795774.7", "7.957747e7", "-1"},
    {"0.001", "1", "1e3", "1e6", "10", "0.01", "1e4", "0.042576384", "0.7957747", "795.7747", "79577.47",
     "-1"},
    {"1e-6", "0.001", "1", "1e3", "0.01", "1e-5", "10", "4.2576386e-5", "0.00079577474", "0.7957747",
     "79.57747", "-1"},
    {"1e-9", "1e-6", "0.001", "1", "1e-5", "1e-8", "0.01", "4.2576385e-8", "7.957747e-7", "0.00079577474",
     "0.07957747", "-1"},
    {"0.0001", "0.1", "100", "1e5", "1", "0.001", "1e3", "0.0042576385", "0.07957747", "79.57747", "79577.47",
     "-1"},
    {"0.1", "100", "1e5", "1e8", "1e3", "1", "1e6", "4.2576385", "79.57747", "79577.47", "7.957747e7", "-1"},
    {"1e-7", "0.0001", "0.1", "100", "0.001", "1e-6", "1", "4.2576385e-6", "7.957747e-5", "0.007957747",
     "7.957747", "-1"},
    {"0.0234872", "23.487198", "23487.2", "23487198", "234.87198", "0.23487198", "234871.98", "1", "33881.21",
     "33881212", "1869051.9", "-1"},
    {"0.012566371", "12.566371", "1256.6371", "1256637", "12.566371", "0.012566371", "12566.371",
     "0.53503066", "1", "1e3", "1e6", "-1"},
    {"1.25664e-5", "0.012566371", "12.566371", "12566.371", "0.012566371", "1.25664e-5", "125.663704",
     "0.000535031", "0.001", "1", "1e3", "-1"},
    {"1.25664e-8", "1.25664e-5", "0.012566371", "12.566371", "1.25664e-5", "1.25664e-8", "0.12566371",
     "5.35031e-7", "1e-6", "0.001", "1", "-1"},
    {"-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "1"},
};

CUnits::UnitType unitAt(int index)
{
    return static_cast<CUnits::UnitType>(index + 1);
}

} // namespace

class tst_CUnits : public QObject
{
    Q_OBJECT

private slots:
    void enumeration()
    {
        VERIFY_NO_DIFFERENCE(compareEnum(CUnits::staticMetaObject, "UnitType",
                                         {{"TESLA", 1},
                                          {"MILLI_TESLA", 2},
                                          {"MICRO_TESLA", 3},
                                          {"NANO_TESLA", 4},
                                          {"GAUSS", 5},
                                          {"KILO_GAUSS", 6},
                                          {"MILLI_GAUSS", 7},
                                          {"MEGA_HERTZ_PROTON", 8},
                                          {"AMPERE_PER_METER", 9},
                                          {"KILO_AMPERE_PER_METER", 10},
                                          {"MILLI_AMPERE_PER_METER", 11},
                                          {"ADC", 12},
                                          {"HZ", 13},
                                          {"DEGREE", 14},
                                          {"DECIBEL", 15},
                                          {"PERCENT", 16},
                                          {"UNKNOWN", 17}}));
        VERIFY_NO_DIFFERENCE(compareProperties(CUnits::staticMetaObject, {}));
    }

    void everyEntryOfTheMatrix()
    {
        const float values[] = {1.0F, 1.5F, -2.0F, 0.1F, 48.85591F, 1e-9F, 3e7F};
        for (int from = 0; from < kUnitCount; ++from) {
            for (int to = 0; to < kUnitCount; ++to) {
                const double factor = std::strtof(kMatrix[from][to], nullptr);
                for (const float value : values) {
                    const auto expected = static_cast<float>(static_cast<double>(value) * factor);
                    float result = 0;
                    QVERIFY(ConvertUnits(unitAt(from), unitAt(to), result, value));
                    QVERIFY2(result == expected, qPrintable(QStringLiteral("%1 to %2: %3 is %4, expected %5")
                                                                .arg(from + 1)
                                                                .arg(to + 1)
                                                                .arg(double(value))
                                                                .arg(double(result), 0, 'g', 9)
                                                                .arg(double(expected), 0, 'g', 9)));
                }
            }
        }
    }

    void conversionsByHand()
    {
        tFlux result = 0;
        QVERIFY(ConvertUnits(CUnits::TESLA, CUnits::MILLI_TESLA, result, 1.5F));
        QCOMPARE(result, 1500.0F);
        QVERIFY(ConvertUnits(CUnits::TESLA, CUnits::ADC, result, 2.0F));
        QCOMPARE(result, -2.0F);
        QVERIFY(ConvertUnits(CUnits::ADC, CUnits::ADC, result, 2.0F));
        QCOMPARE(result, 2.0F);
        QVERIFY(ConvertUnits(CUnits::PERCENT, CUnits::MILLI_TESLA, result, 1.0F));
        QCOMPARE(result, 1000.0F);
        QVERIFY(ConvertUnits(CUnits::MILLI_TESLA, static_cast<CUnits::UnitType>(99), result, 5.0F));
        QCOMPARE(result, 0.005F);
        QVERIFY(ConvertUnits(CUnits::TESLA, CUnits::NANO_TESLA, result, std::nanf("")));
        QVERIFY(std::isnan(result));
    }

    void aFactorIsWidenedFromSinglePrecision()
    {
        tFlux result = 0;
        QVERIFY(ConvertUnits(CUnits::MILLI_TESLA, CUnits::TESLA, result, 5.0F));
        const auto expected = static_cast<float>(5.0 * 0.001000000047497451305389404296875);
        // The decimal number in double gives another float. QCOMPARE would take both for equal.
        QVERIFY(expected != static_cast<float>(5.0 * 0.001));
        QVERIFY(result == expected);
    }

    void tableIndex()
    {
        for (int unit = -1; unit <= 40; ++unit) {
            const int expected = unit >= 1 && unit <= 12 ? unit - 1 : 0;
            QCOMPARE(UnitTableIndex(static_cast<CUnits::UnitType>(unit)), expected);
        }
    }

    void texts_data()
    {
        QTest::addColumn<int>("unit");
        QTest::addColumn<QString>("text");
        const char16_t* const texts[] = {u"T",  u"mT",     u"\u00B5T", u"nT",   u"G",    u"kG",
                                         u"mG", u"MHzp",   u"A/m",     u"kA/m", u"mA/m", u"ADC",
                                         u"Hz", u"\u00B0", u"dB",      u"%",    u" "};
        for (int i = 0; i < 17; ++i)
            QTest::addRow("%d", i + 1) << i + 1 << QString::fromUtf16(texts[i]);
    }

    void texts()
    {
        QFETCH(int, unit);
        QFETCH(QString, text);
        QCOMPARE(UnitToText(static_cast<CUnits::UnitType>(unit)), text);
        QCOMPARE(static_cast<int>(TextToUnit(text)), unit);
    }

    void unknownTexts()
    {
        const QString noUnits[] = {QStringLiteral("foo"), QString(),
                                   QStringLiteral("-"),   QStringLiteral("t"),
                                   QStringLiteral("T "),  QStringLiteral("\u03BCT")};
        for (const QString& text : noUnits)
            QCOMPARE(TextToUnit(text), CUnits::UNKNOWN);
        QCOMPARE(UnitToText(static_cast<CUnits::UnitType>(0)), QString());
        QCOMPARE(UnitToText(static_cast<CUnits::UnitType>(18)), QString());
    }

    void uncertaintyUnits()
    {
        const int expected[18] = {0, 2, 2, 3, 4, 7, 7, 7, 8, 11, 11, 11, 12, 13, 14, 15, 16, 16};
        for (int unit = 0; unit <= 17; ++unit)
            QCOMPARE(static_cast<int>(GetUncertaintyUnit(static_cast<CUnits::UnitType>(unit))),
                     expected[unit]);
        QCOMPARE(static_cast<int>(GetUncertaintyUnit(static_cast<CUnits::UnitType>(77))), 77);
    }
};

QTEST_GUILESS_MAIN(tst_CUnits)
#include "tst_CUnits.moc"
