// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeterChartFixture.h"

#include <QTest>

#include <random>

namespace {

/// The order in which the averages take the fields: B, Bx, By, Bz, B.B', dB.
SixFields fieldsOf(const CFieldIntensityResult& result)
{
    return {result.B(), result.Bx(), result.By(), result.Bz(), result.BBprime(), result.dB()};
}

/// The averages in an arithmetic of their own: each operation in double, rounded to single precision. That
/// equals an operation in single precision, since a double has more than twice the digits.
class ReferenceFilter
{
public:
    void filter(Mode mode, unsigned averagingCount)
    {
        const std::size_t n = std::min<std::size_t>(raw.size(), averagingCount);
        for (std::size_t k = filtered.size(); k < raw.size(); ++k) {
            SixFields out = raw[k];
            if (n > 0 && mode == Mode::Exponential && k > 0) {
                for (std::size_t i = 0; i < 6; ++i) {
                    const float product = round(double(filtered[k - 1][i]) * round(double(n) - 1.0));
                    out[i] = round(double(round(double(product) + double(raw[k][i]))) / double(n));
                }
            } else if (n > 0 && mode == Mode::Moving && k >= n) {
                for (std::size_t i = 0; i < 6; ++i) {
                    m_sum[i] =
                        round(double(round(double(raw[k][i]) + double(m_sum[i]))) - double(raw[k - n][i]));
                    out[i] = round(double(m_sum[i]) / double(n));
                }
            } else if (n > 0 && mode == Mode::Moving && m_counter < 1) {
                m_sum = raw[k];
                m_counter = 1;
            } else if (n > 0 && mode == Mode::Moving) {
                ++m_counter;
                for (std::size_t i = 0; i < 6; ++i) {
                    m_sum[i] = round(double(m_sum[i]) + double(raw[k][i]));
                    out[i] = round(double(m_sum[i]) / double(m_counter));
                }
            }
            filtered.push_back(out);
        }
    }

    void trim(std::size_t limit)
    {
        while (raw.size() > limit) {
            raw.erase(raw.begin());
            filtered.erase(filtered.begin());
        }
    }

    void recompute(Mode mode, unsigned averagingCount)
    {
        filtered.clear();
        m_counter = 0;
        m_sum = {};
        filter(mode, averagingCount);
    }

    std::vector<SixFields> raw;
    std::vector<SixFields> filtered;

private:
    static float round(double value) { return static_cast<float>(value); }

    int m_counter = 0;
    SixFields m_sum{};
};

} // namespace

class tst_CChart2DMeterDataAveraging : public QObject, private MeterChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void offSharesResults();
    void exponentialOfOne();
    void exponentialWeightsOfTheFirstBlocks();
    void movingFirstBlockLongerThanCount();
    void newResultsAreBare();
    void filterEqualsReference_data();
    void filterEqualsReference();
    void labelsComeFromTheRawResults();
    void everyBlockIsFilteredForItself();
};

void tst_CChart2DMeterDataAveraging::offSharesResults()
{
    const Block block = makeBlock(3);
    m_chart->SetAveragingCount(5);
    m_chart->AddMeasureBlock(block);
    for (int i = 0; i < 3; ++i)
        QVERIFY(m_chart->history().Filtered()[static_cast<std::size_t>(i)] == block->Results[i]);
    // A count of nothing is no average, whatever the mode
    m_chart->SetAveragingCount(0);
    for (const int index : {1, 2}) {
        m_chart->SetAveragingModeIndex(index);
        for (int i = 0; i < 3; ++i)
            QVERIFY(m_chart->history().Filtered()[static_cast<std::size_t>(i)] == block->Results[i]);
    }
}

void tst_CChart2DMeterDataAveraging::exponentialOfOne()
{
    m_chart->SetAveragingModeIndex(1);
    const Block block = makeBlock(3);
    m_chart->AddMeasureBlock(block);
    QVERIFY(m_chart->history().Filtered()[0] == block->Results[0]);
    for (int i = 1; i < 3; ++i) {
        const auto& filtered = m_chart->history().Filtered()[static_cast<std::size_t>(i)];
        QVERIFY(filtered != block->Results[i]);
        QCOMPARE(fieldsOf(*filtered), fieldsOf(*block->Results[i]));
    }
}

void tst_CChart2DMeterDataAveraging::exponentialWeightsOfTheFirstBlocks()
{
    m_chart->SetAveragingCount(4);
    m_chart->SetAveragingModeIndex(1);
    const auto blockOf = [this](float b) {
        auto block = Block::create();
        block->Results.append(makeResult(m_nextSample++ * m_spacingNs, {b, 0, 0, 0, 0, 0}));
        return block;
    };
    // N is 1, 2, 3, 4, 4: y = 8, (8+16)/2, (2*12+24)/3, (3*16+32)/4, (3*20+4)/4
    const std::array<float, 5> in{8, 16, 24, 32, 4};
    const std::array<float, 5> out{8, 12, 16, 20, 16};
    for (std::size_t i = 0; i < in.size(); ++i) {
        m_chart->AddMeasureBlock(blockOf(in[i]));
        QCOMPARE(m_chart->history().Filtered()[i]->B(), out[i]);
    }
}

void tst_CChart2DMeterDataAveraging::movingFirstBlockLongerThanCount()
{
    m_chart->SetAveragingCount(2);
    m_chart->SetAveragingModeIndex(2);
    auto block = Block::create();
    for (const float b : {2.0F, 4.0F, 8.0F, 16.0F})
        block->Results.append(makeResult(m_nextSample++ * m_spacingNs, {b, b, b, b, b, b}));
    m_chart->AddMeasureBlock(block);
    const std::array<float, 4> expected{2, 3, 6, 12};
    for (std::size_t i = 0; i < 4; ++i)
        QCOMPARE(m_chart->history().Filtered()[i]->BBprime(), expected[i]);
    QVERIFY(m_chart->history().Filtered()[0] == block->Results[0]);
    QVERIFY(m_chart->history().Filtered()[1] != block->Results[1]);
}

void tst_CChart2DMeterDataAveraging::newResultsAreBare()
{
    m_chart->SetAveragingCount(3);
    m_chart->SetAveragingModeIndex(2);
    const Block block = makeBlock(4);
    for (const auto& result : block->Results) {
        result->SetDBConverted(1.0F);
        result->SetTemperature(77);
    }
    m_chart->AddMeasureBlock(block);
    const auto& average = m_chart->history().Filtered()[3];
    QVERIFY(!average->Timestamp.isValid());
    QVERIFY(std::isnan(average->dBConverted()));
    QCOMPARE(average->Temperature(), quint16{0});
    QVERIFY(std::abs(m_chart->x(3) - 0.3) < 1e-6);
}

void tst_CChart2DMeterDataAveraging::filterEqualsReference_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<uint>("count");
    QTest::addColumn<int>("limit");
    for (const int mode : {0, 1, 2}) {
        for (const uint count : {0U, 1U, 2U, 3U, 7U, 50U, 1000U, 4000000000U}) {
            for (const int limit : {40, 120000})
                QTest::addRow("mode %d, count %u, limit %d", mode, count, limit) << mode << count << limit;
        }
    }
}

void tst_CChart2DMeterDataAveraging::filterEqualsReference()
{
    QFETCH(int, mode);
    QFETCH(uint, count);
    QFETCH(int, limit);
    m_settings->SetMeasurementMaxMeasurementCount(static_cast<quint64>(limit));
    m_chart->SetAveragingModeIndex(mode);
    m_chart->SetAveragingCount(count);
    ReferenceFilter reference;
    std::uniform_int_distribution<int> size(0, 25);
    const auto compare = [&] {
        QCOMPARE(m_chart->history().Filtered().size(), reference.filtered.size());
        for (std::size_t i = 0; i < reference.filtered.size(); ++i) {
            const SixFields fields = fieldsOf(*m_chart->history().Filtered()[i]);
            for (std::size_t field = 0; field < 6; ++field)
                QVERIFY(fields[field] == reference.filtered[i][field]);
        }
    };
    for (int i = 0; i < 30; ++i) {
        const Block block = makeBlock(size(m_engine));
        for (const auto& result : block->Results)
            reference.raw.push_back(fieldsOf(*result));
        m_chart->AddMeasureBlock(block);
        reference.filter(static_cast<Mode>(mode), count);
        reference.trim(static_cast<std::size_t>(limit));
        compare();
        if (QTest::currentTestFailed())
            return;
        if (i % 10 == 7) {
            m_chart->RecomputeFullFilter();
            reference.recompute(static_cast<Mode>(mode), count);
            compare();
            if (QTest::currentTestFailed())
                return;
        }
    }
    // Another mode or count takes effect on what came before
    const int otherMode = (mode + 1) % 3;
    m_chart->SetAveragingModeIndex(otherMode);
    reference.recompute(static_cast<Mode>(otherMode), count);
    compare();
    m_chart->SetAveragingCount(5);
    reference.recompute(static_cast<Mode>(otherMode), 5);
    compare();
}

void tst_CChart2DMeterDataAveraging::labelsComeFromTheRawResults()
{
    m_chart->SetAveragingCount(3);
    m_chart->SetAveragingModeIndex(2);
    m_chart->AddMeasureBlock(makeBlock(30));
    m_chart->UpdatePlot();
    const QDateTime start = QDateTime::fromSecsSinceEpoch(kBaseSecond);
    QCOMPARE(m_chart->XminDate(), start.toString(QStringLiteral("yyyy.MM.dd")));
    QCOMPARE(m_chart->XmaxTime(), start.addSecs(2).toString(QStringLiteral("HH:mm:ss")));
}

/// The cap of the average grows with each block of a load, as it does live.
void tst_CChart2DMeterDataAveraging::everyBlockIsFilteredForItself()
{
    m_chart->SetAveragingCount(40);
    m_chart->SetAveragingModeIndex(1);
    const std::deque<Block> blocks = makeBlocks(10, 7);
    m_chart->LoadDataset(blocks);
    OpenChart live(m_operation.get(), m_settings.get());
    for (const Block& block : blocks)
        live.AddMeasureBlock(block);
    for (std::size_t i = 0; i < 70; ++i)
        QCOMPARE(fieldsOf(*m_chart->history().Filtered()[i]), fieldsOf(*live.history().Filtered()[i]));
}

QTEST_GUILESS_MAIN(tst_CChart2DMeterDataAveraging)
#include "tst_CChart2DMeterDataAveraging.moc"
