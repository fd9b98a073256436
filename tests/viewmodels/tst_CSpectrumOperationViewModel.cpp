// SPDX-License-Identifier: GPL-3.0-or-later
#include "MetaObjectTable.h"
#include "PropertyLog.h"
#include "SpectrumPage.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>

using namespace SpectrumPage;

class tst_CSpectrumOperationViewModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void initialValues();
    void helpNames();
    void drawsNothingUntilAsked();
    void endsTheWorkOfThePageBefore();
    void commentAtTheStart();
    void blockBecomesSpectrumAndPeaks();
    void orderOfTheSteps();
    void fieldIsThatOfTheIndex_data();
    void fieldIsThatOfTheIndex();
    void fieldOutsideOfTheList();
    void analysesWithTheRatesOfTheRecord();
    void fieldChangeRecomputesTheLastBlock();
    void fieldChangeInAReplay();
    void fieldChangeOnStoredData();
    void thresholdWithoutData();
    void thresholdFindsPeaksAnew();
    void thresholdAfterUnload();
    void unload();
    void unitChangeClears();
    void startOfAReplayClears();
    void limitsMoveTheAxis();
    void limitsReachThePeaks();
    void loadedRecord();
    void defaults();
    void defaultsWithoutInstrument();
    void leftPage();
};

void tst_CSpectrumOperationViewModel::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& metaObject = CSpectrumOperationViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(
        metaObject, {{"MeasurementParametersViewModel", "CMeasurementParametersViewModel*", Constant},
                     {"AlarmParametersViewModel", "CAlarmParametersSpectrumViewModel*", Constant},
                     {"SpectrumOperationDatasetViewModel", "CSpectrumOperationDatasetViewModel*", Constant},
                     {"FieldNames", "QStringList", ReadOnly},
                     {"SelectedFieldIndex", "int", ReadWrite},
                     {"Threshold", "double", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(metaObject, QMetaMethod::Method, {"setDefaultParameters()"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(metaObject, QMetaMethod::Slot,
                       {"loadData()", "unloadData()", "OnNewMeasure(QSharedPointer<CMeasureBlock>)",
                        "OnOperationParameterUnitChanged()", "OnDataSetCleared()",
                        "OnPlayingBackChanged(bool)", "OnLimitsFileLoaded()", "OnLimitsFileConverted(bool)",
                        "OnSelectedFieldIndexChanged()", "OnThresholdChanged()", "OnDatasetLoaded()"}));
    VERIFY_NO_DIFFERENCE(compareProperties(CSpectrumOperationDatasetViewModel::staticMetaObject,
                                           {{"FFTChart2DData", "CChart2DSpectrumData*", Constant},
                                            {"TableData", "CFrequencyPeakListData*", Constant}}));
}

void tst_CSpectrumOperationViewModel::initialValues()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    QCOMPARE(page->Name(), QStringLiteral("SpectrumOperation"));
    QCOMPARE(page->FieldNames(),
             (QStringList{QStringLiteral("B"), QStringLiteral("B.B'"), QStringLiteral("Bx"),
                          QStringLiteral("By"), QStringLiteral("Bz")}));
    QCOMPARE(page->SelectedFieldIndex(), 1);
    QCOMPARE(page->Threshold(), 10.0);
    QCOMPARE(page->CommentOverAll(), QString());
    QCOMPARE(page->DisplayUnits(), CUnits::MICRO_TESLA);
}

void tst_CSpectrumOperationViewModel::helpNames()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    verifyHelpNames(*page, {QStringLiteral("spectrum_plot"), QStringLiteral("spectrum_table")});
}

void tst_CSpectrumOperationViewModel::drawsNothingUntilAsked()
{
    SpectralFixture f;
    f.deliver(SpectralFixture::sine(1, 20));
    const PagePointer page = makePage(f);
    QCOMPARE(chartOf(*page).rowCount(), 0);
    page->loadData();
    QCOMPARE(chartOf(*page).rowCount(), SpectralFixture::kRate / 2 + 1);
    QCOMPARE(peaks(*page), QVector<int>{20});
}

void tst_CSpectrumOperationViewModel::endsTheWorkOfThePageBefore()
{
    SpectralFixture f;
    f.manager().SetIsProcessingBlock(true);
    const PagePointer page = makePage(f);
    QVERIFY(!f.manager().IsProcessingBlock());
}

void tst_CSpectrumOperationViewModel::commentAtTheStart()
{
    SpectralFixture f;
    f.dataSet().SetComment(QStringLiteral("hall"));
    QCOMPARE(makePage(f)->CommentOverAll(), QStringLiteral("hall"));
}

void tst_CSpectrumOperationViewModel::blockBecomesSpectrumAndPeaks()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.manager().SetIsProcessingBlock(true);
    f.deliver(SpectralFixture::sine(3, 20));
    QVERIFY(!f.manager().IsProcessingBlock());
    QCOMPARE(peaks(*page), QVector<int>{20});
    // A peak tells the amplitude of the sine.
    CFrequencyPeakListData& table = tableOf(*page);
    const double amplitude = table.data(table.index(0, 0), CFrequencyPeakListData::AmplitudeRole).toDouble();
    QVERIFY2(std::abs(amplitude - 3) < 0.05, qPrintable(QString::number(amplitude)));
    QCOMPARE(chartOf(*page).MaxFrequency(), f.parameters().FrequencyMax());
    // A block takes the place of the one before.
    f.deliver(SpectralFixture::sine(1, 40));
    QCOMPARE(peaks(*page), QVector<int>{40});
}

void tst_CSpectrumOperationViewModel::orderOfTheSteps()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.25}});
    setAlarm(f, CAlarm::FlagNotification);
    const PagePointer page = makePage(f);
    f.manager().SetIsProcessingBlock(true);
    QStringList steps;
    connect(&chartOf(*page), &QAbstractItemModel::modelReset, this,
            [&] { steps.append(QStringLiteral("spectrum")); });
    connect(&tableOf(*page), &QAbstractItemModel::rowsInserted, this,
            [&] { steps.append(QStringLiteral("peaks")); });
    connect(page->AlarmParametersViewModel(), &CAlarmParametersSpectrumViewModel::FlagNotificationChanged,
            this, [&](bool flag) { steps.append(flag ? QStringLiteral("alarm") : QStringLiteral("quiet")); });
    connect(&f.manager(), &CRecordingManager::IsProcessingBlockChanged, this,
            [&] { steps.append(QStringLiteral("done")); });
    page->OnNewMeasure(SpectralFixture::sine(1, 20));
    QCOMPARE(steps, (QStringList{QStringLiteral("spectrum"), QStringLiteral("peaks"), QStringLiteral("alarm"),
                                 QStringLiteral("done")}));
}

void tst_CSpectrumOperationViewModel::fieldIsThatOfTheIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("B") << 0;
    QTest::newRow("B.B'") << 1;
    QTest::newRow("Bx") << 2;
    QTest::newRow("By") << 3;
    QTest::newRow("Bz") << 4;
}

void tst_CSpectrumOperationViewModel::fieldIsThatOfTheIndex()
{
    QFETCH(int, index);
    SpectralFixture f;
    const PagePointer page = makePage(f);
    // A sine of another frequency in each field: 20, 30, 40, 50 and 60 Hz.
    const auto block = SpectralFixture::sine(1, 20);
    const auto sines = QVector<QSharedPointer<CMeasureBlock>>{
        block, SpectralFixture::sine(1, 30), SpectralFixture::sine(1, 40), SpectralFixture::sine(1, 50),
        SpectralFixture::sine(1, 60)};
    for (int i = 0; i < block->Results.size(); ++i) {
        CFieldIntensityResult& sample = *block->Results.at(i);
        sample.SetBBprime(sines.at(1)->Results.at(i)->B());
        sample.SetBx(sines.at(2)->Results.at(i)->B());
        sample.SetBy(sines.at(3)->Results.at(i)->B());
        sample.SetBz(sines.at(4)->Results.at(i)->B());
    }
    page->SetSelectedFieldIndex(index);
    f.deliver(block);
    QCOMPARE(peaks(*page), QVector<int>{20 + 10 * index});
}

void tst_CSpectrumOperationViewModel::fieldOutsideOfTheList()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    for (const int index : {-1, 5}) {
        page->SetSelectedFieldIndex(index);
        f.manager().SetIsProcessingBlock(true);
        page->OnNewMeasure(SpectralFixture::sine(1, 40));
        QVERIFY(!f.manager().IsProcessingBlock());
        QCOMPARE(peaks(*page), QVector<int>{20});
    }
}

void tst_CSpectrumOperationViewModel::analysesWithTheRatesOfTheRecord()
{
    SpectralFixture f;
    CMeasurementParameters ofRecord;
    ofRecord.disconnect(&ofRecord);
    ofRecord.SetAcquisitionRate(10 * SpectralFixture::kRate);
    ofRecord.SetBlockSize(SpectralFixture::kRate);
    ofRecord.SetFrequencyMin(250);
    ofRecord.SetFrequencyMax(900);
    const PagePointer page = makePage(f);
    f.dataSet().SetMeasurementParameters(&ofRecord);
    f.deliver(SpectralFixture::sine(1, 20));
    // Below the lowest frequency of the record.
    QCOMPARE(peaks(*page), QVector<int>());
    f.deliver(SpectralFixture::sine(1, 40));
    QCOMPARE(peaks(*page), QVector<int>{400});
    QCOMPARE(chartOf(*page).MaxFrequency(), 900.0);
    f.dataSet().SetMeasurementParameters(&f.parameters());
}

void tst_CSpectrumOperationViewModel::fieldChangeRecomputesTheLastBlock()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.5}});
    setAlarm(f, CAlarm::Notification);
    const PagePointer page = makePage(f);
    page->SetSelectedFieldIndex(2);
    QCOMPARE(chartOf(*page).rowCount(), 0);
    f.deliver(SpectralFixture::sine(1, 20));
    const auto last = SpectralFixture::sine(0, 20);
    const auto z = SpectralFixture::sine(1, 40);
    for (int i = 0; i < last->Results.size(); ++i)
        last->Results.at(i)->SetBz(z->Results.at(i)->B());
    f.deliver(last);
    QCOMPARE(peaks(*page), QVector<int>());
    f.notifier.calls.clear();
    page->SetSelectedFieldIndex(4);
    QCOMPARE(peaks(*page), QVector<int>{40});
    // Without a look at the limits.
    QCOMPARE(f.notifier.calls, QStringList());
}

void tst_CSpectrumOperationViewModel::fieldChangeInAReplay()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliverAndStop(
        {SpectralFixture::sine(1, 20, 0), SpectralFixture::sine(1, 30, 1), SpectralFixture::sine(1, 40, 2)});
    f.manager().SetIsPlayingBack(true);
    QCOMPARE(peaks(*page), QVector<int>());
    f.manager().SetReplayIndex(1);
    page->SetSelectedFieldIndex(0);
    QCOMPARE(peaks(*page), QVector<int>{30});
    // An index behind the end counts as the last one.
    f.manager().SetReplayIndex(7);
    page->SetSelectedFieldIndex(2);
    QCOMPARE(peaks(*page), QVector<int>{40});
}

void tst_CSpectrumOperationViewModel::fieldChangeOnStoredData()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20, 0));
    f.deliver(SpectralFixture::sine(1, 30, 1));
    f.manager().SetReplayIndex(0);
    page->SetSelectedFieldIndex(0);
    QCOMPARE(peaks(*page), QVector<int>{30});
    f.manager().SetIsIdleWithData(true);
    f.manager().SetIsRecording(true);
    page->SetSelectedFieldIndex(2);
    QCOMPARE(peaks(*page), QVector<int>{30});
    f.manager().SetIsRecording(false);
    f.manager().SetReplayIndex(0);
    page->SetSelectedFieldIndex(3);
    QCOMPARE(peaks(*page), QVector<int>{20});
    f.manager().SetIsIdleWithData(false);
    f.manager().SetReplayIndex(0);
    page->SetSelectedFieldIndex(4);
    QCOMPARE(peaks(*page), QVector<int>{30});
    f.manager().SetIsDataLoaded(true);
    f.manager().SetReplayIndex(0);
    page->SetSelectedFieldIndex(1);
    QCOMPARE(peaks(*page), QVector<int>{20});
}

void tst_CSpectrumOperationViewModel::thresholdWithoutData()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    QSignalSpy inserted(&tableOf(*page), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(page.get(), &CSpectrumOperationViewModel::ThresholdChanged);
    page->SetThreshold(20);
    page->SetThreshold(20);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(inserted.count(), 0);
    // With data that no plot has asked for there is no spectrum yet.
    f.manager().AddMeasureBlock(SpectralFixture::sine(1, 20));
    page->SetThreshold(30);
    QCOMPARE(inserted.count(), 0);
}

void tst_CSpectrumOperationViewModel::thresholdFindsPeaksAnew()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    const auto block = SpectralFixture::sine(1, 20);
    const auto weak = SpectralFixture::sine(0.01, 60);
    for (int i = 0; i < block->Results.size(); ++i)
        block->Results.at(i)->SetBBprime(block->Results.at(i)->B() + weak->Results.at(i)->B() +
                                         0.001F * static_cast<float>((i * 37) % 11 - 5));
    f.deliver(block);
    QVERIFY(peaks(*page).contains(60));
    QSignalSpy redrawn(&chartOf(*page), &QAbstractItemModel::modelReset);
    // The weak sine is 40 dB below the other, which is 92 dB above the noise.
    page->SetThreshold(60);
    QCOMPARE(peaks(*page), QVector<int>{20});
    QCOMPARE(redrawn.count(), 0);
}

void tst_CSpectrumOperationViewModel::thresholdAfterUnload()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    page->unloadData();
    page->SetThreshold(5);
    QCOMPARE(peaks(*page), QVector<int>());
}

void tst_CSpectrumOperationViewModel::unload()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    page->SetCommentOverAll(QStringLiteral("kept"));
    page->unloadData();
    QCOMPARE(chartOf(*page).rowCount(), 0);
    QCOMPARE(tableOf(*page).rowCount(), 0);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("kept"));
    QVERIFY(!f.manager().IsDataSetEmpty());
    page->loadData();
    QCOMPARE(peaks(*page), QVector<int>{20});
}

void tst_CSpectrumOperationViewModel::unitChangeClears()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    page->SetCommentOverAll(QStringLiteral("old"));
    f.parameters().SetUnits(CUnits::MILLI_TESLA);
    QVERIFY(f.dataSet().MeasureBlocks()->empty());
    QCOMPARE(chartOf(*page).rowCount(), 0);
    QCOMPARE(tableOf(*page).rowCount(), 0);
    QCOMPARE(page->CommentOverAll(), QString());
    QCOMPARE(page->DisplayUnits(), CUnits::MILLI_TESLA);
}

void tst_CSpectrumOperationViewModel::startOfAReplayClears()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    f.dataSet().SetComment(QStringLiteral("record"));
    f.manager().SetIsPlayingBack(true);
    QCOMPARE(chartOf(*page).rowCount(), 0);
    QCOMPARE(tableOf(*page).rowCount(), 0);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("record"));
    page->SetCommentOverAll(QString());
    page->loadData();
    f.manager().SetIsPlayingBack(false);
    QCOMPARE(peaks(*page), QVector<int>{20});
    QCOMPARE(page->CommentOverAll(), QString());
}

void tst_CSpectrumOperationViewModel::limitsMoveTheAxis()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    CChart2DSpectrumData& chart = chartOf(*page);
    chart.refreshAxisX(10, 30);
    QCOMPARE(chart.Xmax(), 30.0);
    f.loadLimits({{50, 400}, {100, 200}});
    // Twice the largest limit, and the zoom undone.
    QCOMPARE(chart.Ymax(), 800.0);
    QCOMPARE(chart.Xmax(), f.parameters().FrequencyMax());
    chart.refreshAxisX(10, 30);
    f.parameters().SetDisplayUnits(CUnits::NANO_TESLA);
    QCOMPARE(chart.Xmax(), f.parameters().FrequencyMax());
    QVERIFY(std::abs(chart.Ymax() - 800e3) < 1.0);
    chart.refreshAxisX(10, 30);
    page->OnLimitsFileConverted(false);
    QCOMPARE(chart.Xmax(), 30.0);
    f.operation.clearLimitsFile();
    QCOMPARE(chart.Xmax(), f.parameters().FrequencyMax());
}

void tst_CSpectrumOperationViewModel::limitsReachThePeaks()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    CFrequencyPeakListData& table = tableOf(*page);
    const auto limit = [&] {
        return table.data(table.index(0, 0), CFrequencyPeakListData::ExposureLimitRole).toDouble();
    };
    double seen = -1;
    connect(&table, &QAbstractItemModel::dataChanged, this, [&] { seen = limit(); });
    f.loadLimits({{50, 400}, {100, 200}});
    QCOMPARE(seen, 400.0);
    f.operation.clearLimitsFile();
    QCOMPARE(seen, 0.0);
}

void tst_CSpectrumOperationViewModel::loadedRecord()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    f.deliverAndStop({SpectralFixture::sine(1, 20, 0), SpectralFixture::sine(1, 30, 1)});
    page->unloadData();
    f.dataSet().SetComment(QStringLiteral("whole"));
    emit page->DatasetLoaded();
    QCOMPARE(peaks(*page), QVector<int>{30});
    QCOMPARE(f.manager().ReplayIndex(), 1);
    QCOMPARE(page->ReplayParametersViewModel()->NumBlocks(), 2);
    QCOMPARE(page->ReplayParametersViewModel()->CurrentBlock(), 2);
    QCOMPARE(page->CommentOverAll(), QStringLiteral("whole"));
}

void tst_CSpectrumOperationViewModel::defaults()
{
    SpectralFixture f;
    f.connectOtherThanDefaults();
    f.parameters().SetFrequencyMin(3);
    const PagePointer page = makePage(f);
    page->SetSelectedFieldIndex(3);
    page->SetThreshold(25);
    PropertyLog log(&f.parameters());
    page->setDefaultParameters();
    verifySteps(log.take(), {"TriggerMode=CONTINUOUS", "Averaging=1", "DisplayRate=1", "FrequencyMin=0",
                             "FrequencyMax=1000", "ApplyConfiguration=true"});
    QCOMPARE(f.parameters().FrequencyMin(), 0.0);
    QCOMPARE(f.parameters().FrequencyMax(), 1000.0);
    // Two samples for a period of the highest frequency, and one block a second.
    QCOMPARE(f.parameters().AcquisitionRate(), 2000.0);
    QCOMPARE(f.parameters().BlockSize(), 2000);
    QCOMPARE(page->SelectedFieldIndex(), 1);
    QCOMPARE(page->Threshold(), 10.0);
    QCOMPARE(page->MeasurementParametersViewModel()->SelectedUnitIndex(), 0);
    QCOMPARE(page->MeasurementParametersViewModel()->SelectedTriggerIndex(), 0);
    QCOMPARE(f.parameters().Units(), CUnits::TESLA);
}

void tst_CSpectrumOperationViewModel::defaultsWithoutInstrument()
{
    SpectralFixture f;
    const PagePointer page = makePage(f);
    page->SetSelectedFieldIndex(3);
    page->SetThreshold(25);
    PropertyLog log(&f.parameters());
    page->setDefaultParameters();
    QCOMPARE(log.entries(), QStringList());
    QCOMPARE(page->SelectedFieldIndex(), 3);
    QCOMPARE(page->Threshold(), 25.0);
}

void tst_CSpectrumOperationViewModel::leftPage()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.1}});
    setAlarm(f, CAlarm::Audio);
    const PagePointer page = makePage(f);
    f.deliver(SpectralFixture::sine(1, 20));
    f.notifier.calls.clear();
    PropertyLog log(page.get());
    PropertyLog chartLog(&chartOf(*page));
    page->PageLeft();
    f.deliver(SpectralFixture::sine(1, 40));
    f.operation.clearLimitsFile();
    f.loadLimits({{100, 5}});
    f.manager().SetIsPlayingBack(true);
    f.parameters().SetUnits(CUnits::GAUSS);
    f.dataSet().Clear();
    page->SetThreshold(3);
    QCOMPARE(log.take(), QStringList{QStringLiteral("Threshold=3")});
    QCOMPARE(chartLog.take(), QStringList());
    // The table tells its rows while there are blocks.
    f.deliver(SpectralFixture::sine(1, 40));
    QCOMPARE(peaks(*page), QVector<int>{20});
    QCOMPARE(f.notifier.calls, QStringList());
}

QTEST_MAIN(tst_CSpectrumOperationViewModel)
#include "tst_CSpectrumOperationViewModel.moc"
