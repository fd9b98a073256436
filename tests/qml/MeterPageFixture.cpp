// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeterPageFixture.h"

#include "ActiveWindow.h"
#include "CPlotTable.h"
#include "PatientWait.h"

#include <QColor>
#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QQmlContext>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

void setBound(CBoundedParm* bound, double min, double max)
{
    bound->SetMin(min);
    bound->SetMax(max);
}

void MeterPageFixture::prepare()
{
    QmlTestSetup::Prepare();
    CPlotTable::RegisterQmlTypes();
}

void MeterPageFixture::begin()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
    m_fixture = std::make_unique<MeasureFixture>();
    m_instrument = m_fixture->connectInstrument();
    m_instrument->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA, CUnits::GAUSS});
    m_instrument->SetRangeList({0.1F, 3.0F});
    m_instrument->SetTriggerList(
        {CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});
    setBound(m_instrument->KestrixAcquisitionRateBound(), 1, 1000);
    setBound(m_instrument->KestrixDisplayRateBound(), 0.5, 50);
    setBound(m_instrument->BlockSizeBound(), 2, 500);
    setBound(m_instrument->AveragingBound(), 1, 100);
    setBound(m_instrument->FrequencyMinBound(), 0, 500);
    setBound(m_instrument->FrequencyMaxBound(), 1, 500);
    parameters().SetImmediateAcquisitionRate(200);
    parameters().SetAcquisitionRate(200);
    parameters().SetDisplayRate(10);
    parameters().SetAveraging(5);
    parameters().SetAutoRange(true);
}

void MeterPageFixture::end()
{
    if (m_view)
        m_view->setSource(QUrl());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_mainViewModel.reset();
    m_meter.reset();
    m_instrument.reset();
    m_fixture.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void MeterPageFixture::makeWindow()
{
    m_setup = std::make_unique<QmlTestSetup>();
    m_view = std::make_unique<QQuickView>();
    m_setup->setUp(m_view->engine());
    m_view->rootContext()->setContextProperty(QStringLiteral("QtVerSix"), false);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(1200, 1000);
}

void MeterPageFixture::load()
{
    m_meter = std::make_unique<CMeterOperationViewModel>(&m_fixture->operation, &m_fixture->settings,
                                                         &m_fixture->notifier);
    m_mainViewModel = std::make_unique<QQmlPropertyMap>();
    m_mainViewModel->insert(QStringLiteral("SmallWindowSize"), false);
    m_mainViewModel->insert(QStringLiteral("ParameterMenuExpanded"), false);
    m_mainViewModel->insert(QStringLiteral("PageMenuExpanded"), false);
    m_mainViewModel->insert(QStringLiteral("MainWindowHeight"), 1000);
    if (!m_view)
        makeWindow();
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("Settings"), &m_fixture->settings);
    context->setContextProperty(QStringLiteral("MainViewModel"), m_mainViewModel.get());
    context->setContextProperty(QStringLiteral("ActiveOperation"), &m_fixture->operation);
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_meter.get());
    m_view->setSource(QUrl(QStringLiteral("qrc:/Resources/Pages/MeterPage.qml")));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->show();
    // A file dialog of the test before has left no window active.
    QVERIFY(makeActive(m_view.get()));
}

QQuickItem* MeterPageFixture::item(const char* name) const
{
    QQuickItem* const found = QmlTestSetup::FindItem(m_view->contentItem(), name);
    if (!found)
        qFatal("no item %s", name);
    return found;
}

void MeterPageFixture::click(const char* name)
{
    QQuickItem* target = item(name);
    // Positioners place their items when the next frame is made.
    QSignalSpy frame(m_view.get(), &QQuickWindow::frameSwapped);
    m_view->update();
    QVERIFY(frame.wait(kLongWaitMs));
    QVERIFY2(target->isVisible() && target->isEnabled(), name);
    const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centre.toPoint());
}

void MeterPageFixture::choose(const char* name, int index)
{
    const QByteArray box = QByteArray(name) + "Box";
    while (chosen(name) != index) {
        QVERIFY(makeActive(m_view.get()));
        item(box.constData())->forceActiveFocus();
        const int before = chosen(name);
        QTest::keyClick(m_view.get(), before < index ? Qt::Key_Down : Qt::Key_Up);
        QVERIFY2(chosen(name) != before, name);
    }
    // The view model takes the choice by a timer that is due at once; later ones follow it.
    QEventLoop loop;
    QTimer::singleShot(0, &loop, &QEventLoop::quit);
    loop.exec();
}

void MeterPageFixture::enter(const char* field, const QString& text)
{
    const QByteArray input = QByteArray(field) + "Text";
    QVERIFY(makeActive(m_view.get()));
    item(input.constData())->forceActiveFocus();
    QTest::keyClick(m_view.get(), Qt::Key_A, Qt::ControlModifier);
    for (const QChar character : text)
        QTest::keyClick(m_view.get(), character.toLatin1());
    QTest::keyClick(m_view.get(), Qt::Key_Return);
}

void MeterPageFixture::enterText(const char* area, const QString& text)
{
    click(area);
    QVERIFY(makeActive(m_view.get()));
    for (const QChar character : text)
        QTest::keyClick(m_view.get(), character.toLatin1());
}

bool MeterPageFixture::isRed(const char* field) const
{
    const QByteArray input = QByteArray(field) + "Text";
    return item(input.constData())->property("color").value<QColor>() == QColor(Qt::red);
}

void MeterPageFixture::expandBox(const char* name)
{
    if (!item(name)->property("expanded").toBool())
        click((QByteArray(name) + "Title").constData());
}

void MeterPageFixture::addBlocks(int count)
{
    for (int i = 0; i < count; ++i)
        m_fixture->operation.OnNewMeasure(makeRamp(i, 2, 10 * i, 5));
}
