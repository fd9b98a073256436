// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DAcAnalysisData.h"
#include "ComputeError.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"

#include <QAbstractItemModelTester>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace MetaObjectTable;

namespace {

enum Figure { Rms, PeakToPeak, StandardDeviation };

/// In double precision, by the definitions.
double referenceFigure(const std::vector<double>& signal, int figure)
{
    const auto n = static_cast<double>(signal.size());
    double sum = 0.0;
    double squares = 0.0;
    for (const double x : signal) {
        sum += x;
        squares += x * x;
    }
    double deviations = 0.0;
    for (const double x : signal)
        deviations += (x - sum / n) * (x - sum / n);
    if (figure == PeakToPeak)
        return *std::max_element(signal.begin(), signal.end()) -
               *std::min_element(signal.begin(), signal.end());
    return figure == StandardDeviation ? std::sqrt(deviations / (n - 1.0)) : std::sqrt(squares / n);
}

/// The figures of B, B.B', Bx, By, Bz and the uncertainty of the first.
std::array<double, 6> referencePoint(const CMeasureBlock& block, int figure)
{
    std::array<std::vector<double>, 7> series;
    for (const auto& result : block.Results) {
        const double b = static_cast<double>(result->B());
        const double dB = static_cast<double>(result->dB());
        const std::array<double, 7> values{b,
                                           static_cast<double>(result->BBprime()),
                                           static_cast<double>(result->Bx()),
                                           static_cast<double>(result->By()),
                                           static_cast<double>(result->Bz()),
                                           b - dB,
                                           b + dB};
        for (std::size_t i = 0; i < 7; ++i)
            series[i].push_back(values[i]);
    }
    std::array<double, 6> point{};
    for (std::size_t i = 0; i < 5; ++i)
        point[i] = referenceFigure(series[i], figure);
    point[5] = std::abs(referenceFigure(series[6], figure) - referenceFigure(series[5], figure)) / 2.0;
    return point;
}

std::array<double, 6> fieldsOf(const CFieldIntensityResult& result)
{
    return {static_cast<double>(result.B()),  static_cast<double>(result.BBprime()),
            static_cast<double>(result.Bx()), static_cast<double>(result.By()),
            static_cast<double>(result.Bz()), static_cast<double>(result.dB())};
}

struct OpenChart : CChart2DAcAnalysisData
{
    using CChart2DAcAnalysisData::CChart2DAcAnalysisData;
    const CFieldsHistory& history() const { return History(); }
    double x(std::size_t i) const { return History().X(i); }
    double lastX() const { return History().X(History().TimeStamps().size() - 1); }
    bool isTimerActive() const { return findChild<QTimer*>()->isActive(); }
};

} // namespace

class tst_CChart2DAcAnalysisData : public QObject, private OperationFixture
{
    Q_OBJECT

private slots:
    void init();
    void surface();
    void deltaX();
    void pointEqualsReference_data();
    void pointEqualsReference();
    void uncertaintyIsNeverNegative();
    void deviationOfEqualResults();
    void pointHasTheTimeOfTheLastResult();
    void oneBlockDrawsTwoRows();
    void limitsOfX();
    void countIsToldOnChange();
    void historyLimit_data();
    void historyLimit();
    void loadedRecordHasItsOwnBlockSize();
    void filterChangesNothing();
    void filterHasNoFloor();
    void loadDataset();
    void loadNothing();
    void loadDatasetUpTo_data();
    void loadDatasetUpTo();
    void positionsAreThoseOfTheHistory();
    void tooShortBlocksThrow_data();
    void tooShortBlocksThrow();
    void loadThatThrowsLeavesTheChartAlive();
    void otherFigureRedrawsEverything();
    void modelTesterStaysContent();

private:
    std::unique_ptr<OpenChart> m_chart;
};

void tst_CChart2DAcAnalysisData::init()
{
    m_chart.reset();
    start();
    m_chart = std::make_unique<OpenChart>(m_operation.get());
}

void tst_CChart2DAcAnalysisData::surface()
{
    const QMetaObject& meta = CChart2DAcAnalysisData::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Signal, {}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot, {}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Method, {}));
    QCOMPARE(meta.superClass(), &CChart2DFieldsData::staticMetaObject);
    QCOMPARE(m_chart->MinDeltaAxisX(), 0.1);
}

void tst_CChart2DAcAnalysisData::deltaX()
{
    parameters().SetDisplayRate(12.34);
    QCOMPARE(m_chart->ComputeDeltaX(), 123U);
}

void tst_CChart2DAcAnalysisData::pointEqualsReference_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("figure");
    QTest::newRow("RMS") << 0 << int(Rms);
    QTest::newRow("peak-to-peak") << 1 << int(PeakToPeak);
    QTest::newRow("standard deviation") << 2 << int(StandardDeviation);
    QTest::newRow("unknown") << 3 << int(Rms);
    QTest::newRow("negative") << -1 << int(Rms);
}

void tst_CChart2DAcAnalysisData::pointEqualsReference()
{
    QFETCH(int, index);
    QFETCH(int, figure);
    std::uniform_int_distribution<int> size(2, 300);
    for (std::size_t i = 0; i < 50; ++i) {
        const Block block = makeBlock(size(m_engine));
        m_chart->AddMeasureBlock(block, index);
        QCOMPARE(m_chart->MeasureResultCount(), qulonglong{i + 1});
        QVERIFY(m_chart->history().Filtered()[i] == m_chart->history().Raw()[i]);
        const std::array<double, 6> point = fieldsOf(*m_chart->history().Raw()[i]);
        const std::array<double, 6> expected = referencePoint(*block, figure);
        for (std::size_t field = 0; field < 6; ++field)
            QVERIFY2(std::abs(point[field] - expected[field]) < 5e-4,
                     qPrintable(QStringLiteral("field %1: %2, expected %3")
                                    .arg(field)
                                    .arg(point[field])
                                    .arg(expected[field])));
    }
}

void tst_CChart2DAcAnalysisData::uncertaintyIsNeverNegative()
{
    // The lower bound is the larger one in size
    auto block = Block::create();
    for (int i = 0; i < 4; ++i)
        block->Results.append(makeResult(i, {-10.0F, 0, 0, 0, 0, 1.0F}));
    m_chart->AddMeasureBlock(block, 0);
    QCOMPARE(m_chart->history().Raw()[0]->B(), 10.0F);
    QCOMPARE(m_chart->history().Raw()[0]->dB(), 1.0F);
    for (int figure = 0; figure < 3; ++figure) {
        for (int i = 0; i < 20; ++i) {
            m_chart->AddMeasureBlock(makeBlock(5), figure);
            QVERIFY(m_chart->history().Raw().back()->dB() >= 0.0F);
        }
    }
}

void tst_CChart2DAcAnalysisData::deviationOfEqualResults()
{
    auto block = Block::create();
    block->Results.append(makeResult(0, {3, 4, 5, 6, 7, 1}));
    block->Results.append(makeResult(1, {3, 4, 5, 6, 7, 1}));
    m_chart->AddMeasureBlock(block, 2);
    for (const double value : fieldsOf(*m_chart->history().Raw()[0]))
        QCOMPARE(value, 0.0);
}

void tst_CChart2DAcAnalysisData::pointHasTheTimeOfTheLastResult()
{
    const Block block = makeBlock(7);
    for (const auto& result : block->Results)
        result->SetDBConverted(3.0F);
    m_chart->AddMeasureBlock(block, 0);
    const auto& point = *m_chart->history().Raw()[0];
    QCOMPARE(point.Timestamp, block->Results.last()->Timestamp);
    QCOMPARE(point.TimestampNanoseconds, block->Results.last()->TimestampNanoseconds);
    QVERIFY(std::isnan(point.dBConverted()));
    QCOMPARE(m_chart->x(0), 0.0);
    m_chart->AddMeasureBlock(makeBlock(3), 0);
    QVERIFY(std::abs(m_chart->x(1) - 0.3) < 1e-6);
}

void tst_CChart2DAcAnalysisData::oneBlockDrawsTwoRows()
{
    m_chart->AddMeasureBlock(makeBlock(5), 1);
    QTRY_COMPARE(m_chart->rowCount(), 2);
    QCOMPARE(xValue(*m_chart, 0), 0.0);
    QCOMPARE(xValue(*m_chart, 1), 0.1);
    for (int row = 0; row < 2; ++row)
        QCOMPARE(seriesValue(*m_chart, row, 2), m_chart->history().Raw()[0]->Bx());
}

void tst_CChart2DAcAnalysisData::limitsOfX()
{
    parameters().SetAcquisitionRate(10.0);
    for (int i = 0; i < 5; ++i)
        m_chart->AddMeasureBlock(makeBlock(1), 0);
    // 0.4 + 0.1 can be past half a second in the last digit of a time stamp
    QCOMPARE(m_chart->MinDeltaAxisX(), 0.1);
    QCOMPARE(m_chart->MeasureResultMinX(), 0.0);
    for (int i = 0; i < 5; ++i)
        m_chart->AddMeasureBlock(makeBlock(1), 0);
    QCOMPARE(m_chart->MeasureResultMaxX(), m_chart->lastX() + 0.1 + 0.5);
    m_chart->ClearData();
    m_chart->AddMeasureBlock(makeBlock(1), 0);
    m_chart->AddMeasureBlock(makeBlock(2), 0);
    QCOMPARE(m_chart->MeasureResultMaxX(), m_chart->lastX() + 0.1);
}

void tst_CChart2DAcAnalysisData::countIsToldOnChange()
{
    recordParameters(10.0, 5, 0.0, 5.0);
    m_settings->SetMeasurementMaxMeasurementCount(10);
    QSignalSpy spy(m_chart.get(), &CChart2DFieldsData::MeasureResultCountChanged);
    for (int i = 0; i < 6; ++i)
        m_chart->AddMeasureBlock(makeBlock(5), 0);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{2});
    QCOMPARE(spy.count(), 2);
}

void tst_CChart2DAcAnalysisData::historyLimit_data()
{
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("blockSize");
    QTest::addColumn<int>("points");
    QTest::newRow("whole number of blocks") << 12 << 4 << 3;
    QTest::newRow("rest") << 15 << 4 << 3;
    QTest::newRow("one block at least") << 3 << 4 << 1;
    QTest::newRow("nothing kept") << 0 << 4 << 1;
    QTest::newRow("block size 0") << 7 << 0 << 7;
    QTest::newRow("block size below 0") << 7 << -3 << 7;
}

void tst_CChart2DAcAnalysisData::historyLimit()
{
    QFETCH(int, results);
    QFETCH(int, blockSize);
    QFETCH(int, points);
    recordParameters(10.0, blockSize, 0.0, 5.0);
    m_settings->SetMeasurementMaxMeasurementCount(static_cast<quint64>(results));
    std::vector<std::array<double, 6>> expected;
    for (int i = 0; i < 20; ++i) {
        const Block block = makeBlock(4);
        expected.push_back(referencePoint(*block, PeakToPeak));
        m_chart->AddMeasureBlock(block, 1);
        const auto count = std::min<std::size_t>(expected.size(), static_cast<std::size_t>(points));
        QCOMPARE(m_chart->history().Raw().size(), count);
        QCOMPARE(m_chart->history().Filtered().size(), count);
        QCOMPARE(m_chart->history().TimeStamps().size(), count);
        QCOMPARE(m_chart->MeasureResultCount(), qulonglong{count});
        QCOMPARE(m_chart->x(0), 0.0);
        for (std::size_t k = 0; k < count; ++k)
            QVERIFY(std::abs(fieldsOf(*m_chart->history().Raw()[k])[0] -
                             expected[expected.size() - count + k][0]) < 5e-4);
    }
}

void tst_CChart2DAcAnalysisData::loadedRecordHasItsOwnBlockSize()
{
    parameters().SetTriggerMode(CTrigger::IMMEDIATE);
    parameters().SetBlockSize(100);
    recordParameters(10.0, 2, 0.0, 5.0);
    m_settings->SetMeasurementMaxMeasurementCount(100);
    m_chart->LoadDataset(makeBlocks(40, 2), 0);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{40});
}

void tst_CChart2DAcAnalysisData::filterChangesNothing()
{
    for (int i = 0; i < 30; ++i)
        m_chart->AddMeasureBlock(makeBlock(4), 0);
    m_chart->UpdatePlot();
    const auto table = [this] {
        QVector<QVariant> values;
        for (int row = 0; row < m_chart->rowCount(); ++row) {
            for (int column = 0; column < 8; ++column)
                values.append(m_chart->data(m_chart->index(row, column)));
        }
        return values;
    };
    const QVector<QVariant> before = table();
    QCOMPARE(before.size(), 30 * 8);
    m_chart->RecomputeFullFilter();
    QCOMPARE(table(), before);
    QVERIFY(m_chart->history().Filtered() == m_chart->history().Raw());
}

/// A new filtering keeps to the limit of results without the one point that a block always gives.
void tst_CChart2DAcAnalysisData::filterHasNoFloor()
{
    recordParameters(10.0, 4, 0.0, 5.0);
    for (int i = 0; i < 5; ++i)
        m_chart->AddMeasureBlock(makeBlock(4), 0);
    m_settings->SetMeasurementMaxMeasurementCount(9);
    m_chart->RecomputeFullFilter();
    QCOMPARE(m_chart->history().Raw().size(), std::size_t{5});
    QCOMPARE(m_chart->history().Filtered().size(), std::size_t{2});
    QVERIFY(m_chart->history().Filtered()[0] == m_chart->history().Raw()[3]);
    m_settings->SetMeasurementMaxMeasurementCount(3);
    m_chart->RecomputeFullFilter();
    QCOMPARE(m_chart->history().Filtered().size(), std::size_t{0});
    QCOMPARE(m_chart->rowCount(), 0);
    m_chart->AddMeasureBlock(makeBlock(4), 0);
    m_chart->UpdatePlot();
    QCOMPARE(m_chart->history().Raw().size(), std::size_t{1});
}

void tst_CChart2DAcAnalysisData::loadDataset()
{
    const std::deque<Block> blocks = makeBlocks(60, 5);
    QVector<bool> visible;
    QVector<bool> running;
    connect(m_chart.get(), &CChart2D::VisibleChanged, this, [&](bool value) {
        visible.append(value);
        running.append(m_chart->isTimerActive());
    });
    QSignalSpy slider(m_chart.get(), &CChart2D::refreshLimitSliderX);
    m_chart->LoadDataset(blocks, 1);
    QCOMPARE(visible, QVector<bool>({false, true}));
    QCOMPARE(running, QVector<bool>({false, false}));
    QVERIFY(m_chart->isTimerActive());
    QCOMPARE(slider.count(), 1);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{60});
    // Points half a second apart: the window keeps its ten seconds
    QCOMPARE(m_chart->Xmax(), m_chart->lastX());
    QVERIFY(std::abs(m_chart->Xmax() - 29.5) < 1e-6);
    QCOMPARE(m_chart->Xmin(), m_chart->Xmax() - 10.0);
    for (std::size_t i = 0; i < 60; ++i)
        QVERIFY(std::abs(fieldsOf(*m_chart->history().Raw()[i])[4] - referencePoint(*blocks[i], 1)[4]) <
                5e-4);
}

void tst_CChart2DAcAnalysisData::loadNothing()
{
    QSignalSpy visible(m_chart.get(), &CChart2D::VisibleChanged);
    m_chart->LoadDataset({}, 0);
    m_chart->LoadDatasetUpTo({}, 0, 3, true);
    m_chart->LoadDatasetUpTo(makeBlocks(2, 2), 0, -1, true);
    QCOMPARE(visible.count(), 0);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
}

void tst_CChart2DAcAnalysisData::loadDatasetUpTo_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("whole");
    QTest::addColumn<int>("points");
    QTest::addColumn<double>("xMax");
    QTest::addColumn<bool>("windowStays");
    // Point i at X = 0.7 i
    QTest::newRow("first block only") << 0 << false << 1 << 0.0 << false;
    QTest::newRow("up to a block") << 39 << false << 40 << 27.3 << false;
    QTest::newRow("past the end") << 99 << false << 60 << 41.3 << false;
    // t = 0.1 is not rounded
    QTest::newRow("whole, first block") << 0 << true << 60 << 0.1 << true;
    // t = 0.8
    QTest::newRow("whole, second block") << 1 << true << 60 << 1.0 << true;
    // t = 27.4
    QTest::newRow("whole, window on a block") << 39 << true << 60 << 27.5 << true;
    // t = 41.4
    QTest::newRow("whole, last block") << 59 << true << 60 << 41.5 << true;
    QTest::newRow("whole, past the end") << 60 << true << 60 << 41.3 << false;
}

void tst_CChart2DAcAnalysisData::loadDatasetUpTo()
{
    QFETCH(int, index);
    QFETCH(bool, whole);
    QFETCH(int, points);
    QFETCH(double, xMax);
    QFETCH(bool, windowStays);
    const std::deque<Block> blocks = makeBlocks(60, 7);
    QSignalSpy visible(m_chart.get(), &CChart2D::VisibleChanged);
    QSignalSpy slider(m_chart.get(), &CChart2D::refreshLimitSliderX);
    m_chart->LoadDatasetUpTo(blocks, 2, index, whole);
    QCOMPARE(m_chart->MeasureResultCount(), static_cast<qulonglong>(points));
    QVERIFY2(std::abs(m_chart->Xmax() - xMax) < 1e-6, qPrintable(QString::number(m_chart->Xmax(), 'g', 12)));
    QCOMPARE(m_chart->Xmin(), std::max(0.0, m_chart->Xmax() - 10.0));
    QCOMPARE(visible.count(), 2);
    QCOMPARE(slider.count(), 1);
    QVERIFY(m_chart->isTimerActive());
    // Dirty data scroll the window to the end, a window set on a block stays
    const double set = m_chart->Xmax();
    m_chart->UpdatePlot();
    if (windowStays)
        QCOMPARE(m_chart->Xmax(), set);
    else if (points > 1)
        QCOMPARE(m_chart->Xmax(), m_chart->MeasureResultMaxX());
    QVERIFY(m_chart->rowCount() > 0);
}

/// Old points drop, and the index counts those that are left.
void tst_CChart2DAcAnalysisData::positionsAreThoseOfTheHistory()
{
    recordParameters(10.0, 7, 0.0, 5.0);
    m_settings->SetMeasurementMaxMeasurementCount(70);
    m_chart->LoadDatasetUpTo(makeBlocks(60, 7), 0, 9, true);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{10});
    // t = 0.7 * 9 + 0.1
    QVERIFY(std::abs(m_chart->Xmax() - 6.5) < 1e-6);
    m_chart->ClearData();
    m_chart->LoadDatasetUpTo(makeBlocks(60, 7), 0, 10, true);
    QVERIFY(std::abs(m_chart->Xmax() - 6.3) < 1e-6);
}

void tst_CChart2DAcAnalysisData::tooShortBlocksThrow_data()
{
    QTest::addColumn<int>("figure");
    QTest::addColumn<int>("samples");
    QTest::addColumn<bool>("throws");
    for (const int figure : {0, 1, 2, 7}) {
        for (const int samples : {0, 1, 2})
            QTest::addRow("figure %d, %d samples", figure, samples)
                << figure << samples << (samples < (figure == 2 ? 2 : 1));
    }
}

void tst_CChart2DAcAnalysisData::tooShortBlocksThrow()
{
    QFETCH(int, figure);
    QFETCH(int, samples);
    QFETCH(bool, throws);
    m_chart->AddMeasureBlock(makeBlock(3), figure);
    const Block block = makeBlock(samples);
    if (throws)
        QVERIFY_EXCEPTION_THROWN(m_chart->AddMeasureBlock(block, figure), ComputeError);
    else
        m_chart->AddMeasureBlock(block, figure);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong(throws ? 1 : 2));
    QCOMPARE(m_chart->history().Raw().size(), std::size_t(throws ? 1 : 2));
    QCOMPARE(m_chart->history().Filtered().size(), std::size_t(throws ? 1 : 2));
}

void tst_CChart2DAcAnalysisData::loadThatThrowsLeavesTheChartAlive()
{
    std::deque<Block> blocks = makeBlocks(5, 3);
    blocks[3] = Block::create();
    QVERIFY_EXCEPTION_THROWN(m_chart->LoadDataset(blocks, 0), ComputeError);
    QVERIFY(m_chart->isTimerActive());
    QCOMPARE(m_chart->Visible(), true);
    QVERIFY_EXCEPTION_THROWN(m_chart->LoadDatasetUpTo(blocks, 0, 4, false), ComputeError);
    QVERIFY(m_chart->isTimerActive());
    QCOMPARE(m_chart->Visible(), true);
    QTRY_VERIFY(m_chart->rowCount() > 0);
}

void tst_CChart2DAcAnalysisData::otherFigureRedrawsEverything()
{
    const std::deque<Block> blocks = makeBlocks(20, 6);
    for (int figure = 0; figure < 3; ++figure) {
        m_chart->ClearData();
        m_chart->LoadDataset(blocks, figure);
        m_chart->UpdatePlot();
        m_chart->resetAxisXDelta(true);
        m_chart->UpdatePlot();
        QCOMPARE(m_chart->rowCount(), 20);
        for (int row = 0; row < 20; ++row)
            QVERIFY(std::abs(static_cast<double>(seriesValue(*m_chart, row, 3)) -
                             referencePoint(*blocks[static_cast<std::size_t>(row)], figure)[3]) < 5e-4);
    }
}

void tst_CChart2DAcAnalysisData::modelTesterStaysContent()
{
    const QAbstractItemModelTester tester(m_chart.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    recordParameters(10.0, 20, 0.0, 5.0);
    m_settings->SetMeasurementMaxMeasurementCount(500);
    const std::deque<Block> blocks = makeBlocks(60, 20);
    for (int figure = 0; figure < 3; ++figure) {
        for (const Block& block : blocks) {
            m_chart->AddMeasureBlock(block, figure);
            m_chart->UpdatePlot();
        }
        m_chart->ClearData();
        m_chart->LoadDatasetUpTo(blocks, figure, 7, true);
        m_chart->UpdatePlot();
        m_chart->ClearData();
        m_chart->UpdatePlot();
    }
}

QTEST_GUILESS_MAIN(tst_CChart2DAcAnalysisData)
#include "tst_CChart2DAcAnalysisData.moc"
