// SPDX-License-Identifier: GPL-3.0-or-later
#include "CompassGeometry.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <limits>

class tst_CompassGeometry : public QObject
{
    Q_OBJECT

private slots:
    void knownDirections_data();
    void knownDirections();
    void nothingForNullMagnitudeOrUnknownAxis();
    void heightMayBeNegative();
    void notANumberStays();
    void randomVectors();
};

void tst_CompassGeometry::knownDirections_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<QVector<double>>("field");
    QTest::addColumn<double>("n");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addRow("along +z") << 2 << QVector<double>{0, 0, 5} << 5.0 << 1.0 << 1.0;
    QTest::addRow("along -z") << 2 << QVector<double>{0, 0, -5} << 5.0 << -1.0 << 1.0;
    QTest::addRow("across z") << 2 << QVector<double>{3, 4, 0} << 5.0 << 0.0 << 0.0;
    QTest::addRow("x of 3-4-0") << 0 << QVector<double>{3, 4, 0} << 5.0 << 0.6 << 1 - 0.8;
    QTest::addRow("y of 3-4-0") << 1 << QVector<double>{3, 4, 0} << 5.0 << 0.8 << 1 - 0.6;
    QTest::addRow("y of 0-12-5") << 1 << QVector<double>{0, -12, 5} << 13.0 << -12.0 / 13 << 1 - 5.0 / 13;
    QTest::addRow("negative magnitude") << 0 << QVector<double>{3, 4, 0} << -5.0 << -0.6 << 1.8;
}

void tst_CompassGeometry::knownDirections()
{
    QFETCH(int, axis);
    QFETCH(QVector<double>, field);
    QFETCH(double, n);
    QFETCH(double, width);
    QFETCH(double, height);
    const auto triangle = computeCompassTriangle(axis, field[0], field[1], field[2], n);
    QVERIFY(triangle.has_value());
    QVERIFY(std::abs(triangle->width - width) < 1e-12);
    QVERIFY(std::abs(triangle->height - height) < 1e-12);
}

void tst_CompassGeometry::nothingForNullMagnitudeOrUnknownAxis()
{
    QVERIFY(!computeCompassTriangle(0, 1, 2, 3, 0.0).has_value());
    QVERIFY(!computeCompassTriangle(0, 1, 2, 3, -0.0).has_value());
    QVERIFY(!computeCompassTriangle(-1, 1, 2, 3, 4).has_value());
    QVERIFY(!computeCompassTriangle(3, 1, 2, 3, 4).has_value());
}

void tst_CompassGeometry::heightMayBeNegative()
{
    const auto triangle = computeCompassTriangle(2, 3, 4, 0, 2.5);
    QCOMPARE(triangle->height, -1.0);
}

void tst_CompassGeometry::notANumberStays()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto triangle = computeCompassTriangle(2, 1, 2, 3, nan);
    QVERIFY(std::isnan(triangle->width));
    QVERIFY(std::isnan(triangle->height));
}

void tst_CompassGeometry::randomVectors()
{
    QRandomGenerator random(7);
    const auto next = [&random] { return (random.generateDouble() - 0.5) * 1e5; };
    for (int i = 0; i < 20000; ++i) {
        const long double field[3] = {next(), next(), next()};
        const long double n = next();
        for (int axis = 0; axis < 3; ++axis) {
            // The part across the axis from the whole length and the part along it.
            long double across = 0;
            for (int other = 0; other < 3; ++other) {
                if (other != axis)
                    across = std::hypot(across, field[other]);
            }
            const auto triangle =
                computeCompassTriangle(axis, double(field[0]), double(field[1]), double(field[2]), double(n));
            const long double width = field[axis] / n;
            const long double height = (n - across) / n;
            QVERIFY(std::abs(triangle->width - width) <= 1e-14L * std::abs(width));
            QVERIFY(std::abs(triangle->height - height) <= 1e-14L * (1 + across / std::abs(n)));
        }
    }
}

QTEST_GUILESS_MAIN(tst_CompassGeometry)
#include "tst_CompassGeometry.moc"
