// SPDX-License-Identifier: GPL-3.0-or-later
// The component tab on a display that cannot draw the 3-D scene.
#include "MeterView.h"

#include <QSGRendererInterface>
#include <QTest>

class tst_SceneWithoutOpenGL : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QmlTestSetup::Prepare(); }
    void cleanup() { QCOMPARE(QmlTestSetup::WarningCount(), 0); }
    void textTakesThePlaceOfTheScene();
};

void tst_SceneWithoutOpenGL::textTakesThePlaceOfTheScene()
{
    MeterView view;
    view.Load();
    QCOMPARE(view.Window().rendererInterface()->graphicsApi(), QSGRendererInterface::Software);
    QTRY_VERIFY(view.Find("sceneUnavailableLabel")->isVisible());
    QVERIFY(!view.Find("meterScene"));
    // The rest of the tab goes on.
    const QImage before = view.Picture();
    view.Deliver(0, 0, 48);
    view.Deliver(3, 4, 48);
    const QImage after = view.Picture();
    const QRect gauge = view.PlaceInPicture(view.Find("compasRightSide"));
    QVERIFY(qGray(before.pixel(gauge.left() + 20, gauge.center().y())) > 200);
    QVERIFY(qGray(after.pixel(gauge.left() + 20, gauge.center().y())) < 128);
}

QTEST_MAIN(tst_SceneWithoutOpenGL)
#include "tst_SceneWithoutOpenGL.moc"
