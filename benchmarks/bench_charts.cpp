// SPDX-License-Identifier: GPL-3.0-or-later
// Times the time plot's model at the length of a full history, and the spectrum's model at the length of a
// long block, each beside a plain loop that reads the same values once.
#include "BlockSource.h"
#include "CChart2DMeterData.h"
#include "CChart2DSpectrumData.h"
#include "CInstrumentSupervisor.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cfloat>
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

/// Reads each bin once and keeps the extremes.
float plainLoop(const std::vector<float>& spectrum)
{
    float low = FLT_MAX;
    float high = FLT_MIN;
    for (const float bin : spectrum) {
        low = std::min(low, bin);
        high = std::max(high, bin);
    }
    return high - low;
}

/// What a view's mapper asks for after a reset.
double readTable(const CChart2DSpectrumData& chart)
{
    double sum = 0.0;
    for (int row = 0; row < chart.DownsampledSignalLength(); ++row)
        sum += chart.data(chart.index(row, 0)).toDouble() + chart.data(chart.index(row, 1)).toDouble();
    return sum;
}

/// Zooms a spectrum of 32,769 bins. Returns a number that depends on all results.
double benchSpectrum(COperationMeasure& operation, BlockSource& source)
{
    constexpr int kSamples = 65536;
    constexpr int kNyquist = kSamples / 2;
    CMeasurementParameters parameters;
    // Without the coupling of the rates
    parameters.disconnect(&parameters);
    parameters.SetAcquisitionRate(kSamples);
    parameters.SetBlockSize(kSamples);
    parameters.SetFrequencyMax(kNyquist);
    operation.RecordingManager()->DataSet()->SetMeasurementParameters(&parameters);
    auto block = QSharedPointer<CMeasureBlock>::create();
    while (block->Results.size() < kSamples)
        block->Results += source.next()->Results;
    block->Results.resize(kSamples);

    CChart2DSpectrumData chart(&operation);
    double sink = 0.0;
    std::printf("\nspectrum of a block of %d results at %g Hz\n", kSamples, parameters.AcquisitionRate());
    print("UpdateSpectrum, analysis and drawing", medianUs(11, [&] { chart.UpdateSpectrum(block, 0); }));
    const std::vector<float> spectrum = chart.GetSpectrum();
    const double plain = medianUs(1001, [&] { sink += static_cast<double>(plainLoop(spectrum)); });
    std::printf("plain loop over %zu bins, each read once %24s %10.1f us\n", spectrum.size(), "", plain);
    for (const int width : {kNyquist, kNyquist / 2, 4000, 401, 1}) {
        int start = 0;
        const double zoom = medianUs(1001, [&] {
            start = width == kNyquist ? 0 : (start + 97) % (kNyquist - width);
            chart.refreshAxisX(start, start + width);
        });
        std::printf("refreshAxisX, window of %6d bins, %3d rows %22s %10.1f us (limit 5000)\n", width + 1,
                    chart.DownsampledSignalLength(), "", zoom);
    }
    chart.refreshAxisX(0, kNyquist);
    print("reading the table as a mapper does, 401 rows", medianUs(1001, [&] { sink += readTable(chart); }));
    operation.RecordingManager()->DataSet()->SetMeasurementParameters(
        operation.OperationParameters()->MeasurementParameters());
    return sink;
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
    const double spectrumSink = benchSpectrum(operation, source);
    return sink > 0.0F && spectrumSink > 0.0 ? 0 : 1;
}
