// SPDX-License-Identifier: GPL-3.0-or-later
// Blocks too short to analyse come to every page in every state, and the program goes on.
#include "CAcAnalysisOperationViewModel.h"
#include "CMeterOperationViewModel.h"
#include "CSpectrumOperationViewModel.h"
#include "DialogDriver.h"
#include "SpectralFixture.h"

#include <QtTest>

#include <functional>
#include <memory>

namespace {

enum PageKind { Meter, Spectrum, AcAnalysis };

struct Row
{
    PageKind kind;
    CAlarm::AlarmState state;
    int choice; ///< field of the spectrum, figure of merit of the AC analysis
    int samples;
};

std::unique_ptr<CMeasurementOperationViewModel> makePage(SpectralFixture& f, const Row& row)
{
    COperationParameters& parameters = *f.operation.OperationParameters();
    parameters.AlarmParametersMeter()->SetState(row.state);
    parameters.AlarmParametersSpectrum()->SetState(row.state);
    parameters.AlarmParametersAcAnalysis()->SetState(row.state);
    if (row.kind == Meter)
        return std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    if (row.kind == Spectrum) {
        auto page = std::make_unique<CSpectrumOperationViewModel>(&f.operation, &f.settings, &f.notifier);
        page->SetSelectedFieldIndex(row.choice);
        return page;
    }
    auto page = std::make_unique<CAcAnalysisOperationViewModel>(&f.operation, &f.settings, &f.notifier);
    page->SetSelectedFigureOfMeritIndex(row.choice);
    return page;
}

/// Short ones, and one between them that can be analysed.
QVector<QSharedPointer<CMeasureBlock>> blocks(int samples)
{
    return {SpectralFixture::level(2, 0, samples), SpectralFixture::level(2, 1, samples),
            SpectralFixture::sine(5, 20, 2), SpectralFixture::level(2, 3, samples)};
}

/// All that a user can do to a page with data.
void useAllOf(CMeasurementOperationViewModel& page)
{
    if (auto* spectrum = qobject_cast<CSpectrumOperationViewModel*>(&page)) {
        spectrum->SetThreshold(spectrum->Threshold() + 1);
        spectrum->SetSelectedFieldIndex((spectrum->SelectedFieldIndex() + 1) % 5);
        spectrum->SetSelectedFieldIndex(-1);
        spectrum->loadData();
        spectrum->SetSelectedFieldIndex(0);
        spectrum->unloadData();
        spectrum->SetThreshold(spectrum->Threshold() + 1);
        spectrum->loadData();
    }
    if (auto* analysis = qobject_cast<CAcAnalysisOperationViewModel*>(&page)) {
        for (const int index : {2, 1, 0})
            analysis->SetSelectedFigureOfMeritIndex(index);
    }
}

} // namespace

class tst_ShortBlocks : public QObject
{
    Q_OBJECT

private slots:
    void live_data() { rows(); }
    void live();
    void stored_data() { rows(); }
    void stored();
    void replayed_data() { rows(Replay); }
    void replayed();
    void loaded_data() { rows(); }
    void loaded();
    void opensOnShortBlocks_data() { rows(); }
    void opensOnShortBlocks();
    void spectrumKeepsWhatIsThere();
    void plotKeepsItsPlaces();

private:
    enum Manner { AllAtOnce, Replay };

    static void rows(Manner manner = AllAtOnce);
    static Row current();
};

/// In a replay the meter waits a second for each block without samples: there one row goes through the alarm
/// states.
void tst_ShortBlocks::rows(Manner manner)
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<CAlarm::AlarmState>("state");
    QTest::addColumn<int>("choice");
    QTest::addColumn<int>("samples");
    const QStringList names{QStringLiteral("meter"), QStringLiteral("spectrum"), QStringLiteral("ac")};
    for (const int kind : {Meter, Spectrum, AcAnalysis})
        for (const auto state : {CAlarm::Notification, CAlarm::Audio, CAlarm::Off, CAlarm::FlagNotification})
            for (int choice = 0; choice < (kind == Meter ? 1 : 3); ++choice) {
                if (manner == Replay && kind == Meter && state != CAlarm::Notification)
                    continue;
                for (const int samples : {0, 1})
                    QTest::addRow("%s, alarm %d, choice %d, %d samples", qPrintable(names.at(kind)),
                                  static_cast<int>(state), choice, samples)
                        << kind << state << choice << samples;
            }
}

Row tst_ShortBlocks::current()
{
    return {static_cast<PageKind>(*static_cast<int*>(QTest::qData("kind", QMetaType::Int))),
            *static_cast<CAlarm::AlarmState*>(QTest::qData("state", qMetaTypeId<CAlarm::AlarmState>())),
            *static_cast<int*>(QTest::qData("choice", QMetaType::Int)),
            *static_cast<int*>(QTest::qData("samples", QMetaType::Int))};
}

void tst_ShortBlocks::live()
{
    const Row row = current();
    SpectralFixture f;
    f.parameters().SetBlockSize(row.samples);
    f.loadLimits({{30, 0.1}, {60, 0.1}});
    const auto page = makePage(f, row);
    for (const auto& block : blocks(row.samples)) {
        f.deliver(block);
        useAllOf(*page);
    }
    QCOMPARE(static_cast<int>(f.dataSet().MeasureBlocks()->size()), 4);
}

void tst_ShortBlocks::stored()
{
    const Row row = current();
    SpectralFixture f;
    f.loadLimits({{30, 0.1}, {60, 0.1}});
    const auto page = makePage(f, row);
    f.deliverAndStop(blocks(row.samples));
    f.manager().SetEndReplayIndex(3);
    for (int number = 1; number <= 4; ++number) {
        f.manager().playCurrentBlock(number);
        useAllOf(*page);
    }
    f.operation.clearLimitsFile();
    f.loadLimits({{60, 0.1}});
    QCOMPARE(f.manager().ReplayIndex(), 3);
}

void tst_ShortBlocks::replayed()
{
    const Row row = current();
    SpectralFixture f;
    f.loadLimits({{30, 0.1}, {60, 0.1}});
    const auto page = makePage(f, row);
    f.deliverAndStop(blocks(row.samples));
    f.manager().SetTimeWarp(1000);
    QVector<CAlarm::AlarmState> states{CAlarm::Audio, CAlarm::Off, CAlarm::FlagNotification};
    if (row.kind == Meter)
        connect(&f.operation, &COperationMeasure::NewMeasure, page.get(), [&] {
            if (!states.isEmpty())
                f.operation.OperationParameters()->AlarmParametersMeter()->SetState(states.takeFirst());
        });
    page->start();
    useAllOf(*page);
    // The meter never releases a block without samples; the manager goes on after a while.
    QTRY_VERIFY_WITH_TIMEOUT(!f.manager().IsPlayingBack(), 20000);
    QCOMPARE(states.isEmpty(), row.kind == Meter);
}

void tst_ShortBlocks::loaded()
{
    const Row row = current();
    SpectralFixture f;
    f.deliverAndStop(blocks(row.samples));
    const QString path = f.directory.filePath(QStringLiteral("short.qdr.xml"));
    f.manager().Save(path);
    f.operation.Reset();
    f.loadLimits({{30, 0.1}, {60, 0.1}});
    const auto page = makePage(f, row);
    DialogDriver dialogs;
    dialogs.pickNext(path);
    page->load();
    QVERIFY(dialogs.isDone());
    QVERIFY(f.manager().IsDataLoaded());
    useAllOf(*page);
    for (int number = 1; number <= f.manager().NumBlocks(); ++number)
        f.manager().playCurrentBlock(number);
}

void tst_ShortBlocks::opensOnShortBlocks()
{
    const Row row = current();
    for (const bool isStored : {false, true}) {
        SpectralFixture f;
        for (const auto& block : blocks(row.samples))
            f.deliver(block);
        if (isStored)
            f.manager().StopRecord();
        const auto page = makePage(f, row);
        useAllOf(*page);
        QCOMPARE(static_cast<int>(f.dataSet().MeasureBlocks()->size()), 4);
    }
}

void tst_ShortBlocks::spectrumKeepsWhatIsThere()
{
    for (const int samples : {0, 1}) {
        SpectralFixture f;
        CSpectrumOperationViewModel page(&f.operation, &f.settings, &f.notifier);
        CChart2DSpectrumData& chart = *page.SpectrumOperationDatasetViewModel()->FFTChart2DData();
        f.deliver(SpectralFixture::sine(5, 20));
        const std::vector<float> spectrum = chart.GetSpectrum();
        const auto block = SpectralFixture::level(1, 1, samples);
        f.manager().SetIsProcessingBlock(true);
        page.OnNewMeasure(block);
        QVERIFY(!f.manager().IsProcessingBlock());
        QCOMPARE(chart.GetSpectrum(), spectrum);
        // Two samples have a spectrum, of two bins.
        f.deliver(SpectralFixture::level(1, 2, 2));
        QCOMPARE(chart.rowCount(), 2);
    }
}

/// A short block has no point; the index of the others moves.
void tst_ShortBlocks::plotKeepsItsPlaces()
{
    for (const int samples : {0, 1}) {
        SpectralFixture f;
        CAcAnalysisOperationViewModel page(&f.operation, &f.settings, &f.notifier);
        CAcAnalysisOperationDatasetViewModel& models = *page.AcAnalysisOperationDatasetViewModel();
        f.deliverAndStop({SpectralFixture::level(1, 0, samples), SpectralFixture::sine(1, 20, 1),
                          SpectralFixture::level(1, 2, samples), SpectralFixture::sine(1, 20, 3),
                          SpectralFixture::sine(1, 20, 4)});
        QCOMPARE(models.Chart2DData()->MeasureResultCount(), 3ULL);
        f.manager().SetEndReplayIndex(4);
        // The last samples of blocks 2 and 4 are two seconds apart; the window ends a tenth later, in halves.
        f.manager().playCurrentBlock(4);
        QCOMPARE(models.Chart2DData()->Xmax(), 2.5);
        QCOMPARE(models.TableData()->rowCount(), 1);
        f.manager().playCurrentBlock(3);
        QCOMPARE(models.Chart2DData()->Xmax(), 0.1);
        QCOMPARE(models.TableData()->rowCount(), 1);
        f.manager().playCurrentBlock(1);
        QCOMPARE(models.Chart2DData()->Xmax(), 0.1);
        QCOMPARE(models.Chart2DData()->MeasureResultCount(), 3ULL);
        // The page opens in a replay that has not come to a block with figures.
        f.manager().SetReplayStepByStep(true);
        f.manager().SetIsPlayingBack(true);
        f.manager().SetReplayIndex(0);
        CAcAnalysisOperationViewModel late(&f.operation, &f.settings, &f.notifier);
        QCOMPARE(late.AcAnalysisOperationDatasetViewModel()->Chart2DData()->MeasureResultCount(), 0ULL);
        f.manager().SetIsPlayingBack(false);
    }
}

QTEST_MAIN(tst_ShortBlocks)
#include "tst_ShortBlocks.moc"
