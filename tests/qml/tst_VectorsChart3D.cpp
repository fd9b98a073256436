// SPDX-License-Identifier: GPL-3.0-or-later
// The vectors of a mapping in space, judged by their items and by what the picture shows.
#include "COperationMapping.h"
#include "FakeMappingPage.h"
#include "LogRecorder.h"
#include "MeasureFixture.h"
#include "PictureDifference.h"
#include "QmlTestSetup.h"

#include <QApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSurfaceFormat>
#include <QTest>

#include <limits>
#include <memory>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();
const QVector3D kCentre(0.5F, 0.5F, 0.5F);

/// A window that keeps its scenes, with a place that shows the vectors.
const char* const kWindow = R"(
import QtQuick 2.15
import QtQuick.Controls 2.15
import "Controls/Chart3D"

ApplicationWindow {
    property alias sceneKeeper: keeper
    property alias isShown: loader.active

    width: 800
    height: 700
    visible: true

    SceneKeeper {
        id: keeper
    }

    Loader {
        id: loader

        anchors.fill: parent
        active: false
        source: "Controls/Chart3D/VectorsChart3D.qml"
    }
}
)";

using Vector = FakeMappingPage::Vector;

/// Fields of strength 1, 2 and so on, in a row along X.
QVector<Vector> row(int count)
{
    QVector<Vector> vectors;
    for (int i = 0; i < count; ++i)
        vectors.append(FakeMappingPage::along({0, 1, 0}, i + 1, {float(i + 1) / 10, 0.5F, 0.5F}));
    return vectors;
}

QVector<int> firstNumbers(int count)
{
    QVector<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(i);
    return numbers;
}

} // namespace

class tst_VectorsChart3D : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QmlTestSetup::Prepare(); }
    void init();
    void cleanup();

    void stage();
    void cameraOfTheSettings();
    void buttons_data();
    void buttons();
    void isometricView();
    void axesFollowTheLimits();
    void axesInAnyOrderOfChanges();
    void limitsThatAreNone();
    void vectorOfABlock();
    void arrowsLieAlongTheAxes_data();
    void arrowsLieAlongTheAxes();
    void longestArrow();
    void oldestGoes();
    void failureIsLogged();
    void signalsOfThePage();
    void allVectors_data();
    void allVectors();
    void allAreAskedForBeyondTheCapacity();
    void visibleUntil_data();
    void visibleUntil();
    void sliderByMouse();
    void sliderByKeys();
    void emptyState();
    void fieldThatIsNotANumber();
    void keptSceneIsDeaf();
    void memoryDoesNotGrow();

private:
    CRecordingManagerMapping& manager() { return *m_operation->RecordingManager(); }
    void show(bool isShown = true);
    /// As a dataset of so many blocks at rest.
    void rest(int blocks);
    QQuickItem* find(const char* name) const { return m_window->findChild<QQuickItem*>(QLatin1String(name)); }
    QQuickItem* scene() const { return find("vectorsScene"); }
    QObject* part(const char* name) const { return scene()->property(name).value<QObject*>(); }
    QObject* camera() const { return part("scene")->property("activeCamera").value<QObject*>(); }
    QVector<QObject*> vectors() const;
    /// The Y scalings, which are the arrows' lengths.
    QVector<float> lengths() const;
    int visibleCount() const;
    void click(const char* name);
    QImage picture() const;
    QRect place() const;
    double slider() const { return find("vectorLengthSlider")->property("value").toDouble(); }

    MeasureFixture m_fixture;
    QmlTestSetup m_setup;
    std::unique_ptr<COperationMapping> m_operation;
    std::unique_ptr<FakeMappingPage> m_page;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    int m_warningsBefore = 0;
};

void tst_VectorsChart3D::init()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
    CSettings& settings = m_fixture.settings;
    settings.SetMapping3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPresetIsometricRight);
    settings.SetMapping3DZoomLevel(90);
    settings.SetMapping3DOrthoProjection(false);
    m_operation =
        std::make_unique<COperationMapping>(&settings, &m_fixture.pluginsManager, &m_fixture.supervisor);
    m_page = std::make_unique<FakeMappingPage>();
    m_engine = std::make_unique<QQmlEngine>();
    m_setup.setUp(m_engine.get());
    QQmlContext* context = m_engine->rootContext();
    context->setContextProperty(QStringLiteral("Settings"), &settings);
    context->setContextProperty(QStringLiteral("ActiveOperation"), m_operation.get());
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page.get());
    QQmlComponent component(m_engine.get());
    component.setData(kWindow, QUrl(QStringLiteral("qrc:/Resources/TestWindow.qml")));
    m_window.reset(qobject_cast<QQuickWindow*>(component.create()));
    QVERIFY2(m_window, qPrintable(component.errorString()));
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_VectorsChart3D::cleanup()
{
    m_window.reset();
    m_engine.reset();
    m_page.reset();
    m_operation.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void tst_VectorsChart3D::show(bool isShown)
{
    m_window->setProperty("isShown", isShown);
    if (isShown)
        QTRY_VERIFY(scene() && scene()->isVisible());
    else
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_VectorsChart3D::rest(int blocks)
{
    manager().DataSet()->SetResultsCount(quint64(blocks));
    manager().SetIsIdleWithData(true);
    manager().SetReplayIndex(blocks - 1);
}

QVector<QObject*> tst_VectorsChart3D::vectors() const
{
    QVector<QObject*> all;
    const QVariantList list = scene()->property("vectors").value<QJSValue>().toVariant().toList();
    for (const QVariant& vector : list)
        all.append(vector.value<QObject*>());
    return all;
}

QVector<float> tst_VectorsChart3D::lengths() const
{
    QVector<float> all;
    const QVector<QObject*> arrows = vectors();
    for (const QObject* arrow : arrows) {
        const auto scaling = arrow->property("scaling").value<QVector3D>();
        if (scaling.x() != 0.1F || scaling.z() != 0.1F)
            return {};
        all.append(scaling.y());
    }
    return all;
}

int tst_VectorsChart3D::visibleCount() const
{
    int count = 0;
    bool hasHidden = false;
    const QVector<QObject*> arrows = vectors();
    for (const QObject* arrow : arrows) {
        const bool isVisible = arrow->property("visible").toBool();
        if (isVisible && hasHidden)
            return -1;
        hasHidden = !isVisible;
        count += isVisible ? 1 : 0;
    }
    return count;
}

void tst_VectorsChart3D::click(const char* name)
{
    const QQuickItem* item = find(name);
    QVERIFY2(item && item->isVisible() && item->isEnabled(), name);
    QTest::mouseClick(m_window.get(), Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
}

QImage tst_VectorsChart3D::picture() const
{
    // A scene draws what it has heard of in the frame before.
    m_window->grabWindow();
    return m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
}

QRect tst_VectorsChart3D::place() const
{
    return {scene()->mapToScene({}).toPoint(), scene()->size().toSize()};
}

void tst_VectorsChart3D::stage()
{
    show();
    QCOMPARE(scene()->property("shadowQuality").toInt(), 4);
    const QString titles = QStringLiteral("XYZ");
    const char* const axes[] = {"axisX", "axisY", "axisZ"};
    for (int i = 0; i < 3; ++i) {
        const QObject* axis = part(axes[i]);
        QCOMPARE(axis->property("title").toString(), titles.mid(i, 1));
        QCOMPARE(axis->property("titleVisible").toBool(), true);
        QCOMPARE(axis->property("segmentCount").toInt(), 10);
        QCOMPARE(axis->property("reversed").toBool(), i == 2);
    }
    const QQuickItem* toolbar = find("vectorsToolbar");
    QCOMPARE(toolbar->height(), find("topViewButton")->height() + 5);
    QCOMPARE(toolbar->property("color").value<QColor>(), QColor(Qt::white));
    const QQuickItem* lengthSlider = find("vectorLengthSlider");
    QCOMPARE(lengthSlider->height(), 20.0);
    QCOMPARE(lengthSlider->property("from").toDouble(), 0.0);
    QCOMPARE(lengthSlider->property("to").toDouble(), 1.0);
    QCOMPARE(lengthSlider->property("stepSize").toDouble(), 0.01);
    QCOMPARE(lengthSlider->property("snapMode").toInt(), 2);
    QVERIFY(lengthSlider->mapToScene({}).y() >= scene()->mapToScene({}).y() + scene()->height());
}

void tst_VectorsChart3D::cameraOfTheSettings()
{
    CSettings& settings = m_fixture.settings;
    settings.SetMapping3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPresetDirectlyAbove);
    settings.SetMapping3DZoomLevel(45.5);
    settings.SetMapping3DOrthoProjection(true);
    show();
    QCOMPARE(camera()->property("cameraPreset").toInt(), 16);
    QCOMPARE(camera()->property("zoomLevel").toDouble(), 45.5);
    QCOMPARE(scene()->property("orthoProjection").toBool(), true);

    // What is shown again is as new.
    click("isometricViewButton");
    click("sideViewButton");
    show(false);
    settings.SetMapping3DZoomLevel(120);
    show();
    QCOMPARE(camera()->property("cameraPreset").toInt(), 16);
    QCOMPARE(camera()->property("zoomLevel").toDouble(), 120.0);
    QCOMPARE(scene()->property("orthoProjection").toBool(), true);
}

void tst_VectorsChart3D::buttons_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("image");
    QTest::addColumn<int>("preset");
    QTest::addRow("top") << QByteArray("topViewButton") << QStringLiteral("Top")
                         << QStringLiteral("ViewPerspective")
                         << int(QtDataVisualization::Q3DCamera::CameraPresetDirectlyAbove);
    QTest::addRow("front") << QByteArray("frontViewButton") << QStringLiteral("Front")
                           << QStringLiteral("ViewFront")
                           << int(QtDataVisualization::Q3DCamera::CameraPresetFrontLow);
    QTest::addRow("side") << QByteArray("sideViewButton") << QStringLiteral("Side")
                          << QStringLiteral("ViewRight")
                          << int(QtDataVisualization::Q3DCamera::CameraPresetRightLow);
}

void tst_VectorsChart3D::buttons()
{
    QFETCH(QByteArray, button);
    QFETCH(QString, label);
    QFETCH(QString, image);
    QFETCH(int, preset);
    show();
    const QQuickItem* item = find(button.constData());
    QCOMPARE(item->property("label").toString(), label);
    QVERIFY(item->property("imageSource").toString().endsWith(image + QStringLiteral(".svg")));
    // Twice: the mouse may have turned and zoomed the scene since.
    for (int i = 0; i < 2; ++i) {
        camera()->setProperty("xRotation", 11.0);
        camera()->setProperty("zoomLevel", 222.0);
        click(button.constData());
        QCOMPARE(camera()->property("cameraPreset").toInt(), preset);
        QCOMPARE(camera()->property("zoomLevel").toDouble(), 90.0);
        QVERIFY(camera()->property("xRotation").toDouble() != 11.0);
    }
    QCOMPARE(scene()->property("orthoProjection").toBool(), false);
}

void tst_VectorsChart3D::isometricView()
{
    show();
    const QQuickItem* item = find("isometricViewButton");
    QCOMPARE(item->property("label").toString(), QStringLiteral("Toggle isometric view"));
    QVERIFY(item->property("imageSource").toString().endsWith(QStringLiteral("ViewIsometric.svg")));
    click("isometricViewButton");
    QCOMPARE(scene()->property("orthoProjection").toBool(), true);
    click("isometricViewButton");
    QCOMPARE(scene()->property("orthoProjection").toBool(), false);
    QCOMPARE(m_fixture.settings.Mapping3DOrthoProjection(), false);
}

void tst_VectorsChart3D::axesFollowTheLimits()
{
    m_page->setProperty("XStart", -20.0);
    m_page->setProperty("XStop", 30.0);
    show();
    QCOMPARE(part("axisX")->property("min").toFloat(), -20.0F);
    QCOMPARE(part("axisX")->property("max").toFloat(), 30.0F);
    QCOMPARE(part("axisY")->property("min").toFloat(), 0.0F);
    QCOMPARE(part("axisZ")->property("max").toFloat(), 1.0F);
    const struct
    {
        const char* start;
        const char* stop;
        const char* axis;
    } names[] = {{"XStart", "XStop", "axisX"}, {"YStart", "YStop", "axisY"}, {"ZStart", "ZStop", "axisZ"}};
    for (const auto& name : names) {
        m_page->setProperty(name.start, 5.0);
        m_page->setProperty(name.stop, 5.0);
        QCOMPARE(part(name.axis)->property("min").toFloat(), 5.0F);
        QCOMPARE(part(name.axis)->property("max").toFloat(), 6.0F);
        m_page->setProperty(name.stop, 2.0);
        QCOMPARE(part(name.axis)->property("max").toFloat(), 6.0F);
        m_page->setProperty(name.stop, 5.25);
        QCOMPARE(part(name.axis)->property("max").toFloat(), 5.25F);
    }
}

/// An axis that is given crossed ends moves the other one and says so in the log.
void tst_VectorsChart3D::axesInAnyOrderOfChanges()
{
    show();
    const LogRecorder log;
    QRandomGenerator random(8);
    for (int i = 0; i < 500; ++i) {
        const double value = std::floor((random.generateDouble() - 0.5) * 20);
        m_page->setProperty(random.bounded(2) == 0 ? "YStart" : "YStop", value);
        const auto low = float(m_page->yStart);
        QCOMPARE(part("axisY")->property("min").toFloat(), low);
        QCOMPARE(part("axisY")->property("max").toFloat(),
                 m_page->yStop > m_page->yStart ? float(m_page->yStop) : low + 1);
    }
    QCOMPARE(log.Messages(), QStringList());
}

void tst_VectorsChart3D::limitsThatAreNone()
{
    show();
    const LogRecorder log;
    m_page->setProperty("XStop", 3.0);
    m_page->setProperty("XStart", kNan);
    QCOMPARE(part("axisX")->property("min").toFloat(), 0.0F);
    QCOMPARE(part("axisX")->property("max").toFloat(), 3.0F);
    m_page->setProperty("XStart", std::numeric_limits<double>::infinity());
    QCOMPARE(part("axisX")->property("min").toFloat(), 0.0F);
    // In single precision this plus 1 is the same number.
    m_page->setProperty("XStop", 5e8);
    m_page->setProperty("XStart", 5e8);
    QCOMPARE(part("axisX")->property("min").toFloat(), 5e8F);
    QVERIFY(part("axisX")->property("max").toFloat() > 5e8F);
    QCOMPARE(log.Messages(), QStringList());
}

void tst_VectorsChart3D::vectorOfABlock()
{
    m_page->setProperty("SliderValueGraph3D", 0.5);
    show();
    const QImage before = picture();
    const QQuaternion rotation = QQuaternion(0.5F, -0.5F, 0.5F, 0.5F);
    m_page->append({3, {0.25F, 0.5F, 0.75F}, rotation});
    const QVector<QObject*> all = vectors();
    QCOMPARE(all.size(), 1);
    const QObject* vector = all.first();
    QCOMPARE(vector->property("meshFile").toString(), QStringLiteral(":/Resources/Mesh/ArrowMesh.obj"));
    QCOMPARE(vector->property("shadowCasting").toBool(), false);
    QCOMPARE(vector->property("visible").toBool(), true);
    QCOMPARE(vector->property("position").value<QVector3D>(), QVector3D(0.25F, 0.5F, 0.75F));
    QCOMPARE(vector->property("rotation").value<QQuaternion>(), rotation);
    QCOMPARE(vector->property("scaling").value<QVector3D>(), QVector3D(0.1F, 0.5F, 0.1F));
    // The scene lets go of the name of a texture that it has read: its colour is seen in the picture.
    const Difference arrow = compare(picture(), before, place());
    QVERIFY(arrow.count > 100);
    QVERIFY2(arrow.colourBefore.hsvSaturation() > 100 && (arrow.colourBefore.hsvHue() + 10) % 360 < 20,
             qPrintable(arrow.colourBefore.name()));
}

void tst_VectorsChart3D::arrowsLieAlongTheAxes_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<QVector<int>>("inSight");
    // Seen along an axis its arrow points at the viewer and covers its own foot.
    QTest::addRow("front") << 0 << QVector<int>{0, 1, 2, 3};
    QTest::addRow("side") << 6 << QVector<int>{2, 3, 4, 5};
    QTest::addRow("isometric right") << 14 << QVector<int>{0, 1, 2, 3, 4, 5};
    QTest::addRow("above") << 16 << QVector<int>{0, 1, 4, 5};
}

/// An arrow points to where the place lies that is further along its axis.
void tst_VectorsChart3D::arrowsLieAlongTheAxes()
{
    QFETCH(int, preset);
    QFETCH(QVector<int>, inSight);
    const QVector3D directions[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    m_fixture.settings.SetMapping3DCameraPreset(
        static_cast<QtDataVisualization::Q3DCamera::CameraPreset>(preset));
    m_fixture.settings.SetMapping3DOrthoProjection(true);
    show();
    const QImage empty = picture();
    const auto drawn = [&](const Vector& vector, double length) {
        emit m_page->clear3DPlots();
        m_page->setProperty("MaxScale", 1.0);
        scene()->setProperty("arrowLength", length);
        m_page->makeCurrent(vector);
        emit m_page->newVectorToPlot();
        return compare(picture(), empty, place());
    };
    // A short one is a mark.
    const Difference centre = drawn(FakeMappingPage::along({0, 1, 0}, 1, kCentre), 0.02);
    QVERIFY(centre.count > 5);
    for (const int index : inSight) {
        const QVector3D& direction = directions[index];
        const Difference mark = drawn(FakeMappingPage::along({0, 1, 0}, 1, kCentre + 0.4F * direction), 0.02);
        const Difference arrow = drawn(FakeMappingPage::along(direction, 1, kCentre), 0.4);
        QVERIFY(mark.count > 5);
        QVERIFY(arrow.count > 50);
        const double angle = angleBetween(arrow.middle - centre.middle, mark.middle - centre.middle);
        QVERIFY2(angle < 6, qPrintable(QStringLiteral("%1: %2").arg(index).arg(angle)));
    }
}

/// The strongest field has the slider's length, in the moment in which its arrow is made.
void tst_VectorsChart3D::longestArrow()
{
    m_page->setProperty("SliderValueGraph3D", 0.4);
    show();
    for (const double scale : {2.0, 8.0, -16.0, 4.0})
        m_page->append(FakeMappingPage::along({1, 0, 0}, scale, kCentre));
    QCOMPARE(lengths(), (QVector<float>{0.4F, 0.4F, -0.4F, 0.1F}));
    // Made anew they share the last measure.
    manager().DataSet()->SetResultsCount(4);
    emit m_page->reload3DPlots();
    QCOMPARE(lengths(), (QVector<float>{0.05F, 0.2F, -0.4F, 0.1F}));
}

void tst_VectorsChart3D::oldestGoes()
{
    m_page->setProperty("MaxVectorCount", 3);
    show();
    for (const Vector& vector : row(5))
        m_page->append(vector);
    const QVector<QObject*> all = vectors();
    QCOMPARE(all.size(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(all.at(i)->property("position").value<QVector3D>().x(), float(i + 3) / 10);
    // All of the scene's items
    picture();
    QCOMPARE(scene()->property("vectors").value<QJSValue>().property(QStringLiteral("length")).toInt(), 3);
    m_page->setProperty("MaxVectorCount", 0);
    emit m_page->clear3DPlots();
    m_page->append(row(1).first());
    QCOMPARE(vectors().size(), 0);
}

void tst_VectorsChart3D::failureIsLogged()
{
    show();
    QQmlComponent broken(m_engine.get());
    scene()->setProperty("vectorComponent", QVariant::fromValue(&broken));
    const LogRecorder log;
    m_page->append(row(1).first());
    QCOMPARE(log.Texts(QtDebugMsg), QStringList{QStringLiteral("3D vector add element error  = -1")});
    QCOMPARE(vectors().size(), 0);
}

void tst_VectorsChart3D::signalsOfThePage()
{
    show();
    const QImage empty = picture();
    for (const Vector& vector : row(3))
        m_page->append(vector);
    QCOMPARE(vectors().size(), 3);
    QVERIFY(compare(picture(), empty, place()).count > 100);
    emit m_page->clear3DPlots();
    QCOMPARE(vectors().size(), 0);
    QCOMPARE(compare(picture(), empty, place()).count, 0);

    manager().DataSet()->SetResultsCount(3);
    emit m_page->reload3DPlots();
    QCOMPARE(vectors().size(), 3);
    emit m_page->reload3DPlots();
    QCOMPARE(vectors().size(), 3);
    rest(2);
    QCOMPARE(visibleCount(), 3);
    const QImage three = picture();
    emit m_page->setVisibleUntilChart();
    QCOMPARE(visibleCount(), 2);
    QVERIFY(compare(picture(), three, place()).count > 20);
}

void tst_VectorsChart3D::allVectors_data()
{
    QTest::addColumn<bool>("isPlayingBack");
    QTest::addColumn<bool>("isRecording");
    QTest::addColumn<bool>("isIdleWithData");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("expectedVisible");
    // Of 9 vectors, 7 blocks in the dataset and the replay at its fourth.
    QTest::addRow("running") << false << false << false << 7 << 7;
    QTest::addRow("recording") << false << true << false << 7 << 7;
    QTest::addRow("recording with data") << false << true << true << 7 << 7;
    QTest::addRow("at rest") << false << false << true << 7 << 4;
    QTest::addRow("replay") << true << false << false << 4 << 4;
    QTest::addRow("replay over data") << true << false << true << 4 << 4;
}

/// What the page has is shown as soon as there is a scene, and made anew at its word.
void tst_VectorsChart3D::allVectors()
{
    QFETCH(bool, isPlayingBack);
    QFETCH(bool, isRecording);
    QFETCH(bool, isIdleWithData);
    QFETCH(int, expected);
    QFETCH(int, expectedVisible);
    m_page->history = row(9);
    m_page->maxScale = 9;
    manager().DataSet()->SetResultsCount(7);
    manager().SetIsIdleWithData(isIdleWithData);
    manager().SetIsRecording(isRecording);
    manager().SetIsPlayingBack(isPlayingBack);
    manager().SetReplayIndex(3);
    show();
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(m_page->asked, firstNumbers(expected));
        QCOMPARE(vectors().size(), expected);
        QCOMPARE(visibleCount(), expectedVisible);
        QCOMPARE(vectors().constLast()->property("position").value<QVector3D>().x(), float(expected) / 10);
        m_page->asked.clear();
        emit m_page->reload3DPlots();
    }
}

void tst_VectorsChart3D::allAreAskedForBeyondTheCapacity()
{
    m_page->setProperty("MaxVectorCount", 4);
    m_page->history = row(4);
    manager().DataSet()->SetResultsCount(6);
    show();
    QCOMPARE(m_page->asked, firstNumbers(6));
    QVector<float> places;
    const QVector<QObject*> arrows = vectors();
    for (const QObject* arrow : arrows)
        places.append(arrow->property("position").value<QVector3D>().x());
    // The page knows four: the last two are those of its fourth again, in the place of the oldest.
    QCOMPARE(places, (QVector<float>{0.3F, 0.4F, 0.4F, 0.4F}));
}

void tst_VectorsChart3D::visibleUntil_data()
{
    QTest::addColumn<bool>("isPlayingBack");
    QTest::addColumn<bool>("isIdleWithData");
    QTest::addColumn<int>("replayIndex");
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("expected");
    QTest::addRow("running") << false << false << 1 << 4 << 4;
    QTest::addRow("more results than vectors") << false << false << 1 << 40 << 6;
    QTest::addRow("no results") << false << false << 1 << 0 << 0;
    QTest::addRow("at rest") << false << true << 1 << 4 << 2;
    QTest::addRow("at rest before the first") << false << true << -1 << 4 << 0;
    QTest::addRow("at rest beyond the last") << false << true << 30 << 4 << 6;
    QTest::addRow("replay") << true << false << 4 << 4 << 5;
}

void tst_VectorsChart3D::visibleUntil()
{
    QFETCH(bool, isPlayingBack);
    QFETCH(bool, isIdleWithData);
    QFETCH(int, replayIndex);
    QFETCH(int, results);
    QFETCH(int, expected);
    show();
    for (const Vector& vector : row(6))
        m_page->append(vector);
    manager().SetIsPlayingBack(isPlayingBack);
    manager().SetIsIdleWithData(isIdleWithData);
    manager().SetReplayIndex(replayIndex);
    manager().DataSet()->SetResultsCount(quint64(results));
    emit m_page->setVisibleUntilChart();
    QCOMPARE(visibleCount(), expected);
    // What was hidden is shown again.
    manager().SetIsPlayingBack(true);
    manager().SetReplayIndex(5);
    emit m_page->setVisibleUntilChart();
    QCOMPARE(visibleCount(), 6);
}

void tst_VectorsChart3D::sliderByMouse()
{
    m_page->setProperty("SliderValueGraph3D", 0.2);
    show();
    QCOMPARE(slider(), 0.2);
    for (const Vector& vector : row(4))
        m_page->append(vector);
    const QImage before = picture();
    const QQuickItem* item = find("vectorLengthSlider");
    const auto at = [item](double share) {
        return item->mapToScene(QPointF(item->width() * share, item->height() / 2)).toPoint();
    };
    m_page->asked.clear();
    QTest::mousePress(m_window.get(), Qt::LeftButton, {}, at(0.2));
    QTest::mouseMove(m_window.get(), at(0.5));
    QTRY_VERIFY(slider() > 0.45 && slider() < 0.55);
    QVERIFY(m_page->asked.size() % 4 == 0 && m_page->asked.mid(m_page->asked.size() - 4) == firstNumbers(4));
    QCOMPARE(m_page->sliderValueGraph3D, 0.2);
    const auto isScaled = [this] {
        const QVector<float> all = lengths();
        for (int i = 0; i < 4; ++i) {
            if (!qFuzzyCompare(all.value(i), float(slider() * (i + 1) / 4)))
                return false;
        }
        return true;
    };
    QVERIFY(isScaled());
    QTest::mouseRelease(m_window.get(), Qt::LeftButton, {}, at(0.743));
    QVERIFY(isScaled());
    // On a hundredth.
    QVERIFY(std::abs(slider() * 100 - std::round(slider() * 100)) < 1e-9);
    QVERIFY(slider() > 0.6);
    QCOMPARE(m_page->sliderValueGraph3D, slider());
    QVERIFY(compare(picture(), before, place()).count > 100);

    // What comes now has the new length.
    m_page->append(FakeMappingPage::along({1, 0, 0}, 4, kCentre));
    QCOMPARE(lengths().constLast(), float(slider()));
    const double chosen = slider();
    show(false);
    rest(5);
    show();
    QCOMPARE(slider(), chosen);
    QCOMPARE(lengths().constLast(), float(chosen));
}

void tst_VectorsChart3D::sliderByKeys()
{
    m_page->setProperty("SliderValueGraph3D", 0.2);
    show();
    m_page->append(row(1).first());
    find("vectorLengthSlider")->forceActiveFocus();
    QTest::keyPress(m_window.get(), Qt::Key_Right);
    QCOMPARE(slider(), 0.21);
    QCOMPARE(lengths(), QVector<float>{0.21F});
    QTest::keyRelease(m_window.get(), Qt::Key_Right);
    QCOMPARE(m_page->sliderValueGraph3D, 0.21);
}

void tst_VectorsChart3D::emptyState()
{
    show();
    QCOMPARE(vectors().size(), 0);
    QCOMPARE(m_page->asked, QVector<int>());
    find("vectorLengthSlider")->forceActiveFocus();
    QTest::keyClick(m_window.get(), Qt::Key_Right);
    emit m_page->setVisibleUntilChart();
    emit m_page->reload3DPlots();
    emit m_page->clear3DPlots();
    QCOMPARE(vectors().size(), 0);
    // The stage is there.
    const QImage shown = picture();
    int dark = 0;
    for (int y = place().top(); y <= place().bottom(); ++y) {
        for (int x = place().left(); x <= place().right(); ++x)
            dark += qGray(shown.pixel(x, y)) < 200 ? 1 : 0;
    }
    QVERIFY(dark > 100);
}

void tst_VectorsChart3D::fieldThatIsNotANumber()
{
    m_page->setProperty("SliderValueGraph3D", 0.5);
    show();
    const QImage empty = picture();
    m_page->append(FakeMappingPage::along({1, 0, 0}, 1, {0.2F, 0.5F, 0.5F}));
    const QImage first = picture();
    const LogRecorder log;
    const auto nan = float(kNan);
    m_page->append({kNan, {0.7F, 0.5F, 0.5F}, QQuaternion(nan, nan, nan, nan)});
    m_page->append({1, {nan, 0.5F, 0.5F}, QQuaternion(1, 0, 0, 0)});
    m_page->append({0, {0.7F, 0.5F, 0.5F}, QQuaternion(1, 0, 0, 0)});
    QVERIFY(compare(picture(), first, place()).count < 60);
    m_page->append(FakeMappingPage::along({1, 0, 0}, 1, {0.7F, 0.5F, 0.5F}));
    QVERIFY(compare(picture(), first, place()).count > 100);
    QVERIFY(compare(first, empty, place()).count > 100);
    QCOMPARE(log.Messages(), QStringList());
}

/// Another page has another view model, and may have another operation.
void tst_VectorsChart3D::keptSceneIsDeaf()
{
    show();
    m_page->append(row(1).first());
    show(false);
    QCOMPARE(part("viewModel"), nullptr);
    QCOMPARE(vectors().size(), 0);
    m_page->history = row(3);
    m_page->asked.clear();
    m_page->append(row(1).first());
    emit m_page->reload3DPlots();
    emit m_page->setVisibleUntilChart();
    QCOMPARE(vectors().size(), 0);
    QCOMPARE(m_page->asked, QVector<int>());
    m_page.reset();
    picture();
    m_page = std::make_unique<FakeMappingPage>();
    m_engine->rootContext()->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page.get());
    show();
    QCOMPARE(part("viewModel"), m_page.get());
    QCOMPARE(m_window->findChildren<QQuickItem*>(QStringLiteral("vectorsScene")).size(), 1);
}

void tst_VectorsChart3D::memoryDoesNotGrow()
{
#ifdef __GLIBC__
    m_page->history = row(40);
    rest(40);
    show();
    const auto heap = [] { return static_cast<double>(mallinfo2().uordblks) / 1024; };
    const auto visit = [this] {
        show(false);
        picture();
        show();
        picture();
    };
    for (int i = 0; i < 3; ++i)
        visit();
    const double before = heap();
    for (int i = 0; i < 15; ++i)
        visit();
    // An arrow takes more than a kilobyte, and 600 were made.
    QVERIFY2(heap() < before + 300, qPrintable(QString::number(heap() - before)));
#else
    QSKIP("the heap is not told of here");
#endif
}

int main(int argc, char* argv[])
{
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication application(argc, argv);
    tst_VectorsChart3D test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_VectorsChart3D.moc"
