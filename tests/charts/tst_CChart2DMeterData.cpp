// SPDX-License-Identifier: GPL-3.0-or-later
#include "MetaObjectTable.h"
#include "MeterChartFixture.h"

#include <QAbstractItemModelTester>
#include <QTest>
#include <QTimer>

#include <limits>
#include <memory>
#include <random>

using namespace MetaObjectTable;

class tst_CChart2DMeterData : public QObject, private MeterChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void surface();
    void deltaX();
    void firstBlock();
    void firstBlockResetsTheAxes();
    void blockWithoutSamples();
    void limitsOfX();
    void rateSetsTheSpacing();
    void oldestResultsDrop();
    void loadDataset();
    void loadEmptyDataset();
    void loadDatasetUpTo_data();
    void loadDatasetUpTo();
    void moveToBlockLoadsNothing();
    void nothingIsCopied();
    void modelTesterStaysContent();
};

void tst_CChart2DMeterData::surface()
{
    const QMetaObject& meta = CChart2DMeterData::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {}));
    QVERIFY(meta.inherits(&CChart2DAveragedData::staticMetaObject));
}

void tst_CChart2DMeterData::deltaX()
{
    parameters().SetAcquisitionRate(12.34);
    QCOMPARE(m_chart->ComputeDeltaX(), 123U);
}

void tst_CChart2DMeterData::firstBlock()
{
    parameters().SetAcquisitionRate(10.0);
    QSignalSpy countSpy(m_chart.get(), &CChart2DFieldsData::MeasureResultCountChanged);
    const Block block = makeBlock(4);
    m_chart->AddMeasureBlock(block);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{4});
    QCOMPARE(countSpy.count(), 1);
    QCOMPARE(m_chart->MeasureResultMinX(), 0.0);
    QCOMPARE(m_chart->x(0), 0.0);
    QVERIFY(std::abs(m_chart->lastX() - 0.3) < 1e-6);
    QTRY_COMPARE(m_chart->rowCount(), 4);
    for (int row = 0; row < 4; ++row) {
        QCOMPARE(seriesValue(*m_chart, row, 0), block->Results[row]->B());
        QCOMPARE(seriesValue(*m_chart, row, 1), block->Results[row]->BBprime());
        QCOMPARE(seriesValue(*m_chart, row, 5), block->Results[row]->B() - block->Results[row]->dB());
    }
}

void tst_CChart2DMeterData::firstBlockResetsTheAxes()
{
    QSignalSpy xSpy(m_chart.get(), &CChart2D::refreshLimitSliderX);
    QSignalSpy ySpy(m_chart.get(), &CChart2D::refreshLimitSliderY);
    m_chart->AddMeasureBlock(makeBlock(4));
    QCOMPARE(xSpy.count(), 1);
    QCOMPARE(ySpy.count(), 1);
    m_chart->AddMeasureBlock(makeBlock(4));
    QCOMPARE(xSpy.count(), 1);
    QCOMPARE(ySpy.count(), 1);
}

void tst_CChart2DMeterData::blockWithoutSamples()
{
    m_chart->AddMeasureBlock(Block::create());
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
    m_chart->UpdatePlot();
    QCOMPARE(m_chart->rowCount(), 0);
    m_chart->AddMeasureBlock(makeBlock(3));
    m_chart->AddMeasureBlock(Block::create());
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{3});
    // A setting that keeps nothing
    m_settings->SetMeasurementMaxMeasurementCount(0);
    m_chart->AddMeasureBlock(makeBlock(3));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
}

void tst_CChart2DMeterData::limitsOfX()
{
    parameters().SetAcquisitionRate(10.0);
    m_chart->AddMeasureBlock(makeBlock(4));
    // 0.3 + 0.1 is not past half a second
    QCOMPARE(m_chart->MeasureResultMaxX(), m_chart->lastX() + 0.1);
    m_chart->AddMeasureBlock(makeBlock(2));
    QCOMPARE(m_chart->MeasureResultMaxX(), m_chart->lastX() + 0.1 + 0.5);
}

void tst_CChart2DMeterData::rateSetsTheSpacing()
{
    parameters().SetAcquisitionRate(0.0);
    m_chart->AddMeasureBlock(makeBlock(2));
    QCOMPARE(m_chart->MinDeltaAxisX(), 0.1);
    parameters().SetAcquisitionRate(4.0);
    m_chart->AddMeasureBlock(makeBlock(2));
    QCOMPARE(m_chart->MinDeltaAxisX(), 0.25);
    // The new spacing counts in this block's limit already
    QCOMPARE(m_chart->MeasureResultMaxX(), m_chart->lastX() + 0.25 + 0.5);
}

void tst_CChart2DMeterData::oldestResultsDrop()
{
    m_settings->SetMeasurementMaxMeasurementCount(10);
    m_chart->SetAveragingCount(3);
    m_chart->SetAveragingModeIndex(1);
    std::deque<QSharedPointer<CFieldIntensityResult>> kept;
    for (int i = 0; i < 5; ++i) {
        const Block block = makeBlock(4);
        for (const auto& result : block->Results)
            kept.push_back(result);
        while (kept.size() > 10)
            kept.pop_front();
        m_chart->AddMeasureBlock(block);
        QCOMPARE(m_chart->MeasureResultCount(), qulonglong{kept.size()});
        QVERIFY(m_chart->history().Raw() == kept);
        QCOMPARE(m_chart->history().Filtered().size(), kept.size());
        QCOMPARE(m_chart->history().TimeStamps().size(), kept.size());
        QCOMPARE(m_chart->x(0), 0.0);
        QCOMPARE(m_chart->MeasureResultMinX(), 0.0);
    }
    QVERIFY(std::abs(m_chart->lastX() - 0.9) < 1e-6);
}

void tst_CChart2DMeterData::loadDataset()
{
    parameters().SetAcquisitionRate(10.0);
    const std::deque<Block> blocks = makeBlocks(60, 5);
    QVector<bool> visible;
    QVector<bool> running;
    connect(m_chart.get(), &CChart2D::VisibleChanged, this, [&](bool value) {
        visible.append(value);
        running.append(m_chart->findChild<QTimer*>()->isActive());
    });
    QSignalSpy slider(m_chart.get(), &CChart2D::refreshLimitSliderX);
    m_chart->LoadDataset(blocks);
    QCOMPARE(visible, QVector<bool>({false, true}));
    QCOMPARE(running, QVector<bool>({false, false}));
    QVERIFY(m_chart->findChild<QTimer*>()->isActive());
    QCOMPARE(slider.count(), 1);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{300});
    QCOMPARE(m_chart->Xmin(), 0.0);
    QCOMPARE(m_chart->Xmax(), m_chart->MeasureResultMaxX());
    QVERIFY(std::abs(m_chart->Xmax() - 30.5) < 1e-6);
}

void tst_CChart2DMeterData::loadEmptyDataset()
{
    QSignalSpy visible(m_chart.get(), &CChart2D::VisibleChanged);
    m_chart->LoadDataset({});
    m_chart->LoadDatasetUpTo({}, 3, true);
    m_chart->MoveToBlock({}, 3, true);
    m_chart->LoadDatasetUpTo(makeBlocks(2, 2), -1, true);
    m_chart->MoveToBlock(makeBlocks(2, 2), -1, true);
    QCOMPARE(visible.count(), 0);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
    // Blocks, but no samples in them
    m_chart->LoadDataset(makeBlocks(2, 0));
    m_chart->LoadDatasetUpTo(makeBlocks(2, 0), 1, true);
    QCOMPARE(visible.count(), 4);
    QCOMPARE(m_chart->Xmax(), 0.0);
}

void tst_CChart2DMeterData::loadDatasetUpTo_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("whole");
    QTest::addColumn<int>("results");
    QTest::addColumn<double>("xMin");
    QTest::addColumn<double>("xMax");
    // 60 blocks of 5 samples at 10 Hz: block i ends at X = 0.5 i + 0.4
    QTest::newRow("first block only") << 0 << false << 5 << 0.0 << 0.4;
    QTest::newRow("up to a block") << 39 << false << 200 << 9.9 << 19.9;
    QTest::newRow("past the end") << 99 << false << 300 << 19.9 << 29.9;
    // t = 20.0 exactly on the half second, as far as the time stamps' digits go
    QTest::newRow("whole, window on a block") << 39 << true << 300 << 10.0 << 20.0;
    // t = 0.5
    QTest::newRow("whole, window on the first block") << 0 << true << 300 << 0.0 << 0.5;
    QTest::newRow("whole, past the end") << 60 << true << 300 << 19.9 << 29.9;
}

void tst_CChart2DMeterData::loadDatasetUpTo()
{
    QFETCH(int, index);
    QFETCH(bool, whole);
    QFETCH(int, results);
    QFETCH(double, xMin);
    QFETCH(double, xMax);
    parameters().SetAcquisitionRate(10.0);
    const std::deque<Block> blocks = makeBlocks(60, 5);
    QSignalSpy slider(m_chart.get(), &CChart2D::refreshLimitSliderX);
    m_chart->LoadDatasetUpTo(blocks, index, whole);
    QCOMPARE(m_chart->MeasureResultCount(), static_cast<qulonglong>(results));
    // Rounding up to half a second can go either way in the last digit of a time stamp
    const double tolerance = whole && index < 60 ? 0.5 + 1e-6 : 1e-6;
    QVERIFY2(m_chart->Xmax() >= xMax - 1e-6 && m_chart->Xmax() <= xMax + tolerance,
             qPrintable(QString::number(m_chart->Xmax(), 'g', 12)));
    QVERIFY(std::abs(m_chart->Xmin() - std::max(0.0, m_chart->Xmax() - 10.0)) < 1e-9);
    QVERIFY(xMin <= m_chart->Xmin() + 1e-6);
    QCOMPARE(slider.count(), 1);
    if (whole && index < 60 && m_chart->Xmax() > 0.5 + 1e-6)
        QCOMPARE(m_chart->Xmax() * 2.0, std::ceil(m_chart->Xmax() * 2.0));
    // Dirty data scroll the window to the end, a window set on a block stays
    const double set = m_chart->Xmax();
    m_chart->UpdatePlot();
    if (whole && index < 60)
        QCOMPARE(m_chart->Xmax(), set);
    else if (m_chart->MeasureResultMaxX() > 0.5)
        QCOMPARE(m_chart->Xmax(), m_chart->MeasureResultMaxX());
    QVERIFY(m_chart->rowCount() > 1);
}

void tst_CChart2DMeterData::moveToBlockLoadsNothing()
{
    parameters().SetAcquisitionRate(10.0);
    const std::deque<Block> blocks = makeBlocks(60, 5);
    m_chart->LoadDatasetUpTo(blocks, 59, true);
    m_chart->UpdatePlot();
    QSignalSpy visible(m_chart.get(), &CChart2D::VisibleChanged);
    m_chart->MoveToBlock(blocks, 29, true);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{300});
    QVERIFY(m_chart->Xmax() >= 15.0 - 1e-6 && m_chart->Xmax() <= 15.5 + 1e-6);
    QCOMPARE(visible.count(), 2);
    m_chart->MoveToBlock(blocks, 29, false);
    QVERIFY(std::abs(m_chart->Xmax() - 29.9) < 1e-6);
    // More samples to a block than were loaded: to the end
    const std::deque<Block> longer = makeBlocks(2, 500);
    m_chart->MoveToBlock(longer, 0, true);
    QVERIFY(std::abs(m_chart->Xmax() - 29.9) < 1e-6);
}

void tst_CChart2DMeterData::nothingIsCopied()
{
    const std::deque<Block> blocks = makeBlocks(10, 7);
    m_chart->LoadDataset(blocks);
    std::size_t i = 0;
    for (const Block& block : blocks) {
        for (const auto& result : block->Results) {
            QVERIFY(m_chart->history().Raw()[i] == result);
            QVERIFY(m_chart->history().Filtered()[i] == result);
            ++i;
        }
    }
}

void tst_CChart2DMeterData::modelTesterStaysContent()
{
    const QAbstractItemModelTester tester(m_chart.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_settings->SetMeasurementMaxMeasurementCount(500);
    const std::deque<Block> blocks = makeBlocks(30, 20);
    for (int mode = 0; mode < 3; ++mode) {
        m_chart->SetAveragingModeIndex(mode);
        for (const Block& block : blocks) {
            m_chart->AddMeasureBlock(block);
            m_chart->UpdatePlot();
        }
        m_chart->MoveToBlock(blocks, 3, true);
        m_chart->UpdatePlot();
        m_chart->ClearData();
        m_chart->LoadDatasetUpTo(blocks, 7, true);
        m_chart->UpdatePlot();
        m_chart->ClearData();
    }
}

QTEST_GUILESS_MAIN(tst_CChart2DMeterData)
#include "tst_CChart2DMeterData.moc"
