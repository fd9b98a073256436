// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasureBlockMapping.h"
#include "FieldRotation.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <random>

using FieldRotation::Vector;

namespace {

using Wide = std::array<long double, 3>;

long double radians(double degrees)
{
    return static_cast<long double>(degrees) * 0.017453292F;
}

/// Turns in the plane of two axes, from `from` towards `to`.
Wide turned(Wide vector, double degrees, std::size_t from, std::size_t to)
{
    const long double c = cosl(radians(degrees));
    const long double s = sinl(radians(degrees));
    const Wide before = vector;
    vector[from] = c * before[from] - s * before[to];
    vector[to] = s * before[from] + c * before[to];
    return vector;
}

/// About Y first, then X, then Z.
Wide oneAxisAfterTheOther(const Vector& vector, const COrientation& orientation)
{
    const Wide start{vector[0], vector[1], vector[2]};
    const Wide aboutY = turned(start, orientation.Yaw(), 2, 0);
    const Wide aboutX = turned(aboutY, orientation.Pitch(), 1, 2);
    return turned(aboutX, orientation.Roll(), 0, 1);
}

void setAngles(COrientation& orientation, double roll, double pitch, double yaw)
{
    orientation.SetRoll(roll);
    orientation.SetPitch(pitch);
    orientation.SetYaw(yaw);
}

QSharedPointer<CFieldIntensityResult> sample(float bx, float by, float bz)
{
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    result->SetBx(bx);
    result->SetBy(by);
    result->SetBz(bz);
    result->SetB(7.0F);
    result->SetBBprime(8.0F);
    result->SetDB(9.0F);
    return result;
}

Vector componentsOf(const CFieldIntensityResult& result)
{
    return {result.Bx(), result.By(), result.Bz()};
}

} // namespace

class tst_FieldRotation : public QObject
{
    Q_OBJECT

private slots:
    void quarterTurns_data();
    void quarterTurns();
    void equalsThreeTurnsInARow();
    void factorHasSinglePrecision();
    void blockTurnsOnceAndInPlace();
    void markedBlockStays();
    void blockWithoutResults();
};

void tst_FieldRotation::quarterTurns_data()
{
    QTest::addColumn<double>("roll");
    QTest::addColumn<double>("pitch");
    QTest::addColumn<double>("yaw");
    QTest::addColumn<QVector<float>>("turned");
    // The vector (1, 2, 3), by hand
    QTest::newRow("none") << 0.0 << 0.0 << 0.0 << QVector<float>{1, 2, 3};
    QTest::newRow("roll is about Z") << 90.0 << 0.0 << 0.0 << QVector<float>{-2, 1, 3};
    QTest::newRow("pitch is about X") << 0.0 << 90.0 << 0.0 << QVector<float>{1, -3, 2};
    QTest::newRow("yaw is about Y") << 0.0 << 0.0 << 90.0 << QVector<float>{3, 2, -1};
    QTest::newRow("yaw before pitch") << 0.0 << 90.0 << 90.0 << QVector<float>{3, 1, 2};
    QTest::newRow("pitch before roll") << 90.0 << 90.0 << 0.0 << QVector<float>{3, 1, 2};
    QTest::newRow("yaw before roll") << 90.0 << 0.0 << 90.0 << QVector<float>{-2, 3, -1};
    QTest::newRow("half turn") << 180.0 << 0.0 << 0.0 << QVector<float>{-1, -2, 3};
}

void tst_FieldRotation::quarterTurns()
{
    QFETCH(double, roll);
    QFETCH(double, pitch);
    QFETCH(double, yaw);
    QFETCH(QVector<float>, turned);
    COrientation orientation;
    setAngles(orientation, roll, pitch, yaw);
    const Vector actual = FieldRotation::rotated(orientation, {1.0F, 2.0F, 3.0F});
    for (int i = 0; i < 3; ++i)
        QVERIFY2(
            std::fabs(actual[static_cast<std::size_t>(i)] - turned[i]) < 2e-6F,
            qPrintable(QStringLiteral("component %1: %2").arg(i).arg(actual[static_cast<std::size_t>(i)])));
}

void tst_FieldRotation::equalsThreeTurnsInARow()
{
    std::mt19937 engine(5);
    std::uniform_real_distribution<double> angle(-400.0, 400.0);
    std::uniform_real_distribution<float> value(-50.0F, 50.0F);
    for (int trial = 0; trial < 2000; ++trial) {
        COrientation orientation;
        setAngles(orientation, angle(engine), angle(engine), angle(engine));
        const Vector vector{value(engine), value(engine), value(engine)};
        const Vector actual = FieldRotation::rotated(orientation, vector);
        const Wide expected = oneAxisAfterTheOther(vector, orientation);
        for (std::size_t i = 0; i < 3; ++i)
            QVERIFY(std::fabs(static_cast<double>(expected[i]) - static_cast<double>(actual[i])) < 3e-5);
    }
}

/// After a thousand turns the factor of single precision is off by 5e-5, which shows in the sine.
void tst_FieldRotation::factorHasSinglePrecision()
{
    constexpr double kDegrees = 360000.0;
    COrientation orientation;
    setAngles(orientation, kDegrees, 0.0, 0.0);
    const Vector actual = FieldRotation::rotated(orientation, {1.0F, 0.0F, 0.0F});
    // The nearest single precision number to 0.017453292 is 0.01745329238474369.
    const double expected = std::sin(kDegrees * 0.01745329238474369);
    QVERIFY(std::fabs(static_cast<double>(actual[1]) - expected) < 1e-7);
    QVERIFY(std::fabs(expected) > 1e-5);
}

void tst_FieldRotation::blockTurnsOnceAndInPlace()
{
    CMeasureBlockMapping block;
    setAngles(block.Orientation, 90.0, 0.0, 0.0);
    const auto first = sample(1.0F, 0.0F, 5.0F);
    const auto second = sample(0.0F, 1.0F, 6.0F);
    block.Results = {first, second};
    QSignalSpy fieldSpy(first.data(), &CFieldIntensityResult::ByChanged);
    QSignalSpy markSpy(&block, &CMeasureBlockMapping::RotAppliedOnMeasBlockChanged);
    FieldRotation::applyOnce(block);
    QVERIFY(block.RotAppliedOnMeasBlock());
    QCOMPARE(markSpy.count(), 1);
    QCOMPARE(fieldSpy.count(), 1);
    QCOMPARE(block.Results[0], first);
    QVERIFY(std::fabs(first->Bx()) < 1e-6F);
    QVERIFY(std::fabs(first->By() - 1.0F) < 1e-6F);
    QCOMPARE(first->Bz(), 5.0F);
    QVERIFY(std::fabs(second->Bx() + 1.0F) < 1e-6F);
    QCOMPARE(second->Bz(), 6.0F);
    QCOMPARE(first->B(), 7.0F);
    QCOMPARE(first->BBprime(), 8.0F);
    QCOMPARE(first->dB(), 9.0F);

    const Vector once = componentsOf(*first);
    FieldRotation::applyOnce(block);
    QCOMPARE(componentsOf(*first), once);
    QCOMPARE(fieldSpy.count(), 1);
}

void tst_FieldRotation::markedBlockStays()
{
    CMeasureBlockMapping block;
    setAngles(block.Orientation, 10.0, 20.0, 30.0);
    block.SetRotAppliedOnMeasBlock(true);
    block.Results = {sample(1.0F, 2.0F, 3.0F)};
    FieldRotation::applyOnce(block);
    QCOMPARE(componentsOf(*block.Results[0]), (Vector{1.0F, 2.0F, 3.0F}));
}

void tst_FieldRotation::blockWithoutResults()
{
    CMeasureBlockMapping block;
    FieldRotation::applyOnce(block);
    QVERIFY(block.RotAppliedOnMeasBlock());
}

QTEST_GUILESS_MAIN(tst_FieldRotation)
#include "tst_FieldRotation.moc"
