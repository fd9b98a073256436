// SPDX-License-Identifier: GPL-3.0-or-later
// Times the way of live blocks from the instrument's emit through operation, dataset, view model of the meter
// page and table, without a window, beside two peers: a loop that reads the same fields once, and the bare
// delivery of the same blocks to a slot that only counts.

#include "BenchInstrument.h"
#include "BlockCounter.h"
#include "BlockSource.h"
#include "CInstrumentSupervisor.h"
#include "CMeterOperationViewModel.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <sched.h>
#include <thread>
#include <vector>

namespace {

constexpr int kBlocks = 3000;
constexpr int kSamples = kBlocks * BlockSource::kBlockSize;
constexpr int kRuns = 9;

using Blocks = std::vector<QSharedPointer<CMeasureBlock>>;

Blocks makeBlocks()
{
    BlockSource source;
    Blocks blocks;
    for (int i = 0; i < kBlocks; ++i)
        blocks.push_back(source.next());
    return blocks;
}

/// Threads that are started later inherit the one core.
bool stayOnOneCore()
{
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(sched_getcpu(), &cores);
    return sched_setaffinity(0, sizeof cores, &cores) == 0;
}

/// Reads what the block path reads of each sample, and time and temperature.
double readFields(const Blocks& blocks)
{
    double sum = 0;
    for (const auto& block : blocks) {
        for (const auto& sample : block->Results) {
            sum += sample->B() + sample->dB() + sample->BBprime() + sample->Bx() + sample->By() +
                   sample->Bz() + sample->Temperature() + sample->TimestampNanoseconds;
        }
    }
    return sum;
}

/// Seconds of the median run. Each run has new blocks, whose making is not timed.
double medianSeconds(const std::function<void(Blocks&)>& run)
{
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        Blocks blocks = makeBlocks();
        QElapsedTimer timer;
        timer.start();
        run(blocks);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e9);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/// Emits all blocks, each of which is given up with its emit, from another thread, until `isDone`.
void emitFromThread(Blocks& blocks, const std::function<void(QSharedPointer<CMeasureBlock>)>& emitBlock,
                    const std::function<bool()>& isDone)
{
    std::thread thread([&] {
        for (auto& block : blocks)
            emitBlock(std::exchange(block, {}));
    });
    while (!isDone())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    thread.join();
}

void print(const char* what, double seconds)
{
    std::printf("| %-78s | %8.0f | %11.0f |\n", what, seconds * 1e9 / kSamples, kSamples / seconds);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const bool isOnOneCore = stayOnOneCore();

    CSettings settings(QCoreApplication::applicationDirPath());
    settings.RestoreFactorySettings(false);
    CPluginsManager pluginsManager(settings);
    CInstrumentSupervisor supervisor(&settings);
    BenchInstrumentListProvider provider;
    supervisor.AddInstrumentListProvider(&provider);
    emit provider.InstrumentListUpdated();
    supervisor.SetActiveInstrument(provider.instrument);
    COperationMeasure operation(&settings, &pluginsManager, &supervisor);
    operation.Activate();
    CMeterOperationViewModel page(&operation, &settings);
    page.resume();

    std::printf("%d samples in blocks of %d, median of %d runs with new blocks, %s\n\n", kSamples,
                BlockSource::kBlockSize, kRuns, isOnOneCore ? "one core" : "not bound to one core");
    std::printf("| %-78s | %8s | %11s |\n|---|---|---|\n", "what", "ns/smp", "samples/s");

    double sink = 0;
    print("loop that reads eight fields of each sample once",
          medianSeconds([&](Blocks& blocks) { sink += readFields(blocks); }));
    print("letting go of the blocks, nothing else", medianSeconds([](Blocks& blocks) { blocks.clear(); }));

    BlockCounter counter;
    QObject::connect(&counter, &BlockCounter::Block, &counter, &BlockCounter::OnBlock);
    print("bare signal and counting slot, from another thread, blocks let go",
          medianSeconds([&](Blocks& blocks) {
              counter.samples = 0;
              emitFromThread(
                  blocks, [&](QSharedPointer<CMeasureBlock> block) { emit counter.Block(std::move(block)); },
                  [&] { return counter.samples == kSamples; });
          }));

    // The view model's slot is connected first, so this one is called at the end of its work on a block.
    qint64 arrived = 0;
    QObject::connect(&operation, &COperationMeasure::NewMeasure, &page,
                     [&](const QSharedPointer<CMeasureBlock>& block) { arrived += block->Results.size(); });
    BenchInstrument& instrument = *provider.instrument;
    // From here on the dataset is full, so that each new block drops an old one.
    for (auto& block : makeBlocks())
        emit instrument.OnNewMeasureBlock(block);

    print("block path, emitted on the main thread", medianSeconds([&](Blocks& blocks) {
              for (auto& block : blocks)
                  emit instrument.OnNewMeasureBlock(std::exchange(block, {}));
          }));
    print("block path, emitted from another thread on the same core (limit 500,000/s)",
          medianSeconds([&](Blocks& blocks) {
              arrived = 0;
              emitFromThread(
                  blocks,
                  [&](QSharedPointer<CMeasureBlock> block) {
                      emit instrument.OnNewMeasureBlock(std::move(block));
                  },
                  [&] { return arrived == kSamples; });
          }));

    const bool isComplete =
        operation.RecordingManager()->DataSet()->ResultsCount() == settings.MeasurementMaxMeasurementCount();
    page.PageLeft();
    return isComplete && sink > 0 ? 0 : 1;
}
