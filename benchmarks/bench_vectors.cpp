// SPDX-License-Identifier: GPL-3.0-or-later
// Times the vectors of a mapping in their 3-D view: to make all, our share of a step of the slider, and the
// frames of a drag and of a turning camera, beside a bare scene with as many arrows. Needs a display.
//   bench_vectors [ARROWS...]

#include "CInstrumentSupervisor.h"
#include "CMappingOperationViewModel.h"
#include "COperationMapping.h"
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

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int kPerRow = 100;
constexpr int kFrames = 15;
constexpr int kSteps = 41;

class SilentNotifier : public CUserNotifier
{
public:
    void ShowTrayMessage(const QString&, const QString&) override {}
    void Beep() override {}
};

struct Times
{
    double wallMs;
    double cpuMs; ///< of all threads
};

void run(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

double cpuMs()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

Times timed(const std::function<void()>& work)
{
    const double cpuBefore = cpuMs();
    QElapsedTimer clock;
    clock.start();
    work();
    return {static_cast<double>(clock.nsecsElapsed()) / 1e6, cpuMs() - cpuBefore};
}

/// The median of both, each by itself.
Times medianOf(int repeats, const std::function<void(int)>& work)
{
    std::vector<double> wall;
    std::vector<double> cpu;
    for (int i = 0; i < repeats; ++i) {
        const Times times = timed([&] { work(i); });
        wall.push_back(times.wallMs);
        cpu.push_back(times.cpuMs);
    }
    std::sort(wall.begin(), wall.end());
    std::sort(cpu.begin(), cpu.end());
    return {wall[wall.size() / 2], cpu[cpu.size() / 2]};
}

void print(const char* what, const Times& times)
{
    std::printf("  %-50s %10.1f %10.1f\n", what, times.wallMs, times.cpuMs);
    std::fflush(stdout);
}

/// Until the window has shown what was changed before. The first frame may have been on its way already.
void waitForFrame(QQuickWindow& window)
{
    constexpr int kLongestMs = 60000;
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QTimer::singleShot(kLongestMs, &loop, &QEventLoop::quit);
    window.update();
    loop.exec();
}

Times framesOf(QQuickWindow& window, const std::function<void(int)>& change)
{
    return medianOf(kFrames, [&](int i) {
        change(i);
        waitForFrame(window);
    });
}

QSharedPointer<CMeasureBlockMapping> blockAt(int index)
{
    auto block = QSharedPointer<CMeasureBlockMapping>::create();
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    const double angle = 0.01 * index;
    result->Timestamp = QDateTime::fromMSecsSinceEpoch(1600000000000 + index);
    result->SetBx(static_cast<float>(40 * std::cos(angle)));
    result->SetBy(static_cast<float>(40 * std::sin(angle)));
    result->SetBz(static_cast<float>(index % 50));
    result->SetB(static_cast<float>(40 + index % 50));
    block->Results.append(result);
    block->Position.SetX(index % kPerRow);
    block->Position.SetY(index / kPerRow);
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

bool show(QQuickView& view, const char* url)
{
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QLatin1String(url)));
    view.resize(850, 600);
    view.show();
    run(1000);
    return view.status() == QQuickView::Ready;
}

void call(QObject* scene, const char* function)
{
    QMetaObject::invokeMethod(scene, function);
}

void setLength(QObject* scene, double length)
{
    QMetaObject::invokeMethod(scene, "setArrowLength", Q_ARG(QVariant, length));
}

QObject* cameraOf(QObject* scene)
{
    return scene->property("scene").value<QObject*>()->property("activeCamera").value<QObject*>();
}

/// Returns the size of the scene; none if there was none.
QSize measurePage(CSettings& settings, int arrows)
{
    CPluginsManager pluginsManager(settings);
    CInstrumentSupervisor supervisor(&settings);
    COperationMapping operation(&settings, &pluginsManager, &supervisor);
    operation.OperationParameters()->MeasurementParameters()->SetBlockSize(1);
    auto& dataSet = *operation.RecordingManager()->DataSet();
    dataSet.SetMeasurementParameters(operation.OperationParameters()->MeasurementParameters());
    for (int i = 0; i < arrows; ++i)
        dataSet.AddBlock(blockAt(i));
    SilentNotifier notifier;
    CUtils utils;
    std::unique_ptr<CMappingOperationViewModel> page;
    print("view model of the page, opened on the blocks", timed([&] {
              page = std::make_unique<CMappingOperationViewModel>(&operation, &settings, &notifier);
          }));
    QQuickView view;
    QQmlContext* context = view.rootContext();
    context->setContextProperty(QStringLiteral("Utils"), &utils);
    context->setContextProperty(QStringLiteral("Settings"), &settings);
    context->setContextProperty(QStringLiteral("ActiveOperation"), &operation);
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), page.get());
    if (!show(view, "qrc:/Resources/Controls/Chart3D/VectorsChart3D.qml"))
        return {};
    QQuickItem* scene = findItem(view.contentItem(), QStringLiteral("vectorsScene"));
    if (!scene)
        return {};
    const auto frame = [&view](int) { waitForFrame(view); };
    frame(0);
    print("make all arrows", medianOf(3, [&](int) { call(scene, "createAllVectors"); }));
    print("the first frame with them", timed([&] { frame(0); }));
    frame(0);
    const auto lengthOf = [](int i) { return 0.05 + 0.01 * (i % 10); };
    print("step of the slider, without drawing (limit 10)",
          medianOf(kSteps, [&](int i) { setLength(scene, lengthOf(i)); }));
    frame(0);
    print("hide and show, without drawing", medianOf(3, [&](int) { call(scene, "setVectorsVisibleUntil"); }));
    frame(0);
    print("frame of a slider drag", framesOf(view, [&](int i) { setLength(scene, lengthOf(i)); }));
    print("frame with a turning camera",
          framesOf(view, [&](int i) { cameraOf(scene)->setProperty("xRotation", 5.0 * i); }));
    print("frame at rest (nothing changes)", framesOf(view, [](int) {}));
    return QSizeF(scene->width(), scene->height()).toSize();
}

bool measurePeer(const QSize& size, int arrows)
{
    QQuickView view;
    view.rootContext()->setContextProperty(QStringLiteral("SceneWidth"), size.width());
    view.rootContext()->setContextProperty(QStringLiteral("SceneHeight"), size.height());
    view.rootContext()->setContextProperty(QStringLiteral("ArrowCount"), arrows);
    bool isShown = false;
    print("peer: bare scene, made and shown (1000 of it a wait)",
          timed([&] { isShown = show(view, "qrc:/BareVectors.qml"); }));
    if (!isShown)
        return false;
    waitForFrame(view);
    waitForFrame(view);
    print("peer: frame with a turning camera",
          framesOf(view, [&](int i) { view.rootObject()->setProperty("angle", 5.0 * i); }));
    return true;
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
    qmlRegisterType<CUnits>("Kestrix.CUnit", 1, 0, "Unit");
    CSettings settings(QCoreApplication::applicationDirPath());
    settings.RestoreFactorySettings(false);

    std::vector<int> counts;
    for (int i = 1; i < argc; ++i)
        counts.push_back(std::max(1, QString::fromLocal8Bit(argv[i]).toInt()));
    if (counts.empty())
        counts.push_back(2000);
    for (const int arrows : counts) {
        std::printf("%d arrows %42s %10s %10s\n", arrows, "", "ms", "CPU ms");
        const QSize size = measurePage(settings, arrows);
        if (size.isEmpty() || !measurePeer(size, arrows))
            return 1;
        std::printf("  scenes of %d x %d\n", size.width(), size.height());
    }
    return 0;
}
