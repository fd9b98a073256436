// SPDX-License-Identifier: GPL-3.0-or-later
// Times the time plot's model at the length of a full history, beside a plain loop that reads the same fields
// once.
#include "BlockSource.h"
#include "CChart2DMeterData.h"
#include "CInstrumentSupervisor.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int kFullHistory = 120000;

/// Median of `repeats` runs, in microseconds.
double medianUs(int repeats, const std::function<void()>& run)
{
    std::vector<double> times;
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1000.0);
    }
    std::nth_element(times.begin(), times.begin() + repeats / 2, times.end());
    return times[static_cast<std::size_t>(repeats) / 2];
}

/// Reads the six fields of each result once and keeps the extremes of the seven series.
float plainLoop(const std::deque<QSharedPointer<CFieldIntensityResult>>& results)
{
    float low[7];
    float high[7];
    std::fill_n(low, 7, 1e30F);
    std::fill_n(high, 7, -1e30F);
    for (const auto& result : results) {
        const float values[] = {result->B(),
                                result->BBprime(),
                                result->Bx(),
                                result->By(),
                                result->Bz(),
                                result->B() - result->dB(),
                                result->B() + result->dB()};
        for (int i = 0; i < 7; ++i) {
            low[i] = std::min(low[i], values[i]);
            high[i] = std::max(high[i], values[i]);
        }
    }
    float sum = 0.0F;
    for (int i = 0; i < 7; ++i)
        sum += high[i] - low[i];
    return sum;
}

void print(const char* what, double us)
{
    std::printf("%-66s %10.1f us\n", what, us);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    CSettings settings(QCoreApplication::applicationDirPath());
    settings.RestoreFactorySettings(false);
    CPluginsManager pluginsManager(settings);
    CInstrumentSupervisor supervisor(&settings);
    COperationMeasure operation(&settings, &pluginsManager, &supervisor);
    operation.OperationParameters()->MeasurementParameters()->SetAcquisitionRate(BlockSource::kRateHz);
    CChart2DMeterData chart(&operation, &settings);

    BlockSource source;
    const auto addBlock = [&] {
        const auto block = source.next();
        QElapsedTimer timer;
        timer.start();
        chart.AddMeasureBlock(block);
        return static_cast<double>(timer.nsecsElapsed()) / 1000.0;
    };
    const auto medianOfAdds = [&](int blocks) {
        std::vector<double> times;
        for (int i = 0; i < blocks; ++i)
            times.push_back(addBlock());
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    };
    std::printf("add a live block of 100 results, median of 50 blocks\n");
    for (const int history : {0, 1000, 10000, 50000, 100000}) {
        while (chart.MeasureResultCount() < static_cast<qulonglong>(history))
            addBlock();
        std::printf("  behind %6d results %46s", history, "");
        std::printf("%10.1f us\n", medianOfAdds(50));
    }
    while (chart.MeasureResultCount() < kFullHistory)
        addBlock();
    print("  behind 120000 results, where the oldest 100 drop", medianOfAdds(500));

    std::deque<QSharedPointer<CMeasureBlock>> dataset;
    std::deque<QSharedPointer<CFieldIntensityResult>> results;
    for (int i = 0; i < kFullHistory / BlockSource::kBlockSize; ++i) {
        dataset.push_back(source.next());
        for (const auto& result : dataset.back()->Results)
            results.push_back(result);
    }
    print("load a dataset of 120,000", medianUs(5, [&] {
              chart.ClearData();
              chart.LoadDataset(dataset);
          }));

    float sink = 0.0F;
    const double plain = medianUs(101, [&] { sink += plainLoop(results); });
    print("plain loop over 120,000 results, each field read once", plain);
    const double downsampling = medianUs(101, [&] { chart.UpdateDownsampling(); });
    print("UpdateDownsampling over 120,000, fully zoomed out", downsampling);
    std::printf("ratio %.2f (limit 2), of the 20 ms tick %.1f %% (limit 10 %%)\n", downsampling / plain,
                downsampling / 200.0);
    chart.SetXmin(11.0);
    chart.SetXmax(11.0);
    print("UpdateDownsampling, window of one row (both searches)",
          medianUs(1001, [&] { chart.UpdateDownsampling(); }));
    chart.SetXmin(6.0);
    chart.SetXmax(6.03);
    print("UpdateDownsampling, window of 301 results in the middle",
          medianUs(1001, [&] { chart.UpdateDownsampling(); }));
    for (const char* mode : {"Exponential", "Moving"}) {
        chart.SetAveragingCount(50);
        chart.SetAveragingModeIndex(chart.AveragingModeNames().indexOf(QLatin1String(mode)));
        std::printf("%-11s ", mode);
        print("RecomputeFullFilter over 120,000", medianUs(3, [&] { chart.RecomputeFullFilter(); }));
        std::printf("%-11s ", mode);
        print("add a live block of 100, history full", medianOfAdds(200));
    }
    return sink > 0.0F ? 0 : 1;
}
