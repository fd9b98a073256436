// SPDX-License-Identifier: GPL-3.0-or-later
#include "CReplayParameters.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QtTest>

class tst_CReplayParameters : public QObject
{
    Q_OBJECT

private slots:
    void surface()
    {
        using namespace MetaObjectTable;
        VERIFY_NO_DIFFERENCE(compareProperties(CReplayParameters::staticMetaObject,
                                               {{"SelectedTimeWarpIndex", "int", ReadWrite},
                                                {"TimeWarp", "double", ReadWrite},
                                                {"StartingBlock", "int", ReadWrite},
                                                {"CurrentBlock", "int", ReadWrite},
                                                {"EndingBlock", "int", ReadWrite},
                                                {"StepByStepMode", "bool", ReadWrite}}));
    }

    void initialValues()
    {
        const CReplayParameters parameters;
        QCOMPARE(parameters.SelectedTimeWarpIndex(), -1);
        QCOMPARE(parameters.StartingBlock(), 1);
        QCOMPARE(parameters.CurrentBlock(), 1);
        QCOMPARE(parameters.EndingBlock(), 1);
        QVERIFY(!parameters.StepByStepMode());
    }

    void settersEmitOnlyOnChange_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("SelectedTimeWarpIndex") << QVariant(4);
        QTest::newRow("TimeWarp") << QVariant(10.0);
        QTest::newRow("StartingBlock") << QVariant(2);
        QTest::newRow("CurrentBlock") << QVariant(3);
        QTest::newRow("EndingBlock") << QVariant(0);
        QTest::newRow("StepByStepMode") << QVariant(true);
    }

    void settersEmitOnlyOnChange()
    {
        QFETCH(QVariant, value);
        CReplayParameters parameters;
        const QMetaObject* meta = parameters.metaObject();
        const QMetaProperty property = meta->property(meta->indexOfProperty(QTest::currentDataTag()));
        QSignalSpy spy(&parameters, property.notifySignal());
        QVERIFY(property.write(&parameters, value));
        QVERIFY(property.write(&parameters, value));
        QCOMPARE(property.read(&parameters), value);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy[0][0], value);
    }
};

QTEST_GUILESS_MAIN(tst_CReplayParameters)
#include "tst_CReplayParameters.moc"
