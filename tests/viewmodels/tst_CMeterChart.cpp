// SPDX-License-Identifier: GPL-3.0-or-later
// When and how the meter page fills its time plot.
#include "CMeterOperationViewModel.h"
#include "MeasureFixture.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

using MeterPointer = std::unique_ptr<CMeterOperationViewModel>;

constexpr int kBlockSize = 8;
// A fraction of a second that a number in base two holds exactly.
constexpr int kPeriodMs = 125;
constexpr double kRateHz = 1000.0 / kPeriodMs;

MeterPointer makeMeter(MeasureFixture& f)
{
    return std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
}

/// Block number `index` of a recording without gaps: eight samples in a second, B counting up from 0.
QSharedPointer<CMeasureBlock> block(int index)
{
    return makeRamp(kBlockSize * index, kBlockSize, 1000 * index, kPeriodMs);
}

void prepare(MeasureFixture& f)
{
    f.parameters().SetAcquisitionRate(kRateHz);
    f.parameters().SetBlockSize(kBlockSize);
}

/// Delivers live blocks, and stops with them on screen.
void deliverAndStop(MeasureFixture& f, int count)
{
    for (int i = 0; i < count; ++i)
        f.operation.OnNewMeasure(block(i));
    f.manager().StopRecord();
}

/// Puts blocks into the dataset behind the back of a page.
void store(MeasureFixture& f, int count)
{
    for (int i = 0; i < count; ++i)
        f.manager().AddMeasureBlock(block(i));
}

CChart2DMeterData& chartOf(CMeterOperationViewModel& meter)
{
    return *meter.MeterOperationDatasetViewModel()->Chart2DData();
}

int resultsIn(CMeterOperationViewModel& meter)
{
    return static_cast<int>(chartOf(meter).MeasureResultCount());
}

/// B of all rows that the plot shows of the window from 0 to the end of everything.
QVector<int> drawnB(CMeterOperationViewModel& meter)
{
    CChart2DMeterData& chart = chartOf(meter);
    chart.SetXmin(0);
    chart.SetXmax(chart.MeasureResultMaxX());
    chart.UpdateDownsampling();
    QVector<int> values;
    for (int row = 0; row < chart.rowCount(); ++row)
        values.append(chart.data(chart.index(row, 1)).toInt());
    return values;
}

QVector<int> upTo(int first, int last)
{
    QVector<int> values;
    for (int value = first; value <= last; ++value)
        values.append(value);
    return values;
}

} // namespace

class tst_CMeterChart : public QObject
{
    Q_OBJECT

private slots:
    void liveBlocksAreAdded();
    void placeInTheWorkOnABlock();
    void emptyLiveBlock();
    void replayAddsPieces();
    void stepByStepAddsBlocks();
    void storedBlocksMoveTheWindow();
    void chartBehindIsFilledAnew();
    void withoutBlockSizeNothingIsBehind();
    void loadFillsAnew();
    void loadedMarkFillsAnewWithoutBlockSize();
    void loadedMarkOutsideOfStoredData();
    void clearedWithTheDataSet();
    void unitChangeClears();
    void onlyTheStartOfAReplayClears();
    void uncertaintyUnitLeavesTheChart();
    void rateChangeMovesTheWindow();
    void opensOnNothing();
    void opensOnExistingData_data();
    void opensOnExistingData();
    void opensDuringAReplay_data();
    void opensDuringAReplay();
    void averagingIsThatOfThePageBefore();
    void leftPageLeavesTheChart();
};

void tst_CMeterChart::liveBlocksAreAdded()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    CChart2DMeterData& chart = chartOf(*meter);
    QCOMPARE(chart.MeasureResultCount(), 0ULL);
    QSignalSpy hidden(&chart, &CChart2D::VisibleChanged);
    QSignalSpy cleared(&chart, &CChart2DFieldsData::clearCharts);
    for (int i = 0; i < 3; ++i) {
        f.operation.OnNewMeasure(block(i));
        QCOMPARE(resultsIn(*meter), kBlockSize * (i + 1));
    }
    QCOMPARE(drawnB(*meter), upTo(0, 23));
    // Added, not filled anew.
    QCOMPARE(hidden.count(), 0);
    QCOMPARE(cleared.count(), 0);
}

void tst_CMeterChart::placeInTheWorkOnABlock()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    int rows = -1;
    QString comment = QStringLiteral("unset");
    bool ready = true;
    double b = -1;
    connect(&chartOf(*meter), &CChart2DFieldsData::MeasureResultCountChanged, this, [&] {
        rows = meter->MeterOperationDatasetViewModel()->TableData()->rowCount();
        comment = meter->CommentBlock();
        ready = meter->NewMeasureReady();
        b = meter->BLastBlock();
    });
    const auto commented = block(0);
    commented->SetComment(QStringLiteral("door"));
    f.operation.OnNewMeasure(commented);
    // Behind values and table, before the comment and the arrows.
    QCOMPARE(b, 7.0);
    QCOMPARE(rows, kBlockSize);
    QCOMPARE(comment, QString());
    QVERIFY(!ready);
    QCOMPARE(meter->CommentBlock(), QStringLiteral("door"));
}

void tst_CMeterChart::emptyLiveBlock()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    f.operation.OnNewMeasure(makeBlock({}));
    QCOMPARE(resultsIn(*meter), 0);
    f.operation.OnNewMeasure(block(0));
    f.operation.OnNewMeasure(makeBlock({}));
    QCOMPARE(drawnB(*meter), upTo(0, 7));
}

void tst_CMeterChart::replayAddsPieces()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 2);
    // Recorded seconds pass in a tenth, and pieces of 200 ms of them in 20 ms.
    f.manager().SetTimeWarp(10);
    f.manager().SetMinReplaySmallBlockDelayMillisecond(20);
    CChart2DMeterData& chart = chartOf(*meter);
    QSignalSpy cleared(&chart, &CChart2DFieldsData::clearCharts);
    QSignalSpy counts(&chart, &CChart2DFieldsData::MeasureResultCountChanged);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(cleared.count(), 1);
    QVector<int> seen;
    for (const auto& arguments : counts)
        seen.append(arguments.first().toInt());
    // Emptied, then pieces of two samples: the last one begins at 750 ms, before 875 - 100 ms.
    QCOMPARE(seen, (QVector<int>{0, 2, 4, 6, 8, 10, 12, 14, 16}));
    QCOMPARE(drawnB(*meter), upTo(0, 15));
}

void tst_CMeterChart::stepByStepAddsBlocks()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 3);
    meter->ReplayParametersViewModel()->SetStepByStepMode(true);
    for (int step = 1; step <= 2; ++step) {
        meter->step();
        QTRY_COMPARE(resultsIn(*meter), kBlockSize * step);
    }
    QCOMPARE(drawnB(*meter), upTo(0, 15));
    meter->stop();
    // The last block of the dataset is on screen, and the plot had not come that far.
    QCOMPARE(resultsIn(*meter), 3 * kBlockSize);
}

void tst_CMeterChart::storedBlocksMoveTheWindow()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 15);
    CChart2DMeterData& chart = chartOf(*meter);
    QSignalSpy cleared(&chart, &CChart2DFieldsData::clearCharts);
    QSignalSpy visible(&chart, &CChart2D::VisibleChanged);
    const auto windowAt = [&](int number) {
        f.manager().playCurrentBlock(number);
        return QVector<double>{chart.Xmin(), chart.Xmax()};
    };
    // Block 1 ends at 0.875 s and one period of 0.125 s; the end is rounded up to halves.
    QCOMPARE(windowAt(1), (QVector<double>{0.0, 1.0}));
    QCOMPARE(visible.count(), 2);
    QCOMPARE(windowAt(7), (QVector<double>{0.0, 7.0}));
    // The window is ten seconds long.
    QCOMPARE(windowAt(12), (QVector<double>{2.0, 12.0}));
    QCOMPARE(resultsIn(*meter), 15 * kBlockSize);
    QCOMPARE(cleared.count(), 0);
}

void tst_CMeterChart::chartBehindIsFilledAnew()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 5);
    CChart2DMeterData& chart = chartOf(*meter);
    // A replay of the first two blocks leaves the plot with these.
    f.manager().SetTimeWarp(10);
    meter->ReplayParametersViewModel()->SetEndingBlock(2);
    meter->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(resultsIn(*meter), 2 * kBlockSize);

    meter->ReplayParametersViewModel()->SetEndingBlock(5);
    QSignalSpy cleared(&chart, &CChart2DFieldsData::clearCharts);
    f.manager().playCurrentBlock(3);
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(resultsIn(*meter), 5 * kBlockSize);
    QCOMPARE(chart.Xmax(), 3.0);
    f.manager().playCurrentBlock(4);
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(chart.Xmax(), 4.0);
    QCOMPARE(drawnB(*meter), upTo(0, 39));
}

void tst_CMeterChart::withoutBlockSizeNothingIsBehind()
{
    MeasureFixture f;
    prepare(f);
    CMeasurementParameters ofRecord;
    ofRecord.SetBlockSize(0);
    const MeterPointer meter = makeMeter(f);
    store(f, 3);
    f.manager().StopRecord();
    f.dataSet().SetMeasurementParameters(&ofRecord);
    QCOMPARE(ofRecord.BlockSize(), 0);
    f.manager().SetEndReplayIndex(2);
    f.manager().playCurrentBlock(2);
    QCOMPARE(resultsIn(*meter), 0);
    ofRecord.SetBlockSize(kBlockSize);
    f.manager().playCurrentBlock(2);
    QCOMPARE(resultsIn(*meter), 3 * kBlockSize);
    f.dataSet().SetMeasurementParameters(&f.parameters());
}

void tst_CMeterChart::loadFillsAnew()
{
    MeasureFixture f;
    prepare(f);
    // Three blocks of two samples: B 0, 1, 10, 11, 20 and 21 at 0, 10, 100, 110, 200 and 210 ms.
    const QString path = f.writeRecord();
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 2);
    QVERIFY(f.manager().Load(path));
    QCOMPARE(resultsIn(*meter), 0);
    emit meter->DatasetLoaded();
    QCOMPARE(resultsIn(*meter), 6);
    QVERIFY(chartOf(*meter).Visible());
    // Less than half a second is shown as it is: 0.21 s and the live period.
    QVERIFY(std::abs(chartOf(*meter).Xmax() - (0.21 + 1 / kRateHz)) < 1e-6);
    QCOMPARE(drawnB(*meter), (QVector<int>{0, 1, 10, 11, 20, 21}));
}

void tst_CMeterChart::loadedMarkFillsAnewWithoutBlockSize()
{
    MeasureFixture f;
    prepare(f);
    CMeasurementParameters ofRecord;
    ofRecord.SetBlockSize(0);
    const MeterPointer meter = makeMeter(f);
    store(f, 3);
    f.manager().StopRecord();
    f.dataSet().SetMeasurementParameters(&ofRecord);
    emit meter->DatasetLoaded();
    QCOMPARE(resultsIn(*meter), 3 * kBlockSize);
    // Again, though nothing is missing; and the mark holds for that one block only.
    QSignalSpy cleared(&chartOf(*meter), &CChart2DFieldsData::clearCharts);
    emit meter->DatasetLoaded();
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(resultsIn(*meter), 3 * kBlockSize);
    f.manager().playCurrentBlock(1);
    QCOMPARE(cleared.count(), 1);
    f.dataSet().SetMeasurementParameters(&f.parameters());
}

void tst_CMeterChart::loadedMarkOutsideOfStoredData()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    f.operation.OnNewMeasure(block(0));
    f.manager().AddMeasureBlock(block(1));
    QVERIFY(!f.manager().IsIdleWithData());
    QSignalSpy cleared(&chartOf(*meter), &CChart2DFieldsData::clearCharts);
    emit meter->DatasetLoaded();
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(drawnB(*meter), upTo(0, 15));
    // The next block is added again.
    f.operation.OnNewMeasure(block(2));
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(resultsIn(*meter), 3 * kBlockSize);
}

void tst_CMeterChart::clearedWithTheDataSet()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    f.operation.OnNewMeasure(block(0));
    QSignalSpy cleared(&chartOf(*meter), &CChart2DFieldsData::clearCharts);
    f.dataSet().Clear();
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(resultsIn(*meter), 0);
    QCOMPARE(chartOf(*meter).rowCount(), 0);
}

void tst_CMeterChart::unitChangeClears()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    f.operation.OnNewMeasure(block(0));
    f.parameters().SetUnits(CUnits::MILLI_TESLA);
    QCOMPARE(resultsIn(*meter), 0);
    f.operation.OnNewMeasure(block(1));
    QCOMPARE(drawnB(*meter), upTo(8, 15));
}

void tst_CMeterChart::onlyTheStartOfAReplayClears()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 2);
    f.manager().SetIsPlayingBack(true);
    QCOMPARE(resultsIn(*meter), 0);
    store(f, 1);
    chartOf(*meter).AddMeasureBlock(block(0));
    f.manager().SetIsPlayingBack(false);
    QCOMPARE(resultsIn(*meter), kBlockSize);
}

void tst_CMeterChart::uncertaintyUnitLeavesTheChart()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    f.operation.OnNewMeasure(block(0));
    QSignalSpy reset(&chartOf(*meter), &QAbstractItemModel::modelReset);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(resultsIn(*meter), kBlockSize);
}

void tst_CMeterChart::rateChangeMovesTheWindow()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    deliverAndStop(f, 15);
    CChart2DMeterData& chart = chartOf(*meter);
    chart.UpdatePlot();
    chart.SetXmin(14);
    chart.SetXmax(15);
    f.parameters().SetDisplayRate(5);
    QCOMPARE(chart.Xmin(), 5.0);
    QCOMPARE(chart.Xmax(), 15.0);
}

void tst_CMeterChart::opensOnNothing()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(resultsIn(*meter), 0);
    QVERIFY(chartOf(*meter).Visible());
    QCOMPARE(meter->property("MeterOperationDatasetViewModel")
                 .value<QObject*>()
                 ->property("Chart2DData")
                 .value<QObject*>(),
             static_cast<QObject*>(&chartOf(*meter)));
}

void tst_CMeterChart::opensOnExistingData_data()
{
    QTest::addColumn<bool>("isLoaded");
    QTest::addColumn<bool>("isIdleWithData");
    QTest::addColumn<bool>("isRecording");
    QTest::addColumn<double>("xmax");
    // At a block of stored data the window ends there; else all is shown, with half a second to spare.
    QTest::newRow("live") << false << false << false << 15.5;
    QTest::newRow("recording") << false << false << true << 15.5;
    QTest::newRow("stored data while recording") << false << true << true << 15.5;
    QTest::newRow("stored data") << false << true << false << 4.0;
    QTest::newRow("loaded") << true << false << false << 4.0;
    QTest::newRow("loaded while recording") << true << false << true << 4.0;
}

void tst_CMeterChart::opensOnExistingData()
{
    QFETCH(bool, isLoaded);
    QFETCH(bool, isIdleWithData);
    QFETCH(bool, isRecording);
    QFETCH(double, xmax);
    MeasureFixture f;
    prepare(f);
    store(f, 15);
    f.manager().SetIsDataLoaded(isLoaded);
    f.manager().SetIsIdleWithData(isIdleWithData);
    f.manager().SetIsRecording(isRecording);
    f.manager().SetReplayIndex(3);
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(resultsIn(*meter), 15 * kBlockSize);
    QCOMPARE(chartOf(*meter).Xmin(), 0.0);
    QCOMPARE(chartOf(*meter).Xmax(), xmax);
    QVERIFY(chartOf(*meter).Visible());
}

void tst_CMeterChart::opensDuringAReplay_data()
{
    QTest::addColumn<bool>("isHolding");
    QTest::addColumn<bool>("stepByStep");
    QTest::addColumn<QVector<bool>>("holds");
    QTest::newRow("in flow") << false << false << QVector<bool>{true, false};
    QTest::newRow("held") << true << false << QVector<bool>{};
    QTest::newRow("step by step") << false << true << QVector<bool>{};
}

void tst_CMeterChart::opensDuringAReplay()
{
    QFETCH(bool, isHolding);
    QFETCH(bool, stepByStep);
    QFETCH(QVector<bool>, holds);
    MeasureFixture f;
    prepare(f);
    store(f, 5);
    f.manager().StopRecord();
    f.manager().SetReplayStepByStep(stepByStep);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsIdleWithData(false);
    f.manager().SetIsHolding(isHolding);
    f.manager().SetReplayIndex(2);
    QVector<bool> seen;
    connect(&f.manager(), &CRecordingManager::IsHoldingChanged, this,
            [&seen](bool holding) { seen.append(holding); });
    const MeterPointer meter = makeMeter(f);
    // The replay rests while the plot is filled with what was replayed.
    QCOMPARE(seen, holds);
    QCOMPARE(f.manager().IsHolding(), isHolding);
    QCOMPARE(drawnB(*meter), upTo(0, 23));
    disconnect(&f.manager(), nullptr, this, nullptr);
}

void tst_CMeterChart::averagingIsThatOfThePageBefore()
{
    MeasureFixture f;
    prepare(f);
    MeterPointer meter = makeMeter(f);
    chartOf(*meter).SetAveragingModeIndex(2);
    chartOf(*meter).SetAveragingCount(8);
    meter->PageLeft();
    meter.reset();
    store(f, 1);
    meter = makeMeter(f);
    QCOMPARE(chartOf(*meter).AveragingMode(), CChart2DMeterData::Moving);
    QCOMPARE(chartOf(*meter).AveragingCount(), 8U);
    // The mean of 0 to 7 at the end.
    CChart2DMeterData& chart = chartOf(*meter);
    drawnB(*meter);
    QCOMPARE(chart.data(chart.index(chart.rowCount() - 1, 1)).toDouble(), 3.5);
}

void tst_CMeterChart::leftPageLeavesTheChart()
{
    MeasureFixture f;
    prepare(f);
    const MeterPointer meter = makeMeter(f);
    f.operation.OnNewMeasure(block(0));
    meter->PageLeft();
    f.operation.OnNewMeasure(block(1));
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsPlayingBack(false);
    f.dataSet().Clear();
    QCOMPARE(resultsIn(*meter), kBlockSize);
}

QTEST_MAIN(tst_CMeterChart)
#include "tst_CMeterChart.moc"
