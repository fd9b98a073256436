// SPDX-License-Identifier: GPL-3.0-or-later
// How far the main thread of the whole program, in its real window, is behind an instrument that delivers
// 10,000 samples a second in 100 blocks from a thread of its own: from the emit until operation, dataset,
// view model and table are done with the block. Needs a display.
//   bench_lag [SECONDS]

#include "ApplicationDirPath.h"
#include "BenchInstrument.h"
#include "BlockCounter.h"
#include "BlockSource.h"
#include "CApplication.h"
#include "COperationMeasure.h"
#include "CRecordingManagerMeasure.h"
#include "InitResources.h"
#include "ProcessSetup.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQmlContext>
#include <QQuickWindow>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSettlingMs = 1000;
constexpr int kBlocksPerSecond = BlockSource::kRateHz / BlockSource::kBlockSize;

void waitFor(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Emits blocks at their pace and takes down when, and when they were done.
class LagMeter
{
public:
    explicit LagMeter(int seconds) : m_emitted(static_cast<std::size_t>(seconds * kBlocksPerSecond)) {}

    /// Called on the main thread at the end of the work on each block, which come in their order.
    void blockDone()
    {
        if (m_lagsMs.size() == m_emitted.size())
            return;
        const auto lag = Clock::now() - m_emitted[m_lagsMs.size()];
        m_lagsMs.push_back(std::chrono::duration<double, std::milli>(lag).count());
    }

    void run(const QByteArray& what,
             const std::function<void(const QSharedPointer<CMeasureBlock>&)>& emitBlock)
    {
        m_lagsMs.clear();
        std::thread thread([&] {
            BlockSource source;
            auto due = Clock::now();
            for (auto& emitted : m_emitted) {
                auto block = source.next();
                due += std::chrono::microseconds(1000000 / kBlocksPerSecond);
                std::this_thread::sleep_until(due);
                emitted = Clock::now();
                emitBlock(std::exchange(block, {}));
            }
        });
        while (m_lagsMs.size() < m_emitted.size())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        thread.join();
        std::sort(m_lagsMs.begin(), m_lagsMs.end());
        const auto at = [&](double part) {
            return m_lagsMs[static_cast<std::size_t>(part * static_cast<double>(m_lagsMs.size() - 1))];
        };
        std::printf("| %-50s | %6zu | %6.2f | %6.2f | %6.2f |", what.constData(), m_lagsMs.size(), at(0.5),
                    at(0.99), at(1));
    }

private:
    std::vector<Clock::time_point> m_emitted;
    std::vector<double> m_lagsMs;
};

} // namespace

int main(int argc, char* argv[])
{
    prepareProcess();
    QApplication application(argc, argv);
    QThread::currentThread()->setPriority(QThread::HighPriority);
    const QStringList arguments = QCoreApplication::arguments();
    const int seconds = arguments.size() > 1 ? arguments.at(1).toInt() : 60;

    std::printf("%d samples/s in %d blocks/s, %d s each; lag in milliseconds\n\n", BlockSource::kRateHz,
                kBlocksPerSecond, seconds);
    std::printf("| %-50s | %6s | %6s | %6s | %6s | frames/s |\n|---|---|---|---|---|---|\n", "what", "blocks",
                "50 %", "99 %", "max");
    LagMeter meter(seconds);
    {
        BlockCounter counter;
        QObject::connect(&counter, &BlockCounter::Block, &counter, [&] { meter.blockDone(); });
        meter.run("bare queued signal, no window", [&](const auto& block) { emit counter.Block(block); });
        std::printf(" - |\n");
    }

    InitResources();
    ApplicationDirPath = QCoreApplication::applicationDirPath();
    CApplication* kestrix = CApplication::Instance();
    kestrix->Initialize();
    QObject::connect(&application, &QCoreApplication::aboutToQuit, kestrix, &CApplication::onAboutToQuit);
    const QObjectList windows = kestrix->QmlEngine()->rootObjects();
    auto* window = windows.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(windows.constFirst());
    if (!window)
        return 1;
    std::atomic<int> frames{0};
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&] { ++frames; }, Qt::DirectConnection);

    QQmlContext* context = kestrix->QmlEngine()->rootContext();
    auto* supervisor =
        context->contextProperty(QStringLiteral("InstrumentSupervisor")).value<CInstrumentSupervisor*>();
    BenchInstrumentListProvider provider;
    supervisor->AddInstrumentListProvider(&provider);
    emit provider.InstrumentListUpdated();
    supervisor->SetActiveInstrument(provider.instrument);
    kestrix->MainViewModel()->displayMeterPage();
    auto* operation = qobject_cast<COperationMeasure*>(
        context->contextProperty(QStringLiteral("ActiveOperation")).value<QObject*>());
    CPageViewModel* page = kestrix->MainViewModel()->pActivePageViewModel();
    if (!operation || !page)
        return 1;
    // The view model's slot is connected before, so this one is called at the end of its work on a block.
    QObject::connect(operation, &COperationMeasure::NewMeasure, page, [&] { meter.blockDone(); });
    QMetaObject::invokeMethod(page, "resume");

    auto* tabBar = window->findChild<QObject*>(QStringLiteral("meterTabBar"));
    if (!tabBar)
        return 1;
    for (int tab = 0; tab < tabBar->property("count").toInt(); ++tab) {
        tabBar->setProperty("currentIndex", tab);
        waitFor(kSettlingMs);
        const QByteArray text =
            tabBar->property("currentItem").value<QObject*>()->property("text").toByteArray();
        frames = 0;
        QElapsedTimer timer;
        timer.start();
        meter.run("Kestrix, meter page, tab " + text,
                  [&](const auto& block) { emit provider.instrument->OnNewMeasureBlock(block); });
        std::printf(" %.0f |\n", frames * 1000.0 / static_cast<double>(timer.elapsed()));
        std::fflush(stdout);
    }
    const bool isComplete = operation->RecordingManager()->DataSet()->ResultsCount() > 0;
    // Without a session and data there is nothing to ask about at the end.
    operation->StopSession();
    operation->Reset();
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    QApplication::exec();
    return isComplete ? 0 : 1;
}
