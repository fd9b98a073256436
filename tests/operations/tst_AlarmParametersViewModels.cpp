// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersAcAnalysisViewModel.h"
#include "CAlarmParametersMappingViewModel.h"
#include "CAlarmParametersMeterViewModel.h"
#include "CAlarmParametersSpectrumViewModel.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

/// The four boxes "Alarm" on the parameters of one operation.
class tst_AlarmParametersViewModels : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void surface();
    void lists();
    void takesTheParameters();
    void takesNoStateThatIsNone();
    void writesNothingAtConstruction();
    void writesTheState_data();
    void writesTheState();
    void writesTheAxis_data();
    void writesTheAxis();
    void ignoresIndicesOutsideTheLists();
    void announcesEqualChoicesOnce();
    void writesTheLimits();
    void maximumBelowMinimumIsTaken();
    void displayAlarmUnits();
    void flag();
    void doesNotFollowTheParameters();

private:
    COperationParameters& parameters() { return *m_operation->OperationParameters(); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<CTestOperation> m_operation;
};

void tst_AlarmParametersViewModels::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_operation = std::make_unique<CTestOperation>(&m_fixture->supervisor);
}

void tst_AlarmParametersViewModels::cleanup()
{
    m_operation.reset();
    m_fixture.reset();
}

void tst_AlarmParametersViewModels::surface()
{
    using namespace MetaObjectTable;
    const Property states{"States", "QList<CAlarm::AlarmState>", ReadOnly};
    const Property stateNames{"StateNames", "QStringList", ReadOnly};
    const Property stateIndex{"SelectedStateIndex", "int", ReadWrite};
    const Property flag{"FlagNotification", "bool", ReadWrite};
    const Property units{"DisplayAlarmUnits", "CUnits::UnitType", ReadWrite};
    const Property axis{"Axis", "QList<CAxis::AxisType>", ReadOnly};
    const Property axisNames{"AxisNames", "QStringList", ReadOnly};
    const Property axisIndex{"SelectedAxisIndex", "int", ReadWrite};
    const Property minimum{"Minimum", "double", ReadWrite};
    const Property maximum{"Maximum", "double", ReadWrite};
    const QVector<Property> all{states, stateNames, stateIndex, flag,    units,
                                axis,   axisNames,  axisIndex,  minimum, maximum};
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersMeterViewModel::staticMetaObject, all));
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersMappingViewModel::staticMetaObject, all));
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersSpectrumViewModel::staticMetaObject,
                                           {states, stateNames, stateIndex, flag}));
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersAcAnalysisViewModel::staticMetaObject,
                                           {states, stateNames, stateIndex, axis, axisNames, axisIndex}));

    VERIFY_NO_DIFFERENCE(compareMethods(
        CAlarmParametersMeterViewModel::staticMetaObject, QMetaMethod::Slot,
        {"OnSelectedStateIndexChanged(int)", "OnSelectedAxisIndexChanged(int)", "OnMinimumChanged(double)",
         "OnMaximumChanged(double)", "OnDisplayAlarmUnitsChanged(CUnits::UnitType)"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(CAlarmParametersMappingViewModel::staticMetaObject, QMetaMethod::Slot,
                       {"OnSelectedStateIndexChanged(int)", "OnSelectedAxisIndexChanged(int)",
                        "OnMinimumChanged(double)", "OnMaximumChanged(double)"}));
}

void tst_AlarmParametersViewModels::lists()
{
    const QList<CAlarm::AlarmState> states{CAlarm::Off, CAlarm::Notification, CAlarm::Audio,
                                           CAlarm::FlagNotification};
    const QStringList stateNames{QStringLiteral("Off"), QStringLiteral("Notification"),
                                 QStringLiteral("Audio"), QStringLiteral("Flag Notification")};
    const QList<CAxis::AxisType> five{CAxis::B, CAxis::BBprime, CAxis::Bx, CAxis::By, CAxis::Bz};
    const QList<CAxis::AxisType> six = five + QList<CAxis::AxisType>{CAxis::dB};
    const QStringList fiveNames{QStringLiteral("B"), QStringLiteral("B·B'"), QStringLiteral("Bx"),
                                QStringLiteral("By"), QStringLiteral("Bz")};
    const QStringList sixNames = fiveNames + QStringList{QStringLiteral("ε(B)")};

    const CAlarmParametersMeterViewModel meter(m_operation.get());
    QCOMPARE(meter.States(), states);
    QCOMPARE(meter.StateNames(), stateNames);
    QCOMPARE(meter.Axis(), six);
    QCOMPARE(meter.AxisNames(), sixNames);
    const CAlarmParametersMappingViewModel mapping(m_operation.get());
    QCOMPARE(mapping.States(), states);
    QCOMPARE(mapping.StateNames(), stateNames);
    QCOMPARE(mapping.Axis(), six);
    QCOMPARE(mapping.AxisNames(), sixNames);
    const CAlarmParametersAcAnalysisViewModel acAnalysis(m_operation.get());
    QCOMPARE(acAnalysis.States(), states);
    QCOMPARE(acAnalysis.StateNames(), stateNames);
    QCOMPARE(acAnalysis.Axis(), five);
    QCOMPARE(acAnalysis.AxisNames(), fiveNames);
    const CAlarmParametersSpectrumViewModel spectrum(m_operation.get());
    QCOMPARE(spectrum.States(), states);
    QCOMPARE(spectrum.StateNames(), stateNames);
}

void tst_AlarmParametersViewModels::takesTheParameters()
{
    parameters().AlarmParametersMeter()->SetState(CAlarm::Audio);
    parameters().AlarmParametersMeter()->SetAxis(CAxis::dB);
    parameters().AlarmParametersMeter()->SetMinimum(-1.5);
    parameters().AlarmParametersMeter()->SetMaximum(2.5);
    parameters().AlarmParametersMeter()->SetDisplayAlarmUnits(CUnits::GAUSS);
    const CAlarmParametersMeterViewModel meter(m_operation.get());
    QCOMPARE(meter.SelectedStateIndex(), 2);
    QCOMPARE(meter.SelectedAxisIndex(), 5);
    QCOMPARE(meter.Minimum(), -1.5);
    QCOMPARE(meter.Maximum(), 2.5);
    QCOMPARE(meter.DisplayAlarmUnits(), CUnits::GAUSS);
    QVERIFY(!meter.FlagNotification());

    // Each kind has parameters of its own.
    const CAlarmParametersMappingViewModel fresh(m_operation.get());
    QCOMPARE(fresh.SelectedStateIndex(), 0);
    QCOMPARE(fresh.SelectedAxisIndex(), 0);
    QCOMPARE(fresh.Minimum(), 0.0);
    QCOMPARE(fresh.Maximum(), 0.0);
    QCOMPARE(fresh.DisplayAlarmUnits(), CUnits::TESLA);

    parameters().AlarmParametersMapping()->SetState(CAlarm::FlagNotification);
    parameters().AlarmParametersMapping()->SetAxis(CAxis::By);
    parameters().AlarmParametersMapping()->SetMinimum(3);
    parameters().AlarmParametersMapping()->SetMaximum(4);
    parameters().AlarmParametersMapping()->SetDisplayAlarmUnits(CUnits::NANO_TESLA);
    const CAlarmParametersMappingViewModel mapping(m_operation.get());
    QCOMPARE(mapping.SelectedStateIndex(), 3);
    QCOMPARE(mapping.SelectedAxisIndex(), 3);
    QCOMPARE(mapping.Minimum(), 3.0);
    QCOMPARE(mapping.Maximum(), 4.0);
    QCOMPARE(mapping.DisplayAlarmUnits(), CUnits::NANO_TESLA);

    parameters().AlarmParametersSpectrum()->SetState(CAlarm::Notification);
    QCOMPARE(CAlarmParametersSpectrumViewModel(m_operation.get()).SelectedStateIndex(), 1);

    parameters().AlarmParametersAcAnalysis()->SetState(CAlarm::Audio);
    parameters().AlarmParametersAcAnalysis()->SetAxis(CAxis::BBprime);
    const CAlarmParametersAcAnalysisViewModel acAnalysis(m_operation.get());
    QCOMPARE(acAnalysis.SelectedStateIndex(), 2);
    QCOMPARE(acAnalysis.SelectedAxisIndex(), 1);
}

void tst_AlarmParametersViewModels::takesNoStateThatIsNone()
{
    parameters().AlarmParametersMeter()->SetState(static_cast<CAlarm::AlarmState>(0));
    parameters().AlarmParametersAcAnalysis()->SetAxis(CAxis::dB);
    QCOMPARE(CAlarmParametersMeterViewModel(m_operation.get()).SelectedStateIndex(), -1);
    // The uncertainty has no figure of merit.
    QCOMPARE(CAlarmParametersAcAnalysisViewModel(m_operation.get()).SelectedAxisIndex(), -1);
    QCOMPARE(parameters().AlarmParametersAcAnalysis()->Axis(), CAxis::dB);
}

void tst_AlarmParametersViewModels::writesNothingAtConstruction()
{
    // Its setter announces every assignment.
    const QSignalSpy spy(parameters().AlarmParametersMeter(),
                         &CAlarmParametersMeter::DisplayAlarmUnitsChanged);
    const CAlarmParametersMeterViewModel meter(m_operation.get());
    QCOMPARE(spy.count(), 0);
}

void tst_AlarmParametersViewModels::writesTheState_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<CAlarm::AlarmState>("state");
    QTest::newRow("notification") << 1 << CAlarm::Notification;
    QTest::newRow("audio") << 2 << CAlarm::Audio;
    QTest::newRow("flag") << 3 << CAlarm::FlagNotification;
}

void tst_AlarmParametersViewModels::writesTheState()
{
    QFETCH(int, index);
    QFETCH(CAlarm::AlarmState, state);
    CAlarmParametersMeterViewModel meter(m_operation.get());
    meter.SetSelectedStateIndex(index);
    QCOMPARE(parameters().AlarmParametersMeter()->State(), state);
    meter.SetSelectedStateIndex(0);
    QCOMPARE(parameters().AlarmParametersMeter()->State(), CAlarm::Off);
    CAlarmParametersSpectrumViewModel spectrum(m_operation.get());
    spectrum.SetSelectedStateIndex(index);
    QCOMPARE(parameters().AlarmParametersSpectrum()->State(), state);
    CAlarmParametersAcAnalysisViewModel acAnalysis(m_operation.get());
    acAnalysis.SetSelectedStateIndex(index);
    QCOMPARE(parameters().AlarmParametersAcAnalysis()->State(), state);
    CAlarmParametersMappingViewModel mapping(m_operation.get());
    mapping.SetSelectedStateIndex(index);
    QCOMPARE(parameters().AlarmParametersMapping()->State(), state);
    QCOMPARE(parameters().AlarmParametersMeter()->State(), CAlarm::Off);
}

void tst_AlarmParametersViewModels::writesTheAxis_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<CAxis::AxisType>("axis");
    QTest::newRow("B.B'") << 1 << CAxis::BBprime;
    QTest::newRow("Bx") << 2 << CAxis::Bx;
    QTest::newRow("By") << 3 << CAxis::By;
    QTest::newRow("Bz") << 4 << CAxis::Bz;
    QTest::newRow("dB") << 5 << CAxis::dB;
}

void tst_AlarmParametersViewModels::writesTheAxis()
{
    QFETCH(int, index);
    QFETCH(CAxis::AxisType, axis);
    CAlarmParametersMeterViewModel meter(m_operation.get());
    meter.SetSelectedAxisIndex(index);
    QCOMPARE(parameters().AlarmParametersMeter()->Axis(), axis);
    CAlarmParametersMappingViewModel mapping(m_operation.get());
    mapping.SetSelectedAxisIndex(index);
    QCOMPARE(parameters().AlarmParametersMapping()->Axis(), axis);
    CAlarmParametersAcAnalysisViewModel acAnalysis(m_operation.get());
    acAnalysis.SetSelectedAxisIndex(index);
    QCOMPARE(parameters().AlarmParametersAcAnalysis()->Axis(), axis == CAxis::dB ? CAxis::B : axis);
}

void tst_AlarmParametersViewModels::ignoresIndicesOutsideTheLists()
{
    parameters().AlarmParametersMeter()->SetState(CAlarm::Audio);
    parameters().AlarmParametersMeter()->SetAxis(CAxis::Bz);
    CAlarmParametersMeterViewModel meter(m_operation.get());
    for (const int index : {-1, 6, 1000}) {
        meter.SetSelectedStateIndex(index);
        meter.SetSelectedAxisIndex(index);
        QCOMPARE(meter.SelectedStateIndex(), index);
        QCOMPARE(meter.SelectedAxisIndex(), index);
        QCOMPARE(parameters().AlarmParametersMeter()->State(), CAlarm::Audio);
        QCOMPARE(parameters().AlarmParametersMeter()->Axis(), CAxis::Bz);
    }
}

void tst_AlarmParametersViewModels::announcesEqualChoicesOnce()
{
    CAlarmParametersMeterViewModel meter(m_operation.get());
    const QSignalSpy index(&meter, &CAlarmParametersMeterViewModel::SelectedAxisIndexChanged);
    const QSignalSpy axis(parameters().AlarmParametersMeter(), &CAlarmParametersMeter::AxisChanged);
    meter.SetSelectedAxisIndex(4);
    meter.SetSelectedAxisIndex(4);
    QCOMPARE(index.count(), 1);
    QCOMPARE(axis.count(), 1);
    // The box shows another choice that is the parameters' already.
    parameters().AlarmParametersMeter()->SetAxis(CAxis::Bx);
    meter.SetSelectedAxisIndex(2);
    QCOMPARE(index.count(), 2);
    QCOMPARE(axis.count(), 2);
}

void tst_AlarmParametersViewModels::writesTheLimits()
{
    CAlarmParametersMeterViewModel meter(m_operation.get());
    const QSignalSpy minimum(&meter, &CAlarmParametersMeterViewModel::MinimumChanged);
    meter.SetMinimum(-2.25);
    meter.SetMinimum(-2.25);
    meter.SetMaximum(std::numeric_limits<double>::infinity());
    QCOMPARE(minimum.count(), 1);
    QCOMPARE(parameters().AlarmParametersMeter()->Minimum(), -2.25);
    QVERIFY(std::isinf(parameters().AlarmParametersMeter()->Maximum()));
    CAlarmParametersMappingViewModel mapping(m_operation.get());
    mapping.SetMinimum(7);
    mapping.SetMaximum(8);
    QCOMPARE(parameters().AlarmParametersMapping()->Minimum(), 7.0);
    QCOMPARE(parameters().AlarmParametersMapping()->Maximum(), 8.0);
}

void tst_AlarmParametersViewModels::maximumBelowMinimumIsTaken()
{
    CAlarmParametersMeterViewModel meter(m_operation.get());
    meter.SetMinimum(5);
    meter.SetMaximum(-5);
    QCOMPARE(parameters().AlarmParametersMeter()->Minimum(), 5.0);
    QCOMPARE(parameters().AlarmParametersMeter()->Maximum(), -5.0);
}

void tst_AlarmParametersViewModels::displayAlarmUnits()
{
    CAlarmParametersMeterViewModel meter(m_operation.get());
    meter.SetDisplayAlarmUnits(CUnits::NANO_TESLA);
    QCOMPARE(parameters().AlarmParametersMeter()->DisplayAlarmUnits(), CUnits::NANO_TESLA);
    const QSignalSpy spy(parameters().AlarmParametersMeter(),
                         &CAlarmParametersMeter::DisplayAlarmUnitsChanged);
    meter.OnDisplayAlarmUnitsChanged(CUnits::NANO_TESLA);
    QCOMPARE(spy.count(), 1);

    CAlarmParametersMappingViewModel mapping(m_operation.get());
    mapping.SetDisplayAlarmUnits(CUnits::NANO_TESLA);
    QCOMPARE(mapping.DisplayAlarmUnits(), CUnits::NANO_TESLA);
    QCOMPARE(parameters().AlarmParametersMapping()->DisplayAlarmUnits(), CUnits::TESLA);
}

void tst_AlarmParametersViewModels::flag()
{
    CAlarmParametersMeterViewModel meter(m_operation.get());
    const QSignalSpy spy(&meter, &CAlarmParametersMeterViewModel::FlagNotificationChanged);
    meter.SetFlagNotification(true);
    meter.SetFlagNotification(true);
    meter.SetFlagNotification(false);
    QCOMPARE(spy.count(), 2);
}

void tst_AlarmParametersViewModels::doesNotFollowTheParameters()
{
    CAlarmParametersMeterViewModel meter(m_operation.get());
    QVERIFY(m_operation->LoadParameters(m_fixture->write(
        QStringLiteral("alarm.xml"), "<A><ALARM_METER_PARAMETERS><State>Audio</State><Axis>Bz</Axis>"
                                     "<Minimum>3</Minimum></ALARM_METER_PARAMETERS></A>")));
    QCOMPARE(parameters().AlarmParametersMeter()->State(), CAlarm::Audio);
    QCOMPARE(meter.SelectedStateIndex(), 0);
    QCOMPARE(meter.SelectedAxisIndex(), 0);
    QCOMPARE(meter.Minimum(), 0.0);
    const CAlarmParametersMeterViewModel next(m_operation.get());
    QCOMPARE(next.SelectedStateIndex(), 2);
    QCOMPARE(next.SelectedAxisIndex(), 4);
    QCOMPARE(next.Minimum(), 3.0);
}

QTEST_GUILESS_MAIN(tst_AlarmParametersViewModels)

#include "tst_AlarmParametersViewModels.moc"
