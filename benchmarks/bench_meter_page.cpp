// SPDX-License-Identifier: GPL-3.0-or-later
// The meter page with its time plot on screen, whole program, real window: how often the plot is refreshed
// and painted at 10,000 samples a second, how late the main thread is, what it costs with and without
// painting, and how long a change of page takes at a full history. The spectrum and AC analysis pages
// likewise, with blocks of 1,000 samples and limits. Needs a display.
//   bench_meter_page [SECONDS]

#include "ApplicationDirPath.h"
#include "BenchInstrument.h"
#include "BlockSource.h"
#include "CApplication.h"
#include "COperationMeasure.h"
#include "CPlotTable.h"
#include "CRecordingManagerMeasure.h"
#include "InitResources.h"
#include "LocalTimeZone.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineSeries>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSurfaceFormat>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kAnalysedBlockSize = 1000;
constexpr int kFullHistory = 120000;
constexpr int kSettlingMs = 1000;
constexpr int kBlocksPerSecond = BlockSource::kRateHz / BlockSource::kBlockSize;
constexpr int kPageChanges = 15;
constexpr int kRefreshes = 200;
constexpr int kSeries = 7;

void waitFor(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

double processSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Sorts the times and returns the one below which a part of them lies.
double quantile(std::vector<double>& times, double part)
{
    if (times.empty())
        return 0;
    std::sort(times.begin(), times.end());
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
}

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

class MeterPage
{
public:
    MeterPage()
    {
        m_kestrix = CApplication::Instance();
        m_kestrix->Initialize();
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, m_kestrix, &CApplication::onAboutToQuit);
        const QObjectList windows = m_kestrix->QmlEngine()->rootObjects();
        m_window = windows.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(windows.constFirst());
        if (!m_window)
            qFatal("no window");
        QQmlContext* context = m_kestrix->QmlEngine()->rootContext();
        auto* supervisor =
            context->contextProperty(QStringLiteral("InstrumentSupervisor")).value<CInstrumentSupervisor*>();
        supervisor->AddInstrumentListProvider(&m_provider);
        emit m_provider.InstrumentListUpdated();
        supervisor->SetActiveInstrument(m_provider.instrument);
        m_kestrix->MainViewModel()->displayMeterPage();
        m_operation = qobject_cast<COperationMeasure*>(
            context->contextProperty(QStringLiteral("ActiveOperation")).value<QObject*>());
    }

    /// Delivers blocks at their pace from a thread of their own, and prints what came of it.
    void measure(const char* what, int seconds, int blockSize = BlockSource::kBlockSize)
    {
        const int blocksPerSecond = BlockSource::kRateHz / blockSize;
        std::vector<Clock::time_point> emitted(static_cast<std::size_t>(seconds * blocksPerSecond));
        std::vector<double> lags;
        lags.reserve(emitted.size());
        QObject page;
        // The view model's slot is connected before, so this one is called at the end of its work on a block.
        QObject::connect(m_operation, &COperationMeasure::NewMeasure, &page, [&] {
            if (lags.size() < emitted.size())
                lags.push_back(milliseconds(Clock::now() - emitted[lags.size()]));
        });
        int refreshes = 0;
        QObject::connect(chart(), &QAbstractItemModel::modelReset, &page, [&] { ++refreshes; });
        std::atomic<int> frames{0};
        QObject::connect(
            m_window, &QQuickWindow::frameSwapped, &page, [&] { ++frames; }, Qt::DirectConnection);

        const double cpuBefore = processSeconds();
        QElapsedTimer timer;
        timer.start();
        std::thread thread([&] {
            BlockSource source;
            auto due = Clock::now();
            for (auto& time : emitted) {
                auto block = source.next(blockSize);
                due += std::chrono::microseconds(1000000 / blocksPerSecond);
                std::this_thread::sleep_until(due);
                time = Clock::now();
                emit m_provider.instrument->OnNewMeasureBlock(std::exchange(block, {}));
            }
        });
        while (lags.size() < emitted.size())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        thread.join();
        const double elapsedS = static_cast<double>(timer.elapsed()) / 1000.0;
        const double cpuS = processSeconds() - cpuBefore;
        std::printf("| %-44s | %9.0f | %8.0f | %6.2f | %6.2f | %6.2f | %5.0f %% |\n", what,
                    refreshes / elapsedS, frames / elapsedS, quantile(lags, 0.5), quantile(lags, 0.99),
                    quantile(lags, 1), 100 * cpuS / elapsedS);
        std::fflush(stdout);
    }

    void resume() { QMetaObject::invokeMethod(m_kestrix->MainViewModel()->pActivePageViewModel(), "resume"); }

    void openPlot()
    {
        auto* tabs = m_window->findChild<QObject*>(QStringLiteral("tabBar"));
        tabs->setProperty("currentIndex", 1);
        waitFor(kSettlingMs);
    }

    void setPlotOnGraphicsCard(bool use)
    {
        QQuickItem* view = find(m_window->contentItem(), QStringLiteral("chartView"));
        view->setProperty("useOpenGL", use);
        QMetaObject::invokeMethod(view, "createAllSeries");
        waitFor(kSettlingMs);
    }

    void setPainted(bool painted)
    {
        m_window->setVisible(painted);
        waitFor(kSettlingMs);
    }

    void fillHistory()
    {
        BlockSource source;
        while (m_operation->RecordingManager()->DataSet()->ResultsCount() < kFullHistory)
            m_operation->OnNewMeasure(source.next());
        waitFor(kSettlingMs);
    }

    /// From the order to show a page until its first frame is on screen.
    void measurePageChange(const char* what, const std::function<void()>& before,
                           const std::function<void()>& change)
    {
        std::vector<double> times;
        for (int i = 0; i < kPageChanges; ++i) {
            before();
            waitFor(200);
            bool isShown = false;
            const auto start = Clock::now();
            change();
            const auto connection =
                QObject::connect(m_window, &QQuickWindow::frameSwapped, m_window, [&] { isShown = true; });
            m_window->update();
            while (!isShown)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            times.push_back(milliseconds(Clock::now() - start));
            QObject::disconnect(connection);
        }
        std::printf("| %-44s | %6.1f | %6.1f | %6.1f |\n", what, quantile(times, 0.5), quantile(times, 0),
                    quantile(times, 1));
        std::fflush(stdout);
    }

    /// The seven series of the plot on screen take the model's table.
    void measureRefresh()
    {
        QQuickItem* view = find(m_window->contentItem(), QStringLiteral("chartView"));
        auto* table = view->findChild<CPlotTable*>();
        std::vector<double> mappers;
        std::vector<double> points;
        std::vector<double> bare;
        QtCharts::QLineSeries series;
        const int rows = table->rowCount();
        const auto timed = [](std::vector<double>& times, const auto& run) {
            const auto start = Clock::now();
            run();
            times.push_back(milliseconds(Clock::now() - start));
        };
        for (int i = 0; i < kRefreshes; ++i) {
            // What the mappers hear when the model has been reset.
            timed(mappers, [&] { QMetaObject::invokeMethod(table, "modelReset"); });
            timed(points, [&] { QMetaObject::invokeMethod(view, "showPoints"); });
            timed(bare, [&] {
                for (int k = 0; k < kSeries; ++k) {
                    series.clear();
                    for (int row = 0; row < rows; ++row)
                        series.append(row, row % 10);
                }
            });
        }
        std::printf(
            "\nrefresh of seven series of %d points, median of %d in ms: mappers %.3f, hand-over %.3f; "
            "peer, points appended to seven bare series: %.3f\n",
            rows, kRefreshes, quantile(mappers, 0.5), quantile(points, 0.5), quantile(bare, 0.5));
    }

    /// Blocks of 1,000 samples in the parameters, ten a second, and the limits of a file.
    void prepareAnalysis(const QString& limitsFile)
    {
        COperationParameters& parameters = *m_operation->OperationParameters();
        parameters.MeasurementParameters()->SetAcquisitionRate(BlockSource::kRateHz);
        parameters.MeasurementParameters()->SetBlockSize(kAnalysedBlockSize);
        parameters.LimitsParameters()->SetLimitsFilePath(limitsFile);
        if (!m_operation->LimitsFileLoaded())
            qFatal("no limits");
    }

    void openSpectrum() { m_kestrix->MainViewModel()->displaySpectrumPage(); }
    void openAcAnalysis() { m_kestrix->MainViewModel()->displayAcAnalysisPage(); }
    void openAnew() { m_kestrix->MainViewModel()->displayMeterPage(); }
    void openTab(int index)
    {
        m_window->findChild<QObject*>(QStringLiteral("tabBar"))->setProperty("currentIndex", index);
    }

    void end()
    {
        // Without a session and data there is nothing to ask about at the end.
        m_operation->StopSession();
        m_operation->Reset();
    }

private:
    QAbstractItemModel* chart() const
    {
        const QObject* page = m_kestrix->MainViewModel()->pActivePageViewModel();
        const auto model = [page](const char* models, const char* name) {
            const auto* owner = page->property(models).value<QObject*>();
            return owner ? qobject_cast<QAbstractItemModel*>(owner->property(name).value<QObject*>())
                         : nullptr;
        };
        if (auto* meter = model("MeterOperationDatasetViewModel", "Chart2DData"))
            return meter;
        if (auto* spectrum = model("SpectrumOperationDatasetViewModel", "FFTChart2DData"))
            return spectrum;
        return model("AcAnalysisOperationDatasetViewModel", "Chart2DData");
    }

    static QQuickItem* find(QQuickItem* parent, const QString& objectName)
    {
        const QList<QQuickItem*> items = parent->childItems();
        for (QQuickItem* item : items) {
            if (item->objectName() == objectName)
                return item;
            if (QQuickItem* found = find(item, objectName))
                return found;
        }
        return nullptr;
    }

    CApplication* m_kestrix = nullptr;
    QQuickWindow* m_window = nullptr;
    BenchInstrumentListProvider m_provider;
    COperationMeasure* m_operation = nullptr;
};

} // namespace

int main(int argc, char* argv[])
{
    keepLocalTimeZone();
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QThread::currentThread()->setPriority(QThread::HighPriority);
    const QStringList arguments = QCoreApplication::arguments();
    const int seconds = arguments.size() > 1 ? arguments.at(1).toInt() : 20;
    InitResources();
    ApplicationDirPath = QCoreApplication::applicationDirPath();

    MeterPage page;
    page.resume();
    page.openPlot();
    std::printf("%d samples/s in %d blocks/s, %d s each; lag in milliseconds, processor time of one core\n\n",
                BlockSource::kRateHz, kBlocksPerSecond, seconds);
    std::printf("| %-44s | refreshes | frames/s | 50 %%   | 99 %%   | max    | CPU     |\n", "2D Plot tab");
    std::printf("|---|---|---|---|---|---|---|\n");
    page.measure("painted, series on the graphics card", seconds);
    page.setPlotOnGraphicsCard(false);
    page.measure("painted, series on the processor", seconds);
    page.setPlotOnGraphicsCard(true);
    page.setPainted(false);
    page.measure("hidden window, nothing painted", seconds);
    page.setPainted(true);
    page.openTab(0);
    page.measure("Component tab, painted", seconds);
    page.openTab(1);

    page.fillHistory();
    std::printf("\n| %-44s | median | min    | max    |\n|---|---|---|---|\n",
                "milliseconds to the first frame, 120,000 results");
    page.measurePageChange(
        "meter page anew, Component tab", [] {}, [&] { page.openAnew(); });
    page.measurePageChange(
        "from the Component tab to 2D Plot", [&] { page.openTab(0); }, [&] { page.openTab(1); });
    page.measureRefresh();

    page.end();
    page.prepareAnalysis(QStringLiteral(KESTRIX_LIMITS_FILE));
    std::printf("\n| %-44s | refreshes | frames/s | 50 %%   | 99 %%   | max    | CPU     |\n",
                "blocks of 1,000 samples, limits loaded");
    std::printf("|---|---|---|---|---|---|---|\n");
    page.openSpectrum();
    waitFor(kSettlingMs);
    page.resume();
    page.measure("Spectrum page, FFT Plot tab", seconds, kAnalysedBlockSize);
    page.openTab(1);
    page.measure("Spectrum page, Peaks Table tab", seconds, kAnalysedBlockSize);
    page.openAcAnalysis();
    waitFor(kSettlingMs);
    page.measure("AC Analysis page, 2D Plot tab", seconds, kAnalysedBlockSize);
    page.openTab(1);
    page.measure("AC Analysis page, Freq. Table tab", seconds, kAnalysedBlockSize);
    page.end();
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    QApplication::exec();
    return 0;
}
