// SPDX-License-Identifier: GPL-3.0-or-later
// Frames and processor time of the meter's component tab, with compass and 3-D scene, at rest and at live
// rates, beside a bare scene with one arrow that turns as often. Needs a display.
//   bench_scene [SECONDS]

#include "CInstrumentSupervisor.h"
#include "CMeterOperationViewModel.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "CUnits.h"
#include "CUserNotifier.h"
#include "CUtils.h"
#include "InitResources.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSurfaceFormat>
#include <QTimer>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>

namespace {

class SilentNotifier : public CUserNotifier
{
public:
    void ShowTrayMessage(const QString&, const QString&) override {}
    void Beep() override {}
};

QSharedPointer<CMeasureBlock> turnedBlock(int index)
{
    const double angle = 0.1 * index;
    auto block = QSharedPointer<CMeasureBlock>::create();
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    result->Timestamp = QDateTime::fromMSecsSinceEpoch(1600000000000 + index);
    result->SetBx(static_cast<float>(40 * std::cos(angle)));
    result->SetBy(static_cast<float>(40 * std::sin(angle)));
    result->SetBz(20);
    result->SetB(std::hypot(40.0F, 20.0F));
    block->Results.append(result);
    return block;
}

QQuickItem* findItem(QQuickItem* parent, const QString& name)
{
    if (parent->objectName() == name)
        return parent;
    const QList<QQuickItem*> children = parent->childItems();
    for (QQuickItem* child : children) {
        if (QQuickItem* found = findItem(child, name))
            return found;
    }
    return nullptr;
}

void run(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Runs `update` so many times a second, and prints what that takes.
void measure(const char* what, QQuickWindow& window, int rateHz, int seconds,
             const std::function<void(int)>& update)
{
    run(1000);
    int frames = 0;
    int updates = 0;
    const auto counting =
        QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; });
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &window, [&] { update(updates++); });
    if (rateHz > 0)
        timer.start(1000 / rateHz);
    const std::clock_t cpuBefore = std::clock();
    QElapsedTimer clock;
    clock.start();
    run(seconds * 1000);
    const double cpuMs = 1000.0 * static_cast<double>(std::clock() - cpuBefore) / CLOCKS_PER_SEC;
    const auto elapsedS = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    QObject::disconnect(counting);
    std::printf("%-34s %6d %10.1f %12.1f", what, rateHz, frames / elapsedS, cpuMs / elapsedS / 10);
    if (updates > 0)
        std::printf(" %16.2f", cpuMs / updates);
    std::printf("\n");
    std::fflush(stdout);
}

bool show(QQuickView& view, const char* url)
{
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QLatin1String(url)));
    view.resize(850, 600);
    view.show();
    run(1000);
    return view.status() == QQuickView::Ready;
}

} // namespace

int main(int argc, char* argv[])
{
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication application(argc, argv);
    InitResources();
    const QStringList arguments = QCoreApplication::arguments();
    const int seconds = arguments.size() > 1 ? arguments.at(1).toInt() : 10;
    qmlRegisterType<CUnits>("Kestrix.CUnit", 1, 0, "Unit");

    CSettings settings(QCoreApplication::applicationDirPath());
    settings.RestoreFactorySettings(false);
    CPluginsManager pluginsManager(settings);
    CInstrumentSupervisor supervisor(&settings);
    COperationMeasure operation(&settings, &pluginsManager, &supervisor);
    SilentNotifier notifier;
    CMeterOperationViewModel meter(&operation, &settings, &notifier);
    CUtils utils;
    std::printf("%-34s %6s %10s %12s %16s\n", "what", "Hz", "frames/s", "CPU %", "ms CPU/update");

    QSize sceneSize;
    {
        QQuickView view;
        QQmlContext* context = view.rootContext();
        context->setContextProperty(QStringLiteral("Utils"), &utils);
        context->setContextProperty(QStringLiteral("Settings"), &settings);
        context->setContextProperty(QStringLiteral("ActiveOperation"), &operation);
        context->setContextProperty(QStringLiteral("ActivePageViewModel"), &meter);
        if (!show(view, "qrc:/Resources/Controls/Meter/ComponentDisplayer.qml"))
            return 1;
        QQuickItem* scene = findItem(view.contentItem(), QStringLiteral("meterScene"));
        if (!scene)
            return 1;
        sceneSize = QSizeF(scene->width(), scene->height()).toSize();
        int index = 0;
        const auto update = [&](int) { operation.OnNewMeasure(turnedBlock(index++)); };
        update(0);
        measure("component tab", view, 0, seconds, update);
        measure("component tab", view, 10, seconds, update);
        measure("component tab", view, 100, seconds, update);
        scene->setVisible(false);
        measure("the same without its scene", view, 10, seconds, update);
    }
    {
        QQuickView view;
        view.rootContext()->setContextProperty(QStringLiteral("SceneWidth"), sceneSize.width());
        view.rootContext()->setContextProperty(QStringLiteral("SceneHeight"), sceneSize.height());
        if (!show(view, "qrc:/BareScene.qml"))
            return 1;
        const auto update = [&view](int index) { view.rootObject()->setProperty("angle", 0.1 * index); };
        measure("peer: bare scene, one arrow", view, 0, seconds, update);
        measure("peer: bare scene, one arrow", view, 10, seconds, update);
        measure("peer: bare scene, one arrow", view, 100, seconds, update);
    }
    std::printf("scenes of %d x %d\n", sceneSize.width(), sceneSize.height());
    return 0;
}
