// SPDX-License-Identifier: GPL-3.0-or-later
// The staircase of the exposure limits in the spectrum's view.
#include "SpectrumViewFixture.h"

#include <QQmlPropertyMap>
#include <QTest>

/// Stands for an operation whose instrument has a largest frequency.
class OperationStandIn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool LimitsFileLoaded MEMBER isLoaded CONSTANT)
    Q_PROPERTY(QObject* LimitsFile READ limitsFile CONSTANT)

public:
    QVector<QPointF> bands;
    double maxFrequency = -1.0;
    bool isLoaded = true;

    OperationStandIn() { m_limitsFile.insert(QStringLiteral("Converted"), true); }

    QObject* limitsFile() { return &m_limitsFile; }
    Q_INVOKABLE int getLimitsCount() const { return bands.size(); }
    Q_INVOKABLE double getFrequency(int index) const { return bands.at(index).x(); }
    Q_INVOKABLE double getExposure(int index) const { return bands.at(index).y(); }
    Q_INVOKABLE double getMaxFrequency() const { return maxFrequency; }

private:
    QQmlPropertyMap m_limitsFile;
};

class tst_SpectrumChart2DLimits : public QObject, private SpectrumViewFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void staircase_data();
    void staircase();
    void staircaseFollowsTheUnit();
    void staircaseEndsAtTheInstrument_data();
    void staircaseEndsAtTheInstrument();
};

void tst_SpectrumChart2DLimits::staircase_data()
{
    using Points = QVector<QPointF>;
    QTest::addColumn<QVector<QPointF>>("bands");
    QTest::addColumn<QVector<QPointF>>("points");
    QTest::newRow("one") << Points({{50, 2}}) << Points({{0, 2}, {50, 2}});
    QTest::newRow("three") << Points({{10, 4}, {50, 2}, {80, 8}})
                           << Points({{0, 4}, {10, 4}, {10, 2}, {50, 2}, {50, 8}, {80, 8}});
    QTest::newRow("gap in the middle")
        << Points({{10, 4}, {50, 0}, {80, 8}}) << Points({{0, 4}, {10, 4}, {50, 8}, {80, 8}});
    QTest::newRow("gap at the end") << Points({{10, 4}, {50, -1}}) << Points({{0, 4}, {10, 4}});
    QTest::newRow("not ascending") << Points({{50, 4}, {10, 2}})
                                   << Points({{0, 4}, {50, 4}, {50, 2}, {10, 2}});
}

void tst_SpectrumChart2DLimits::staircase()
{
    QFETCH(QVector<QPointF>, bands);
    QFETCH(QVector<QPointF>, points);
    load();
    QVector<QPair<double, double>> limits;
    for (const QPointF& band : bands)
        limits.append({band.x(), band.y()});
    loadLimits(limits);
    settle();
    QCOMPARE(series(1)->pointsVector(), points);
    QCOMPARE(series(0)->count(), 101);
    // Other limits of the same count
    for (auto& limit : limits)
        limit.second *= 2.0;
    loadLimits(limits);
    settle();
    QCOMPARE(series(1)->pointsVector().first().y(), points.first().y() * 2.0);
    m_operation->clearLimitsFile();
    settle();
    QCOMPARE(series(1)->count(), 0);
}

void tst_SpectrumChart2DLimits::staircaseFollowsTheUnit()
{
    load();
    loadLimits({{50, 2}});
    settle();
    QCOMPARE(series(1)->at(0).y(), 2.0);
    parameters().SetDisplayUnits(CUnits::MILLI_TESLA);
    settle();
    QCOMPARE(series(1)->at(0).y(), 2000.0);
}

void tst_SpectrumChart2DLimits::staircaseEndsAtTheInstrument_data()
{
    using Points = QVector<QPointF>;
    QTest::addColumn<QVector<QPointF>>("bands");
    QTest::addColumn<double>("maxFrequency");
    QTest::addColumn<QVector<QPointF>>("points");
    const Points two{{10, 4}, {50, 2}};
    const Points steps{{0, 4}, {10, 4}, {10, 2}, {50, 2}};
    QTest::newRow("no instrument") << two << -1.0 << steps;
    QTest::newRow("beyond the bands") << two << 500.0 << steps + Points({{500, 2}});
    QTest::newRow("before their end") << two << 20.0 << steps + Points({{20, 2}});
    QTest::newRow("zero") << two << 0.0 << steps + Points({{0, 2}});
    QTest::newRow("last band without a limit")
        << Points({{10, 4}, {50, 0}}) << 500.0 << Points({{0, 4}, {10, 4}});
    QTest::newRow("no bands") << Points() << 500.0 << Points();
}

void tst_SpectrumChart2DLimits::staircaseEndsAtTheInstrument()
{
    QFETCH(QVector<QPointF>, bands);
    QFETCH(double, maxFrequency);
    QFETCH(QVector<QPointF>, points);
    OperationStandIn operation;
    operation.bands = bands;
    operation.maxFrequency = maxFrequency;
    load(true, &operation);
    QCOMPARE(series(1)->pointsVector(), points);
    unload();
}

QTEST_MAIN(tst_SpectrumChart2DLimits)
#include "tst_SpectrumChart2DLimits.moc"
