// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeTriggerPlugin.h"
#include "CMeasurementParametersViewModel.h"
#include "COperationMeasure.h"
#include "DialogDriver.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

using ViewModel = CMeasurementParametersViewModel;
using ViewModelPointer = std::unique_ptr<ViewModel>;
using Units = QList<CUnits::UnitType>;

const QString kUnitQuestion =
    QStringLiteral("Are you sure you want to change units?|All the measured data will be lost");

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString text(const QVariantList& ranges)
{
    QStringList entries;
    for (const QVariant& range : ranges) {
        const QVariantMap map = range.toMap();
        entries.append(map.value(QStringLiteral("first")).toString() +
                       map.value(QStringLiteral("second")).toString());
    }
    return entries.join(QLatin1Char(' '));
}

} // namespace

Q_DECLARE_METATYPE(CTrigger::TriggerMode)

class tst_CMeasurementParametersViewModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void surface();
    void constants();
    void withoutInstrument();
    void withoutInstrumentNothingCanBeChosen();
    void takesTheParameters();
    void unitsWithoutRawCounts();
    void rangeTexts();
    void rangesOfAnInstrumentWithoutAny();
    void triggerNames();
    void uncertaintyUnits_data();
    void uncertaintyUnits();
    void uncertaintyInPercentStays();
    void instrumentWithoutUnits();
    void choosesAUnitWithoutData();
    void orderOfAUnitChange();
    void choosesAUnitWithData();
    void cancelledUnitChange();
    void unitChangeKeepsPercent();
    void unitIndexOutsideTheList();
    void positionOfRawCounts();
    void followsTheUnits();
    void choosesAnUncertaintyUnit();
    void choosesARange();
    void automaticRange();
    void followsTheRange();
    void unlistedRangeFallsBack();
    void unlistedRangeWhileThePageIsOpen();
    void choosesATrigger_data();
    void choosesATrigger();
    void triggerWithoutContinuous_data();
    void triggerWithoutContinuous();
    void instrumentWithSomeTriggers();
    void visibilityIsAnnouncedEachTime();
    void triggerPlugins();
    void withoutTriggerPlugins();
    void rawCounts();
    void instrumentUpdates();
    void instrumentUpdateIsAnnouncedOnlyIfItDiffers();
    void rawCountsUpdateIsNotHeard();
    void loadedParameters();
    void loadedListOfAnotherLength();
    void choicesSurviveTheViewModel();
    void deletedViewModelHearsNothing();
    void deletedBehindTheQuestion();

private:
    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }
    CFakeInstrument& instrument() { return *m_fixture->instrument(0); }
    ViewModelPointer make(bool excludeContinuous = false)
    {
        return std::make_unique<ViewModel>(m_operation.get(), excludeContinuous);
    }
    void addBlock() { m_operation->RecordingManager()->AddMeasureBlock(CFakeInstrument::MakeBlock(2)); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMeasure> m_operation;
};

/// Instrument 1 is connected: ranges 0.001, 0.1 and 1 T, units T to ADC, all triggers; unit in force is mT.
void tst_CMeasurementParametersViewModel::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_operation = std::make_unique<COperationMeasure>(&m_fixture->settings, &m_fixture->plugins,
                                                      &m_fixture->supervisor);
    m_fixture->connectInstrument(0);
    parameters().SetUnits(CUnits::MILLI_TESLA);
    parameters().SetDisplayUnits(CUnits::MILLI_TESLA);
    parameters().SetUncertaintyUnits(CUnits::MILLI_TESLA);
    parameters().SetTriggerMode(CTrigger::CONTINUOUS);
    parameters().SetAutoRange(true);
}

void tst_CMeasurementParametersViewModel::cleanup()
{
    m_operation.reset();
    m_fixture.reset();
}

void tst_CMeasurementParametersViewModel::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& meta = ViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(
        compareProperties(meta, {
                                    {"UnitsList", "QStringList", ReadOnly},
                                    {"UncertaintyUnitsList", "QStringList", ReadOnly},
                                    {"HasAdc", "bool", ReadOnly},
                                    {"SelectedUnitIndex", "int", ReadWrite},
                                    {"PreviousUnitIndex", "int", ReadWrite},
                                    {"SelectedUncertaintyUnitIndex", "int", ReadWrite},
                                    {"Ranges", "QVariantList", ReadOnly},
                                    {"SelectedRangeIndex", "int", ReadWrite},
                                    {"Triggers", "QStringList", ReadOnly},
                                    {"SelectedTriggerIndex", "int", ReadWrite},
                                    {"TriggerPlugins", "QStringList", ReadOnly},
                                    {"SelectedTriggerPluginIndex", "int", ReadWrite},
                                    {"TriggerPluginVisible", "bool", ReadOnly},
                                    {"IsDisplayEnable", "bool", ReadOnly},
                                    {"IsDisplayRateVisible", "bool", ReadOnly},
                                    {"IsAcquisitionRateEnable", "bool", ReadOnly},
                                    {"IsAcquisitionRateVisible", "bool", ReadOnly},
                                    {"IsImmediateAcquisitionRateVisible", "bool", ReadOnly},
                                    {"FrequencyMinSpectrumDefaultValue", "double", Constant},
                                    {"FrequencyMaxSpectrumDefaultValue", "double", Constant},
                                    {"DisplayRateSpectrumDefaultValue", "double", Constant},
                                    {"AveragingSpectrumDefaultValue", "ushort", Constant},
                                    {"AcquisitionRateAcAnalysisDefaultValue", "double", Constant},
                                    {"DisplayRateAcAnalysisDefaultValue", "double", Constant},
                                    {"AveragingAcAnalysisDefaultValue", "ushort", Constant},
                                    {"AcquisitionRateMappingDefaultValue", "double", Constant},
                                    {"DisplayRateMappingDefaultValue", "double", Constant},
                                    {"AveragingMappingDefaultValue", "ushort", Constant},
                                }));
    VERIFY_NO_DIFFERENCE(compareMethods(
        meta, QMetaMethod::Slot,
        {"OnSelectedUnitIndexChanged(int)", "OnSelectedUncertaintyUnitIndexChanged(int)",
         "OnSelectedRangeIndexChanged(int)", "OnSelectedTriggerModeIndexChanged(int)",
         "OnSelectedTriggerPluginIndexChanged(int)", "OnParametersUnitsChange()",
         "OnParametersUncertaintyUnitsChange()", "OnParametersRangeChange()", "OnTriggerModeChanged()",
         "OnParametersTriggerPluginsChanged()", "OnParametersEnableAdcUnitChanged()",
         "OnInstrumentMeasurementParametersUpdated()", "OnParametersLoadChangedUnit()"}));
}

void tst_CMeasurementParametersViewModel::constants()
{
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->property("FrequencyMinSpectrumDefaultValue").toDouble(), 0.0);
    QCOMPARE(viewModel->property("FrequencyMaxSpectrumDefaultValue").toDouble(), 100.0);
    QCOMPARE(viewModel->property("DisplayRateSpectrumDefaultValue").toDouble(), 1.0);
    QCOMPARE(viewModel->property("AveragingSpectrumDefaultValue").toInt(), 1);
    QCOMPARE(viewModel->property("AcquisitionRateAcAnalysisDefaultValue").toDouble(), 200.0);
    QCOMPARE(viewModel->property("DisplayRateAcAnalysisDefaultValue").toDouble(), 1.0);
    QCOMPARE(viewModel->property("AveragingAcAnalysisDefaultValue").toInt(), 1);
    QCOMPARE(viewModel->property("AcquisitionRateMappingDefaultValue").toDouble(), 1.0);
    QCOMPARE(viewModel->property("DisplayRateMappingDefaultValue").toDouble(), 1.0);
    QCOMPARE(viewModel->property("AveragingMappingDefaultValue").toInt(), 1000);
}

void tst_CMeasurementParametersViewModel::withoutInstrument()
{
    m_fixture->supervisor.ClearActiveInstrument();
    parameters().SetTriggerMode(CTrigger::EXTERNAL);
    for (const bool excludeContinuous : {false, true}) {
        const ViewModelPointer viewModel = make(excludeContinuous);
        QCOMPARE(viewModel->UnitsList(), words("--"));
        QCOMPARE(viewModel->UncertaintyUnitsList(), words("--"));
        QCOMPARE(text(viewModel->Ranges()), QStringLiteral("--"));
        QCOMPARE(viewModel->Triggers(), words("--"));
        QCOMPARE(viewModel->TriggerPlugins(), QStringList());
        QCOMPARE(viewModel->SelectedUnitIndex(), -1);
        QCOMPARE(viewModel->PreviousUnitIndex(), -1);
        QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), -1);
        QCOMPARE(viewModel->SelectedRangeIndex(), -1);
        QCOMPARE(viewModel->SelectedTriggerIndex(), -1);
        QCOMPARE(viewModel->SelectedTriggerPluginIndex(), -1);
        QVERIFY(!viewModel->TriggerPluginVisible());
        QVERIFY(!viewModel->IsDisplayEnable());
        QVERIFY(!viewModel->IsDisplayRateVisible());
        QVERIFY(viewModel->IsAcquisitionRateEnable());
        QVERIFY(viewModel->IsAcquisitionRateVisible());
        QVERIFY(!viewModel->IsImmediateAcquisitionRateVisible());
    }
    // What the parameters are set to afterwards.
    const ViewModelPointer viewModel = make();
    parameters().SetTriggerMode(CTrigger::IMMEDIATE);
    parameters().SetTriggerMode(CTrigger::EXTERNAL);
    QVERIFY(viewModel->TriggerPluginVisible());
    QCOMPARE(viewModel->SelectedTriggerIndex(), -1);
    parameters().SetUnits(CUnits::TESLA);
    QCOMPARE(viewModel->SelectedUnitIndex(), -1);
    parameters().SetAutoRange(false);
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    QVERIFY(!parameters().AutoRange());
}

void tst_CMeasurementParametersViewModel::withoutInstrumentNothingCanBeChosen()
{
    addBlock();
    m_fixture->supervisor.ClearActiveInstrument();
    const ViewModelPointer viewModel = make();
    PropertyLog log(&parameters());
    viewModel->SetSelectedUnitIndex(0);
    viewModel->SetSelectedUncertaintyUnitIndex(0);
    viewModel->SetSelectedRangeIndex(2);
    viewModel->SetSelectedTriggerIndex(0);
    viewModel->SetSelectedTriggerPluginIndex(0);
    QCOMPARE(log.entries(), QStringList());
    QVERIFY(!m_operation->GetDataSetEmpty());
}

void tst_CMeasurementParametersViewModel::takesTheParameters()
{
    parameters().SetUnits(CUnits::GAUSS);
    parameters().SetUncertaintyUnits(CUnits::PERCENT);
    parameters().SetAutoRange(false);
    parameters().SetRange(0.1F);
    parameters().SetTriggerMode(CTrigger::TIMER);
    PropertyLog log(&parameters());
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->SelectedUnitIndex(), 4);
    QCOMPARE(viewModel->PreviousUnitIndex(), 4);
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("mG %"));
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 1);
    QCOMPARE(viewModel->SelectedRangeIndex(), 2);
    QCOMPARE(viewModel->SelectedTriggerIndex(), 2);
    QVERIFY(!viewModel->IsDisplayEnable());
    QVERIFY(viewModel->IsAcquisitionRateEnable());
    // The unit and the mode of trigger are not touched.
    QCOMPARE(log.count(QStringLiteral("Units")), 0);
    QCOMPARE(log.count(QStringLiteral("TriggerMode")), 0);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    QCOMPARE(parameters().Range(), 0.1F);
}

void tst_CMeasurementParametersViewModel::unitsWithoutRawCounts()
{
    instrument().SetUnitList({CUnits::ADC, CUnits::TESLA, CUnits::KILO_AMPERE_PER_METER});
    QCOMPARE(make()->UnitsList(), words("T kA/m"));
    parameters().SetEnableAdcUnit(true);
    QCOMPARE(make()->UnitsList(), words("ADC T kA/m"));
}

void tst_CMeasurementParametersViewModel::rangeTexts()
{
    instrument().SetRangeList({1e-6F, 0.1F, 3.0F, 12345678.0F});
    QCOMPARE(text(make()->Ranges()), QStringLiteral("Auto 1e-06[T] 0.1[T] 3[T] 1.23457e+07[T]"));
    const QVariantMap first = make()->Ranges().constFirst().toMap();
    QCOMPARE(first.keys(), words("first second"));
    QCOMPARE(first.value(QStringLiteral("second")).toString(), QString());
}

void tst_CMeasurementParametersViewModel::rangesOfAnInstrumentWithoutAny()
{
    instrument().SetRangeList({});
    parameters().SetAutoRange(false);
    parameters().SetRange(0.5F);
    const ViewModelPointer viewModel = make();
    QCOMPARE(text(viewModel->Ranges()), QStringLiteral("Auto"));
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    QCOMPARE(parameters().Range(), 0.5F);
    QVERIFY(parameters().AutoRange());
}

void tst_CMeasurementParametersViewModel::triggerNames()
{
    instrument().SetTriggerList(
        {CTrigger::EXTERNAL, static_cast<CTrigger::TriggerMode>(9), CTrigger::CONTINUOUS});
    QCOMPARE(make()->Triggers(), words("External Continuous"));
    QCOMPARE(make(true)->Triggers(), words("Immediate Timer External"));
}

void tst_CMeasurementParametersViewModel::uncertaintyUnits_data()
{
    QTest::addColumn<CUnits::UnitType>("units");
    QTest::addColumn<CUnits::UnitType>("uncertaintyUnits");
    QTest::newRow("T") << CUnits::TESLA << CUnits::MILLI_TESLA;
    QTest::newRow("mT") << CUnits::MILLI_TESLA << CUnits::MILLI_TESLA;
    QTest::newRow("uT") << CUnits::MICRO_TESLA << CUnits::MICRO_TESLA;
    QTest::newRow("nT") << CUnits::NANO_TESLA << CUnits::NANO_TESLA;
    QTest::newRow("G") << CUnits::GAUSS << CUnits::MILLI_GAUSS;
    QTest::newRow("kG") << CUnits::KILO_GAUSS << CUnits::MILLI_GAUSS;
    QTest::newRow("mG") << CUnits::MILLI_GAUSS << CUnits::MILLI_GAUSS;
    QTest::newRow("MHzp") << CUnits::MEGA_HERTZ_PROTON << CUnits::MEGA_HERTZ_PROTON;
    QTest::newRow("A/m") << CUnits::AMPERE_PER_METER << CUnits::MILLI_AMPERE_PER_METER;
    QTest::newRow("kA/m") << CUnits::KILO_AMPERE_PER_METER << CUnits::MILLI_AMPERE_PER_METER;
    QTest::newRow("mA/m") << CUnits::MILLI_AMPERE_PER_METER << CUnits::MILLI_AMPERE_PER_METER;
    QTest::newRow("ADC") << CUnits::ADC << CUnits::ADC;
}

void tst_CMeasurementParametersViewModel::uncertaintyUnits()
{
    QFETCH(CUnits::UnitType, units);
    QFETCH(CUnits::UnitType, uncertaintyUnits);
    parameters().SetEnableAdcUnit(true);
    const ViewModelPointer viewModel = make();
    // All units in their order: the index is the value less one.
    viewModel->SetSelectedUnitIndex(units - 1);
    QCOMPARE(parameters().Units(), units);
    QCOMPARE(parameters().DisplayUnits(), units);
    QCOMPARE(parameters().UncertaintyUnitList(), Units({uncertaintyUnits, CUnits::PERCENT}));
    QCOMPARE(parameters().UncertaintyUnits(), uncertaintyUnits);
    QCOMPARE(viewModel->UncertaintyUnitsList(),
             QStringList({UnitToText(uncertaintyUnits), QStringLiteral("%")}));
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 0);
}

void tst_CMeasurementParametersViewModel::uncertaintyInPercentStays()
{
    parameters().SetUncertaintyUnits(CUnits::PERCENT);
    const QSignalSpy spy(&parameters(), &CMeasurementParameters::UncertaintyUnitsChanged);
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 1);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    for (const QList<QVariant>& arguments : spy)
        QCOMPARE(arguments.constFirst().value<CUnits::UnitType>(), CUnits::PERCENT);
}

void tst_CMeasurementParametersViewModel::instrumentWithoutUnits()
{
    instrument().SetUnitList({});
    parameters().SetUncertaintyUnitList({CUnits::GAUSS});
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->UnitsList(), QStringList());
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("--"));
    QCOMPARE(viewModel->SelectedUnitIndex(), -1);
    QCOMPARE(parameters().UncertaintyUnitList(), Units({CUnits::GAUSS}));
}

void tst_CMeasurementParametersViewModel::choosesAUnitWithoutData()
{
    const ViewModelPointer viewModel = make();
    DialogDriver dialogs;
    m_operation->RecordingManager()->SetHasUnsavedData(true);
    viewModel->SetSelectedUnitIndex(3);
    QCOMPARE(parameters().Units(), CUnits::NANO_TESLA);
    QCOMPARE(parameters().DisplayUnits(), CUnits::NANO_TESLA);
    QCOMPARE(viewModel->PreviousUnitIndex(), 3);
    // The operation is reset without data too.
    QVERIFY(!m_operation->RecordingManager()->HasUnsavedData());
    QVERIFY(dialogs.isDone());
}

void tst_CMeasurementParametersViewModel::orderOfAUnitChange()
{
    const ViewModelPointer viewModel = make();
    QStringList order;
    connect(&parameters(), &CMeasurementParameters::DisplayUnitsChanged, this,
            [&] { order << QStringLiteral("DisplayUnits"); });
    connect(&parameters(), &CMeasurementParameters::UnitsChanged, this,
            [&] { order << QStringLiteral("Units"); });
    connect(viewModel.get(), &ViewModel::UncertaintyUnitsListChanged, this,
            [&] { order << QStringLiteral("List"); });
    connect(m_operation->RecordingManager()->DataSet(), &CDataset::ClearedChanged, this,
            [&] { order << QStringLiteral("Cleared"); });
    viewModel->SetSelectedUnitIndex(3);
    QCOMPARE(order, words("DisplayUnits Units List Cleared"));

    // The same unit again, with the index moved behind the parameters' back: both units are announced.
    order.clear();
    viewModel->SetPreviousUnitIndex(7);
    viewModel->OnSelectedUnitIndexChanged(3);
    QCOMPARE(order, words("DisplayUnits Units Cleared"));
    QCOMPARE(viewModel->PreviousUnitIndex(), 3);
}

void tst_CMeasurementParametersViewModel::choosesAUnitWithData()
{
    const ViewModelPointer viewModel = make();
    addBlock();
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    viewModel->SetSelectedUnitIndex(0);
    QVERIFY(dialogs.isDone());
    QCOMPARE(dialogs.messages, QStringList{kUnitQuestion});
    QCOMPARE(parameters().Units(), CUnits::TESLA);
    QVERIFY(m_operation->GetDataSetEmpty());
    QCOMPARE(viewModel->SelectedUnitIndex(), 0);
    QCOMPARE(viewModel->PreviousUnitIndex(), 0);
}

void tst_CMeasurementParametersViewModel::cancelledUnitChange()
{
    const ViewModelPointer viewModel = make();
    addBlock();
    PropertyLog log(&parameters());
    const QSignalSpy selected(viewModel.get(), &ViewModel::SelectedUnitIndexChanged);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    viewModel->SetSelectedUnitIndex(0);
    QVERIFY(dialogs.isDone());
    QCOMPARE(dialogs.messages, QStringList{kUnitQuestion});
    QCOMPARE(log.entries(), QStringList());
    QVERIFY(!m_operation->GetDataSetEmpty());
    // There and back, so that the combo box shows the old entry.
    QCOMPARE(selected.count(), 2);
    QCOMPARE(viewModel->SelectedUnitIndex(), 1);
    QCOMPARE(viewModel->PreviousUnitIndex(), 1);
}

void tst_CMeasurementParametersViewModel::unitChangeKeepsPercent()
{
    parameters().SetUncertaintyUnits(CUnits::PERCENT);
    const ViewModelPointer viewModel = make();
    // A view that falls to the first entry when the list changes, as a plain combo box does.
    connect(viewModel.get(), &ViewModel::UncertaintyUnitsListChanged, viewModel.get(),
            [&] { viewModel->SetSelectedUncertaintyUnitIndex(0); });
    viewModel->SetSelectedUnitIndex(4);
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("mG %"));
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 1);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
}

void tst_CMeasurementParametersViewModel::unitIndexOutsideTheList()
{
    const ViewModelPointer viewModel = make();
    addBlock();
    PropertyLog log(&parameters());
    DialogDriver dialogs;
    for (const int index : {-1, 13, 100})
        viewModel->SetSelectedUnitIndex(index);
    QCOMPARE(log.entries(), QStringList());
    QVERIFY(dialogs.isDone());
    QCOMPARE(viewModel->PreviousUnitIndex(), 1);
}

void tst_CMeasurementParametersViewModel::positionOfRawCounts()
{
    // Thirteen units: the last has the index that is the value of the raw counts.
    Units units = instrument().UnitList();
    units.append(CUnits::PERCENT);
    instrument().SetUnitList(units);
    const ViewModelPointer viewModel = make();
    viewModel->SetSelectedUnitIndex(0);
    viewModel->SetSelectedUnitIndex(12);
    QCOMPARE(viewModel->SelectedUnitIndex(), 1);
    QCOMPARE(viewModel->PreviousUnitIndex(), 1);
    QCOMPARE(parameters().Units(), CUnits::MILLI_TESLA);

    parameters().SetEnableAdcUnit(true);
    viewModel->SetSelectedUnitIndex(12);
    QCOMPARE(viewModel->SelectedUnitIndex(), 12);
    QCOMPARE(viewModel->PreviousUnitIndex(), 12);
    QCOMPARE(parameters().Units(), CUnits::PERCENT);
}

void tst_CMeasurementParametersViewModel::followsTheUnits()
{
    const ViewModelPointer viewModel = make();
    addBlock();
    QStringList order;
    connect(viewModel.get(), &ViewModel::PreviousUnitIndexChanged, this,
            [&](int index) { order << QStringLiteral("previous%1").arg(index); });
    connect(viewModel.get(), &ViewModel::SelectedUnitIndexChanged, this,
            [&](int index) { order << QStringLiteral("selected%1").arg(index); });
    DialogDriver dialogs;
    parameters().SetUnits(CUnits::GAUSS);
    QCOMPARE(order, words("previous4 selected4"));
    // Nobody is asked: the parameters have their unit already.
    QVERIFY(dialogs.isDone());
    QVERIFY(!m_operation->GetDataSetEmpty());
    parameters().SetUnits(CUnits::DECIBEL);
    QCOMPARE(viewModel->SelectedUnitIndex(), -1);
    QCOMPARE(viewModel->PreviousUnitIndex(), -1);
}

void tst_CMeasurementParametersViewModel::choosesAnUncertaintyUnit()
{
    const ViewModelPointer viewModel = make();
    const QSignalSpy spy(&parameters(), &CMeasurementParameters::UncertaintyUnitsChanged);
    viewModel->SetSelectedUncertaintyUnitIndex(1);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    QCOMPARE(spy.count(), 1);
    viewModel->OnSelectedUncertaintyUnitIndexChanged(1);
    QCOMPARE(spy.count(), 2);
    viewModel->SetSelectedUncertaintyUnitIndex(2);
    viewModel->SetSelectedUncertaintyUnitIndex(-1);
    QCOMPARE(spy.count(), 2);
    parameters().SetUncertaintyUnits(CUnits::MILLI_TESLA);
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 0);
    parameters().SetUncertaintyUnits(CUnits::GAUSS);
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), -1);
}

void tst_CMeasurementParametersViewModel::choosesARange()
{
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    const QList<tFlux> ranges{0.001F, 0.1F, 1.0F};
    for (int index = 3; index >= 1; --index) {
        const QSignalSpy selected(viewModel.get(), &ViewModel::SelectedRangeIndexChanged);
        viewModel->SetSelectedRangeIndex(index);
        QVERIFY(!parameters().AutoRange());
        QCOMPARE(parameters().Range(), ranges.at(index - 1));
        QCOMPARE(viewModel->SelectedRangeIndex(), index);
        QCOMPARE(selected.count(), 1);
    }
    viewModel->SetSelectedRangeIndex(4);
    QVERIFY(!parameters().AutoRange());
    QCOMPARE(parameters().Range(), 0.001F);
}

void tst_CMeasurementParametersViewModel::automaticRange()
{
    parameters().SetAutoRange(false);
    parameters().SetRange(0.1F);
    const ViewModelPointer viewModel = make();
    PropertyLog log(&parameters());
    viewModel->SetSelectedRangeIndex(0);
    QVERIFY(parameters().AutoRange());
    QCOMPARE(parameters().Range(), 0.1F);
    // The driver hears of it.
    QCOMPARE(log.entries(), words("AutoRange=true"));
}

void tst_CMeasurementParametersViewModel::followsTheRange()
{
    const ViewModelPointer viewModel = make();
    parameters().SetRange(1.0F);
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    parameters().SetAutoRange(false);
    QCOMPARE(viewModel->SelectedRangeIndex(), 3);
    parameters().SetRange(0.001F);
    QCOMPARE(viewModel->SelectedRangeIndex(), 1);
    parameters().SetAutoRange(true);
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    QCOMPARE(parameters().Range(), 0.001F);
}

void tst_CMeasurementParametersViewModel::unlistedRangeFallsBack()
{
    parameters().SetAutoRange(false);
    parameters().SetRange(0.3F);
    PropertyLog log(&parameters());
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    QCOMPARE(parameters().Range(), 1.0F);
    QVERIFY(parameters().AutoRange());
    // All that happens silently.
    QCOMPARE(log.count(QStringLiteral("Range")), 0);
    QCOMPARE(log.count(QStringLiteral("AutoRange")), 0);
}

void tst_CMeasurementParametersViewModel::unlistedRangeWhileThePageIsOpen()
{
    const ViewModelPointer viewModel = make();
    viewModel->SetSelectedRangeIndex(2);
    const QSignalSpy selected(viewModel.get(), &ViewModel::SelectedRangeIndexChanged);
    parameters().SetRange(0.1000001F);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(viewModel->SelectedRangeIndex(), 0);
    QCOMPARE(parameters().Range(), 1.0F);
    QVERIFY(parameters().AutoRange());
}

void tst_CMeasurementParametersViewModel::choosesATrigger_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::addColumn<QString>("flags");
    QTest::newRow("continuous") << 0 << CTrigger::CONTINUOUS << "11110";
    QTest::newRow("immediate") << 1 << CTrigger::IMMEDIATE << "00011";
    QTest::newRow("timer") << 2 << CTrigger::TIMER << "00110";
    QTest::newRow("external") << 3 << CTrigger::EXTERNAL << "00010";
}

void tst_CMeasurementParametersViewModel::choosesATrigger()
{
    QFETCH(int, index);
    QFETCH(CTrigger::TriggerMode, mode);
    QFETCH(QString, flags);
    const auto shown = [](const ViewModel& viewModel) {
        QString digits;
        for (const bool flag : {viewModel.IsDisplayEnable(), viewModel.IsDisplayRateVisible(),
                                viewModel.IsAcquisitionRateEnable(), viewModel.IsAcquisitionRateVisible(),
                                viewModel.IsImmediateAcquisitionRateVisible()})
            digits.append(flag ? QLatin1Char('1') : QLatin1Char('0'));
        return digits;
    };
    // From every other mode, chosen in the box.
    for (int from = 0; from < 4; ++from) {
        const ViewModelPointer viewModel = make();
        viewModel->SetSelectedTriggerIndex(from);
        viewModel->SetSelectedTriggerIndex(index);
        QCOMPARE(parameters().TriggerMode(), mode);
        QCOMPARE(shown(*viewModel), flags);
        QCOMPARE(viewModel->TriggerPluginVisible(), mode == CTrigger::EXTERNAL);
    }
    // By the parameters, before and after the box is made.
    parameters().SetTriggerMode(mode);
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->SelectedTriggerIndex(), index);
    QCOMPARE(shown(*viewModel), flags);
    parameters().SetTriggerMode(mode == CTrigger::TIMER ? CTrigger::CONTINUOUS : CTrigger::TIMER);
    parameters().SetTriggerMode(mode);
    QCOMPARE(viewModel->SelectedTriggerIndex(), index);
    QCOMPARE(shown(*viewModel), flags);
}

void tst_CMeasurementParametersViewModel::triggerWithoutContinuous_data()
{
    QTest::addColumn<CTrigger::TriggerMode>("stored");
    QTest::addColumn<int>("index");
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::newRow("continuous") << CTrigger::CONTINUOUS << 0 << CTrigger::IMMEDIATE;
    QTest::newRow("immediate") << CTrigger::IMMEDIATE << 0 << CTrigger::IMMEDIATE;
    QTest::newRow("timer") << CTrigger::TIMER << 1 << CTrigger::TIMER;
    QTest::newRow("external") << CTrigger::EXTERNAL << 2 << CTrigger::EXTERNAL;
}

void tst_CMeasurementParametersViewModel::triggerWithoutContinuous()
{
    QFETCH(CTrigger::TriggerMode, stored);
    QFETCH(int, index);
    QFETCH(CTrigger::TriggerMode, mode);
    parameters().SetTriggerMode(stored);
    const ViewModelPointer viewModel = make(true);
    QCOMPARE(viewModel->SelectedTriggerIndex(), index);
    QCOMPARE(parameters().TriggerMode(), mode);
    for (int chosen = 0; chosen < 3; ++chosen) {
        viewModel->SetSelectedTriggerIndex(chosen);
        QCOMPARE(int(parameters().TriggerMode()), chosen + 2);
        QCOMPARE(viewModel->SelectedTriggerIndex(), chosen);
    }
    // Within the instrument's list, though not in that of the box.
    viewModel->SetSelectedTriggerIndex(3);
    QCOMPARE(parameters().TriggerMode(), CTrigger::IMMEDIATE);
}

void tst_CMeasurementParametersViewModel::instrumentWithSomeTriggers()
{
    instrument().SetTriggerList({CTrigger::TIMER, CTrigger::CONTINUOUS});
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->SelectedTriggerIndex(), 1);
    viewModel->SetSelectedTriggerIndex(0);
    QCOMPARE(parameters().TriggerMode(), CTrigger::TIMER);
    for (const int index : {-1, 2, 3}) {
        viewModel->SetSelectedTriggerIndex(index);
        QCOMPARE(parameters().TriggerMode(), CTrigger::TIMER);
    }
    // A mode that the instrument does not have leaves the choice alone.
    viewModel->SetSelectedTriggerIndex(0);
    parameters().SetTriggerMode(CTrigger::EXTERNAL);
    QCOMPARE(viewModel->SelectedTriggerIndex(), 0);
    QVERIFY(viewModel->TriggerPluginVisible());
}

void tst_CMeasurementParametersViewModel::visibilityIsAnnouncedEachTime()
{
    const ViewModelPointer viewModel = make();
    PropertyLog log(viewModel.get());
    viewModel->OnSelectedTriggerModeIndexChanged(0);
    QCOMPARE(log.entries(),
             words("IsDisplayEnable=true IsDisplayRateVisible=true IsAcquisitionRateEnable=true "
                   "IsAcquisitionRateVisible=true IsImmediateAcquisitionRateVisible=false"));
}

void tst_CMeasurementParametersViewModel::triggerPlugins()
{
    CTestOperation operation(&m_fixture->supervisor);
    CFakeTriggerPlugin first;
    CFakeTriggerPlugin second;
    CFakeTriggerPlugin stranger;
    first.Name = QStringLiteral("First");
    second.Name = QStringLiteral("Second");
    stranger.Name = QStringLiteral("Stranger");
    operation.triggerPlugins = {&first, &second};
    ViewModel viewModel(&operation, false);
    QCOMPARE(viewModel.TriggerPlugins(), words("First Second"));
    QCOMPARE(viewModel.SelectedTriggerPluginIndex(), 0);
    QCOMPARE(operation.measurement().TriggerPlugin(), &first);

    viewModel.SetSelectedTriggerPluginIndex(1);
    QCOMPARE(operation.measurement().TriggerPlugin(), &second);
    for (const int index : {2, -1}) {
        viewModel.SetSelectedTriggerPluginIndex(index);
        QCOMPARE(operation.measurement().TriggerPlugin(), &second);
    }
    operation.measurement().SetTriggerPlugin(&first);
    QCOMPARE(viewModel.SelectedTriggerPluginIndex(), 0);
    operation.measurement().SetTriggerPlugin(&stranger);
    QCOMPARE(viewModel.SelectedTriggerPluginIndex(), -1);
    operation.measurement().SetTriggerPlugin(&second);
    operation.measurement().SetTriggerPlugin(nullptr);
    QCOMPARE(viewModel.SelectedTriggerPluginIndex(), -1);
    QVERIFY(!operation.measurement().TriggerPlugin());
}

void tst_CMeasurementParametersViewModel::withoutTriggerPlugins()
{
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->TriggerPlugins(), QStringList());
    QCOMPARE(viewModel->SelectedTriggerPluginIndex(), -1);
    viewModel->SetSelectedTriggerPluginIndex(0);
    QVERIFY(!parameters().TriggerPlugin());
}

void tst_CMeasurementParametersViewModel::rawCounts()
{
    const ViewModelPointer viewModel = make();
    QVERIFY(!viewModel->HasAdc());
    const QStringList before = viewModel->UnitsList();
    parameters().SetEnableAdcUnit(true);
    QVERIFY(viewModel->HasAdc());
    // The list follows at the next update only.
    QCOMPARE(viewModel->UnitsList(), before);
    emit instrument().OnUnitListUpdated();
    QCOMPARE(viewModel->UnitsList(), before + words("ADC"));
    QVERIFY(make()->HasAdc());
}

void tst_CMeasurementParametersViewModel::instrumentUpdates()
{
    const ViewModelPointer viewModel = make();
    instrument().SetUnitList({CUnits::GAUSS, CUnits::MILLI_TESLA});
    instrument().SetRangeList({2.0F});
    instrument().SetTriggerList({CTrigger::CONTINUOUS});
    QCOMPARE(viewModel->Triggers().size(), 4);
    emit instrument().OnTriggerListUpdated();
    QCOMPARE(viewModel->UnitsList(), words("G mT"));
    QCOMPARE(text(viewModel->Ranges()), QStringLiteral("Auto 2[T]"));
    QCOMPARE(viewModel->Triggers(), words("Continuous"));
    instrument().SetRangeList({4.0F});
    emit instrument().OnRangeListUpdated();
    QCOMPARE(text(viewModel->Ranges()), QStringLiteral("Auto 4[T]"));
    instrument().SetUnitList({CUnits::TESLA});
    emit instrument().OnUnitListUpdated();
    QCOMPARE(viewModel->UnitsList(), words("T"));
}

void tst_CMeasurementParametersViewModel::instrumentUpdateIsAnnouncedOnlyIfItDiffers()
{
    const ViewModelPointer viewModel = make();
    PropertyLog log(viewModel.get());
    emit instrument().OnUnitListUpdated();
    QCOMPARE(log.entries(), QStringList());
    instrument().SetTriggerList({CTrigger::CONTINUOUS});
    emit instrument().OnRangeListUpdated();
    QCOMPARE(log.entries().size(), 1);
    QCOMPARE(log.count(QStringLiteral("Triggers")), 1);
}

void tst_CMeasurementParametersViewModel::rawCountsUpdateIsNotHeard()
{
    const ViewModelPointer viewModel = make();
    instrument().SetUnitList({CUnits::GAUSS});
    emit instrument().OnHasAdcUpdated();
    QCOMPARE(viewModel->UnitsList().size(), 11);
}

void tst_CMeasurementParametersViewModel::loadedParameters()
{
    const ViewModelPointer viewModel = make();
    QVERIFY(m_operation->LoadParameters(m_fixture->write(
        QStringLiteral("p.xml"),
        "<A><MEASUREMENT_PARAMETERS><Range>0.1</Range><AutoRange>0</AutoRange><Units>G</Units>"
        "<UncertaintyUnits>%</UncertaintyUnits><TriggerMode>External</TriggerMode></MEASUREMENT_PARAMETERS></"
        "A>")));
    QCOMPARE(viewModel->SelectedUnitIndex(), 4);
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("mG %"));
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 1);
    QCOMPARE(viewModel->SelectedRangeIndex(), 2);
    QCOMPARE(viewModel->SelectedTriggerIndex(), 3);
    QVERIFY(viewModel->TriggerPluginVisible());
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    QCOMPARE(parameters().Range(), 0.1F);
}

void tst_CMeasurementParametersViewModel::loadedListOfAnotherLength()
{
    const ViewModelPointer viewModel = make();
    parameters().SetUncertaintyUnitList({CUnits::GAUSS});
    viewModel->OnParametersLoadChangedUnit();
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("mT %"));
    const QSignalSpy spy(viewModel.get(), &ViewModel::UncertaintyUnitsListChanged);
    parameters().SetUncertaintyUnitList({CUnits::GAUSS, CUnits::TESLA});
    viewModel->OnParametersLoadChangedUnit();
    viewModel->OnParametersLoadChangedUnit();
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("G T"));
    QCOMPARE(spy.count(), 1);
}

void tst_CMeasurementParametersViewModel::choicesSurviveTheViewModel()
{
    ViewModelPointer viewModel = make();
    viewModel->SetSelectedUnitIndex(5);
    viewModel->SetSelectedUncertaintyUnitIndex(1);
    viewModel->SetSelectedRangeIndex(3);
    viewModel->SetSelectedTriggerIndex(2);
    viewModel = make();
    QCOMPARE(viewModel->SelectedUnitIndex(), 5);
    QCOMPARE(viewModel->PreviousUnitIndex(), 5);
    QCOMPARE(viewModel->UncertaintyUnitsList(), words("mG %"));
    QCOMPARE(viewModel->SelectedUncertaintyUnitIndex(), 1);
    QCOMPARE(viewModel->SelectedRangeIndex(), 3);
    QCOMPARE(viewModel->SelectedTriggerIndex(), 2);
}

void tst_CMeasurementParametersViewModel::deletedViewModelHearsNothing()
{
    make().reset();
    parameters().SetUnits(CUnits::GAUSS);
    parameters().SetUncertaintyUnits(CUnits::PERCENT);
    parameters().SetAutoRange(false);
    parameters().SetRange(77.0F);
    parameters().SetTriggerMode(CTrigger::TIMER);
    parameters().SetEnableAdcUnit(true);
    emit instrument().OnUnitListUpdated();
    emit m_operation->OnLoadMeasParametersDone();
    QCOMPARE(parameters().Range(), 77.0F);
}

void tst_CMeasurementParametersViewModel::deletedBehindTheQuestion()
{
    ViewModelPointer viewModel = make();
    addBlock();
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    QTimer::singleShot(0, this, [&] { viewModel.reset(); });
    viewModel->SetSelectedUnitIndex(0);
    QVERIFY(dialogs.isDone());
    QVERIFY(!viewModel);
    QCOMPARE(parameters().Units(), CUnits::MILLI_TESLA);
    QVERIFY(!m_operation->GetDataSetEmpty());
}

QTEST_MAIN(tst_CMeasurementParametersViewModel)

#include "tst_CMeasurementParametersViewModel.moc"
