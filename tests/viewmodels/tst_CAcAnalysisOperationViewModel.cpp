// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAcAnalysisOperationViewModel.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"
#include "SpectralFixture.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <memory>

namespace {

using PagePointer = std::unique_ptr<CAcAnalysisOperationViewModel>;
using Numbers = QVector<double>;

PagePointer makePage(SpectralFixture& f)
{
    return std::make_unique<CAcAnalysisOperationViewModel>(&f.operation, &f.settings, &f.notifier);
}

CChart2DAcAnalysisData& chartOf(CAcAnalysisOperationViewModel& page)
{
    return *page.AcAnalysisOperationDatasetViewModel()->Chart2DData();
}

CFrequencyTableData& tableOf(CAcAnalysisOperationViewModel& page)
{
    return *page.AcAnalysisOperationDatasetViewModel()->TableData();
}

double rounded(double value)
{
    return std::round(value * 1000.0) / 1000.0;
}

/// B of all points of the plot, which draws a single one twice.
Numbers points(CAcAnalysisOperationViewModel& page)
{
    CChart2DAcAnalysisData& chart = chartOf(page);
    chart.SetXmin(0);
    chart.SetXmax(chart.MeasureResultMaxX());
    chart.UpdateDownsampling();
    Numbers values;
    for (int row = 0; row < chart.rowCount(); ++row)
        values.append(rounded(chart.data(chart.index(row, 1)).toDouble()));
    if (chart.MeasureResultCount() == 1)
        values.removeLast();
    return values;
}

/// B of all rows of the table.
Numbers rows(CAcAnalysisOperationViewModel& page)
{
    CFrequencyTableData& table = tableOf(page);
    Numbers values;
    for (int row = 0; row < table.rowCount(); ++row)
        values.append(rounded(table.data(table.index(row, 0), CFrequencyTableData::BRole).toDouble()));
    return values;
}

/// A block whose B goes up and down by `amplitude` with each sample: RMS `amplitude`, peak to peak twice
/// that.
QSharedPointer<CMeasureBlock> zigzag(double amplitude, int index)
{
    return SpectralFixture::sine(amplitude * std::sqrt(2.0), 50, index);
}

void setAlarm(SpectralFixture& f, CAlarm::AlarmState state, CAxis::AxisType axis = CAxis::B)
{
    f.operation.OperationParameters()->AlarmParametersAcAnalysis()->SetState(state);
    f.operation.OperationParameters()->AlarmParametersAcAnalysis()->SetAxis(axis);
}

} // namespace

class tst_CAcAnalysisOperationViewModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void initialValues();
    void helpNames();
    void opensOnLiveData();
    void opensOnStoredData();
    void opensInAReplay_data();
    void opensInAReplay();
    void blockBecomesPointAndRows();
    void orderOfTheSteps();
    void storedBlocks();
    void figureOfMerit();
    void figureOfMeritInAReplay();
    void figureOfMeritOutsideOfTheList();
    void limitsGiveTheBands();
    void clearedLimitsEmptyTheTable();
    void limitsOutOfOrder();
    void unitChangeClears();
    void startOfAReplayClears();
    void replayAddsPoints();
    void alarmTexts();
    void alarmStates();
    void loadedRecord();
    void defaults();
    void defaultsWithoutInstrument();
    void leftPage();
};

void tst_CAcAnalysisOperationViewModel::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& metaObject = CAcAnalysisOperationViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(
        metaObject,
        {{"MeasurementParametersViewModel", "CMeasurementParametersViewModel*", Constant},
         {"AlarmParametersViewModel", "CAlarmParametersAcAnalysisViewModel*", Constant},
         {"AcAnalysisOperationDatasetViewModel", "CAcAnalysisOperationDatasetViewModel*", Constant},
         {"FigureOfMeritNames", "QStringList", ReadOnly},
         {"SelectedFigureOfMeritIndex", "int", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(metaObject, QMetaMethod::Method, {"setDefaultParameters()"}));
    VERIFY_NO_DIFFERENCE(compareMethods(
        metaObject, QMetaMethod::Slot,
        {"OnNewMeasure(QSharedPointer<CMeasureBlock>)", "OnOperationParameterUnitChanged()",
         "OnDataSetCleared()", "OnPlayingBackChanged(bool)", "OnSelectedFigureOfMeritIndexChanged()",
         "OnLimitFileLoaded(bool)", "OnDatasetLoaded()"}));
    VERIFY_NO_DIFFERENCE(compareProperties(CAcAnalysisOperationDatasetViewModel::staticMetaObject,
                                           {{"TableData", "CFrequencyTableData*", Constant},
                                            {"Chart2DData", "CChart2DAcAnalysisData*", Constant}}));
}

void tst_CAcAnalysisOperationViewModel::initialValues()
{
    SpectralFixture f;
    f.manager().SetIsProcessingBlock(true);
    const PagePointer page = makePage(f);
    QCOMPARE(page->Name(), QStringLiteral("AcAnalysisOperation"));
    QCOMPARE(page->FigureOfMeritNames(),
             (QStringList{QStringLiteral("RMS Amplitude"), QStringLiteral("Peak-to-Peak Amplitude"),
                          QStringLiteral("Standard Deviation")}));
    QCOMPARE(page->SelectedFigureOfMeritIndex(), 0);
    QVERIFY(!f.manager().IsProcessingBlock());
    QCOMPARE(points(*page), Numbers());
}

void tst_CAcAnalysisOperationViewModel::helpNames()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    verifyHelpNames(*page, {QStringLiteral("ac_analysis_plot"), QStringLiteral("ac_analysis_table")});
}

void tst_CAcAnalysisOperationViewModel::opensOnLiveData()
{
    SpectralFixture f;
    for (int i = 0; i < 3; ++i)
        f.deliver(zigzag(i + 1, i));
    const PagePointer page = makePage(f);
    QCOMPARE(points(*page), (Numbers{1, 2, 3}));
    QCOMPARE(tableOf(*page).rowCount(), 0);
}

void tst_CAcAnalysisOperationViewModel::opensOnStoredData()
{
    SpectralFixture f;
    f.deliverAndStop({zigzag(1, 0), zigzag(2, 1), zigzag(3, 2)});
    f.manager().SetReplayIndex(1);
    const PagePointer page = makePage(f);
    // The window ends with the second block, at 1.995 s and a tenth, in halves.
    QCOMPARE(chartOf(*page).Xmax(), rounded(std::ceil(2.0 * (1.0 + 0.1)) / 2));
    QCOMPARE(points(*page), (Numbers{1, 2, 3}));
}

void tst_CAcAnalysisOperationViewModel::opensInAReplay_data()
{
    QTest::addColumn<bool>("isStepByStep");
    QTest::addColumn<bool>("isHolding");
    QTest::newRow("in flow") << false << false;
    QTest::newRow("step by step") << true << false;
    QTest::newRow("held") << false << true;
}

void tst_CAcAnalysisOperationViewModel::opensInAReplay()
{
    QFETCH(bool, isStepByStep);
    QFETCH(bool, isHolding);
    SpectralFixture f;
    f.deliverAndStop({zigzag(1, 0), zigzag(2, 1), zigzag(3, 2)});
    f.manager().SetReplayStepByStep(isStepByStep);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(isHolding);
    f.manager().SetReplayIndex(1);
    f.manager().SetNextReplayIndex(2);
    f.manager().SetEndReplayIndex(2);
    const PagePointer page = makePage(f);
    QCOMPARE(points(*page), (Numbers{1, 2}));
    QVERIFY(f.manager().IsPlayingBack());
    QCOMPARE(f.manager().IsHolding(), isHolding);
    if (!isStepByStep && !isHolding)
        QTRY_COMPARE(points(*page), (Numbers{1, 2, 3}));
}

void tst_CAcAnalysisOperationViewModel::blockBecomesPointAndRows()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(zigzag(1, 0));
    f.manager().SetIsProcessingBlock(true);
    const auto second = zigzag(2, 1);
    f.manager().AddMeasureBlock(second);
    page->OnNewMeasure(second);
    QVERIFY(!f.manager().IsProcessingBlock());
    QCOMPARE(points(*page), (Numbers{1, 2}));
    // One band up to half the rate, of the last block.
    QCOMPARE(rows(*page), Numbers{2});
    CFrequencyTableData& table = tableOf(*page);
    QCOMPARE(table.data(table.index(0, 0), CFrequencyTableData::FrequencyBandRole).toString(),
             QStringLiteral("0-100"));
}

void tst_CAcAnalysisOperationViewModel::orderOfTheSteps()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.5}});
    setAlarm(f, CAlarm::FlagNotification);
    const PagePointer page = makePage(f);
    const auto block = zigzag(1, 0);
    f.manager().AddMeasureBlock(block);
    f.manager().SetIsProcessingBlock(true);
    QStringList steps;
    connect(&chartOf(*page), &CChart2DFieldsData::MeasureResultCountChanged, this,
            [&] { steps.append(QStringLiteral("point")); });
    connect(&tableOf(*page), &CFrequencyTableData::FlagNotificationChanged, this,
            [&](bool flag) { steps.append(flag ? QStringLiteral("alarm") : QStringLiteral("quiet")); });
    connect(&tableOf(*page), &QAbstractItemModel::rowsInserted, this,
            [&] { steps.append(QStringLiteral("rows")); });
    connect(&f.manager(), &CRecordingManager::IsProcessingBlockChanged, this,
            [&] { steps.append(QStringLiteral("done")); });
    page->OnNewMeasure(block);
    QCOMPARE(steps, (QStringList{QStringLiteral("point"), QStringLiteral("alarm"), QStringLiteral("rows"),
                                 QStringLiteral("done")}));
}

void tst_CAcAnalysisOperationViewModel::storedBlocks()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliverAndStop({zigzag(1, 0), zigzag(2, 1), zigzag(3, 2)});
    QSignalSpy cleared(&chartOf(*page), &CChart2DFieldsData::clearCharts);
    f.manager().SetEndReplayIndex(2);
    f.manager().playCurrentBlock(2);
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(rows(*page), Numbers{2});
    QCOMPARE(points(*page), (Numbers{1, 2, 3}));
    f.manager().playCurrentBlock(1);
    QCOMPARE(rows(*page), Numbers{1});
    QCOMPARE(cleared.count(), 2);
    // An empty plot is not cleared.
    chartOf(*page).ClearData();
    cleared.clear();
    f.manager().playCurrentBlock(3);
    QCOMPARE(cleared.count(), 0);
    QCOMPARE(points(*page), (Numbers{1, 2, 3}));
}

void tst_CAcAnalysisOperationViewModel::figureOfMerit()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    for (int i = 0; i < 3; ++i)
        f.deliver(zigzag(i + 1, i));
    f.dataSet().SetComment(QStringLiteral("hall"));
    // Sines of the peak √2, 2√2 and 3√2, whose extremes are among the samples.
    const double root = std::sqrt(2.0);
    page->SetSelectedFigureOfMeritIndex(1);
    QCOMPARE(points(*page), (Numbers{rounded(2 * root), rounded(4 * root), rounded(6 * root)}));
    QCOMPARE(rows(*page), Numbers{rounded(6 * root)});
    QCOMPARE(page->CommentOverAll(), QStringLiteral("hall"));
    // With the number of samples less one in the denominator.
    const double bessel = std::sqrt(200.0 / 199.0);
    page->SetSelectedFigureOfMeritIndex(2);
    QCOMPARE(points(*page), (Numbers{rounded(bessel), rounded(2 * bessel), rounded(3 * bessel)}));
    QCOMPARE(rows(*page), Numbers{rounded(3 * bessel)});
    f.deliver(zigzag(4, 3));
    QCOMPARE(rows(*page), Numbers{rounded(4 * bessel)});
}

void tst_CAcAnalysisOperationViewModel::figureOfMeritInAReplay()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliverAndStop({zigzag(1, 0), zigzag(2, 1), zigzag(3, 2)});
    f.manager().SetIsPlayingBack(true);
    f.manager().SetReplayIndex(1);
    QCOMPARE(points(*page), Numbers());
    page->SetSelectedFigureOfMeritIndex(1);
    // The window ends with the second block, as when the page opens.
    QCOMPARE(chartOf(*page).Xmax(), rounded(std::ceil(2.0 * (1.0 + 0.1)) / 2));
    QCOMPARE(rows(*page), Numbers{rounded(4 * std::sqrt(2.0))});
    QCOMPARE(points(*page).size(), 3);
    f.manager().SetIsPlayingBack(false);
}

void tst_CAcAnalysisOperationViewModel::figureOfMeritOutsideOfTheList()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(zigzag(1, 0));
    for (const int index : {-1, 3}) {
        page->SetSelectedFigureOfMeritIndex(index);
        QCOMPARE(points(*page), Numbers{1});
        QCOMPARE(rows(*page), Numbers{1});
    }
}

void tst_CAcAnalysisOperationViewModel::limitsGiveTheBands()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(zigzag(2, 0));
    f.loadLimits({{30, 9}, {60, 8}, {100, 7}});
    // The line of 50 Hz lies in the second band.
    QCOMPARE(rows(*page), (Numbers{0, 2, 0}));
    CFrequencyTableData& table = tableOf(*page);
    QCOMPARE(table.data(table.index(1, 0), CFrequencyTableData::FrequencyBandRole).toString(),
             QStringLiteral("30-60"));
    QCOMPARE(table.data(table.index(1, 0), CFrequencyTableData::ExposureLimitRole).toDouble(), 8.0);
}

void tst_CAcAnalysisOperationViewModel::clearedLimitsEmptyTheTable()
{
    SpectralFixture f;
    f.loadLimits({{30, 9}, {60, 8}});
    const PagePointer page = makePage(f);
    f.deliver(zigzag(2, 0));
    QCOMPARE(rows(*page).size(), 2);
    f.operation.clearLimitsFile();
    QCOMPARE(rows(*page), Numbers());
    QCOMPARE(points(*page), Numbers{2});
    f.deliver(zigzag(2, 1));
    QCOMPARE(rows(*page), Numbers{2});
}

void tst_CAcAnalysisOperationViewModel::limitsOutOfOrder()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(zigzag(2, 0));
    f.loadLimits({{60, 9}, {30, 8}});
    QCOMPARE(rows(*page), Numbers());
    f.deliver(zigzag(2, 1));
    QCOMPARE(rows(*page), Numbers());
    QCOMPARE(points(*page), (Numbers{2, 2}));
    page->SetSelectedFigureOfMeritIndex(2);
    QCOMPARE(rows(*page), Numbers());
}

void tst_CAcAnalysisOperationViewModel::unitChangeClears()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(zigzag(1, 0));
    page->SetCommentOverAll(QStringLiteral("old"));
    f.parameters().SetUnits(CUnits::MILLI_TESLA);
    QVERIFY(f.dataSet().MeasureBlocks()->empty());
    QCOMPARE(points(*page), Numbers());
    QCOMPARE(tableOf(*page).rowCount(), 0);
    QCOMPARE(page->CommentOverAll(), QString());
}

void tst_CAcAnalysisOperationViewModel::startOfAReplayClears()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(zigzag(1, 0));
    f.dataSet().SetComment(QStringLiteral("record"));
    f.manager().SetIsPlayingBack(true);
    QCOMPARE(points(*page), Numbers());
    QCOMPARE(tableOf(*page).rowCount(), 0);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("record"));
    page->SetCommentOverAll(QString());
    chartOf(*page).AddMeasureBlock(zigzag(1, 0), 0);
    f.manager().SetIsPlayingBack(false);
    QCOMPARE(points(*page), Numbers{1});
    QCOMPARE(page->CommentOverAll(), QString());
}

void tst_CAcAnalysisOperationViewModel::replayAddsPoints()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliverAndStop({zigzag(1, 0), zigzag(2, 1), zigzag(3, 2)});
    f.manager().SetTimeWarp(10);
    QVector<int> counts;
    connect(&chartOf(*page), &CChart2DFieldsData::MeasureResultCountChanged, this,
            [&](qulonglong count) { counts.append(static_cast<int>(count)); });
    page->start();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QCOMPARE(counts, (QVector<int>{0, 1, 2, 3}));
    QCOMPARE(points(*page), (Numbers{1, 2, 3}));
    QCOMPARE(rows(*page), Numbers{3});
}

void tst_CAcAnalysisOperationViewModel::alarmTexts()
{
    SpectralFixture f;
    f.loadLimits({{30, 9}, {60, 1.5}});
    setAlarm(f, CAlarm::Audio, CAxis::BBprime);
    const PagePointer page = makePage(f);
    f.deliver(zigzag(2, 0));
    QVERIFY(tableOf(*page).FlagNotification());
    QCOMPARE(f.notifier.calls, (QStringList{QStringLiteral("B·B' is out-of-limit|Minimum = 9.0000\n"
                                                           "B·B' = 2.0000\nMaximum = 1.5000"),
                                            QStringLiteral("beep")}));
    // With every block, until the field is inside.
    f.deliver(zigzag(2, 1));
    QCOMPARE(f.notifier.calls.size(), 4);
    f.deliver(zigzag(1, 2));
    QVERIFY(!tableOf(*page).FlagNotification());
    QCOMPARE(f.notifier.calls.size(), 4);
}

void tst_CAcAnalysisOperationViewModel::alarmStates()
{
    SpectralFixture f;
    f.loadLimits({{100, 1}});
    const PagePointer page = makePage(f);
    int calls = 0;
    const auto alarmAfter = [&](int stateIndex) {
        page->AlarmParametersViewModel()->SetSelectedStateIndex(stateIndex);
        f.notifier.calls.clear();
        f.deliver(zigzag(2, 0));
        calls = f.notifier.calls.size();
        return tableOf(*page).FlagNotification();
    };
    QVERIFY(!alarmAfter(0));
    QCOMPARE(calls, 0);
    QVERIFY(alarmAfter(3));
    QCOMPARE(calls, 0);
    QVERIFY(alarmAfter(1));
    QCOMPARE(calls, 1);
    QVERIFY(alarmAfter(2));
    QCOMPARE(calls, 2);
}

void tst_CAcAnalysisOperationViewModel::loadedRecord()
{
    SpectralFixture f;
    // Three blocks of two samples: B 0, 1, 10, 11, 20 and 21.
    const QString path = f.writeRecord();
    const PagePointer page = makePage(f);
    f.deliverAndStop({zigzag(1, 0)});
    QVERIFY(f.manager().Load(path));
    QCOMPARE(points(*page), Numbers());
    emit page->DatasetLoaded();
    QCOMPARE(points(*page),
             (Numbers{rounded(std::sqrt(0.5)), rounded(std::sqrt(110.5)), rounded(std::sqrt(420.5))}));
    QCOMPARE(f.manager().ReplayIndex(), 2);
    QCOMPARE(page->ReplayParametersViewModel()->CurrentBlock(), 3);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("from file"));
}

void tst_CAcAnalysisOperationViewModel::defaults()
{
    SpectralFixture f;
    f.connectOtherThanDefaults();
    f.parameters().SetAcquisitionRate(300);
    const PagePointer page = makePage(f);
    PropertyLog log(&f.parameters());
    page->setDefaultParameters();
    verifySteps(log.take(), {"TriggerMode=CONTINUOUS", "Averaging=1", "AcquisitionRate=200", "DisplayRate=2",
                             "ApplyConfiguration=true"});
    QCOMPARE(f.parameters().AcquisitionRate(), 200.0);
    QCOMPARE(f.parameters().DisplayRate(), 2.0);
    QCOMPARE(f.parameters().BlockSize(), 100);
    QCOMPARE(page->MeasurementParametersViewModel()->SelectedUnitIndex(), 0);
    QCOMPARE(page->MeasurementParametersViewModel()->SelectedTriggerIndex(), 0);
}

void tst_CAcAnalysisOperationViewModel::defaultsWithoutInstrument()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    PropertyLog log(&f.parameters());
    page->setDefaultParameters();
    QCOMPARE(log.entries(), QStringList());
}

void tst_CAcAnalysisOperationViewModel::leftPage()
{
    SpectralFixture f;
    f.loadLimits({{100, 1}});
    setAlarm(f, CAlarm::Audio);
    const PagePointer page = makePage(f);
    f.deliver(zigzag(0.5, 0));
    PropertyLog log(page.get());
    page->PageLeft();
    f.deliver(zigzag(5, 1));
    f.operation.clearLimitsFile();
    f.loadLimits({{50, 5}, {100, 5}});
    f.manager().SetIsPlayingBack(true);
    f.parameters().SetUnits(CUnits::GAUSS);
    f.dataSet().Clear();
    page->SetSelectedFigureOfMeritIndex(1);
    QCOMPARE(log.take(), QStringList{QStringLiteral("SelectedFigureOfMeritIndex=1")});
    QCOMPARE(points(*page), Numbers{0.5});
    QCOMPARE(tableOf(*page).rowCount(), 1);
    QCOMPARE(f.notifier.calls, QStringList());
}

QTEST_MAIN(tst_CAcAnalysisOperationViewModel)
#include "tst_CAcAnalysisOperationViewModel.moc"
