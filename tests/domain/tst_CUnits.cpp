// SPDX-License-Identifier: GPL-3.0-or-later
#include "CUnits.h"
#include "MetaObjectTable.h"

#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <thread>
#include <vector>

namespace {

struct UnitRow
{
    int value;
    const char* name;
    const char* text; ///< UTF-8
    int tableIndex;
    int uncertaintyUnit;
};

constexpr UnitRow kUnits[] = {
    {1, "TESLA", "T", 0, 2},
    {2, "MILLI_TESLA", "mT", 1, 2},
    {3, "MICRO_TESLA", "\xC2\xB5T", 2, 3},
    {4, "NANO_TESLA", "nT", 3, 4},
    {5, "GAUSS", "G", 4, 7},
    {6, "KILO_GAUSS", "kG", 5, 7},
    {7, "MILLI_GAUSS", "mG", 6, 7},
    {8, "MEGA_HERTZ_PROTON", "MHzp", 7, 8},
    {9, "AMPERE_PER_METER", "A/m", 8, 11},
    {10, "KILO_AMPERE_PER_METER", "kA/m", 9, 11},
    {11, "MILLI_AMPERE_PER_METER", "mA/m", 10, 11},
    {12, "ADC", "ADC", 11, 12},
    {13, "HZ", "Hz", 0, 13},
    {14, "DEGREE", "\xC2\xB0", 0, 14},
    {15, "DECIBEL", "dB", 0, 15},
    {16, "PERCENT", "%", 0, 16},
    {17, "UNKNOWN", " ", 0, 16},
};

// The published factors, row = from, column = to, in the order of the units.
// clang-format off
constexpr const char* kFactors[12][12] = {
    {"1", "1e3", "1e6", "1e9", "1e4", "10", "1e7", "42.576385", "795.7747", "795774.7", "7.957747e7", "-1"}, // T
    {"0.001", "1", "1e3", "1e6", "10", "0.01", "1e4", "0.042576384", "0.7957747", "795.7747", "79577.47", "-1"}, // mT
    {"1e-6", "0.001", "1", "1e3", "0.01", "1e-5", "10", "4.2576386e-5", "0.00079577474", "0.7957747", "79.57747", "-1"}, // uT
    {"1e-9", "1e-6", "0.001", "1", "1e-5", "1e-8", "0.01", "4.2576385e-8", "7.957747e-7", "0.00079577474", "0.07957747", "-1"}, // nT
    {"0.0001", "0.1", "100", "1e5", "1", "0.001", "1e3", "0.0042576385", "0.07957747", "79.57747", "79577.47", "-1"}, // G
    {"0.1", "100", "1e5", "1e8", "1e3", "1", "1e6", "4.2576385", "79.57747", "79577.47", "7.957747e7", "-1"}, // kG
    {"1e-7", "0.0001", "0.1", "100", "0.001", "1e-6", "1", "4.2576385e-6", "7.957747e-5", "0.007957747", "7.957747", "-1"}, // mG
    {"0.0234872", "23.487198", "23487.2", "23487198", "234.87198", "0.23487198", "234871.98", "1", "33881.21", "33881212", "1869051.9", "-1"}, // MHzp
    {"0.012566371", "12.566371", "1256.6371", "1256637", "12.566371", "0.012566371", "12566.371", "0.53503066", "1", "1e3", "1e6", "-1"}, // A/m
    {"1.25664e-5", "0.012566371", "12.566371", "12566.371", "0.012566371", "1.25664e-5", "125.663704", "0.000535031", "0.001", "1", "1e3", "-1"}, // kA/m
    {"1.25664e-8", "1.25664e-5", "0.012566371", "12.566371", "1.25664e-5", "1.25664e-8", "0.12566371", "5.35031e-7", "1e-6", "0.001", "1", "-1"}, // mA/m
    {"-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "-1", "1"}, // ADC
};
// clang-format on

/// The factor as it is multiplied: the single-precision number nearest to the text, widened.
double factor(int from, int to)
{
    return static_cast<double>(std::strtof(kFactors[from][to], nullptr));
}

CUnits::UnitType unit(int value)
{
    return static_cast<CUnits::UnitType>(value);
}

tFlux converted(int from, int to, tFlux value)
{
    tFlux result = -12345;
    if (!ConvertUnits(unit(from), unit(to), result, value))
        return std::numeric_limits<tFlux>::quiet_NaN();
    return result;
}

} // namespace

class TestCUnits : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void texts();
    void unknownTexts_data();
    void unknownTexts();
    void tableIndices();
    void uncertaintyUnits();
    void uncertaintyUnitsFromManyThreads();
    void everyFactor_data();
    void everyFactor();
    void examples();
    void otherUnitsConvertAsTesla();
    void specialValues();
    void resultMayBeTheValue();
};

void TestCUnits::surface()
{
    const QMetaObject& metaObject = CUnits::staticMetaObject;
    QVector<MetaObjectTable::EnumValue> values;
    for (const UnitRow& row : kUnits)
        values.append({row.name, row.value});
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareEnum(metaObject, "UnitType", values));
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareProperties(metaObject, {}));
    QCOMPARE(metaObject.enumeratorCount() - metaObject.enumeratorOffset(), 1);
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    QVERIFY(QMetaType::isRegistered(QMetaType::type("tFlux")));
    QVERIFY(QMetaType::type("QList<tFlux>") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("QList<CUnits::UnitType>") != QMetaType::UnknownType);
    QCOMPARE(sizeof(tFlux), sizeof(float));
}

void TestCUnits::texts()
{
    for (const UnitRow& row : kUnits) {
        const QString text = QString::fromUtf8(row.text);
        QCOMPARE(UnitToText(unit(row.value)), text);
        QCOMPARE(static_cast<int>(TextToUnit(text)), row.value);
    }
    QCOMPARE(UnitToText(unit(0)), QString());
    QCOMPARE(UnitToText(unit(18)), QString());
    QCOMPARE(UnitToText(unit(-1)), QString());
}

void TestCUnits::unknownTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << QStringLiteral(" ");
    QTest::newRow("minus") << QStringLiteral("-");
    QTest::newRow("foo") << QStringLiteral("foo");
    QTest::newRow("other case") << QStringLiteral("MT");
    QTest::newRow("blank behind") << QStringLiteral("mT ");
    QTest::newRow("greek mu") << QStringLiteral("\u03BCT");
    QTest::newRow("u for micro") << QStringLiteral("uT");
}

void TestCUnits::unknownTexts()
{
    QFETCH(QString, text);
    QCOMPARE(TextToUnit(text), CUnits::UNKNOWN);
}

void TestCUnits::tableIndices()
{
    for (const UnitRow& row : kUnits)
        QCOMPARE(UnitTableIndex(unit(row.value)), row.tableIndex);
    for (const int other : {-1, 0, 18, 1000})
        QCOMPARE(UnitTableIndex(unit(other)), 0);
}

void TestCUnits::uncertaintyUnits()
{
    for (const UnitRow& row : kUnits)
        QCOMPARE(static_cast<int>(GetUncertaintyUnit(unit(row.value))), row.uncertaintyUnit);
    for (const int other : {-1, 0, 18, 1000})
        QCOMPARE(static_cast<int>(GetUncertaintyUnit(unit(other))), other);
}

void TestCUnits::uncertaintyUnitsFromManyThreads()
{
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&wrong] {
            for (int round = 0; round < 1000; ++round)
                wrong += GetUncertaintyUnit(CUnits::GAUSS) == CUnits::MILLI_GAUSS ? 0 : 1;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(wrong.load(), 0);
}

void TestCUnits::everyFactor_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (int from = 0; from < 12; ++from) {
        for (int to = 0; to < 12; ++to)
            QTest::addRow("%s to %s", kUnits[from].text, kUnits[to].text) << from << to;
    }
}

void TestCUnits::everyFactor()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const int fromUnit = kUnits[from].value;
    const int toUnit = kUnits[to].value;
    // One times the factor is the factor, exactly.
    QVERIFY(static_cast<double>(converted(fromUnit, toUnit, 1.0F)) == factor(from, to));
    QRandomGenerator random(static_cast<quint32>(from * 12 + to));
    for (int i = 0; i < 500; ++i) {
        const auto value =
            static_cast<tFlux>(std::ldexp(random.generateDouble() - 0.5, random.bounded(-60, 60)));
        const auto expected = static_cast<tFlux>(static_cast<double>(value) * factor(from, to));
        QVERIFY(converted(fromUnit, toUnit, value) == expected);
    }
}

void TestCUnits::examples()
{
    QVERIFY(converted(CUnits::TESLA, CUnits::MILLI_TESLA, 1.5F) == 1500.0F);
    QVERIFY(converted(CUnits::TESLA, CUnits::ADC, 2.0F) == -2.0F);
    QVERIFY(converted(CUnits::ADC, CUnits::ADC, 2.0F) == 2.0F);
    QVERIFY(converted(CUnits::ADC, CUnits::NANO_TESLA, 2.0F) == -2.0F);
    QVERIFY(converted(CUnits::PERCENT, CUnits::MILLI_TESLA, 1.0F) == 1000.0F);
    // A way there and back need not give the value back.
    const tFlux there = converted(CUnits::TESLA, CUnits::AMPERE_PER_METER, 1.0F);
    const tFlux back = converted(CUnits::AMPERE_PER_METER, CUnits::TESLA, there);
    QVERIFY(std::fabs(back - 10.0F) < 0.001F);
}

void TestCUnits::otherUnitsConvertAsTesla()
{
    for (const int other : {-1, 0, 13, 14, 15, 16, 17, 18, 1000}) {
        for (int field = 1; field <= 12; ++field) {
            QVERIFY(converted(other, field, 0.3F) == converted(CUnits::TESLA, field, 0.3F));
            QVERIFY(converted(field, other, 0.3F) == converted(field, CUnits::TESLA, 0.3F));
        }
    }
}

void TestCUnits::specialValues()
{
    constexpr tFlux kInfinity = std::numeric_limits<tFlux>::infinity();
    QVERIFY(std::isnan(converted(CUnits::TESLA, CUnits::GAUSS, std::numeric_limits<tFlux>::quiet_NaN())));
    QVERIFY(converted(CUnits::TESLA, CUnits::ADC, kInfinity) == -kInfinity);
    QVERIFY(converted(CUnits::TESLA, CUnits::NANO_TESLA, std::numeric_limits<tFlux>::max()) == kInfinity);
    QVERIFY(converted(CUnits::NANO_TESLA, CUnits::TESLA, 1e-40F) == 0.0F);
    QVERIFY(std::signbit(converted(CUnits::TESLA, CUnits::ADC, 0.0F)));
}

void TestCUnits::resultMayBeTheValue()
{
    tFlux value = 2.5F;
    QVERIFY(ConvertUnits(CUnits::MILLI_TESLA, CUnits::MICRO_TESLA, value, value));
    QVERIFY(value == 2500.0F);
}

QTEST_APPLESS_MAIN(TestCUnits)
#include "tst_CUnits.moc"
