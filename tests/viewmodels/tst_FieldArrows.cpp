// SPDX-License-Identifier: GPL-3.0-or-later
#include "FieldArrows.h"

#include <QRandomGenerator>
#include <QtTest>

#include <array>
#include <cmath>
#include <limits>

namespace {

using Vector = std::array<double, 3>;
/// Scalar first.
using Quaternion = std::array<double, 4>;

constexpr double kPi = 3.14159265358979323846;

Vector cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vector& a, const Vector& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Quaternion multiply(const Quaternion& p, const Quaternion& q)
{
    return {p[0] * q[0] - p[1] * q[1] - p[2] * q[2] - p[3] * q[3],
            p[0] * q[1] + p[1] * q[0] + p[2] * q[3] - p[3] * q[2],
            p[0] * q[2] - p[1] * q[3] + p[2] * q[0] + p[3] * q[1],
            p[0] * q[3] + p[1] * q[2] - p[2] * q[1] + p[3] * q[0]};
}

Vector rotate(const Quaternion& q, const Vector& v)
{
    const Quaternion conjugate{q[0], -q[1], -q[2], -q[3]};
    const Quaternion turned = multiply(multiply(q, {0, v[0], v[1], v[2]}), conjugate);
    return {turned[1], turned[2], turned[3]};
}

Quaternion aboutAxis(const Vector& axis, double degrees)
{
    const double half = degrees * kPi / 360;
    return {std::cos(half), axis[0] * std::sin(half), axis[1] * std::sin(half), axis[2] * std::sin(half)};
}

Quaternion toQuaternion(const QQuaternion& q)
{
    return {q.scalar(), q.x(), q.y(), q.z()};
}

bool isNear(const Vector& a, const Vector& b, double tolerance)
{
    return std::abs(a[0] - b[0]) < tolerance && std::abs(a[1] - b[1]) < tolerance &&
           std::abs(a[2] - b[2]) < tolerance;
}

QVector<QSharedPointer<CFieldIntensityResult>> makeSamples(const QVector<Vector>& fields)
{
    QVector<QSharedPointer<CFieldIntensityResult>> samples;
    for (const Vector& field : fields) {
        auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->SetBx(float(field[0]));
        sample->SetBy(float(field[1]));
        sample->SetBz(float(field[2]));
        samples.append(sample);
    }
    return samples;
}

/// A field that turns in the plane across an axis, right-handed for a positive step.
QVector<Vector> turning(int axis, const QVector<double>& degrees)
{
    QVector<Vector> fields;
    for (const double angle : degrees) {
        Vector field{0.3, 0.3, 0.3};
        field[std::size_t(axis + 1) % 3] = 40 * std::cos(angle * kPi / 180);
        field[std::size_t(axis + 2) % 3] = 40 * std::sin(angle * kPi / 180);
        fields.append(field);
    }
    return fields;
}

const QVector3D kAxes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

} // namespace

class tst_FieldArrows : public QObject
{
    Q_OBJECT

private slots:
    void fieldArrowOfTheSixAxes_data();
    void fieldArrowOfTheSixAxes();
    void fieldArrowOfNullVectorIsIdentity();
    void fieldArrowOfWeakFields();
    void fieldArrowOfRandomVectors();
    void viewAxes();
    void rotationSense();
    void rotationOfFewSamples();
    void rotationOverRandomBlocks();
    void rotationIgnoresNothing();
    void rotationArrowOrientations_data();
    void rotationArrowOrientations();
};

void tst_FieldArrows::fieldArrowOfTheSixAxes_data()
{
    QTest::addColumn<QVector<double>>("direction");
    QTest::addRow("+x") << QVector<double>{1, 0, 0};
    QTest::addRow("-x") << QVector<double>{-1, 0, 0};
    QTest::addRow("+y") << QVector<double>{0, 1, 0};
    QTest::addRow("-y") << QVector<double>{0, -1, 0};
    QTest::addRow("+z") << QVector<double>{0, 0, 1};
    QTest::addRow("-z") << QVector<double>{0, 0, -1};
}

void tst_FieldArrows::fieldArrowOfTheSixAxes()
{
    QFETCH(QVector<double>, direction);
    const Quaternion q =
        toQuaternion(fieldArrowRotation(48 * direction[0], 48 * direction[1], 48 * direction[2]));
    QVERIFY(isNear(rotate(q, {0, 0, 1}), {direction[0], direction[1], direction[2]}, 1e-6));
}

void tst_FieldArrows::fieldArrowOfNullVectorIsIdentity()
{
    QCOMPARE(fieldArrowRotation(0, 0, 0), QQuaternion(1, 0, 0, 0));
    QCOMPARE(fieldArrowRotation(0, 0, 12), QQuaternion(1, 0, 0, 0));
}

void tst_FieldArrows::fieldArrowOfWeakFields()
{
    // Nanotesla as tesla, and the ends of the range of a float.
    for (const double scale : {1e-9, 1e-30, 1e30}) {
        const Quaternion q = toQuaternion(fieldArrowRotation(3 * scale, -4 * scale, 0));
        QVERIFY(isNear(rotate(q, {0, 0, 1}), {0.6, -0.8, 0}, 1e-6));
    }
}

void tst_FieldArrows::fieldArrowOfRandomVectors()
{
    QRandomGenerator random(11);
    for (int i = 0; i < 20000; ++i) {
        Vector d;
        for (double& component : d)
            component = (random.generateDouble() - 0.5) * 200;
        const double length = std::sqrt(dot(d, d));
        const Vector unit{d[0] / length, d[1] / length, d[2] / length};
        const Quaternion q = toQuaternion(fieldArrowRotation(d[0], d[1], d[2]));
        QVERIFY(isNear(rotate(q, {0, 0, 1}), unit, 5e-6));
        // The shortest way: the axis of the rotation lies across the start and the direction.
        const Vector axis{q[1], q[2], q[3]};
        QVERIFY(std::abs(axis[2]) < 1e-6);
        QVERIFY(std::abs(dot(axis, unit)) < 1e-6);
        QVERIFY(std::abs(dot(axis, axis) + q[0] * q[0] - 1) < 1e-5);
        QVERIFY(q[0] >= 0);
    }
}

void tst_FieldArrows::viewAxes()
{
    const QVector<int> expected{2, 2, 2, 0, 0, 0, 0, 0, 0, 2, 2, 2, 0, 0, 2, 2, 1, 1, 1};
    QCOMPARE(expected.size(), 19);
    for (int preset = 0; preset < expected.size(); ++preset)
        QCOMPARE(viewAxisOfCameraPreset(preset), std::optional<QVector3D>(kAxes[expected.at(preset)]));
    for (const int preset : {-1, 19, 24})
        QVERIFY(!viewAxisOfCameraPreset(preset).has_value());
}

void tst_FieldArrows::rotationSense()
{
    for (int axis = 0; axis < 3; ++axis) {
        const QVector3D& a = kAxes[axis];
        QCOMPARE(detectRotation(makeSamples(turning(axis, {0, 30, 60, 100})), a), RotationSense::Positive);
        QCOMPARE(detectRotation(makeSamples(turning(axis, {100, 60, 30})), a), RotationSense::Negative);
        QCOMPARE(detectRotation(makeSamples(turning(axis, {0, 30})), a), RotationSense::Positive);
        // It turns back at the end, at the start, or stands for a moment.
        QCOMPARE(detectRotation(makeSamples(turning(axis, {0, 30, 60, 50})), a), RotationSense::None);
        QCOMPARE(detectRotation(makeSamples(turning(axis, {10, 0, 30, 60})), a), RotationSense::None);
        QCOMPARE(detectRotation(makeSamples(turning(axis, {0, 30, 30, 60})), a), RotationSense::None);
        // More than half a turn between two samples is the other way round.
        QCOMPARE(detectRotation(makeSamples(turning(axis, {0, 200})), a), RotationSense::Negative);
    }
}

void tst_FieldArrows::rotationOfFewSamples()
{
    QCOMPARE(detectRotation({}, kAxes[2]), RotationSense::None);
    QCOMPARE(detectRotation(makeSamples({{1, 2, 3}}), kAxes[2]), RotationSense::None);
}

void tst_FieldArrows::rotationOverRandomBlocks()
{
    QRandomGenerator random(23);
    int shown = 0;
    for (int i = 0; i < 20000; ++i) {
        QVector<Vector> fields;
        const int count = random.bounded(1, 5);
        for (int k = 0; k < count; ++k) {
            // Whole numbers, so that the products are exact in single precision too.
            fields.append({double(random.bounded(-20, 21)), double(random.bounded(-20, 21)),
                           double(random.bounded(-20, 21))});
        }
        for (std::size_t axis = 0; axis < 3; ++axis) {
            int positive = 0;
            int negative = 0;
            for (int k = 1; k < count; ++k) {
                const double turn = cross(fields.at(k - 1), fields.at(k))[axis];
                positive += turn > 0 ? 1 : 0;
                negative += turn < 0 ? 1 : 0;
            }
            RotationSense expected = RotationSense::None;
            if (count > 1 && positive == count - 1)
                expected = RotationSense::Positive;
            if (count > 1 && negative == count - 1)
                expected = RotationSense::Negative;
            shown += expected != RotationSense::None ? 1 : 0;
            QCOMPARE(detectRotation(makeSamples(fields), kAxes[axis]), expected);
        }
    }
    QVERIFY(shown > 1000);
}

void tst_FieldArrows::rotationIgnoresNothing()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const QVector<Vector> fields = turning(2, {0, 30, 60, 90});
    for (int i = 0; i < fields.size(); ++i) {
        QVector<Vector> damaged = fields;
        damaged[i] = {nan, nan, nan};
        QCOMPARE(detectRotation(makeSamples(damaged), kAxes[2]), RotationSense::None);
    }
}

void tst_FieldArrows::rotationArrowOrientations_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<bool>("positive");
    QTest::addColumn<double>("pitch");
    QTest::addColumn<double>("yaw");
    QTest::addColumn<double>("roll");
    QTest::addRow("x positive") << 0 << true << 0.0 << 0.0 << 0.0;
    QTest::addRow("x negative") << 0 << false << 0.0 << 180.0 << 0.0;
    QTest::addRow("y positive") << 1 << true << 180.0 << 0.0 << -90.0;
    QTest::addRow("y negative") << 1 << false << 0.0 << 0.0 << -90.0;
    QTest::addRow("z positive") << 2 << true << 0.0 << -90.0 << 0.0;
    QTest::addRow("z negative") << 2 << false << 0.0 << 90.0 << 0.0;
}

void tst_FieldArrows::rotationArrowOrientations()
{
    QFETCH(int, axis);
    QFETCH(bool, positive);
    QFETCH(double, pitch);
    QFETCH(double, yaw);
    QFETCH(double, roll);
    const Quaternion q = toQuaternion(
        rotationArrowOrientation(kAxes[axis], positive ? RotationSense::Positive : RotationSense::Negative));
    // Roll about z first, then pitch about x, then yaw about y.
    const Quaternion expected = multiply(aboutAxis({0, 1, 0}, yaw),
                                         multiply(aboutAxis({1, 0, 0}, pitch), aboutAxis({0, 0, 1}, roll)));
    for (std::size_t i = 0; i < 4; ++i)
        QVERIFY2(std::abs(q[i] - expected[i]) < 1e-6, qPrintable(QString::number(i)));
    // The ring, which lies about the X axis, comes to lie about the view axis.
    const Vector ringAxis = rotate(q, {1, 0, 0});
    QVERIFY(std::abs(std::abs(ringAxis[std::size_t(axis)]) - 1) < 1e-6);
}

QTEST_GUILESS_MAIN(tst_FieldArrows)
#include "tst_FieldArrows.moc"
