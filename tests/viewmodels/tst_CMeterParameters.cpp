// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "DialogDriver.h"
#include "MeasureFixture.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

using MeterPointer = std::unique_ptr<CMeterOperationViewModel>;

MeterPointer makeMeter(MeasureFixture& f)
{
    return std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
}

void deliver(MeasureFixture& f, float b, float dB = 0)
{
    Sample sample;
    sample.b = b;
    sample.dB = dB;
    f.operation.OnNewMeasure(makeBlock({sample}));
}

CAlarmParametersMeter& alarm(MeasureFixture& f)
{
    return *f.operation.OperationParameters()->AlarmParametersMeter();
}

} // namespace

/// The meter page with its boxes "Measurement" and "Alarm".
class tst_CMeterParameters : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void defaultsAreOneConfiguration();
    void defaultsKeepTheRestAlone();
    void defaultsWithoutInstrument();
    void defaultsAskBeforeTheUnitChanges();
    void alarmBoxAtTheStart();
    void lastAlarm();
    void unitOfTheLimits();
    void limitsAreNotConverted();
    void alarmOfALiveField();
    void messageInTheBlockPath();
    void alarmOnAStoredBlock();
    void alarmInAReplay();
    void messageAfterAQuietTime();
    void unitChangeThroughTheBox();
    void cancelledUnitChangeKeepsThePage();
    void dataSurviveANewPage();
    void leftPage();
};

void tst_CMeterParameters::defaults()
{
    MeasureFixture f;
    const auto instrument = f.connectInstrument();
    instrument->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA});
    instrument->SetRangeList({0.5F, 1.0F});
    instrument->SetTriggerList({CTrigger::CONTINUOUS, CTrigger::TIMER});
    f.parameters().SetTriggerMode(CTrigger::TIMER);
    f.parameters().SetAveraging(77);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    f.parameters().SetRange(1.0F);
    const MeterPointer meter = makeMeter(f);
    CMeasurementParametersViewModel& box = *meter->MeasurementParametersViewModel();
    QCOMPARE(box.SelectedUnitIndex(), 1);
    QCOMPARE(box.SelectedUncertaintyUnitIndex(), 1);
    QCOMPARE(box.SelectedRangeIndex(), 2);
    QCOMPARE(box.SelectedTriggerIndex(), 1);

    meter->setDefaultParameters();
    QCOMPARE(f.parameters().TriggerMode(), CTrigger::CONTINUOUS);
    QCOMPARE(f.parameters().Averaging(), 10);
    QCOMPARE(f.parameters().DisplayRate(), 10.0);
    QCOMPARE(f.parameters().AcquisitionRate(), 20.0);
    QCOMPARE(f.parameters().BlockSize(), 2);
    QCOMPARE(f.parameters().FrequencyMax(), 10.0);
    QCOMPARE(f.parameters().NumberOfBins(), 1.0);
    QCOMPARE(f.parameters().Units(), CUnits::TESLA);
    QCOMPARE(f.parameters().UncertaintyUnits(), CUnits::MILLI_TESLA);
    QVERIFY(f.parameters().AutoRange());
    QCOMPARE(box.SelectedUnitIndex(), 0);
    QCOMPARE(box.SelectedUncertaintyUnitIndex(), 0);
    QCOMPARE(box.SelectedRangeIndex(), 0);
    QCOMPARE(box.SelectedTriggerIndex(), 0);
    QCOMPARE(meter->DisplayUnits(), CUnits::TESLA);
}

void tst_CMeterParameters::defaultsAreOneConfiguration()
{
    MeasureFixture f;
    f.connectInstrument();
    f.parameters().SetTriggerMode(CTrigger::TIMER);
    const MeterPointer meter = makeMeter(f);
    PropertyLog log(&f.parameters());
    meter->setDefaultParameters();
    const QStringList entries = log.take();
    QCOMPARE(entries.constFirst(), QStringLiteral("ApplyConfiguration=false"));
    QCOMPARE(entries.count(QStringLiteral("ApplyConfiguration=true")), 1);
    const int triggerMode = entries.indexOf(QStringLiteral("TriggerMode=CONTINUOUS"));
    QVERIFY(triggerMode >= 0);
    QVERIFY(triggerMode < entries.indexOf(QStringLiteral("Averaging=10")));
    QVERIFY(entries.indexOf(QStringLiteral("Averaging=10")) <
            entries.indexOf(QStringLiteral("DisplayRate=10")));
    QVERIFY(entries.indexOf(QStringLiteral("DisplayRate=10")) <
            entries.indexOf(QStringLiteral("AcquisitionRate=20")));
    QVERIFY(entries.indexOf(QStringLiteral("AcquisitionRate=20")) <
            entries.indexOf(QStringLiteral("ApplyConfiguration=true")));
}

void tst_CMeterParameters::defaultsKeepTheRestAlone()
{
    MeasureFixture f;
    f.connectInstrument();
    alarm(f).SetMaximum(5);
    f.parameters().SetFrequencyMin(3);
    const MeterPointer meter = makeMeter(f);
    meter->setDefaultParameters();
    QCOMPARE(alarm(f).Maximum(), 5.0);
    QCOMPARE(f.parameters().FrequencyMin(), 3.0);
}

void tst_CMeterParameters::defaultsWithoutInstrument()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    PropertyLog log(&f.parameters());
    meter->setDefaultParameters();
    QCOMPARE(log.entries(), QStringList());
    QCOMPARE(meter->MeasurementParametersViewModel()->SelectedUnitIndex(), -1);
}

void tst_CMeterParameters::defaultsAskBeforeTheUnitChanges()
{
    MeasureFixture f;
    f.connectInstrument()->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA});
    const MeterPointer meter = makeMeter(f);
    deliver(f, 1);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    meter->setDefaultParameters();
    QVERIFY(dialogs.isDone());
    QCOMPARE(f.parameters().Units(), CUnits::MICRO_TESLA);
    QVERIFY(!f.operation.GetDataSetEmpty());
}

void tst_CMeterParameters::alarmBoxAtTheStart()
{
    MeasureFixture f;
    alarm(f).SetState(CAlarm::Audio);
    alarm(f).SetAxis(CAxis::Bx);
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(meter->AlarmParametersViewModel()->SelectedStateIndex(), 2);
    QCOMPARE(meter->AlarmParametersViewModel()->DisplayAlarmUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(alarm(f).DisplayAlarmUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(meter->LastAlarmState(), CAlarm::Audio);
    QCOMPARE(meter->LastAlarmAxis(), CAxis::Bx);
    QVERIFY(!meter->AlarmParametersViewModel()->FlagNotification());
}

void tst_CMeterParameters::lastAlarm()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    const QSignalSpy state(meter.get(), &CMeterOperationViewModel::LastAlarmStateChanged);
    const QSignalSpy axis(meter.get(), &CMeterOperationViewModel::LastAlarmAxisChanged);
    alarm(f).SetState(CAlarm::FlagNotification);
    alarm(f).SetAxis(CAxis::Bz);
    QCOMPARE(meter->LastAlarmState(), CAlarm::Off);
    deliver(f, 0);
    QCOMPARE(meter->LastAlarmState(), CAlarm::FlagNotification);
    QCOMPARE(meter->LastAlarmAxis(), CAxis::Bz);
    QCOMPARE(state.count() + axis.count(), 0);
}

void tst_CMeterParameters::unitOfTheLimits()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    CAlarmParametersMeterViewModel& box = *meter->AlarmParametersViewModel();
    box.SetSelectedAxisIndex(5);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::MICRO_TESLA);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::PERCENT);
    QCOMPARE(alarm(f).DisplayAlarmUnits(), CUnits::PERCENT);
    box.SetSelectedAxisIndex(4);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::MICRO_TESLA);
    f.parameters().SetUnits(CUnits::GAUSS);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::GAUSS);
    // The percentage has no unit of the field.
    box.SetSelectedAxisIndex(5);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::PERCENT);
    f.parameters().SetUncertaintyUnits(CUnits::MILLI_GAUSS);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::MILLI_GAUSS);
    f.parameters().SetUnits(CUnits::NANO_TESLA);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::NANO_TESLA);
}

void tst_CMeterParameters::limitsAreNotConverted()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->AlarmParametersViewModel()->SetMinimum(1);
    meter->AlarmParametersViewModel()->SetMaximum(2);
    f.parameters().SetDisplayUnits(CUnits::NANO_TESLA);
    f.parameters().SetUnits(CUnits::NANO_TESLA);
    QCOMPARE(meter->AlarmParametersViewModel()->Minimum(), 1.0);
    QCOMPARE(alarm(f).Maximum(), 2.0);
}

void tst_CMeterParameters::alarmOfALiveField()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, 50);
    QVERIFY(!meter->AlarmParametersViewModel()->FlagNotification());
    // Both limits are 0 at first: any field violates them.
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(1);
    deliver(f, 50);
    QVERIFY(meter->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls, QStringList{QStringLiteral(
                                   "B is out-of-limit [µT]|Minimum = 0.0000\nB = 50.000\nMaximum = 0.0000")});
    meter->AlarmParametersViewModel()->SetMaximum(100);
    deliver(f, 50);
    QVERIFY(!meter->AlarmParametersViewModel()->FlagNotification());
    deliver(f, 101);
    QVERIFY(meter->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls.size(), 1);
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(0);
    QVERIFY(meter->AlarmParametersViewModel()->FlagNotification());
    deliver(f, 101);
    QVERIFY(!meter->AlarmParametersViewModel()->FlagNotification());
}

void tst_CMeterParameters::messageInTheBlockPath()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(3);
    QStringList order;
    connect(meter.get(), &CMeterOperationViewModel::BLastBlockChanged, this,
            [&] { order << QStringLiteral("B"); });
    connect(meter->MeterOperationDatasetViewModel()->TableData(), &QAbstractItemModel::rowsInserted, this,
            [&] { order << QStringLiteral("table"); });
    connect(meter.get(), &CMeterOperationViewModel::CommentBlockChanged, this,
            [&] { order << QStringLiteral("comment"); });
    connect(meter.get(), &CMeterOperationViewModel::QuatXChanged, this,
            [&] { order << QStringLiteral("arrow"); });
    connect(meter->AlarmParametersViewModel(), &CAlarmParametersMeterViewModel::FlagNotificationChanged, this,
            [&] { order << QStringLiteral("alarm"); });
    Sample sample;
    sample.b = 1;
    f.operation.OnNewMeasure(makeBlock({sample}, QStringLiteral("told")));
    QCOMPARE(order, QStringList({QStringLiteral("B"), QStringLiteral("table"), QStringLiteral("alarm"),
                                 QStringLiteral("comment"), QStringLiteral("arrow")}));
}

void tst_CMeterParameters::alarmOnAStoredBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    for (int i = 0; i < 3; ++i)
        deliver(f, float(i));
    f.manager().StopRecord();
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(3);
    meter->AlarmParametersViewModel()->SetMaximum(1);
    f.operation.OnReplayMeasure(f.dataSet().MeasureBlocks()->at(2));
    QVERIFY(meter->AlarmParametersViewModel()->FlagNotification());
    f.operation.OnReplayMeasure(f.dataSet().MeasureBlocks()->at(1));
    QVERIFY(!meter->AlarmParametersViewModel()->FlagNotification());
}

void tst_CMeterParameters::alarmInAReplay()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    for (int i = 0; i < 3; ++i)
        f.operation.OnNewMeasure(makeRamp(10 * i, 10, 100 * i, 10));
    f.manager().StopRecord();
    meter->AlarmParametersViewModel()->SetMaximum(19);
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(1);
    f.manager().SetTimeWarp(10);
    f.manager().StartReplay();
    QTRY_VERIFY(!f.manager().IsPlayingBack());
    QVERIFY(meter->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls.size(), 1);
    QVERIFY(f.notifier.calls.constFirst().contains(QLatin1String("B = 20.000")));
}

void tst_CMeterParameters::messageAfterAQuietTime()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->AlarmParametersViewModel()->SetMaximum(10);
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(2);
    deliver(f, 11);
    deliver(f, 12);
    QCOMPARE(f.notifier.calls.size(), 2);
    QElapsedTimer quiet;
    quiet.start();
    // A coarse timer of 2 s may be late by a twentieth.
    QTRY_VERIFY(quiet.elapsed() > 2150);
    deliver(f, 9);
    QCOMPARE(f.notifier.calls.size(), 2);
    deliver(f, 13);
    deliver(f, 13);
    QCOMPARE(f.notifier.calls.size(), 4);
    QCOMPARE(f.notifier.calls.last(), QStringLiteral("beep"));
}

void tst_CMeterParameters::unitChangeThroughTheBox()
{
    MeasureFixture f;
    f.connectInstrument()->SetUnitList({CUnits::MICRO_TESLA, CUnits::GAUSS});
    const MeterPointer meter = makeMeter(f);
    deliver(f, 7);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    meter->MeasurementParametersViewModel()->SetSelectedUnitIndex(1);
    QVERIFY(dialogs.isDone());
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->DisplayUncertaintyUnits(), CUnits::MILLI_GAUSS);
    QCOMPARE(meter->AlarmParametersViewModel()->DisplayAlarmUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 0.0);
    QCOMPARE(meter->BMax(), 0.0);
    QCOMPARE(meter->MeterOperationDatasetViewModel()->TableData()->rowCount(), 0);
    QVERIFY(f.operation.GetDataSetEmpty());
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
}

void tst_CMeterParameters::cancelledUnitChangeKeepsThePage()
{
    MeasureFixture f;
    f.connectInstrument()->SetUnitList({CUnits::MICRO_TESLA, CUnits::GAUSS});
    const MeterPointer meter = makeMeter(f);
    deliver(f, 7);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    meter->MeasurementParametersViewModel()->SetSelectedUnitIndex(1);
    QVERIFY(dialogs.isDone());
    QCOMPARE(meter->DisplayUnits(), CUnits::MICRO_TESLA);
    QCOMPARE(meter->BLastBlock(), 7.0);
    QCOMPARE(meter->MeasurementParametersViewModel()->SelectedUnitIndex(), 0);
    QVERIFY(!f.operation.GetDataSetEmpty());
}

void tst_CMeterParameters::dataSurviveANewPage()
{
    MeasureFixture f;
    f.connectInstrument()->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA});
    MeterPointer meter = makeMeter(f);
    deliver(f, 7);
    meter->PageLeft();
    meter = makeMeter(f);
    QVERIFY(!f.operation.GetDataSetEmpty());
    QCOMPARE(meter->BLastBlock(), 7.0);
    QCOMPARE(f.parameters().Units(), CUnits::MICRO_TESLA);
}

void tst_CMeterParameters::leftPage()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->AlarmParametersViewModel()->SetSelectedStateIndex(2);
    meter->PageLeft();
    deliver(f, 7);
    QVERIFY(!meter->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls, QStringList());
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    alarm(f).SetAxis(CAxis::dB);
    QCOMPARE(meter->AlarmParametersViewModel()->DisplayAlarmUnits(), CUnits::MICRO_TESLA);
}

QTEST_MAIN(tst_CMeterParameters)

#include "tst_CMeterParameters.moc"
