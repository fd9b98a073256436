// SPDX-License-Identifier: GPL-3.0-or-later
// The views with a 3-D scene on a display that cannot draw it.
#include "COperationMapping.h"
#include "FakeMappingPage.h"
#include "MeterView.h"
#include "PatientWait.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QSGRendererInterface>
#include <QTest>

class tst_SceneWithoutOpenGL : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QmlTestSetup::Prepare(); }
    void cleanup() { QCOMPARE(QmlTestSetup::WarningCount(), 0); }
    void textTakesThePlaceOfTheScene();
    void mappingGoesOnWithoutItsVectors();
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

void tst_SceneWithoutOpenGL::mappingGoesOnWithoutItsVectors()
{
    MeasureFixture fixture;
    COperationMapping operation(&fixture.settings, &fixture.pluginsManager, &fixture.supervisor);
    FakeMappingPage page;
    page.history = {FakeMappingPage::along({1, 0, 0}, 1, {0.5F, 0.5F, 0.5F})};
    operation.RecordingManager()->DataSet()->SetResultsCount(1);
    QmlTestSetup setup;
    QQuickView view;
    setup.setUp(view.engine());
    view.rootContext()->setContextProperty(QStringLiteral("Settings"), &fixture.settings);
    view.rootContext()->setContextProperty(QStringLiteral("ActiveOperation"), &operation);
    view.rootContext()->setContextProperty(QStringLiteral("ActivePageViewModel"), &page);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QStringLiteral("qrc:/Resources/Controls/Chart3D/VectorsChart3D.qml")));
    view.resize(800, 600);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view, kLongWaitMs));
    const auto find = [&view](const char* name) {
        return view.rootObject()->findChild<QQuickItem*>(QLatin1String(name));
    };
    QTRY_VERIFY(find("sceneUnavailableLabel")->isVisible());
    QVERIFY(!find("vectorsScene"));
    // What acts on the scene has nothing to act on.
    for (const char* name : {"isometricViewButton", "topViewButton", "frontViewButton", "sideViewButton",
                             "vectorLengthSlider"}) {
        QQuickItem* item = find(name);
        QVERIFY2(item->isVisible() && !item->isEnabled(), name);
        QTest::mouseClick(&view, Qt::LeftButton, {},
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }
    // The page tells of its blocks all the same.
    page.append(FakeMappingPage::along({0, 1, 0}, 2, {0.5F, 0.5F, 0.5F}));
    page.setProperty("XStop", 7.0);
    emit page.setVisibleUntilChart();
    emit page.reload3DPlots();
    emit page.clear3DPlots();
    QCOMPARE(page.asked, QVector<int>());
    QCOMPARE(page.sliderValueGraph3D, 0.1);
}

QTEST_MAIN(tst_SceneWithoutOpenGL)
#include "tst_SceneWithoutOpenGL.moc"
