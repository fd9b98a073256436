// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeterView.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

#include <cmath>

MeterView::MeterView() : m_meter(&m_fixture.operation, &m_fixture.settings, &m_fixture.notifier)
{
    QQmlEngine::setObjectOwnership(&m_meter, QQmlEngine::CppOwnership);
}

MeterView::~MeterView() = default;

void MeterView::Load(const QSize& size)
{
    m_view = std::make_unique<QQuickView>();
    m_setup.setUp(m_view->engine());
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("Settings"), &m_fixture.settings);
    context->setContextProperty(QStringLiteral("ActiveOperation"), &m_fixture.operation);
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), &m_meter);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setSource(QUrl(QStringLiteral("qrc:/Resources/Controls/Meter/ComponentDisplayer.qml")));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->resize(size);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QTest::qWait(50);
}

void MeterView::Deliver(float bx, float by, float bz)
{
    Deliver(bx, by, bz, std::sqrt(bx * bx + by * by + bz * bz));
}

void MeterView::Deliver(float bx, float by, float bz, float magnitude)
{
    Sample sample;
    sample.bx = bx;
    sample.by = by;
    sample.bz = bz;
    sample.b = magnitude;
    Deliver(makeBlock({sample}));
}

void MeterView::Deliver(const QSharedPointer<CMeasureBlock>& block)
{
    m_fixture.operation.OnNewMeasure(block);
}

QQuickItem* MeterView::Find(const char* name) const
{
    return QmlTestSetup::FindItem(m_view->contentItem(), name);
}

QQuickItem* MeterView::Scene() const
{
    QQuickItem* scene = nullptr;
    return QTest::qWaitFor([&] { return (scene = Find("meterScene")) != nullptr; }) ? scene : nullptr;
}

QObject* MeterView::PartOfScene(const char* property) const
{
    return Scene()->property(property).value<QObject*>();
}

QImage MeterView::Picture() const
{
    // A scene draws what it has heard of in the frame before.
    m_view->grabWindow();
    return m_view->grabWindow().convertToFormat(QImage::Format_RGB32);
}

QRect MeterView::PlaceInPicture(const QQuickItem* item) const
{
    const double ratio = m_view->effectiveDevicePixelRatio();
    const QPointF corner = item->mapToScene(QPointF(0, 0)) * ratio;
    return QRectF(corner, QSizeF(item->width(), item->height()) * ratio).toRect();
}

void MeterView::Click(const char* name) const
{
    const QQuickItem* item = Find(name);
    QVERIFY2(item && item->isVisible() && item->isEnabled(), name);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
}
