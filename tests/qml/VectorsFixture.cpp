// SPDX-License-Identifier: GPL-3.0-or-later
#include "VectorsFixture.h"

#include "PatientWait.h"

#include <QColor>
#include <QCoreApplication>
#include <QEvent>
#include <QJSValue>
#include <QQmlComponent>
#include <QQmlContext>
#include <QTest>

namespace {

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

} // namespace

void VectorsFixture::begin()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
    CSettings& settings = m_fixture.settings;
    settings.SetMapping3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPresetIsometricRight);
    settings.SetMapping3DZoomLevel(90);
    settings.SetMapping3DOrthoProjection(false);
    m_operation =
        std::make_unique<COperationMapping>(&settings, &m_fixture.pluginsManager, &m_fixture.supervisor);
    m_page = std::make_unique<FakeMappingPage>();
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        m_setup.setUp(m_engine.get());
    }
    QQmlContext* context = m_engine->rootContext();
    context->setContextProperty(QStringLiteral("Settings"), &settings);
    context->setContextProperty(QStringLiteral("ActiveOperation"), m_operation.get());
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page.get());
    QQmlComponent component(m_engine.get());
    component.setData(kWindow, QUrl(QStringLiteral("qrc:/Resources/TestWindow.qml")));
    m_window.reset(qobject_cast<QQuickWindow*>(component.create()));
    QVERIFY2(m_window, qPrintable(component.errorString()));
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), kLongWaitMs));
}

void VectorsFixture::end()
{
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_page.reset();
    m_operation.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

QVector<VectorsFixture::Vector> VectorsFixture::row(int count)
{
    QVector<Vector> vectors;
    for (int i = 0; i < count; ++i)
        vectors.append(FakeMappingPage::along({0, 1, 0}, i + 1, {float(i + 1) / 10, 0.5F, 0.5F}));
    return vectors;
}

QVector<int> VectorsFixture::firstNumbers(int count)
{
    QVector<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.append(i);
    return numbers;
}

void VectorsFixture::show(bool isShown)
{
    m_window->setProperty("isShown", isShown);
    if (isShown)
        QTRY_VERIFY(scene() && scene()->isVisible());
    else
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void VectorsFixture::rest(int blocks)
{
    manager().DataSet()->SetResultsCount(quint64(blocks));
    manager().SetIsIdleWithData(true);
    manager().SetReplayIndex(blocks - 1);
}

QVector<QObject*> VectorsFixture::vectors() const
{
    QVector<QObject*> all;
    const QVariantList list = scene()->property("vectors").value<QJSValue>().toVariant().toList();
    for (const QVariant& vector : list)
        all.append(vector.value<QObject*>());
    return all;
}

QVector<float> VectorsFixture::lengths() const
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

int VectorsFixture::visibleCount() const
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

void VectorsFixture::click(const char* name)
{
    const QQuickItem* item = find(name);
    QVERIFY2(item && item->isVisible() && item->isEnabled(), name);
    QTest::mouseClick(m_window.get(), Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
}

QImage VectorsFixture::picture() const
{
    // A scene draws what it has heard of in the frame before.
    m_window->grabWindow();
    return m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
}

QRect VectorsFixture::place() const
{
    return {scene()->mapToScene({}).toPoint(), scene()->size().toSize()};
}
