// SPDX-License-Identifier: GPL-3.0-or-later
#include "UncertaintyConversion.h"

#include <QtTest>

#include <cmath>
#include <limits>

class TestUncertaintyConversion : public QObject
{
    Q_OBJECT

private slots:
    void convertsTheUnit_data();
    void convertsTheUnit();
    void percentage_data();
    void percentage();
};

void TestUncertaintyConversion::convertsTheUnit_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<float>("dB");
    QTest::addColumn<float>("expected");
    QTest::newRow("same unit") << 2 << 2 << 0.25F << 0.25F;
    QTest::newRow("tesla to millitesla") << 1 << 2 << 0.25F << 250.0F;
    QTest::newRow("gauss to milligauss") << 5 << 7 << 0.5F << 500.0F;
    QTest::newRow("counts to tesla") << 12 << 1 << 3.0F << -3.0F;
    QTest::newRow("unknown counts as tesla") << 1 << 17 << 3.0F << 3.0F;
    QTest::newRow("large values stay") << 1 << 4 << 1e6F << 1e15F;
}

void TestUncertaintyConversion::convertsTheUnit()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(float, dB);
    QFETCH(float, expected);
    // The magnitude plays no part.
    for (const tFlux magnitude : {0.0F, 1.0F, -5.0F, std::numeric_limits<tFlux>::quiet_NaN()}) {
        const tFlux result = ConvertUncertainty(dB, magnitude, static_cast<CUnits::UnitType>(from),
                                                static_cast<CUnits::UnitType>(to));
        QVERIFY(result == expected);
    }
}

void TestUncertaintyConversion::percentage_data()
{
    constexpr tFlux kNotANumber = std::numeric_limits<tFlux>::quiet_NaN();
    QTest::addColumn<float>("dB");
    QTest::addColumn<float>("magnitude");
    QTest::addColumn<float>("expected");
    QTest::newRow("one percent") << 0.5F << 50.0F << 1.0F;
    QTest::newRow("ten percent is too much") << 0.1F << 1.0F << kNotANumber;
    QTest::newRow("nine percent, exactly") << 9.0F << 100.0F << 9.0F;
    // 0.09F * 100 is above 9 as a double and 9 as a float.
    QTest::newRow("nine percent after rounding") << 0.09F << 1.0F << 9.0F;
    QTest::newRow("just above nine") << std::nextafter(0.09F, 1.0F) << 1.0F << kNotANumber;
    QTest::newRow("minus nine") << 9.0F << -100.0F << -9.0F;
    QTest::newRow("below minus nine") << 9.5F << -100.0F << kNotANumber;
    QTest::newRow("negative field") << 1.0F << -50.0F << -2.0F;
    QTest::newRow("no uncertainty") << 0.0F << 50.0F << 0.0F;
    QTest::newRow("small field") << 0.0F << 0.00005F << kNotANumber;
    QTest::newRow("small negative field") << 1e-9F << -0.00005F << kNotANumber;
    // As a float, 0.0001 lies a little below the bound.
    QTest::newRow("field at the bound") << 0.0F << 0.0001F << kNotANumber;
    QTest::newRow("field above the bound") << 0.0F << std::nextafter(0.0001F, 1.0F) << 0.0F;
    QTest::newRow("no field") << 0.0F << 0.0F << kNotANumber;
    QTest::newRow("uncertainty not a number") << kNotANumber << 1.0F << kNotANumber;
    QTest::newRow("field not a number") << 0.01F << kNotANumber << kNotANumber;
    QTest::newRow("endless uncertainty") << std::numeric_limits<tFlux>::infinity() << 1.0F << kNotANumber;
    QTest::newRow("endless field") << 1.0F << std::numeric_limits<tFlux>::infinity() << 0.0F;
    // 1 * 100 / 48856 in double, rounded once.
    QTest::newRow("rounded once") << 1.0F << 48856.0F << static_cast<float>(100.0 / 48856.0);
}

void TestUncertaintyConversion::percentage()
{
    QFETCH(float, dB);
    QFETCH(float, magnitude);
    QFETCH(float, expected);
    const tFlux result = ConvertUncertainty(dB, magnitude, CUnits::MICRO_TESLA, CUnits::PERCENT);
    if (std::isnan(expected))
        QVERIFY(std::isnan(result));
    else
        QVERIFY(result == expected);
}

QTEST_APPLESS_MAIN(TestUncertaintyConversion)
#include "tst_UncertaintyConversion.moc"
