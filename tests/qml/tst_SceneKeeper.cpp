// SPDX-License-Identifier: GPL-3.0-or-later
// A 3-D scene that outlives what shows it: it is made once, and each showing finds it as if it were new.
#include "CMeterOperationViewModel.h"
#include "HeapGrowth.h"
#include "MeasureFixture.h"
#include "PatientWait.h"
#include "QmlTestSetup.h"
#include "SceneTestMain.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuaternion>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>
#include <QVector3D>

#include <cmath>
#include <limits>
#include <memory>

namespace {

/// Two places that show the component tab, in turn or both at a time, in a window that keeps its scenes.
const char* const kWindow = R"(
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Controls/Chart3D"

ApplicationWindow {
    property alias sceneKeeper: keeper
    property alias first: firstLoader.active
    property alias second: secondLoader.active

    width: 600
    height: 900
    visible: true

    SceneKeeper {
        id: keeper
    }

    Loader {
        id: firstLoader

        width: parent.width
        height: parent.height / 2
        active: false
        source: "Controls/Meter/ComponentDisplayer.qml"
    }

    Loader {
        id: secondLoader

        y: parent.height / 2
        width: parent.width
        height: parent.height / 2
        active: false
        source: "Controls/Meter/ComponentDisplayer.qml"
    }
}
)";

QVector3D directionOf(const QObject* arrow)
{
    // The mesh lies along Y.
    return arrow->property("rotation").value<QQuaternion>().rotatedVector(QVector3D(0, 1, 0));
}

bool isAlong(const QObject* arrow, const QVector3D& direction)
{
    return (directionOf(arrow) - direction).length() < 1e-4F;
}

} // namespace

class tst_SceneKeeper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QmlTestSetup::Prepare(); }
    void init();
    void cleanup();

    void isMadeOnce();
    void followsThePlaceThatShowsIt();
    void keepsItsSizeApartFromAnyPlace();
    void cameraIsSetAnew_data();
    void cameraIsSetAnew();
    void projectionFollowsTheSettings();
    void arrowOfWhatWasMeasuredMeanwhile();
    void noArrowOfADatasetThatIsGone();
    void noArrowWithoutADirection();
    void rotationArrowGoesWithItsViewModel();
    void usesNothingWhileItIsKept();
    void showsTheNextViewModel();
    void lastBorrowerHasIt();
    void sourceThatIsNone();
    void memoryDoesNotGrow();

private:
    std::unique_ptr<CMeterOperationViewModel> makeViewModel();
    void publish(QObject* page);
    void deliver(float bx, float by, float bz);
    void show(bool isShown = true) { m_window->setProperty("first", isShown); }
    void showSecond(bool isShown) { m_window->setProperty("second", isShown); }
    QObject* keeper() { return m_window->property("sceneKeeper").value<QObject*>(); }
    /// The scenes, shown or kept.
    QList<QQuickItem*> scenes() { return m_window->findChildren<QQuickItem*>(QStringLiteral("meterScene")); }
    QQuickItem* scene() { return scenes().value(0); }
    QObject* part(const char* name) { return scene()->property(name).value<QObject*>(); }
    QObject* camera() { return part("scene")->property("activeCamera").value<QObject*>(); }
    /// Lets everything come to its end that is under way, the drawing as well.
    void settle();

    MeasureFixture m_fixture;
    QmlTestSetup m_setup;
    std::unique_ptr<CMeterOperationViewModel> m_meter;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    int m_warningsBefore = 0;
};

std::unique_ptr<CMeterOperationViewModel> tst_SceneKeeper::makeViewModel()
{
    auto meter = std::make_unique<CMeterOperationViewModel>(&m_fixture.operation, &m_fixture.settings,
                                                            &m_fixture.notifier);
    QQmlEngine::setObjectOwnership(meter.get(), QQmlEngine::CppOwnership);
    return meter;
}

void tst_SceneKeeper::publish(QObject* page)
{
    m_engine->rootContext()->setContextProperty(QStringLiteral("ActivePageViewModel"), page);
}

void tst_SceneKeeper::deliver(float bx, float by, float bz)
{
    Sample sample;
    sample.bx = bx;
    sample.by = by;
    sample.bz = bz;
    sample.b = std::sqrt(bx * bx + by * by + bz * bz);
    m_fixture.operation.OnNewMeasure(makeBlock({sample}));
}

void tst_SceneKeeper::settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // A scene draws what it has heard of in the frame before.
    m_window->grabWindow();
    m_window->grabWindow();
}

void tst_SceneKeeper::init()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
    m_fixture.operation.Reset();
    m_fixture.settings.SetMeter3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPresetIsometricRight);
    m_fixture.settings.SetMeter3DZoomLevel(100);
    m_fixture.settings.SetMeter3DOrthoProjection(false);
    m_meter = makeViewModel();
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        m_setup.setUp(m_engine.get());
    }
    QQmlContext* context = m_engine->rootContext();
    context->setContextProperty(QStringLiteral("Settings"), &m_fixture.settings);
    context->setContextProperty(QStringLiteral("ActiveOperation"), &m_fixture.operation);
    publish(m_meter.get());
    QQmlComponent component(m_engine.get());
    component.setData(kWindow, QUrl(QStringLiteral("qrc:/Resources/TestWindow.qml")));
    m_window.reset(qobject_cast<QQuickWindow*>(component.create()));
    QVERIFY2(m_window, qPrintable(component.errorString()));
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), kLongWaitMs));
    show();
    QTRY_COMPARE(scenes().size(), 1);
    settle();
}

void tst_SceneKeeper::cleanup()
{
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_meter.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void tst_SceneKeeper::isMadeOnce()
{
    const QPointer<QQuickItem> made = scene();
    QVERIFY(made->isVisible());
    for (int i = 0; i < 3; ++i) {
        show(false);
        settle();
        QVERIFY(made);
        QVERIFY(!made->isVisible());
        QCOMPARE(made->parentItem(), qobject_cast<QQuickItem*>(keeper()));
        QCOMPARE(made->window(), m_window.get());
        show();
        settle();
        QCOMPARE(scenes(), QList<QQuickItem*>{made});
        QVERIFY(made->isVisible());
    }
}

void tst_SceneKeeper::followsThePlaceThatShowsIt()
{
    const QSizeF before(scene()->width(), scene()->height());
    QVERIFY(before.width() > 200 && before.height() > 100);
    show(false);
    settle();
    // Another size would cost another picture.
    QCOMPARE(QSizeF(scene()->width(), scene()->height()), before);
    m_window->resize(700, 1000);
    show();
    QTRY_COMPARE(scene()->width(), before.width() + 50);
    QTRY_VERIFY(scene()->height() > before.height());
    QCOMPARE(scene()->position(), QPointF());
    m_window->resize(600, 900);
    QTRY_COMPARE(QSizeF(scene()->width(), scene()->height()), before);
}

void tst_SceneKeeper::keepsItsSizeApartFromAnyPlace()
{
    const QUrl source(QStringLiteral("qrc:/Resources/Controls/Meter/MeterScene.qml"));
    QQuickItem place(m_window->contentItem());
    place.setSize({120, 90});
    const QVariant parameters[] = {source, QVariant::fromValue(&place)};
    QVERIFY(QMetaObject::invokeMethod(keeper(), "borrow", Q_ARG(QVariant, parameters[0]),
                                      Q_ARG(QVariant, parameters[1])));
    QCOMPARE(scenes().size(), 1);
    QCOMPARE(scene()->parentItem(), &place);
    QCOMPARE(scene()->width(), 120.0);
    place.setSize({130, 80});
    QCOMPARE(scene()->size(), QSizeF(130, 80));
    QVERIFY(QMetaObject::invokeMethod(keeper(), "giveBack", Q_ARG(QVariant, parameters[0]),
                                      Q_ARG(QVariant, parameters[1])));
    place.setSize({50, 40});
    QCOMPARE(scene()->size(), QSizeF(130, 80));
}

void tst_SceneKeeper::cameraIsSetAnew_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<double>("zoom");
    QTest::addRow("unchanged settings") << 14 << 100.0;
    QTest::addRow("other settings") << 16 << 45.5;
}

void tst_SceneKeeper::cameraIsSetAnew()
{
    QFETCH(int, preset);
    QFETCH(double, zoom);
    // As the mouse does.
    camera()->setProperty("xRotation", 11.0);
    camera()->setProperty("yRotation", 12.0);
    camera()->setProperty("zoomLevel", 222.0);
    QVERIFY(camera()->property("cameraPreset").toInt() != preset);
    show(false);
    settle();
    m_fixture.settings.SetMeter3DCameraPreset(
        static_cast<QtDataVisualization::Q3DCamera::CameraPreset>(preset));
    m_fixture.settings.SetMeter3DZoomLevel(zoom);
    show();
    QCOMPARE(camera()->property("cameraPreset").toInt(), preset);
    QCOMPARE(camera()->property("zoomLevel").toDouble(), zoom);
    QVERIFY(camera()->property("xRotation").toDouble() != 11.0);
    QVERIFY(camera()->property("yRotation").toDouble() != 12.0);
}

void tst_SceneKeeper::projectionFollowsTheSettings()
{
    QCOMPARE(scene()->property("orthoProjection").toBool(), false);
    show(false);
    settle();
    m_fixture.settings.SetMeter3DOrthoProjection(true);
    show();
    QCOMPARE(scene()->property("orthoProjection").toBool(), true);
}

void tst_SceneKeeper::arrowOfWhatWasMeasuredMeanwhile()
{
    deliver(48, 0, 0);
    QVERIFY(isAlong(part("fieldVector"), {1, 0, 0}));
    show(false);
    settle();
    deliver(0, 48, 0);
    QVERIFY(!part("fieldVector")->property("visible").toBool());
    QVERIFY(isAlong(part("fieldVector"), {1, 0, 0}));
    show();
    QVERIFY(part("fieldVector")->property("visible").toBool());
    QVERIFY(isAlong(part("fieldVector"), {0, 1, 0}));
    deliver(0, 0, 48);
    QVERIFY(isAlong(part("fieldVector"), {0, 0, 1}));
}

void tst_SceneKeeper::noArrowOfADatasetThatIsGone()
{
    deliver(48, 0, 0);
    show(false);
    settle();
    m_fixture.operation.Reset();
    show();
    QCOMPARE(scene()->property("hasFieldVector").toBool(), false);
    QVERIFY(!part("fieldVector")->property("visible").toBool());
    deliver(0, 48, 0);
    QVERIFY(part("fieldVector")->property("visible").toBool());
    QVERIFY(isAlong(part("fieldVector"), {0, 1, 0}));
}

/// A direction that is not a number would leave a new scene without arrow.
void tst_SceneKeeper::noArrowWithoutADirection()
{
    deliver(48, 0, 0);
    show(false);
    settle();
    deliver(std::numeric_limits<float>::quiet_NaN(), 0, 0);
    show();
    QVERIFY(!part("fieldVector")->property("visible").toBool());
}

void tst_SceneKeeper::rotationArrowGoesWithItsViewModel()
{
    const auto turn = [this] {
        QVector<Sample> samples(4);
        for (int i = 0; i < samples.size(); ++i) {
            samples[i].bx = float(std::cos(0.5 * i));
            samples[i].by = float(std::sin(0.5 * i));
            samples[i].bz = 0.2F;
            samples[i].b = 1.02F;
            samples[i].timeMs = i * 10;
        }
        m_fixture.operation.OnNewMeasure(makeBlock(samples));
    };
    m_meter->SetRotEnable(true);
    turn();
    QVERIFY(part("rotationArrow")->property("visible").toBool());
    const auto rotation = part("rotationArrow")->property("rotation").value<QQuaternion>();
    show(false);
    settle();
    QVERIFY(!part("rotationArrow")->property("visible").toBool());
    show();
    QVERIFY(part("rotationArrow")->property("visible").toBool());
    QVERIFY(qFuzzyCompare(part("rotationArrow")->property("rotation").value<QQuaternion>(), rotation));
}

/// Another page has another view model, and may have another operation.
void tst_SceneKeeper::usesNothingWhileItIsKept()
{
    deliver(48, 0, 0);
    show(false);
    QCOMPARE(part("viewModel"), nullptr);
    QObject otherPage;
    publish(&otherPage);
    m_meter.reset();
    settle();
    m_engine->rootContext()->setContextProperty(QStringLiteral("ActiveOperation"), QVariant());
    m_fixture.settings.SetMeter3DZoomLevel(80);
    settle();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
    QCOMPARE(part("viewModel"), nullptr);
}

void tst_SceneKeeper::showsTheNextViewModel()
{
    deliver(48, 0, 0);
    show(false);
    settle();
    m_fixture.operation.Reset();
    m_meter = makeViewModel();
    publish(m_meter.get());
    show();
    settle();
    QCOMPARE(part("viewModel"), m_meter.get());
    QVERIFY(!part("fieldVector")->property("visible").toBool());
    deliver(0, 0, 48);
    QVERIFY(isAlong(part("fieldVector"), {0, 0, 1}));
    QVERIFY(part("fieldVector")->property("visible").toBool());
}

void tst_SceneKeeper::lastBorrowerHasIt()
{
    const QQuickItem* firstPlace = scene()->parentItem();
    deliver(48, 0, 0);
    QCOMPARE(scene()->property("hasFieldVector").toBool(), true);
    m_fixture.operation.Reset();
    showSecond(true);
    // To the second one the scene is as new.
    QCOMPARE(scene()->property("hasFieldVector").toBool(), false);
    QCOMPARE(scenes().size(), 1);
    QVERIFY(scene()->parentItem() != firstPlace);
    QVERIFY(scene()->mapToScene({}).y() > m_window->height() / 2.0);
    // What has lost it does not take it away.
    show(false);
    settle();
    QVERIFY(scene()->isVisible());
    QCOMPARE(part("viewModel"), m_meter.get());
    showSecond(false);
    settle();
    QVERIFY(!scene()->isVisible());
    QCOMPARE(part("viewModel"), nullptr);
}

void tst_SceneKeeper::sourceThatIsNone()
{
    QQuickItem place;
    QVariant found;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("NoSuchScene\\.qml")));
    QVERIFY(QMetaObject::invokeMethod(keeper(), "borrow", Q_RETURN_ARG(QVariant, found),
                                      Q_ARG(QVariant, QUrl(QStringLiteral("qrc:/NoSuchScene.qml"))),
                                      Q_ARG(QVariant, QVariant::fromValue(&place))));
    QVERIFY(!found.value<QObject*>());
}

void tst_SceneKeeper::memoryDoesNotGrow()
{
    const double growth = heapGrowth(5, 30, [this] {
        show(false);
        settle();
        show();
        settle();
    });
    // The picture of a scene of this size takes more than half a megabyte.
    QVERIFY2(growth < 4096, qPrintable(QString::number(growth)));
}

int main(int argc, char* argv[])
{
    return runSceneTest<tst_SceneKeeper>(argc, argv);
}

#include "tst_SceneKeeper.moc"
