// SPDX-License-Identifier: GPL-3.0-or-later
// Compass and 3-D scene in the whole program, live and in replay.
#include "EndToEndTest.h"

#include <QMetaProperty>
#include <QQuaternion>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QVector3D>

/// Each test function is one run of the program, in a process of its own.
class tst_EndToEndDirection : public EndToEndTest
{
    Q_OBJECT

private slots:
    void directionLiveAndInReplay();
    void rotation();

private:
    double meter(const char* property) { return scenario().PageViewModel()->property(property).toDouble(); }
    bool isSideShown(const char* side);
    bool hasArrow();
    /// Where the arrow of the scene points.
    QVector3D arrow();
    /// What the view model tells of the field.
    QVector3D field();
    void start(const char* field);
    void chooseProbeAxis(int index);
    void goThroughTheTabs();
    /// Whether arrow and gauge are on the screen, within the window.
    void compareSight();
};

void tst_EndToEndDirection::start(const char* field)
{
    Scenario::WriteSimulationSettings(QStringLiteral("[Field]\n") + QLatin1String(field) +
                                      QStringLiteral("\n[Sensor]\nNoise=0\n"));
    // From the front: X to the right, Y up, Z towards the viewer.
    Scenario::WriteApplicationSettings(QStringLiteral("<Meter3DCameraPreset>1</Meter3DCameraPreset>"));
    startWithDefaultInstrument();
    driver().Window()->resize(1280, 960);
    QVERIFY(driver().WaitFor(QStringLiteral("meterScene")));
}

bool tst_EndToEndDirection::isSideShown(const char* side)
{
    const QQuickItem* item = driver().Find(QLatin1String(side));
    return item && item->property("isShown").toBool();
}

bool tst_EndToEndDirection::hasArrow()
{
    const QQuickItem* scene = driver().Find(QStringLiteral("meterScene"));
    return scene && scene->property("hasFieldVector").toBool();
}

QVector3D tst_EndToEndDirection::arrow()
{
    const auto* item = driver().Find(QStringLiteral("meterScene"))->property("fieldVector").value<QObject*>();
    return item->property("rotation").value<QQuaternion>().rotatedVector(QVector3D(0, 1, 0));
}

QVector3D tst_EndToEndDirection::field()
{
    return QVector3D(float(meter("BxLastBlock")), float(meter("ByLastBlock")), float(meter("BzLastBlock")))
        .normalized();
}

void tst_EndToEndDirection::chooseProbeAxis(int index)
{
    QVERIFY(driver().Click(QStringLiteral("probeAxisChoiceBox")));
    const auto* list =
        driver().Find(QStringLiteral("probeAxisChoiceBox"))->property("popup").value<QObject*>();
    QTRY_VERIFY(list && list->property("opened").toBool());
    driver().Key(Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        driver().Key(Qt::Key_Down);
    driver().Key(Qt::Key_Return);
    QTRY_COMPARE(meter("SelectedProbeAxisIndex"), double(index));
}

void tst_EndToEndDirection::goThroughTheTabs()
{
    QVERIFY(driver().Click(QStringLiteral("tableTab")));
    QVERIFY(driver().WaitFor(QStringLiteral("resultsTable")));
    QVERIFY(!driver().IsVisible(QStringLiteral("meterScene")));
    QVERIFY(!driver().IsVisible(QStringLiteral("meterCompas")));
    QVERIFY(driver().Click(QStringLiteral("componentTab")));
    QVERIFY(driver().WaitFor(QStringLiteral("meterScene")));
    QTRY_VERIFY(hasArrow());
    QCOMPARE(driver().Find(QStringLiteral("probeAxisChoice"))->property("currentIndex").toDouble(),
             meter("SelectedProbeAxisIndex"));
}

void tst_EndToEndDirection::compareSight()
{
    const auto place = [this](const char* name) {
        const QQuickItem* item = driver().Find(QLatin1String(name));
        return item ? item->mapRectToScene(QRectF(0, 0, item->width(), item->height())) : QRectF();
    };
    const QRectF window(QPointF(), QSizeF(driver().Window()->size()));
    for (const char* name : {"meterScene", "compasLeftSide", "compasRightSide", "compasModeChoice"})
        QTRY_VERIFY2(window.contains(place(name)) && place(name).width() > 100 && place(name).height() >= 30,
                     name);
    // The mode must not run into the scene.
    QTRY_VERIFY(place("compasModeChoice").bottom() + 20 <= place("meterScene").top());
}

void tst_EndToEndDirection::directionLiveAndInReplay()
{
    start("DcX=0\nDcY=-40\nDcZ=0\nAcX=0\nAcY=0\nAcZ=0\nRotatingAmplitude=20\nRotatingFrequency=0.8");
    QVERIFY(!hasArrow());
    QVERIFY(!isSideShown("compasLeftSide") && !isSideShown("compasRightSide"));

    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY(hasArrow());
    QTRY_VERIFY(blocks() > 2);
    // At rest, so that both are of the same block.
    QVERIFY(driver().Click(QStringLiteral("holdButton")));
    QTRY_VERIFY(scenario().Flag("IsHolding") && (arrow() - field()).length() < 1e-3F);
    QVERIFY(arrow().y() < -0.5F);
    chooseProbeAxis(1);
    QVERIFY(isSideShown("compasLeftSide"));
    QVERIFY(!isSideShown("compasRightSide"));
    compareSight();
    goThroughTheTabs();

    driver().Window()->resize(954, 698);
    QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
    compareSight();
    goThroughTheTabs();
    driver().Window()->resize(1280, 960);
    QVERIFY(driver().WaitFor(QStringLiteral("meterMenuButton")));

    QVERIFY(driver().Click(QStringLiteral("recordButton")));
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY(blocks() >= 12);
    goThroughTheTabs();
    QVERIFY(driver().Click(QStringLiteral("stopButton")));

    QVector<QVector3D> shown;
    QObject* viewModel = scenario().PageViewModel();
    // By name: the end-to-end tests know the view models by their properties only.
    const QMetaProperty ready =
        viewModel->metaObject()->property(viewModel->metaObject()->indexOfProperty("NewMeasureReady"));
    QSignalSpy blocksShown(viewModel, QByteArray("2") + ready.notifySignal().methodSignature());
    QVERIFY(driver().Click(QStringLiteral("playbackButton")));
    QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
    const auto note = [&] {
        if (shown.isEmpty() || (arrow() - shown.last()).length() > 1e-3F)
            shown.append(arrow());
    };
    bool hasTurned = false;
    while (scenario().Flag("IsPlayingBack")) {
        if (!blocksShown.wait(200) || !viewModel->property("NewMeasureReady").toBool() || !hasArrow())
            continue;
        QVERIFY((arrow() - field()).length() < 1e-3F);
        note();
        if (shown.size() == 3 && !hasTurned) {
            hasTurned = true;
            goThroughTheTabs();
        }
    }
    // The replay may have gone on to its end on the other tab.
    QVERIFY((arrow() - field()).length() < 1e-3F);
    note();
    QVERIFY2(shown.size() >= 4, qPrintable(QString::number(shown.size())));
}

void tst_EndToEndDirection::rotation()
{
    start("DcX=0\nDcY=0\nDcZ=30\nAcX=0\nAcY=0\nAcZ=0\nRotatingAmplitude=20\nRotatingFrequency=0.8");
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY(blocks() > 2);
    QVERIFY(!driver().IsVisible(QStringLiteral("rotationButton")));
    scenario().PageViewModel()->setProperty("RotEnable", true);
    QVERIFY(driver().WaitFor(QStringLiteral("rotationButton")));
    const auto* ring =
        driver().Find(QStringLiteral("meterScene"))->property("rotationArrow").value<QObject*>();
    QVERIFY(ring->property("visible").toBool());
    QVERIFY(driver().Click(QStringLiteral("rotationButton")));
    QVERIFY(!scenario().PageViewModel()->property("RotEnable").toBool());
    QTRY_VERIFY(!driver().IsVisible(QStringLiteral("rotationButton")));
    QVERIFY(!ring->property("visible").toBool());
    QVERIFY(driver().Click(QStringLiteral("holdButton")));
}

END_TO_END_MAIN(tst_EndToEndDirection)
#include "tst_EndToEndDirection.moc"
