// SPDX-License-Identifier: GPL-3.0-or-later
// Bytes of the heap for each sample that a dataset keeps, beside those of a bare QObject with as many data
// members, held the same way.

#include "BlockSource.h"
#include "CDataSetMeasurement.h"
#include "CSettings.h"

#include <QCoreApplication>

#include <array>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <memory>

namespace {

constexpr int kSamples = 120000;
constexpr int kBlocks = kSamples / BlockSource::kBlockSize;

class BareObject : public QObject
{
public:
    std::array<char, sizeof(CFieldIntensityResult) - sizeof(QObject)> data{};
};

std::size_t allocatedBytes()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double bytesPerSample(const std::function<void()>& allocate)
{
    const std::size_t before = allocatedBytes();
    allocate();
    return static_cast<double>(allocatedBytes() - before) / kSamples;
}

void print(const char* what, double bytes)
{
    std::printf("| %-60s | %6.1f |\n", what, bytes);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    CSettings settings(QCoreApplication::applicationDirPath());
    settings.RestoreFactorySettings(false);

    std::vector<std::unique_ptr<QObject>> bareQObjects(kSamples);
    const double bareQObject = bytesPerSample([&] {
        for (auto& object : bareQObjects)
            object = std::make_unique<QObject>();
    });
    bareQObjects.clear();

    std::vector<QVector<QSharedPointer<BareObject>>> bareObjects(kBlocks);
    const double bare = bytesPerSample([&] {
        for (auto& objects : bareObjects) {
            for (int i = 0; i < BlockSource::kBlockSize; ++i)
                objects.append(QSharedPointer<BareObject>::create());
        }
    });
    bareObjects.clear();

    CDataSetMeasurement dataSet(settings);
    BlockSource source;
    const double stored = bytesPerSample([&] {
        for (int i = 0; i < kBlocks; ++i)
            dataSet.AddBlock(source.next());
    });

    std::printf("%d samples in blocks of %d; sizeof(CFieldIntensityResult) is %zu\n\n", kSamples,
                BlockSource::kBlockSize, sizeof(CFieldIntensityResult));
    std::printf("| %-60s | %6s |\n|---|---|\n", "what", "bytes");
    print("QObject on the heap", bareQObject);
    print("QObject of the sample's size, by shared pointer in a vector", bare);
    print("sample of a live block in the dataset (aim 320)", stored);
    return dataSet.ResultsCount() == kSamples ? 0 : 1;
}
