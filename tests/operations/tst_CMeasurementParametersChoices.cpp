// SPDX-License-Identifier: GPL-3.0-or-later
// The choices of ranges and triggers, and what updates of the instrument and loaded files do to the choices.
#include "CFakeTriggerPlugin.h"
#include "MeasurementParametersFixture.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(CTrigger::TriggerMode)

class tst_CMeasurementParametersChoices : public QObject, private MeasurementParametersFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void rangeTexts();
    void rangesOfAnInstrumentWithoutAny();
    void triggerNames();
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
    void instrumentUpdates();
    void instrumentUpdateIsAnnouncedOnlyIfItDiffers();
    void loadedParameters();
    void loadedListOfAnotherLength();
    void choicesSurviveTheViewModel();
};

void tst_CMeasurementParametersChoices::rangeTexts()
{
    instrument().SetRangeList({1e-6F, 0.1F, 3.0F, 12345678.0F});
    QCOMPARE(text(make()->Ranges()), QStringLiteral("Auto 1e-06[T] 0.1[T] 3[T] 1.23457e+07[T]"));
    const QVariantMap first = make()->Ranges().constFirst().toMap();
    QCOMPARE(first.keys(), words("first second"));
    QCOMPARE(first.value(QStringLiteral("second")).toString(), QString());
}

void tst_CMeasurementParametersChoices::rangesOfAnInstrumentWithoutAny()
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

void tst_CMeasurementParametersChoices::triggerNames()
{
    instrument().SetTriggerList(
        {CTrigger::EXTERNAL, static_cast<CTrigger::TriggerMode>(9), CTrigger::CONTINUOUS});
    QCOMPARE(make()->Triggers(), words("External Continuous"));
    QCOMPARE(make(true)->Triggers(), words("Immediate Timer External"));
}

void tst_CMeasurementParametersChoices::choosesARange()
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

void tst_CMeasurementParametersChoices::automaticRange()
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

void tst_CMeasurementParametersChoices::followsTheRange()
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

void tst_CMeasurementParametersChoices::unlistedRangeFallsBack()
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

void tst_CMeasurementParametersChoices::unlistedRangeWhileThePageIsOpen()
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

void tst_CMeasurementParametersChoices::choosesATrigger_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::addColumn<QString>("flags");
    QTest::newRow("continuous") << 0 << CTrigger::CONTINUOUS << "11110";
    QTest::newRow("immediate") << 1 << CTrigger::IMMEDIATE << "00011";
    QTest::newRow("timer") << 2 << CTrigger::TIMER << "00110";
    QTest::newRow("external") << 3 << CTrigger::EXTERNAL << "00010";
}

void tst_CMeasurementParametersChoices::choosesATrigger()
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

void tst_CMeasurementParametersChoices::triggerWithoutContinuous_data()
{
    QTest::addColumn<CTrigger::TriggerMode>("stored");
    QTest::addColumn<int>("index");
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::newRow("continuous") << CTrigger::CONTINUOUS << 0 << CTrigger::IMMEDIATE;
    QTest::newRow("immediate") << CTrigger::IMMEDIATE << 0 << CTrigger::IMMEDIATE;
    QTest::newRow("timer") << CTrigger::TIMER << 1 << CTrigger::TIMER;
    QTest::newRow("external") << CTrigger::EXTERNAL << 2 << CTrigger::EXTERNAL;
}

void tst_CMeasurementParametersChoices::triggerWithoutContinuous()
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

void tst_CMeasurementParametersChoices::instrumentWithSomeTriggers()
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

void tst_CMeasurementParametersChoices::visibilityIsAnnouncedEachTime()
{
    const ViewModelPointer viewModel = make();
    PropertyLog log(viewModel.get());
    viewModel->OnSelectedTriggerModeIndexChanged(0);
    QCOMPARE(log.entries(),
             words("IsDisplayEnable=true IsDisplayRateVisible=true IsAcquisitionRateEnable=true "
                   "IsAcquisitionRateVisible=true IsImmediateAcquisitionRateVisible=false"));
}

void tst_CMeasurementParametersChoices::triggerPlugins()
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

void tst_CMeasurementParametersChoices::withoutTriggerPlugins()
{
    const ViewModelPointer viewModel = make();
    QCOMPARE(viewModel->TriggerPlugins(), QStringList());
    QCOMPARE(viewModel->SelectedTriggerPluginIndex(), -1);
    viewModel->SetSelectedTriggerPluginIndex(0);
    QVERIFY(!parameters().TriggerPlugin());
}

void tst_CMeasurementParametersChoices::instrumentUpdates()
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

void tst_CMeasurementParametersChoices::instrumentUpdateIsAnnouncedOnlyIfItDiffers()
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

void tst_CMeasurementParametersChoices::loadedParameters()
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

void tst_CMeasurementParametersChoices::loadedListOfAnotherLength()
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

void tst_CMeasurementParametersChoices::choicesSurviveTheViewModel()
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

QTEST_MAIN(tst_CMeasurementParametersChoices)

#include "tst_CMeasurementParametersChoices.moc"
