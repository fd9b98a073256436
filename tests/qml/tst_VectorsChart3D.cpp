// SPDX-License-Identifier: GPL-3.0-or-later
// The view of the vectors of a mapping in space: stage, camera, axes and the slider of the length.
#include "ActiveWindow.h"
#include "LogRecorder.h"
#include "PictureDifference.h"
#include "SceneTestMain.h"
#include "VectorsFixture.h"

#include <QQmlContext>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

class tst_VectorsChart3D : public QObject, private VectorsFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { QmlTestSetup::Prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void stage();
    void cameraOfTheSettings();
    void buttons_data();
    void buttons();
    void isometricView();
    void axesFollowTheLimits();
    void floorHasRoomForTheLabels_data();
    void floorHasRoomForTheLabels();
    void axesInAnyOrderOfChanges();
    void limitsThatAreNone();
    void sliderByMouse();
    void sliderByKeys();
    void emptyState();
    void keptSceneIsDeaf();
};

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
void tst_VectorsChart3D::floorHasRoomForTheLabels_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("z");
    QTest::addColumn<double>("ratio");
    QTest::newRow("square") << 3.0 << 3.0 << 1.0;
    QTest::newRow("longer along X") << 4.5 << 3.0 << 1.5;
    QTest::newRow("much longer along X") << 30.0 << 3.0 << 2.0;
    QTest::newRow("longer along Z") << 3.0 << 4.0 << 0.75;
    QTest::newRow("much longer along Z") << 3.0 << 300.0 << 0.5;
}

void tst_VectorsChart3D::floorHasRoomForTheLabels()
{
    QFETCH(double, x);
    QFETCH(double, z);
    m_page->setProperty("XStop", x);
    m_page->setProperty("ZStop", z);
    show();
    QTEST(scene()->property("horizontalAspectRatio").toDouble(), "ratio");
}

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
    QVERIFY(makeActive(m_window.get()));
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
    QVERIFY(makeActive(m_window.get()));
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

int main(int argc, char* argv[])
{
    return runSceneTest<tst_VectorsChart3D>(argc, argv);
}

#include "tst_VectorsChart3D.moc"
