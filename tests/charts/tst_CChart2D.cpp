// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2D.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QTest>

#include <cfloat>

using namespace MetaObjectTable;

namespace {

class EmptyChart : public CChart2D
{
public:
    int rowCount(const QModelIndex& = {}) const override { return 0; }
    int columnCount(const QModelIndex& = {}) const override { return 0; }
    QVariant data(const QModelIndex&, int) const override { return {}; }
};

} // namespace

class tst_CChart2D : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void constructedValues();
    void everyWriteIsTold();
};

void tst_CChart2D::surface()
{
    VERIFY_NO_DIFFERENCE(
        compareProperties(CChart2D::staticMetaObject, {{"Xmax", "double", ReadWrite},
                                                       {"Xmin", "double", ReadWrite},
                                                       {"Visible", "bool", ReadWrite},
                                                       {"AutoScaling", "bool", ReadWrite},
                                                       {"Ymax", "double", ReadWrite},
                                                       {"Ymin", "double", ReadWrite},
                                                       {"YmaxAllSignal", "double", ReadWrite},
                                                       {"YminAllSignal", "double", ReadWrite},
                                                       {"FirstDataInit", "bool", ReadWrite},
                                                       {"YminMaxReseted", "bool", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(
        CChart2D::staticMetaObject, QMetaMethod::Signal,
        {"XmaxChanged(double)", "XminChanged(double)", "VisibleChanged(bool)", "AutoScalingChanged(bool)",
         "YmaxChanged(double)", "YminChanged(double)", "YmaxAllSignalChanged(double)",
         "YminAllSignalChanged(double)", "FirstDataInitChanged(bool)", "YminMaxResetedChanged(bool)",
         "refreshLimitSliderX()", "refreshLimitSliderY()"}));
    QVERIFY(CChart2D::staticMetaObject.inherits(&QAbstractTableModel::staticMetaObject));
}

void tst_CChart2D::constructedValues()
{
    const EmptyChart chart;
    QCOMPARE(chart.Xmax(), 0.0);
    QCOMPARE(chart.Xmin(), 0.0);
    QCOMPARE(chart.Visible(), true);
    QCOMPARE(chart.AutoScaling(), true);
    QCOMPARE(chart.Ymax(), 10.0);
    QCOMPARE(chart.Ymin(), 0.001);
    QVERIFY(chart.YmaxAllSignal() == 1.7976931348623157e308);
    QVERIFY(chart.YminAllSignal() == 2.2250738585072014e-308);
    QCOMPARE(chart.FirstDataInit(), false);
    QCOMPARE(chart.YminMaxReseted(), true);
}

void tst_CChart2D::everyWriteIsTold()
{
    EmptyChart chart;
    for (int i = CChart2D::staticMetaObject.propertyOffset(); i < CChart2D::staticMetaObject.propertyCount();
         ++i) {
        const QMetaProperty property = CChart2D::staticMetaObject.property(i);
        QSignalSpy spy(&chart, property.notifySignal());
        const QVariant value =
            property.type() == QVariant::Bool ? QVariant(!property.read(&chart).toBool()) : QVariant(3.25);
        QVERIFY2(property.write(&chart, value), property.name());
        QVERIFY2(property.write(&chart, value), property.name());
        QCOMPARE(property.read(&chart), value);
        QVERIFY2(spy.count() == 2, property.name());
        QCOMPARE(spy.last().first(), value);
    }
}

QTEST_GUILESS_MAIN(tst_CChart2D)
#include "tst_CChart2D.moc"
