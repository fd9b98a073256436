// SPDX-License-Identifier: GPL-3.0-or-later
// Times the mapping's model along a run: what a block costs behind 100 blocks and behind 10,000, over each
// axis and with each average, beside building all blocks anew.
#include "BlockSource.h"
#include "CChart2DMappingData.h"
#include "CInstrumentSupervisor.h"
#include "COperationMapping.h"
#include "CPluginsManager.h"
#include "CSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using Axis = CSettings::t_Mapping2DPlotHorizontalAxisType;

constexpr int kShort = 100;
constexpr int kLong = 10000;
constexpr quint64 kNoLimit = 100000000;

/// Touches memory for all that follows and gives it back to the heap. Else a long run would be charged with
/// the first touch of its pages, and a short one would find those that earlier runs left.
void warmHeap()
{
#ifdef __GLIBC__
    constexpr int kLimit = 1 << 30;
    constexpr std::size_t kBytes = std::size_t{900} << 20U;
    mallopt(M_MMAP_THRESHOLD, kLimit);
    mallopt(M_TRIM_THRESHOLD, kLimit);
    std::vector<char> memory(kBytes, 1);
    std::printf("heap of %zu MB touched beforehand\n", memory.size() >> 20U);
#endif
}

/// A run of blocks of 100 results. Over a place the scan goes back and forth, so that blocks enter everywhere
/// in the order of the plot.
class Run
{
public:
    Run(CSettings& settings, COperationMapping& operation, int blocks)
        : m_chart(&operation, &settings), m_blocks(blocks)
    {
    }

    CChart2DMappingData& chart() { return m_chart; }

    void fill()
    {
        while (m_count < m_blocks)
            m_chart.AddMeasureBlock(nextBlock());
    }

    /// Microseconds of each of so many blocks. Only what the chart does is timed, not the making of blocks.
    void time(int blocks, bool draws, std::vector<double>& times)
    {
        for (int i = 0; i < blocks; ++i) {
            const auto block = nextBlock();
            QElapsedTimer timer;
            timer.start();
            m_chart.AddMeasureBlock(block);
            if (draws)
                m_chart.UpdatePlot();
            times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1000.0);
        }
    }

private:
    QSharedPointer<CMeasureBlock> nextBlock()
    {
        constexpr int kPlacesPerLine = 97;
        auto block = QSharedPointer<CMeasureBlockMapping>::create();
        block->Results = m_source.next()->Results;
        block->Orientation.SetRoll(m_count);
        const int place = m_count % kPlacesPerLine;
        block->Position.SetX(m_count / kPlacesPerLine % 2 == 0 ? place : kPlacesPerLine - place);
        block->Position.SetY(0.5 * block->Position.X());
        block->Position.SetZ(-block->Position.X());
        ++m_count;
        return block;
    }

    CChart2DMappingData m_chart;
    BlockSource m_source;
    int m_blocks;
    int m_count = 0;
};

double medianOf(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

/// Both runs in turns, so that whatever else the machine does falls on both.
void compare(const char* what, Run& shortRun, Run& longRun, bool draws)
{
    constexpr int kTurns = 10;
    constexpr int kBlocksPerTurn = 20;
    std::vector<double> shortTimes;
    std::vector<double> longTimes;
    for (int turn = 0; turn < kTurns; ++turn) {
        shortRun.time(kBlocksPerTurn, draws, shortTimes);
        longRun.time(kBlocksPerTurn, draws, longTimes);
    }
    const double shortUs = medianOf(shortTimes);
    const double longUs = medianOf(longTimes);
    std::printf("  %-44s %10.1f %10.1f us, ratio %.2f\n", what, shortUs, longUs, longUs / shortUs);
}

double buildAnewUs(Run& run)
{
    std::vector<double> times;
    for (int i = 0; i < 5; ++i) {
        QElapsedTimer timer;
        timer.start();
        run.chart().UpdateFilter();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1000.0);
    }
    return medianOf(times);
}

void measure(CSettings& settings, COperationMapping& operation, Axis axis, int mode)
{
    const char* const axes[] = {"time", "X", "Y", "Z"};
    const char* const modes[] = {"no average", "exponential average", "moving average"};
    settings.SetMapping2DPlotHorizontalAxisType(axis);
    settings.SetAveragingCount(50);
    settings.SetAveragingMode(mode);
    settings.SetMappingMaxMeasurementCount(kNoLimit);
    Run shortRun(settings, operation, kShort);
    Run longRun(settings, operation, kLong);
    // In turns here too: else the heap of the one would be in better order.
    shortRun.fill();
    longRun.fill();
    std::printf("over %s, %s\n", axes[axis], modes[mode]);
    compare("a block (limit 1.5)", shortRun, longRun, false);
    compare("a block and the drawing of the next tick", shortRun, longRun, true);
    const double shortUs = buildAnewUs(shortRun);
    const double longUs = buildAnewUs(longRun);
    std::printf("  %-44s %10.1f %10.1f us, ratio %.2f\n", "peer: all blocks anew", shortUs, longUs,
                longUs / shortUs);
}

/// Both at their limit, so that with each block the oldest one drops.
void measureAtLimit(CSettings& settings, COperationMapping& operation, Axis axis)
{
    settings.SetMapping2DPlotHorizontalAxisType(axis);
    settings.SetAveragingMode(CChart2DMappingData::Off);
    Run shortRun(settings, operation, kShort);
    Run longRun(settings, operation, kLong);
    shortRun.fill();
    longRun.fill();
    std::vector<double> shortTimes;
    std::vector<double> longTimes;
    for (int turn = 0; turn < 10; ++turn) {
        settings.SetMappingMaxMeasurementCount(quint64{kShort} * BlockSource::kBlockSize);
        shortRun.time(20, false, shortTimes);
        settings.SetMappingMaxMeasurementCount(quint64{kLong} * BlockSource::kBlockSize);
        longRun.time(20, false, longTimes);
    }
    std::printf("over %s, where the oldest block drops with its samples\n",
                axis == CSettings::e_HorizAxisIsTime ? "time" : "X");
    std::printf("  %-44s %10.1f %10.1f us, ratio %.2f\n", "a block (limit 1.5)", medianOf(shortTimes),
                medianOf(longTimes), medianOf(longTimes) / medianOf(shortTimes));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    CSettings settings(QCoreApplication::applicationDirPath());
    settings.RestoreFactorySettings(false);
    CPluginsManager pluginsManager(settings);
    CInstrumentSupervisor supervisor(&settings);
    COperationMapping operation(&settings, &pluginsManager, &supervisor);
    operation.OperationParameters()->MeasurementParameters()->SetAcquisitionRate(BlockSource::kRateHz);
    warmHeap();
    std::printf("blocks of %d results, behind %d and behind %d blocks\n", BlockSource::kBlockSize, kShort,
                kLong);
    for (const auto axis : {CSettings::e_HorizAxisIsTime, CSettings::e_HorizAxisIsXPosition,
                            CSettings::e_HorizAxisIsYPosition, CSettings::e_HorizAxisIsZPosition}) {
        for (const int mode :
             {CChart2DMappingData::Off, CChart2DMappingData::Exponential, CChart2DMappingData::Moving})
            measure(settings, operation, axis, mode);
    }
    for (const auto axis : {CSettings::e_HorizAxisIsTime, CSettings::e_HorizAxisIsXPosition})
        measureAtLimit(settings, operation, axis);
    return 0;
}
