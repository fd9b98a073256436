// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingBlocks.h"

#include <QMap>
#include <QTest>

#include <cmath>
#include <deque>
#include <limits>
#include <list>
#include <random>
#include <utility>

namespace {

/// An entry of `results` results that have their number as temperature.
CMappingBlocks::Entry makeEntry(double key, quint64 firstResult = 0, int results = 1)
{
    CMappingBlocks::Entry entry;
    entry.block = QSharedPointer<CMeasureBlockMapping>::create();
    entry.key = key;
    entry.firstResult = firstResult;
    for (int i = 0; i < results; ++i) {
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        result->SetTemperature(static_cast<quint16>(firstResult + static_cast<quint64>(i)));
        entry.block->Results.append(result);
        entry.values.push_back({static_cast<float>(i)});
        entry.timeStamps.push_back(10.0 * i);
    }
    return entry;
}

using BlockList = QVector<CMeasureBlockMapping*>;

BlockList plottedOf(const CMappingBlocks& blocks)
{
    BlockList list;
    for (std::size_t i = 0; i < blocks.Plotted().Count(); ++i)
        list.append(blocks.Plotted().At(i).entry->block.data());
    return list;
}

CMeasureBlockMapping* add(CMappingBlocks& blocks, double key)
{
    const CMappingBlocks::Entry& entry = blocks.Append(makeEntry(key));
    blocks.Plot(entry);
    return entry.block.data();
}

} // namespace

class tst_CMappingBlocks : public QObject
{
    Q_OBJECT

private slots:
    void ordersByKey();
    void laterOfEqualKeysComesFirst();
    void oldestOfEqualKeysDrops();
    void dropsWhatIsNotPlotted();
    void keyThatIsNotANumber();
    void equalsAMapBuiltAnew();
    void equalsALongListInOrder_data();
    void equalsALongListInOrder();
    void itemsHoldTheLastResult();
    void resultsByNumber();
    void clear();
};

void tst_CMappingBlocks::ordersByKey()
{
    CMappingBlocks blocks;
    QVERIFY(blocks.Plotted().IsEmpty());
    auto* third = add(blocks, 3.0);
    auto* first = add(blocks, -1.0);
    auto* second = add(blocks, 2.5);
    QCOMPARE(plottedOf(blocks), (BlockList{first, second, third}));
    QCOMPARE(blocks.Plotted().First().key, -1.0);
    QCOMPARE(blocks.Plotted().At(1).key, 2.5);
    QCOMPARE(blocks.Plotted().Last().key, 3.0);
    QCOMPARE(blocks.Arrived().front().block.data(), third);
}

void tst_CMappingBlocks::laterOfEqualKeysComesFirst()
{
    CMappingBlocks blocks;
    auto* first = add(blocks, 0.0);
    auto* second = add(blocks, -0.0);
    auto* third = add(blocks, 0.0);
    QCOMPARE(plottedOf(blocks), (BlockList{third, second, first}));
}

void tst_CMappingBlocks::oldestOfEqualKeysDrops()
{
    CMappingBlocks blocks;
    add(blocks, 1.0);
    auto* second = add(blocks, 1.0);
    auto* third = add(blocks, 0.0);
    blocks.DropOldest();
    QCOMPARE(plottedOf(blocks), (BlockList{third, second}));
    blocks.DropOldest();
    QCOMPARE(plottedOf(blocks), (BlockList{third}));
    blocks.DropOldest();
    QVERIFY(blocks.Plotted().IsEmpty());
    QVERIFY(blocks.Arrived().empty());
}

void tst_CMappingBlocks::dropsWhatIsNotPlotted()
{
    CMappingBlocks blocks;
    blocks.Append(makeEntry(1.0));
    auto* plotted = add(blocks, 1.0);
    blocks.DropOldest();
    QCOMPARE(plottedOf(blocks), (BlockList{plotted}));
    blocks.ClearPlotted();
    QCOMPARE(blocks.Arrived().size(), std::size_t{1});
    blocks.DropOldest();
    QVERIFY(blocks.Arrived().empty());
}

void tst_CMappingBlocks::keyThatIsNotANumber()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    CMappingBlocks blocks;
    auto* lost = add(blocks, nan);
    auto* one = add(blocks, 1.0);
    auto* lostToo = add(blocks, nan);
    auto* two = add(blocks, 2.0);
    QCOMPARE(plottedOf(blocks), (BlockList{one, two, lostToo, lost}));
    blocks.DropOldest();
    QCOMPARE(plottedOf(blocks), (BlockList{one, two, lostToo}));
}

void tst_CMappingBlocks::equalsAMapBuiltAnew()
{
    std::mt19937 engine(21);
    std::uniform_int_distribution<int> key(0, 12);
    std::bernoulli_distribution drops(0.4);
    CMappingBlocks blocks;
    for (int step = 0; step < 3000; ++step) {
        add(blocks, key(engine));
        if (drops(engine) || blocks.Arrived().size() > 60)
            blocks.DropOldest();
        QMultiMap<double, CMeasureBlockMapping*> map;
        for (const CMappingBlocks::Entry& entry : blocks.Arrived())
            map.insert(entry.key, entry.block.data());
        QCOMPARE(plottedOf(blocks), map.values().toVector());
    }
}

void tst_CMappingBlocks::equalsALongListInOrder_data()
{
    QTest::addColumn<int>("keys");
    QTest::addColumn<int>("growth");
    QTest::addRow("few keys") << 5 << 1000;
    QTest::addRow("many keys") << 100000 << 1000;
    QTest::addRow("a key of its own for each") << 0 << 1000;
    QTest::addRow("a few only") << 50 << 3;
}

/// Grows to so many entries, goes on at that length, and shrinks to none.
void tst_CMappingBlocks::equalsALongListInOrder()
{
    QFETCH(int, keys);
    QFETCH(int, growth);
    std::mt19937 engine(7);
    CMappingBlocks blocks;
    std::deque<std::pair<double, CMeasureBlockMapping*>> arrived;
    const auto isBefore = [](double a, double b) { return std::isnan(a) ? false : std::isnan(b) || a < b; };
    const auto compare = [&] {
        std::list<std::pair<double, CMeasureBlockMapping*>> inOrder;
        for (const auto& entry : arrived) {
            auto place = inOrder.begin();
            while (place != inOrder.end() && isBefore(place->first, entry.first))
                ++place;
            inOrder.insert(place, entry);
        }
        BlockList expected;
        for (const auto& entry : inOrder)
            expected.append(entry.second);
        QCOMPARE(plottedOf(blocks), expected);
        QCOMPARE(blocks.Plotted().IsEmpty(), expected.isEmpty());
        if (expected.isEmpty())
            return;
        CMappingOrder::Walk walk(blocks.Plotted());
        for (int i = 0; i < expected.size(); i += 1 + i % 5 * 60) {
            QCOMPARE(walk.At(std::size_t(i)).entry->block.data(), expected.at(i));
            QCOMPARE(walk.At(std::size_t(i)).entry->block.data(), expected.at(i));
        }
        QCOMPARE(blocks.Plotted().First().entry->block.data(), expected.first());
        QCOMPARE(blocks.Plotted().Last().entry->block.data(), expected.last());
    };
    for (int step = 0; step < 2 * growth; ++step) {
        double key = keys > 0 ? static_cast<double>(engine() % static_cast<unsigned>(keys)) : step;
        if (keys > 0 && engine() % 40 == 0)
            key = std::numeric_limits<double>::quiet_NaN();
        arrived.emplace_back(key, add(blocks, key));
        if (step >= growth) {
            blocks.DropOldest();
            arrived.pop_front();
        }
        if (step % (1 + growth / 8) == 0)
            compare();
    }
    while (!arrived.empty()) {
        blocks.DropOldest();
        arrived.pop_front();
        if (arrived.size() % (1 + static_cast<std::size_t>(growth) / 8) == 0)
            compare();
    }
}

void tst_CMappingBlocks::itemsHoldTheLastResult()
{
    CMappingBlocks blocks;
    blocks.Plot(blocks.Append(makeEntry(2.0, 0, 3)));
    const CMappingOrder::Item& item = blocks.Plotted().At(0);
    QCOMPARE(item.resultCount, std::size_t{3});
    QCOMPARE(item.lastValues[0], 2.0F);
    QCOMPARE(item.lastTimeStamp, 20.0);
    MappingEntry timeless = makeEntry(3.0);
    timeless.timeStamps.clear();
    blocks.Plot(blocks.Append(timeless));
    QCOMPARE(blocks.Plotted().Last().lastTimeStamp, 0.0);
}

void tst_CMappingBlocks::resultsByNumber()
{
    CMappingBlocks blocks;
    blocks.Append(makeEntry(0.0, 0, 2));
    blocks.Append(makeEntry(9.0, 2, 3));
    blocks.Append(makeEntry(1.0, 5, 1));
    for (quint64 serial = 0; serial < 6; ++serial)
        QCOMPARE(blocks.ResultAt(serial)->Temperature(), static_cast<quint16>(serial));
    QVERIFY(!blocks.ResultAt(6));
    blocks.DropOldest();
    QVERIFY(!blocks.ResultAt(1));
    QCOMPARE(blocks.ResultAt(2)->Temperature(), quint16{2});
}

void tst_CMappingBlocks::clear()
{
    CMappingBlocks blocks;
    add(blocks, 1.0);
    blocks.Clear();
    QVERIFY(blocks.Plotted().IsEmpty());
    QVERIFY(blocks.Arrived().empty());
    QVERIFY(!blocks.ResultAt(0));
}

QTEST_GUILESS_MAIN(tst_CMappingBlocks)
#include "tst_CMappingBlocks.moc"
