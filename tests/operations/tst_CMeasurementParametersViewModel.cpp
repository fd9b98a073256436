// SPDX-License-Identifier: GPL-3.0-or-later
// The surface, the state without an instrument, and the choice of the units.
#include "DialogDriver.h"
#include "MeasurementParametersFixture.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

const QString kUnitQuestion =
    QStringLiteral("Are you sure you want to change units?|All the measured data will be lost");

} // namespace

class tst_CMeasurementParametersViewModel : public QObject, private MeasurementParametersFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void surface();
    void constants();
    void withoutInstrument();
    void withoutInstrumentNothingCanBeChosen();
    void takesTheParameters();
    void unitsWithoutRawCounts();
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
    void rawCounts();
    void rawCountsUpdateIsNotHeard();
    void deletedViewModelHearsNothing();
    void deletedBehindTheQuestion();
};

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

void tst_CMeasurementParametersViewModel::rawCountsUpdateIsNotHeard()
{
    const ViewModelPointer viewModel = make();
    instrument().SetUnitList({CUnits::GAUSS});
    emit instrument().OnHasAdcUpdated();
    QCOMPARE(viewModel->UnitsList().size(), 11);
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
