// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeterView.h"

#include "PatientWait.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

MeterView::MeterView()
{
    makeModels();
}

MeterView::~MeterView() = default;

void MeterView::makeModels()
{
    m_meter.reset();
    m_fixture = std::make_unique<MeasureFixture>();
    m_meter = std::make_unique<CMeterOperationViewModel>(&m_fixture->operation, &m_fixture->settings,
                                                         &m_fixture->notifier);
    QQmlEngine::setObjectOwnership(m_meter.get(), QQmlEngine::CppOwnership);
}

void MeterView::unload()
{
    m_view->setSource(QUrl());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void MeterView::Renew()
{
    if (m_view)
        unload();
    makeModels();
}

void MeterView::Load(const QSize& size)
{
    if (m_view) {
        unload();
    } else {
        m_view = std::make_unique<QQuickView>();
        m_setup.setUp(m_view->engine());
        m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    }
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("Settings"), &m_fixture->settings);
    context->setContextProperty(QStringLiteral("ActiveOperation"), &m_fixture->operation);
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_meter.get());
    m_view->setSource(QUrl(QStringLiteral("qrc:/Resources/Controls/Meter/ComponentDisplayer.qml")));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->resize(size);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get(), kLongWaitMs));
    QTRY_COMPARE(m_view->rootObject()->size().toSize(), size);
    draw();
}

void MeterView::draw()
{
    QSignalSpy frame(m_view.get(), &QQuickWindow::frameSwapped);
    m_view->update();
    QVERIFY(frame.wait(kLongWaitMs));
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
    m_fixture->operation.OnNewMeasure(block);
}

QQuickItem* MeterView::Find(const char* name) const
{
    return QmlTestSetup::FindItem(m_view->contentItem(), name);
}

QQuickItem* MeterView::Scene() const
{
    QQuickItem* scene = nullptr;
    return QTest::qWaitFor([&] { return (scene = Find("meterScene")) != nullptr; }, kLongWaitMs) ? scene
                                                                                                 : nullptr;
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
