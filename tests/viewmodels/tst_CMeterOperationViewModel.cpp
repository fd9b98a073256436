// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "MetaObjectTable.h"
#include "MeterFixture.h"
#include "PropertyLog.h"

#include <QQuaternion>
#include <QtTest>

#include <cmath>
#include <limits>

class tst_CMeterOperationViewModel : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void initialValues();
    void helpNames();

    void liveBlockStepByStep();
    void lastValuesEmitUnchanged();
    void maximaKeepTheSign();
    void maximaIgnoreNotANumber();
    void resetAllMaximum();
    void emptyBlock();
    void uncertaintyInPercent();
    void tableShowsTheLiveBlock();
};

void tst_CMeterOperationViewModel::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& metaObject = CMeterOperationViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(
        metaObject, {{"MeasurementParametersViewModel", "CMeasurementParametersViewModel*", Constant},
                     {"AlarmParametersViewModel", "CAlarmParametersMeterViewModel*", Constant},
                     {"MeterOperationDatasetViewModel", "CMeterOperationDatasetViewModel*", Constant},
                     {"BLastBlock", "double", ReadOnly},
                     {"BPrimeLastBlock", "double", ReadOnly},
                     {"BxLastBlock", "double", ReadOnly},
                     {"ByLastBlock", "double", ReadOnly},
                     {"BzLastBlock", "double", ReadOnly},
                     {"dBLastBlock", "double", ReadOnly},
                     {"BMax", "double", ReadOnly},
                     {"BPrimeMax", "double", ReadOnly},
                     {"BxMax", "double", ReadOnly},
                     {"ByMax", "double", ReadOnly},
                     {"BzMax", "double", ReadOnly},
                     {"ProbeAxisNames", "QStringList", ReadOnly},
                     {"SelectedProbeAxisIndex", "int", ReadWrite},
                     {"ModeNames", "QStringList", ReadOnly},
                     {"SelectedModeIndex", "int", ReadWrite},
                     {"UpdateLeftCompas", "bool", ReadOnly},
                     {"UpdateRightCompas", "bool", ReadOnly},
                     {"ClearCompas", "bool", ReadOnly},
                     {"CompasHeight", "double", ReadOnly},
                     {"CompasWidth", "double", ReadOnly},
                     {"LastAlarmState", "CAlarm::AlarmState", ReadOnly},
                     {"LastAlarmAxis", "CAxis::AxisType", ReadOnly},
                     {"CommentBlock", "QString", ReadOnly},
                     {"NewMeasureReady", "bool", ReadOnly},
                     {"QuatX", "double", ReadOnly},
                     {"QuatY", "double", ReadOnly},
                     {"QuatZ", "double", ReadOnly},
                     {"QuatScalar", "double", ReadOnly},
                     {"RotEnable", "bool", ReadWrite},
                     {"RotVisible", "bool", ReadOnly},
                     {"RotQuatX", "double", ReadOnly},
                     {"RotQuatY", "double", ReadOnly},
                     {"RotQuatZ", "double", ReadOnly},
                     {"RotQuatScalar", "double", ReadOnly}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(metaObject, QMetaMethod::Method, {"setDefaultParameters()", "resetAllMaximum()"}));
    VERIFY_NO_DIFFERENCE(compareProperties(
        CMeterOperationDatasetViewModel::staticMetaObject,
        {{"TableData", "CMeasureBlockData*", Constant}, {"Chart2DData", "CChart2DMeterData*", Constant}}));
}

void tst_CMeterOperationViewModel::initialValues()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(meter->Name(), QStringLiteral("MeterOperation"));
    for (const double value :
         {meter->BLastBlock(), meter->BPrimeLastBlock(), meter->BxLastBlock(), meter->ByLastBlock(),
          meter->BzLastBlock(), meter->dBLastBlock(), meter->BMax(), meter->BPrimeMax(), meter->BxMax(),
          meter->ByMax(), meter->BzMax(), meter->CompasHeight(), meter->CompasWidth()})
        QCOMPARE(value, 0.0);
    QCOMPARE(meter->ProbeAxisNames(), lines("Bx By Bz"));
    QCOMPARE(meter->SelectedProbeAxisIndex(), 2);
    QCOMPARE(meter->ModeNames(), lines("DC AC"));
    QCOMPARE(meter->SelectedModeIndex(), 0);
    for (const bool value : {meter->UpdateLeftCompas(), meter->UpdateRightCompas(), meter->ClearCompas(),
                             meter->NewMeasureReady(), meter->RotEnable(), meter->RotVisible()})
        QVERIFY(!value);
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(QQuaternion(float(meter->QuatScalar()), float(meter->QuatX()), float(meter->QuatY()),
                         float(meter->QuatZ())),
             QQuaternion());
    QCOMPARE(QQuaternion(float(meter->RotQuatScalar()), float(meter->RotQuatX()), float(meter->RotQuatY()),
                         float(meter->RotQuatZ())),
             QQuaternion());
}

void tst_CMeterOperationViewModel::helpNames()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    const QStringList names{QStringLiteral("meter_component"), QStringLiteral("meter_plot"),
                            QStringLiteral("meter_table"), QString()};
    for (int section = 0; section < names.size(); ++section) {
        meter->SetSectionIndex(section);
        QCOMPARE(meter->GetHelpName(), names.at(section));
    }
    meter->SetSectionIndex(-1);
    QCOMPARE(meter->GetHelpName(), QString());
}

void tst_CMeterOperationViewModel::liveBlockStepByStep()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    // Written down for one block: (0, 3, -4) has the norm 5, so the width along z is -0.8 and the height 0.4.
    Sample sample = field(0, 3, -4);
    sample.bbPrime = 2.5F;
    sample.dB = 0.125F;
    PropertyLog log(meter.get());
    deliver(f, makeBlock({field(1, 1, 1), sample}, QStringLiteral("door")));
    QStringList entries = log.take();
    // The direction is (0, 0.6, -0.8); half of the angle to (0, 0, 1) has the cosine sqrt(0.1).
    const double half = std::acos(-0.8) / 2;
    QCOMPARE(entries.size(), 22);
    QCOMPARE(
        entries.mid(0, 17),
        lines("NewMeasureReady=false CompasWidth=-0.8 CompasHeight=0.4 UpdateLeftCompas=false "
              "UpdateRightCompas=false UpdateLeftCompas=true BLastBlock=5 BPrimeLastBlock=2.5 BxLastBlock=0 "
              "ByLastBlock=3 BzLastBlock=-4 dBLastBlock=0.125 BMax=5 BPrimeMax=2.5 ByMax=3 BzMax=-4 "
              "CommentBlock=door"));
    QCOMPARE(entries.at(17).section(QLatin1Char('='), 0, 0), QStringLiteral("QuatX"));
    QCOMPARE(entries.at(18).section(QLatin1Char('='), 0, 0), QStringLiteral("QuatY"));
    QCOMPARE(entries.at(19).section(QLatin1Char('='), 0, 0), QStringLiteral("QuatZ"));
    QCOMPARE(entries.at(20).section(QLatin1Char('='), 0, 0), QStringLiteral("QuatScalar"));
    QCOMPARE(entries.at(21), QStringLiteral("NewMeasureReady=true"));
    QVERIFY(std::abs(meter->QuatX() + std::sin(half)) < 1e-6);
    QVERIFY(std::abs(meter->QuatY()) < 1e-6);
    QVERIFY(std::abs(meter->QuatZ()) < 1e-6);
    QVERIFY(std::abs(meter->QuatScalar() - std::cos(half)) < 1e-6);
    // The page found the width as a length when it was told to draw.
    QCOMPARE(meter->CompasWidth(), 0.8);
}

void tst_CMeterOperationViewModel::lastValuesEmitUnchanged()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    const Sample sample = field(1, 2, 2);
    deliver(f, makeBlock({sample}));
    PropertyLog log(meter.get());
    deliver(f, makeBlock({sample}));
    for (const QString& name :
         lines("BLastBlock BPrimeLastBlock BxLastBlock ByLastBlock BzLastBlock dBLastBlock "
               "CompasWidth CompasHeight QuatX QuatY QuatZ QuatScalar"))
        QCOMPARE(log.count(name), 1);
    for (const QString& name : lines("NewMeasureReady UpdateRightCompas"))
        QCOMPARE(log.count(name), 2);
    for (const QString& name :
         lines("BMax BPrimeMax BxMax ByMax BzMax CommentBlock RotVisible UpdateLeftCompas"))
        QCOMPARE(log.count(name), name == QLatin1String("UpdateLeftCompas") ? 1 : 0);
}

void tst_CMeterOperationViewModel::maximaKeepTheSign()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    const auto maxima = [&meter] {
        return QVector<double>{meter->BMax(), meter->BPrimeMax(), meter->BxMax(), meter->ByMax(),
                               meter->BzMax()};
    };
    deliver(f, makeBlock({magnitude(-5)}));
    QCOMPARE(maxima(), QVector<double>(5, -5.0));
    PropertyLog log(meter.get());
    deliver(f, makeBlock({magnitude(4)}));
    QCOMPARE(maxima(), QVector<double>(5, -5.0));
    // As large is not larger.
    deliver(f, makeBlock({magnitude(5)}));
    QCOMPARE(maxima(), QVector<double>(5, -5.0));
    QCOMPARE(log.count(QStringLiteral("BMax")), 0);
    deliver(f, makeBlock({magnitude(6)}));
    QCOMPARE(maxima(), QVector<double>(5, 6.0));
    QCOMPARE(log.count(QStringLiteral("BMax")), 1);
    // Only the last sample of a block counts.
    deliver(f, makeBlock({magnitude(100), magnitude(1)}));
    QCOMPARE(maxima(), QVector<double>(5, 6.0));
    QCOMPARE(meter->BLastBlock(), 1.0);
}

void tst_CMeterOperationViewModel::maximaIgnoreNotANumber()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}));
    deliver(f, makeBlock({magnitude(std::numeric_limits<float>::quiet_NaN())}));
    QVERIFY(std::isnan(meter->BLastBlock()));
    QCOMPARE(meter->BMax(), 3.0);
    QCOMPARE(meter->BzMax(), 3.0);
}

void tst_CMeterOperationViewModel::resetAllMaximum()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}));
    PropertyLog log(meter.get());
    meter->resetAllMaximum();
    QCOMPARE(log.take(), lines("BMax=0 BPrimeMax=0 BxMax=0 ByMax=0 BzMax=0"));
    meter->resetAllMaximum();
    QCOMPARE(log.take().size(), 5);
    QCOMPARE(meter->BLastBlock(), 3.0);
}

void tst_CMeterOperationViewModel::emptyBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({field(0, 0, 4)}, QStringLiteral("first")));
    PropertyLog log(meter.get());
    deliver(f, makeBlock({}, QStringLiteral("empty")));
    QCOMPARE(log.take(),
             lines("NewMeasureReady=false CommentBlock=empty QuatX=0 QuatY=0 QuatZ=0 QuatScalar=1 "
                   "NewMeasureReady=true"));
    QCOMPARE(meter->BLastBlock(), 4.0);
    QCOMPARE(meter->CompasWidth(), 1.0);
    QCOMPARE(tableB(*meter), QVector<float>());
}

void tst_CMeterOperationViewModel::uncertaintyInPercent()
{
    MeasureFixture f;
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    const MeterPointer meter = makeMeter(f);
    Sample sample = magnitude(2);
    sample.dB = 0.05F;
    Sample weak = magnitude(0.00005F);
    weak.dB = 1e-9F;
    const auto block = makeBlock({weak, sample});
    deliver(f, block);
    QVERIFY(std::abs(meter->dBLastBlock() - 2.5) < 1e-6);
    QVERIFY(std::isnan(block->Results.first()->dBConverted()));
    QCOMPARE(block->Results.first()->dB(), 1e-9F);
}

void tst_CMeterOperationViewModel::tableShowsTheLiveBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeRamp(1, 3, 0, 10));
    QCOMPARE(tableB(*meter), (QVector<float>{1, 2, 3}));
    deliver(f, makeRamp(10, 2, 30, 10));
    QCOMPARE(tableB(*meter), (QVector<float>{10, 11}));
}

QTEST_MAIN(tst_CMeterOperationViewModel)
#include "tst_CMeterOperationViewModel.moc"
