// SPDX-License-Identifier: GPL-3.0-or-later
// The 3-D scene of the meter page, judged by its items and by what its picture shows.
#include "MeterView.h"
#include "PatientWait.h"
#include "PictureDifference.h"
#include "SceneTestMain.h"

#include <QFile>
#include <QQuaternion>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QVector3D>

#include <cmath>
#include <limits>

namespace {

constexpr double kPi = 3.14159265358979323846;
const float kNan = std::numeric_limits<float>::quiet_NaN();

struct Direction
{
    const char* label;
    int sign;
    QVector3D vector;
};

const Direction kDirections[] = {{"xLabel", 1, {1, 0, 0}}, {"xLabel", -1, {-1, 0, 0}},
                                 {"yLabel", 1, {0, 1, 0}}, {"yLabel", -1, {0, -1, 0}},
                                 {"zLabel", 1, {0, 0, 1}}, {"zLabel", -1, {0, 0, -1}}};

QQuaternion toQuaternion(const QVector<float>& values)
{
    return {values[0], values[1], values[2], values[3]};
}

/// Samples that turn about an axis, 0 to 2 for X to Z, by 30 degrees each.
QSharedPointer<CMeasureBlock> turningBlock(int axis, int sign)
{
    QVector<Sample> samples;
    for (int i = 0; i < 4; ++i) {
        const float angle = float(sign * i * 30 * kPi / 180);
        float components[3] = {0.2F, 0.2F, 0.2F};
        components[(axis + 1) % 3] = std::cos(angle);
        components[(axis + 2) % 3] = std::sin(angle);
        Sample sample;
        sample.bx = components[0];
        sample.by = components[1];
        sample.bz = components[2];
        sample.b = 1.02F;
        sample.timeMs = i * 10;
        samples.append(sample);
    }
    return makeBlock(samples);
}

} // namespace

class tst_MeterScene : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void stage();
    void items_data();
    void items();
    void labels_data();
    void labels();
    void cameraOfTheSettings_data();
    void cameraOfTheSettings();
    void arrowLiesAlongTheLabelledAxis_data();
    void arrowLiesAlongTheLabelledAxis();
    void rotationOfRandomFields();
    void noArrowBeforeTheFirstMeasurement();
    void arrowOfAnEarlierMeasurement();
    void arrowGoesWithTheDataset();
    void notANumberKeepsTheArrow();
    void rotationArrow();
    void rotationArrowShowsTheSense_data();
    void rotationArrowShowsTheSense();
    void restDrawsNothing();
    void noBlackEdge();

private:
    QRect place() const { return m_view->PlaceInPicture(m_view->Scene()); }

    std::unique_ptr<MeterView> m_view;
    int m_warningsBefore = 0;
};

void tst_MeterScene::initTestCase()
{
    QmlTestSetup::Prepare();
    m_view = std::make_unique<MeterView>();
}

void tst_MeterScene::init()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
}

void tst_MeterScene::cleanup()
{
    m_view->Renew();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void tst_MeterScene::stage()
{
    m_view->Load();
    QQuickItem* scene = m_view->Scene();
    QVERIFY(scene);
    QCOMPARE(scene->property("shadowQuality").toInt(), 0);
    const struct
    {
        const char* axis;
        float limit;
    } axes[] = {{"axisX", 1.0F}, {"axisY", 1.3F}, {"axisZ", 1.0F}};
    for (const auto& expected : axes) {
        const QObject* axis = m_view->PartOfScene(expected.axis);
        QCOMPARE(axis->property("min").toFloat(), -expected.limit);
        QCOMPARE(axis->property("max").toFloat(), expected.limit);
        QCOMPARE(axis->property("segmentCount").toInt(), 1);
        QCOMPARE(axis->property("titleVisible").toBool(), false);
    }
    QVERIFY(!m_view->Find("sceneUnavailableLabel")->isVisible());
}

void tst_MeterScene::items_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QString>("mesh");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QVector3D>("scaling");
    QTest::addColumn<QVector<float>>("rotation");
    const auto arrow = QStringLiteral("ArrowMesh.obj");
    const QVector3D axisScaling(0.2F, 0.45F, 0.2F);
    const float half = 0.7071067690849304F;
    QTest::addRow("x") << QByteArray("xAxisArrow") << arrow << QColor(Qt::red) << axisScaling
                       << QVector<float>{half, 0, 0, -half};
    QTest::addRow("y") << QByteArray("yAxisArrow") << arrow << QColor(Qt::green) << axisScaling
                       << QVector<float>{1, 0, 0, 0};
    QTest::addRow("z") << QByteArray("zAxisArrow") << arrow << QColor(Qt::blue) << axisScaling
                       << QVector<float>{half, half, 0, 0};
    // Of a field along Z nothing is left but the quarter turn of the mesh.
    QTest::addRow("field") << QByteArray("fieldVector") << arrow << QColor(Qt::red)
                           << QVector3D(0.7F, 0.7F, 0.7F) << QVector<float>{half, half, 0, 0};
    // Positive about X, as the ring is made.
    QTest::addRow("rotation") << QByteArray("rotationArrow") << QStringLiteral("RotationArrowMesh.obj")
                              << QColor(Qt::gray) << QVector3D(0.5F, 0.5F, 0.5F)
                              << QVector<float>{1, 0, 0, 0};
}

void tst_MeterScene::items()
{
    QFETCH(QByteArray, item);
    QFETCH(QString, mesh);
    QFETCH(QColor, colour);
    QFETCH(QVector3D, scaling);
    QFETCH(QVector<float>, rotation);
    m_view->Fixture().settings.SetMeter3DCameraPreset(
        QtDataVisualization::Q3DCamera::CameraPresetIsometricLeft);
    m_view->Load();
    QVERIFY(m_view->Scene());
    if (item == "fieldVector")
        m_view->Deliver(0, 0, 48);
    if (item == "rotationArrow") {
        m_view->Meter().SetRotEnable(true);
        m_view->Deliver(turningBlock(0, 1));
    }
    QObject* found = m_view->PartOfScene(item.constData());
    QVERIFY(found);
    const QString path = QStringLiteral(":/Resources/Mesh/") + mesh;
    QCOMPARE(found->property("meshFile").toString(), path);
    QVERIFY(QFile::exists(path));
    QCOMPARE(found->property("scaling").value<QVector3D>(), scaling);
    QCOMPARE(found->property("position").value<QVector3D>(), QVector3D());
    QVERIFY(qFuzzyCompare(found->property("rotation").value<QQuaternion>(), toQuaternion(rotation)));
    QCOMPARE(found->property("shadowCasting").toBool(), false);

    // The scene lets go of the name of a texture that it has read: its colour is seen in the picture.
    const QImage with = m_view->Picture();
    found->setProperty("visible", false);
    const Difference difference = compare(with, m_view->Picture(), place());
    QVERIFY(difference.count > 20);
    const QColor shown = difference.colourBefore;
    if (colour == QColor(Qt::gray))
        QVERIFY2(shown.hsvSaturation() < 30, qPrintable(shown.name()));
    else
        QVERIFY2(shown.hsvSaturation() > 100 && (shown.hsvHue() - colour.hsvHue() + 370) % 360 < 20,
                 qPrintable(shown.name()));
}

void tst_MeterScene::labels_data()
{
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QVector3D>("position");
    QTest::addRow("x") << QByteArray("xLabel") << QStringLiteral("X") << QColor(Qt::red)
                       << QVector3D(0.5F, 0, 0);
    QTest::addRow("y") << QByteArray("yLabel") << QStringLiteral("Y") << QColor(Qt::darkGreen)
                       << QVector3D(0, 1.3F, 0);
    QTest::addRow("z") << QByteArray("zLabel") << QStringLiteral("Z") << QColor(Qt::blue)
                       << QVector3D(0, 0, -0.5F);
}

void tst_MeterScene::labels()
{
    QFETCH(QByteArray, label);
    QFETCH(QString, text);
    QFETCH(QColor, colour);
    QFETCH(QVector3D, position);
    m_view->Load();
    const QObject* found = m_view->PartOfScene(label.constData());
    QVERIFY(found);
    QCOMPARE(found->property("text").toString(), text);
    QCOMPARE(found->property("textColor").value<QColor>(), colour);
    QCOMPARE(found->property("position").value<QVector3D>(), position);
    QCOMPARE(found->property("scaling").value<QVector3D>(), QVector3D(2, 2, 2));
    QCOMPARE(found->property("backgroundEnabled").toBool(), false);
    QCOMPARE(found->property("borderEnabled").toBool(), false);
    QCOMPARE(found->property("facingCamera").toBool(), true);
    QCOMPARE(found->property("shadowCasting").toBool(), false);
}

void tst_MeterScene::cameraOfTheSettings_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<bool>("isOrtho");
    QTest::addRow("front") << 1 << 120.0 << false;
    QTest::addRow("default") << 14 << 90.0 << false;
    QTest::addRow("above") << 16 << 45.5 << true;
}

void tst_MeterScene::cameraOfTheSettings()
{
    QFETCH(int, preset);
    QFETCH(double, zoom);
    QFETCH(bool, isOrtho);
    CSettings& settings = m_view->Fixture().settings;
    settings.SetMeter3DCameraPreset(static_cast<QtDataVisualization::Q3DCamera::CameraPreset>(preset));
    settings.SetMeter3DZoomLevel(zoom);
    settings.SetMeter3DOrthoProjection(isOrtho);
    m_view->Load();
    const QQuickItem* scene = m_view->Scene();
    const QObject* camera =
        scene->property("scene").value<QObject*>()->property("activeCamera").value<QObject*>();
    QCOMPARE(camera->property("cameraPreset").toInt(), preset);
    QCOMPARE(camera->property("zoomLevel").toDouble(), zoom);
    QCOMPARE(scene->property("orthoProjection").toBool(), isOrtho);
}

void tst_MeterScene::arrowLiesAlongTheLabelledAxis_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<QVector<int>>("inSight");
    // Seen along an axis its arrow points at the viewer and covers its own foot.
    QTest::addRow("front") << 1 << QVector<int>{0, 1, 2, 3};
    QTest::addRow("right") << 7 << QVector<int>{2, 3, 4, 5};
    QTest::addRow("isometric left") << 12 << QVector<int>{0, 1, 2, 3, 4, 5};
    QTest::addRow("isometric right") << 14 << QVector<int>{0, 1, 2, 3, 4, 5};
    QTest::addRow("above") << 16 << QVector<int>{0, 1, 4, 5};
}

void tst_MeterScene::arrowLiesAlongTheLabelledAxis()
{
    QFETCH(int, preset);
    QFETCH(QVector<int>, inSight);
    CSettings& settings = m_view->Fixture().settings;
    settings.SetMeter3DCameraPreset(static_cast<QtDataVisualization::Q3DCamera::CameraPreset>(preset));
    m_view->Load(QSize(1200, 700));
    QVERIFY(m_view->Scene());
    const QRect where = place();
    const QPointF centre = QRectF(where).center();
    QVector<QImage> pictures;
    const QImage empty = m_view->Picture();
    for (const Direction& direction : kDirections) {
        m_view->Deliver(48 * direction.vector.x(), 48 * direction.vector.y(), 48 * direction.vector.z());
        pictures.append(m_view->Picture());
    }
    // An empty stage to compare the labels on.
    m_view->Fixture().operation.Reset();
    QCOMPARE(compare(empty, m_view->Picture(), where).count, 0);
    for (const int index : inSight) {
        const Direction& direction = kDirections[index];
        QObject* label = m_view->PartOfScene(direction.label);
        label->setProperty("visible", false);
        const Difference name = compare(empty, m_view->Picture(), where);
        label->setProperty("visible", true);
        const Difference arrow = compare(empty, pictures.at(index), where);
        const QByteArray text = QByteArray(direction.label) + (direction.sign > 0 ? " forward" : " backward");
        QVERIFY2(name.count > 10, text.constData());
        QVERIFY2(arrow.count > 100, text.constData());
        const double angle =
            angleBetween(arrow.middle - centre, double(direction.sign) * (name.middle - centre));
        QVERIFY2(angle < 6, qPrintable(QStringLiteral("%1: %2").arg(QString::fromLatin1(text)).arg(angle)));
    }
}

void tst_MeterScene::rotationOfRandomFields()
{
    m_view->Load();
    QVERIFY(m_view->Scene());
    QRandomGenerator random(5);
    const auto next = [&random] { return float(random.generateDouble() - 0.5) * 100; };
    for (int i = 0; i < 200; ++i) {
        const QVector3D field(next(), next(), next());
        m_view->Deliver(field.x(), field.y(), field.z());
        const auto rotation = m_view->PartOfScene("fieldVector")->property("rotation").value<QQuaternion>();
        // The mesh lies along Y.
        const QVector3D shown = rotation.rotatedVector(QVector3D(0, 1, 0));
        QVERIFY((shown - field / std::sqrt(QVector3D::dotProduct(field, field))).length() < 1e-4F);
    }
}

void tst_MeterScene::noArrowBeforeTheFirstMeasurement()
{
    m_view->Load();
    QVERIFY(m_view->Scene());
    QCOMPARE(m_view->Scene()->property("hasFieldVector").toBool(), false);
    const QImage before = m_view->Picture();
    m_view->Deliver(30, 30, 0);
    QCOMPARE(m_view->Scene()->property("hasFieldVector").toBool(), true);
    QVERIFY(compare(before, m_view->Picture(), place()).count > 100);
}

void tst_MeterScene::arrowOfAnEarlierMeasurement()
{
    m_view->Load();
    QVERIFY(m_view->Scene());
    const QImage empty = m_view->Picture();
    m_view->Deliver(30, 30, 0);
    const QImage first = m_view->Picture();
    m_view->Load();
    QVERIFY(m_view->Scene());
    QCOMPARE(m_view->Scene()->property("hasFieldVector").toBool(), true);
    QTRY_VERIFY(compare(empty, m_view->Picture(), place()).count > 100);
    QVERIFY(compare(first, m_view->Picture(), place()).count < 10);
}

void tst_MeterScene::arrowGoesWithTheDataset()
{
    m_view->Load();
    QVERIFY(m_view->Scene());
    const QImage empty = m_view->Picture();
    m_view->Deliver(30, 30, 0);
    m_view->Fixture().operation.Reset();
    QCOMPARE(compare(empty, m_view->Picture(), place()).count, 0);
    m_view->Load();
    QVERIFY(m_view->Scene());
    QCOMPARE(m_view->Scene()->property("hasFieldVector").toBool(), false);
    m_view->Deliver(30, 30, 0);
    QVERIFY(compare(empty, m_view->Picture(), place()).count > 100);
}

void tst_MeterScene::notANumberKeepsTheArrow()
{
    m_view->Load();
    QVERIFY(m_view->Scene());
    m_view->Deliver(30, 30, 0);
    const QImage before = m_view->Picture();
    m_view->Deliver(kNan, 30, 0);
    QCOMPARE(compare(before, m_view->Picture(), place()).count, 0);
    m_view->Deliver(-30, 30, 0);
    QVERIFY(compare(before, m_view->Picture(), place()).count > 100);
}

void tst_MeterScene::rotationArrow()
{
    m_view->Fixture().settings.SetMeter3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPresetFront);
    m_view->Load();
    QVERIFY(m_view->Scene());
    const QObject* arrow = m_view->PartOfScene("rotationArrow");
    const QQuickItem* button = m_view->Find("rotationButton");
    QCOMPARE(button->property("label").toString(), QStringLiteral("Toggle rotation detection"));
    m_view->Deliver(turningBlock(2, 1));
    QVERIFY(!button->isVisible());
    QVERIFY(!arrow->property("visible").toBool());
    const QImage before = m_view->Picture();

    m_view->Meter().SetRotEnable(true);
    QVERIFY(!button->isVisible());
    m_view->Deliver(turningBlock(2, 1));
    QVERIFY(button->isVisible());
    QVERIFY(arrow->property("visible").toBool());
    QVERIFY(compare(before, m_view->Picture(), place()).count > 200);

    // Switched off the arrow goes at once, the button with the next block.
    m_view->Click("rotationButton");
    QCOMPARE(m_view->Meter().RotEnable(), false);
    QVERIFY(!arrow->property("visible").toBool());
    QVERIFY(button->isVisible());
    QCOMPARE(compare(before, m_view->Picture(), place()).count, 0);
    m_view->Deliver(turningBlock(2, 1));
    QVERIFY(!button->isVisible());
}

void tst_MeterScene::rotationArrowShowsTheSense_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<int>("axis");
    QTest::addRow("front") << 1 << 2;
    QTest::addRow("right") << 7 << 0;
    QTest::addRow("above") << 16 << 1;
}

/// The ring lies about the view axis, and its head turns with the field.
void tst_MeterScene::rotationArrowShowsTheSense()
{
    QFETCH(int, preset);
    QFETCH(int, axis);
    m_view->Fixture().settings.SetMeter3DCameraPreset(
        static_cast<QtDataVisualization::Q3DCamera::CameraPreset>(preset));
    m_view->Load();
    QVERIFY(m_view->Scene());
    m_view->Meter().SetRotEnable(true);
    QVector3D axisVector;
    axisVector[axis] = 1;
    for (const int sign : {1, -1}) {
        m_view->Deliver(turningBlock(axis, sign));
        const QObject* arrow = m_view->PartOfScene("rotationArrow");
        QVERIFY(arrow->property("visible").toBool());
        const auto rotation = arrow->property("rotation").value<QQuaternion>();
        // On the mesh the head sits on the ring at +Y and points to +Z: positive about X.
        const QVector3D head = rotation.rotatedVector(QVector3D(0, 1, 0));
        const QVector3D points = rotation.rotatedVector(QVector3D(0, 0, 1));
        const float sense = QVector3D::dotProduct(QVector3D::crossProduct(head, points), axisVector);
        QVERIFY(std::abs(sense - float(sign)) < 1e-4F);
    }
}

void tst_MeterScene::restDrawsNothing()
{
    m_view->Load();
    QVERIFY(m_view->Scene());
    m_view->Deliver(30, 30, 0);
    m_view->Picture();
    QSignalSpy frames(&m_view->Window(), &QQuickWindow::frameSwapped);
    const auto isAtRest = [&frames] {
        frames.clear();
        QTest::qWait(400);
        return frames.isEmpty();
    };
    QVERIFY(QTest::qWaitFor(isAtRest, kLongWaitMs));
    frames.clear();
    m_view->Deliver(-30, 30, 0);
    QTRY_VERIFY(frames.count() > 0);
    QTest::qWait(300);
    // One block is a few frames at the most.
    QVERIFY2(frames.count() <= 4, qPrintable(QString::number(frames.count())));
}

/// At any size, on scaled displays too.
void tst_MeterScene::noBlackEdge()
{
    m_view->Load(QSize(601, 500));
    QVERIFY(m_view->Scene());
    for (int height = 500; height < 510; ++height) {
        m_view->Window().resize(601 + height % 7, height);
        QTRY_COMPARE(m_view->Find("componentDisplayer")->height(), double(height));
        const QImage picture = m_view->Picture();
        const QRect where = place();
        for (int x = where.left() + 2; x < where.right() - 2; ++x) {
            QVERIFY2(qGray(picture.pixel(x, where.top() + 1)) > 128, qPrintable(QString::number(height)));
            QVERIFY2(qGray(picture.pixel(x, where.top())) > 128, qPrintable(QString::number(height)));
        }
        for (int y = where.top() + 2; y < where.bottom() - 2; ++y)
            QVERIFY2(qGray(picture.pixel(where.right() - 1, y)) > 128, qPrintable(QString::number(height)));
    }
}

int main(int argc, char* argv[])
{
    return runSceneTest<tst_MeterScene>(argc, argv);
}

#include "tst_MeterScene.moc"
