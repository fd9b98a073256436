// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingChartFixture.h"
#include "MetaObjectTable.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace MetaObjectTable;

class tst_CChart2DMappingData : public QObject, private MappingChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void surface();
    void axisComesFromTheSettingsOnce();
    void deltaX();
    void blockTurnsOnce();
    void markedBlockStays();
    void blocksWithoutUse();
    void oldestBlocksDrop();
    void newestBlockSetsTheLimit();
    void blockAboveTheLimit();
    void clear_data();
    void clear();
    void liveTick();
    void modelTesterStaysContent();
};

void tst_CChart2DMappingData::surface()
{
    const QMetaObject& meta = CChart2DMappingData::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(
        meta, {{"HorizontalAxisType", "CSettings::t_Mapping2DPlotHorizontalAxisType", Constant}}));
    QVERIFY(meta.inherits(&CChart2DAveragedData::staticMetaObject));
}

void tst_CChart2DMappingData::axisComesFromTheSettingsOnce()
{
    QCOMPARE(m_chart->HorizontalAxisType(), CSettings::e_HorizAxisIsTime);
    QCOMPARE(m_chart->MinDeltaAxisX(), 0.1);
    for (const auto axis : {CSettings::e_HorizAxisIsXPosition, CSettings::e_HorizAxisIsYPosition,
                            CSettings::e_HorizAxisIsZPosition}) {
        start(axis);
        QCOMPARE(m_chart->HorizontalAxisType(), axis);
        QCOMPARE(m_chart->MinDeltaAxisX(), 1e-6);
        m_settings->SetMapping2DPlotHorizontalAxisType(CSettings::e_HorizAxisIsTime);
        QCOMPARE(m_chart->HorizontalAxisType(), axis);
    }
}

void tst_CChart2DMappingData::deltaX()
{
    parameters().SetAcquisitionRate(12.5);
    QTest::ignoreMessage(QtDebugMsg, "CChart2DMappingData::ComputeDeltaX 12.5");
    QCOMPARE(m_chart->ComputeDeltaX(), 125U);
}

/// A quarter turn about Z makes By of Bx.
void tst_CChart2DMappingData::blockTurnsOnce()
{
    auto block = MappingBlock::create();
    block->Orientation.SetRoll(90.0);
    block->Results = {makeResult(0, {5.0F, 6.0F, 1.0F, 0.0F, 3.0F, 0.0F})};
    const auto shared = block->Results[0];
    m_chart->AddMeasureBlock(block);
    QVERIFY(block->RotAppliedOnMeasBlock());
    QVERIFY(std::fabs(shared->Bx()) < 1e-6F);
    QVERIFY(std::fabs(shared->By() - 1.0F) < 1e-6F);
    QCOMPARE(shared->Bz(), 3.0F);
    m_chart->UpdateDownsampling();
    QCOMPARE(seriesValue(*m_chart, 0, 3), shared->By());
    // A second time, as in a replay
    const float by = shared->By();
    m_chart->AddMeasureBlock(block);
    QCOMPARE(shared->By(), by);
}

void tst_CChart2DMappingData::markedBlockStays()
{
    auto block = MappingBlock::create();
    block->Orientation.SetRoll(90.0);
    block->SetRotAppliedOnMeasBlock(true);
    block->Results = {makeResult(0, {5.0F, 6.0F, 1.0F, 2.0F, 3.0F, 0.0F})};
    m_chart->AddMeasureBlock(block);
    m_chart->UpdateDownsampling();
    QCOMPARE(seriesValue(*m_chart, 0, 2), 1.0F);
    QCOMPARE(seriesValue(*m_chart, 0, 3), 2.0F);
    QCOMPARE(seriesValue(*m_chart, 0, 4), 3.0F);
}

void tst_CChart2DMappingData::blocksWithoutUse()
{
    QSignalSpy countSpy(m_chart.get(), &CChart2DMappingData::MeasureResultCountChanged);
    QSignalSpy maxSpy(m_chart.get(), &CChart2DMappingData::MeasureResultMaxXChanged);
    const auto empty = MappingBlock::create();
    m_chart->AddMeasureBlock(empty);
    m_chart->AddMeasureBlock({});
    auto placeless = QSharedPointer<CMeasureBlock>::create();
    placeless->Results = makeBlock(2)->Results;
    m_chart->AddMeasureBlock(placeless);
    QCOMPARE(countSpy.count(), 0);
    QCOMPARE(maxSpy.count(), 0);
    QVERIFY(!empty->RotAppliedOnMeasBlock());
}

void tst_CChart2DMappingData::oldestBlocksDrop()
{
    m_settings->SetMappingMaxMeasurementCount(30);
    for (int i = 0; i < 5; ++i)
        m_chart->AddMeasureBlock(makeBlock(10));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{30});
    m_chart->UpdateDownsampling();
    QCOMPARE(m_chart->DownsampledSignalLength(), 30);
    QCOMPARE(xValue(*m_chart, 0), 0.0);
    QVERIFY(std::fabs(xValue(*m_chart, 29) - 2.9) < 1e-6);
}

/// Three blocks of 10 fit into 30. Behind a block of 12, 3 * 12 = 36 do not, so one goes, and with it 12 of
/// the 32 time stamps.
void tst_CChart2DMappingData::newestBlockSetsTheLimit()
{
    m_settings->SetMappingMaxMeasurementCount(30);
    m_chart->AddMeasureBlock(makeBlock(10));
    m_chart->AddMeasureBlock(makeBlock(10));
    m_chart->AddMeasureBlock(makeBlock(12));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{20});
    // 3 * 2 = 6 drops nothing.
    m_chart->AddMeasureBlock(makeBlock(2));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{22});
    m_chart->UpdateDownsampling();
    // The first block has 10 results, of which the last of 2 stands for all that are missing.
    QCOMPARE(m_chart->DownsampledSignalLength(), 30);
}

void tst_CChart2DMappingData::blockAboveTheLimit()
{
    m_settings->SetMappingMaxMeasurementCount(30);
    m_chart->AddMeasureBlock(makeBlock(10));
    m_chart->AddMeasureBlock(makeBlock(31));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
    m_chart->UpdatePlot();
    QCOMPARE(m_chart->Xmin(), 0.0);
    QCOMPARE(m_chart->Xmax(), 1.0);
    m_chart->AddMeasureBlock(makeBlock(10));
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{10});
    m_chart->UpdatePlot();
    QCOMPARE(m_chart->DownsampledSignalLength(), 10);
}

void tst_CChart2DMappingData::clear_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<double>("spacing");
    QTest::newRow("time") << 0 << 0.1;
    QTest::newRow("x") << 1 << 1e-6;
    QTest::newRow("z") << 3 << 1e-6;
}

void tst_CChart2DMappingData::clear()
{
    QFETCH(int, axis);
    QFETCH(double, spacing);
    start(static_cast<CSettings::t_Mapping2DPlotHorizontalAxisType>(axis));
    for (int i = 0; i < 5; ++i)
        m_chart->AddMeasureBlock(makeBlock(10, i, i, i));
    m_chart->UpdatePlot();
    QSignalSpy clearSpy(m_chart.get(), &CChart2DMappingData::clearCharts);
    QSignalSpy sliderSpy(m_chart.get(), &CChart2DMappingData::refreshLimitSliderX);
    m_chart->ClearData();
    QCOMPARE(clearSpy.count(), 1);
    QCOMPARE(sliderSpy.count(), 0);
    QCOMPARE(m_chart->rowCount(), 0);
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{0});
    QCOMPARE(m_chart->MeasureResultMinX(), 0.0);
    QCOMPARE(m_chart->MeasureResultMaxX(), 1.0);
    QCOMPARE(m_chart->MinDeltaAxisX(), spacing);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QCOMPARE(m_chart->Xmax(), 1.0);
    QCOMPARE(m_chart->Ymin(), 0.001);
    QCOMPARE(m_chart->Ymax(), 10.0);
    QVERIFY(m_chart->XminTime().isEmpty());
    QVERIFY(m_chart->Visible());
    QVERIFY(!m_chart->FirstDataInit());
    m_chart->RecomputeFullFilter();
    QCOMPARE(m_chart->rowCount(), 0);
    // The margin is 1 again.
    m_chart->AddMeasureBlock(makeBlock(10, 7.0, 7.0, 7.0));
    if (axis != 0) {
        QCOMPARE(m_chart->MeasureResultMinX(), 6.0);
        QCOMPARE(m_chart->MeasureResultMaxX(), 8.0);
    }
    QCOMPARE(m_chart->MeasureResultCount(), qulonglong{10});
}

void tst_CChart2DMappingData::liveTick()
{
    m_chart = std::make_unique<CChart2DMappingData>(m_operation.get(), m_settings.get());
    m_chart->AddMeasureBlock(makeBlock(10));
    QTRY_COMPARE(m_chart->DownsampledSignalLength(), 10);
    m_chart->AddMeasureBlock(makeBlock(10));
    QTRY_COMPARE(m_chart->DownsampledSignalLength(), 20);
}

void tst_CChart2DMappingData::modelTesterStaysContent()
{
    const QAbstractItemModelTester tester(m_chart.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (int i = 0; i < 3; ++i) {
        m_chart->AddMeasureBlock(makeBlock(10));
        m_chart->UpdatePlot();
    }
    m_chart->SetAveragingModeIndex(1);
    m_chart->ClearData();
    m_chart->LoadDataset(makeBlocks(4, 3));
    m_chart->UpdatePlot();
    QCOMPARE(m_chart->columnCount(), 8);
}

QTEST_GUILESS_MAIN(tst_CChart2DMappingData)
#include "tst_CChart2DMappingData.moc"
