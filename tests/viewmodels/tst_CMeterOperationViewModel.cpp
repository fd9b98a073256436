// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "DialogDriver.h"
#include "MeasureFixture.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QQuaternion>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

using MeterPointer = std::unique_ptr<CMeterOperationViewModel>;

MeterPointer makeMeter(MeasureFixture& f)
{
    return std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
}

/// A block as the instrument delivers it: dataset first, then the page.
void deliver(MeasureFixture& f, const QSharedPointer<CMeasureBlock>& block)
{
    f.operation.OnNewMeasure(block);
}

Sample field(float bx, float by, float bz)
{
    Sample sample;
    sample.bx = bx;
    sample.by = by;
    sample.bz = bz;
    sample.b = std::sqrt(bx * bx + by * by + bz * bz);
    return sample;
}

Sample magnitude(float b)
{
    Sample sample;
    sample.b = b;
    sample.bx = b;
    sample.by = b;
    sample.bz = b;
    sample.bbPrime = b;
    return sample;
}

QVector<float> tableB(CMeterOperationViewModel& meter)
{
    CMeasureBlockData& table = *meter.MeterOperationDatasetViewModel()->TableData();
    QVector<float> values;
    for (int row = 0; row < table.rowCount(); ++row)
        values.append(table.data(table.index(row, 0), CMeasureBlockData::BRole).toFloat());
    return values;
}

QStringList lines(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

const QStringList kResetLog =
    lines("BLastBlock=0 BPrimeLastBlock=0 BxLastBlock=0 ByLastBlock=0 BzLastBlock=0 dBLastBlock=0 BMax=0 "
          "BPrimeMax=0 BxMax=0 ByMax=0 BzMax=0");

} // namespace

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

    void compassAtTheAxes_data();
    void compassAtTheAxes();
    void compassWithoutField();
    void compassOfReferenceDirection();
    void compassFollowsTheSelection();
    void compassOverRandomFields();

    void arrowFollowsTheField();
    void arrowInAlternatingMode();
    void rotationNeedsToBeEnabled();
    void rotationByCameraPreset();

    void unitChangeClears();
    void uncertaintyUnitChangeRedoesTheLastBlock();
    void uncertaintyUnitChangeWithoutData();
    void dataSetCleared();
    void playingBackStarted();

    void opensOnNothing();
    void opensOnExistingData_data();
    void opensOnExistingData();
    void opensOnLoadedRecord();
    void loadPresentsTheLastBlock();
    void loadOfAnEmptyRecord();
    void sameTableForStoredBlocks();
    void leftPageHearsNothing();
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
    VERIFY_NO_DIFFERENCE(compareProperties(CMeterOperationDatasetViewModel::staticMetaObject,
                                           {{"TableData", "CMeasureBlockData*", Constant}}));
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

void tst_CMeterOperationViewModel::compassAtTheAxes_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<float>("sign");
    for (int axis = 0; axis < 3; ++axis) {
        QTest::addRow("+%d", axis) << axis << 1.0F;
        QTest::addRow("-%d", axis) << axis << -1.0F;
    }
}

void tst_CMeterOperationViewModel::compassAtTheAxes()
{
    QFETCH(int, axis);
    QFETCH(float, sign);
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->SetSelectedProbeAxisIndex(axis);
    double drawnWidth = 0;
    const auto draw = [&](bool update) {
        if (update)
            drawnWidth = meter->CompasWidth();
    };
    connect(meter.get(), &CMeterOperationViewModel::UpdateLeftCompasChanged, this, draw);
    connect(meter.get(), &CMeterOperationViewModel::UpdateRightCompasChanged, this, draw);
    const float value = 48 * sign;
    const auto block =
        makeBlock({field(axis == 0 ? value : 0, axis == 1 ? value : 0, axis == 2 ? value : 0)});
    PropertyLog log(meter.get());
    deliver(f, block);
    QCOMPARE(meter->CompasWidth(), 1.0);
    QCOMPARE(meter->CompasHeight(), 1.0);
    QCOMPARE(drawnWidth, 1.0);
    QCOMPARE(meter->UpdateRightCompas(), sign > 0);
    QCOMPARE(meter->UpdateLeftCompas(), sign < 0);
    QCOMPARE(log.entries().mid(1, 5),
             sign > 0 ? lines("CompasWidth=1 CompasHeight=1 UpdateLeftCompas=false UpdateRightCompas=false "
                              "UpdateRightCompas=true")
                      : lines("CompasWidth=-1 CompasHeight=1 UpdateLeftCompas=false UpdateRightCompas=false "
                              "UpdateLeftCompas=true"));
}

void tst_CMeterOperationViewModel::compassWithoutField()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({field(0, 0, -3)}));
    PropertyLog log(meter.get());
    deliver(f, makeBlock({field(0, 0, 0)}));
    QCOMPARE(log.entries().mid(0, 4),
             lines("NewMeasureReady=false ClearCompas=true ClearCompas=false BLastBlock=0"));
    QVERIFY(!log.entries().contains(QStringLiteral("UpdateLeftCompas=false")));
    QCOMPARE(meter->CompasWidth(), 1.0);
    QVERIFY(meter->UpdateLeftCompas());
    QCOMPARE(meter->BzMax(), -3.0);
    // The magnitude that counts is B, whatever the components say.
    Sample sample = field(1, 2, 3);
    sample.b = 0;
    log.take();
    deliver(f, makeBlock({sample}));
    QCOMPARE(log.count(QStringLiteral("ClearCompas")), 2);
}

void tst_CMeterOperationViewModel::compassOfReferenceDirection()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->SetSelectedModeIndex(1);
    const auto block = makeBlock({field(9, 9, 9)});
    block->Bprime.SetX(2);
    block->Bprime.SetY(-3);
    block->Bprime.SetZ(6);
    deliver(f, block);
    QVERIFY(std::abs(meter->CompasWidth() - 6.0 / 7) < 1e-12);
    QVERIFY(std::abs(meter->CompasHeight() - (1 - std::sqrt(13.0) / 7)) < 1e-12);
    QVERIFY(meter->UpdateRightCompas());
    PropertyLog log(meter.get());
    deliver(f, makeBlock({field(9, 9, 9)}));
    QCOMPARE(log.count(QStringLiteral("ClearCompas")), 2);
    QCOMPARE(log.count(QStringLiteral("CompasWidth")), 0);
}

void tst_CMeterOperationViewModel::compassFollowsTheSelection()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    PropertyLog log(meter.get());
    // Without data there is nothing to draw.
    meter->SetSelectedProbeAxisIndex(1);
    meter->SetSelectedModeIndex(1);
    QCOMPARE(log.take(), lines("SelectedProbeAxisIndex=1 SelectedModeIndex=1"));

    const auto block = makeBlock({field(3, 0, -4)});
    block->Bprime.SetY(-2);
    deliver(f, block);
    log.take();
    // The view model hears of the selection before the log does.
    meter->SetSelectedModeIndex(0);
    QCOMPARE(log.take(), lines("CompasWidth=0 CompasHeight=0 UpdateLeftCompas=false UpdateRightCompas=false "
                               "UpdateRightCompas=true SelectedModeIndex=0"));
    meter->SetSelectedProbeAxisIndex(2);
    QCOMPARE(log.take(),
             lines("CompasWidth=-0.8 CompasHeight=0.4 UpdateLeftCompas=false UpdateRightCompas=false "
                   "UpdateLeftCompas=true SelectedProbeAxisIndex=2"));
    meter->SetSelectedProbeAxisIndex(2);
    QCOMPARE(log.take(), QStringList());
    // A combo box without a selection draws nothing anew.
    meter->SetSelectedProbeAxisIndex(-1);
    QCOMPARE(log.take(), lines("SelectedProbeAxisIndex=-1"));
}

void tst_CMeterOperationViewModel::compassOverRandomFields()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    QRandomGenerator random(3);
    for (int i = 0; i < 500; ++i) {
        Sample sample;
        sample.bx = float(random.bounded(200.0) - 100);
        sample.by = float(random.bounded(200.0) - 100);
        sample.bz = float(random.bounded(200.0) - 100);
        sample.b = float(random.bounded(150.0) + 1);
        const int axis = random.bounded(3);
        meter->SetSelectedProbeAxisIndex(axis);
        deliver(f, makeBlock({sample}));
        const double components[3] = {sample.bx, sample.by, sample.bz};
        double across = 0;
        for (int other = 0; other < 3; ++other)
            across = other == axis ? across : std::hypot(across, components[other]);
        QVERIFY(std::abs(meter->CompasWidth() - std::abs(components[axis]) / double(sample.b)) < 1e-9);
        QVERIFY(std::abs(meter->CompasHeight() - (1 - across / double(sample.b))) < 1e-9);
        QCOMPARE(meter->UpdateLeftCompas(), components[axis] < 0);
        QCOMPARE(meter->UpdateRightCompas(), !(components[axis] < 0));
    }
}

void tst_CMeterOperationViewModel::arrowFollowsTheField()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    QRandomGenerator random(4);
    for (int i = 0; i < 500; ++i) {
        const Sample sample = field(float(random.bounded(200.0) - 100), float(random.bounded(200.0) - 100),
                                    float(random.bounded(200.0) - 100));
        deliver(f, makeBlock({field(1, 2, 3), sample}));
        // (0, 0, 1) turned by the quaternion is the third column of its rotation matrix.
        const double x = meter->QuatX();
        const double y = meter->QuatY();
        const double z = meter->QuatZ();
        const double w = meter->QuatScalar();
        const double length =
            std::sqrt(double(sample.bx) * double(sample.bx) + double(sample.by) * double(sample.by) +
                      double(sample.bz) * double(sample.bz));
        QVERIFY(std::abs(2 * (x * z + w * y) - double(sample.bx) / length) < 1e-5);
        QVERIFY(std::abs(2 * (y * z - w * x) - double(sample.by) / length) < 1e-5);
        QVERIFY(std::abs(1 - 2 * (x * x + y * y) - double(sample.bz) / length) < 1e-5);
    }
}

void tst_CMeterOperationViewModel::arrowInAlternatingMode()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->SetSelectedModeIndex(1);
    const auto block = makeBlock({field(0, 0, 5)});
    block->Bprime.SetX(8);
    deliver(f, block);
    // A quarter turn about y takes z to x.
    QVERIFY(std::abs(meter->QuatY() - std::sqrt(0.5)) < 1e-6);
    QVERIFY(std::abs(meter->QuatScalar() - std::sqrt(0.5)) < 1e-6);
    // It is the direction of the dataset's last block that counts.
    const auto shown = makeBlock({field(0, 0, 5)});
    shown->Bprime.SetY(1);
    meter->OnNewMeasure(shown);
    QVERIFY(std::abs(meter->QuatY() - std::sqrt(0.5)) < 1e-6);
    QVERIFY(std::abs(meter->QuatX()) < 1e-6);
}

void tst_CMeterOperationViewModel::rotationNeedsToBeEnabled()
{
    MeasureFixture f;
    f.settings.SetMeter3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPresetFront);
    const MeterPointer meter = makeMeter(f);
    const auto turning = [] { return makeBlock({field(1, 0, 2), field(1, 1, 2), field(0, 1, 2)}); };
    PropertyLog log(meter.get());
    deliver(f, turning());
    QVERIFY(!meter->RotVisible());
    QCOMPARE(log.count(QStringLiteral("RotQuatX")), 0);

    meter->SetRotEnable(true);
    QVERIFY(!meter->RotVisible());
    log.take();
    deliver(f, turning());
    QVERIFY(meter->RotVisible());
    const QStringList entries = log.take();
    const int visible = entries.indexOf(QStringLiteral("RotVisible=true"));
    QVERIFY(visible > entries.indexOf(QRegularExpression(QStringLiteral("^QuatScalar=.*"))));
    QCOMPARE(entries.mid(visible + 1).size(), 5);
    QVERIFY(entries.last() == QLatin1String("NewMeasureReady=true"));
    // Positive about z: -90 degrees about y.
    QVERIFY(std::abs(meter->RotQuatY() + std::sqrt(0.5)) < 1e-6);
    QVERIFY(std::abs(meter->RotQuatScalar() - std::sqrt(0.5)) < 1e-6);
    QCOMPARE(meter->RotQuatX(), 0.0);
    QCOMPARE(meter->RotQuatZ(), 0.0);

    // Again: the orientation is told anew, the visibility is not.
    deliver(f, turning());
    QCOMPARE(log.count(QStringLiteral("RotVisible")), 0);
    QCOMPARE(log.count(QStringLiteral("RotQuatScalar")), 1);
    // Back and forth, and single samples, hide it.
    deliver(f, makeBlock({field(1, 0, 2), field(1, 1, 2), field(1, 0, 2)}));
    QVERIFY(!meter->RotVisible());
    deliver(f, turning());
    QVERIFY(meter->RotVisible());
    deliver(f, makeBlock({field(1, 0, 2)}));
    QVERIFY(!meter->RotVisible());
    deliver(f, turning());
    meter->SetRotEnable(false);
    QVERIFY(meter->RotVisible());
    deliver(f, turning());
    QVERIFY(!meter->RotVisible());
}

void tst_CMeterOperationViewModel::rotationByCameraPreset()
{
    using Preset = QtDataVisualization::Q3DCamera::CameraPreset;
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    meter->SetRotEnable(true);
    // Turns about y only.
    const auto turning = makeBlock({field(0, 5, 1), field(1, 5, 1), field(1, 5, 0)});
    for (int preset = 0; preset < 19; ++preset) {
        f.settings.SetMeter3DCameraPreset(static_cast<Preset>(preset));
        deliver(f, turning);
        QCOMPARE(meter->RotVisible(), preset >= 16);
    }
    // Positive about y: pitch 180 and roll -90 degrees turn x to y.
    QVERIFY(std::abs(std::abs(meter->RotQuatX()) - std::sqrt(0.5)) < 1e-6);
    QVERIFY(std::abs(std::abs(meter->RotQuatY()) - std::sqrt(0.5)) < 1e-6);
    // A preset without a view axis shows no rotation.
    f.settings.SetMeter3DCameraPreset(static_cast<Preset>(-1));
    deliver(f, turning);
    QVERIFY(!meter->RotVisible());
}

void tst_CMeterOperationViewModel::unitChangeClears()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("comment")));
    meter->SetSelectedProbeAxisIndex(0);
    f.parameters().SetUnits(CUnits::GAUSS);
    QVERIFY(f.manager().IsDataSetEmpty());
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 0.0);
    QCOMPARE(meter->BMax(), 0.0);
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(meter->SelectedProbeAxisIndex(), 2);
    QCOMPARE(tableB(*meter), QVector<float>());
}

void tst_CMeterOperationViewModel::uncertaintyUnitChangeRedoesTheLastBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    Sample sample = magnitude(2);
    sample.dB = 0.125F;
    const auto first = makeBlock({sample});
    const auto last = makeBlock({sample, sample});
    deliver(f, first);
    deliver(f, last);
    meter->resetAllMaximum();
    CMeasureBlockData& table = *meter->MeterOperationDatasetViewModel()->TableData();
    QSignalSpy removed(&table, &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserted(&table, &QAbstractItemModel::rowsInserted);
    PropertyLog log(meter.get());
    f.parameters().SetUncertaintyUnits(CUnits::NANO_TESLA);
    QCOMPARE(meter->DisplayUncertaintyUnits(), CUnits::NANO_TESLA);
    for (const auto& result : last->Results)
        QCOMPARE(result->dBConverted(), 125.0F);
    QCOMPARE(first->Results.first()->dBConverted(), 0.125F);
    QCOMPARE(meter->dBLastBlock(), 125.0);
    QCOMPARE(meter->BMax(), 2.0);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(table.data(table.index(1, 0), CMeasureBlockData::dBRole).toFloat(), 125.0F);
    // The unit on the page comes first: the conversion needs it.
    QCOMPARE(log.entries().first(), QStringLiteral("DisplayUncertaintyUnits=NANO_TESLA"));
    QCOMPARE(log.count(QStringLiteral("NewMeasureReady")), 0);
}

void tst_CMeterOperationViewModel::uncertaintyUnitChangeWithoutData()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    PropertyLog log(meter.get());
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(log.take(), lines("DisplayUncertaintyUnits=PERCENT"));
}

void tst_CMeterOperationViewModel::dataSetCleared()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("comment")));
    meter->SetCommentOverAll(QStringLiteral("all"));
    meter->SetSelectedModeIndex(1);
    meter->SetSelectedProbeAxisIndex(0);
    meter->SetRotEnable(true);
    CMeasurementParameters other;
    f.dataSet().SetMeasurementParameters(&other);
    QSignalSpy pointed(&f.dataSet(), &CDataset::MeasurementParametersChanged);
    PropertyLog log(meter.get());
    f.dataSet().Clear();
    QStringList entries = log.take();
    // The units follow the live parameters, to which the dataset points again.
    entries = entries.filter(QRegularExpression(QStringLiteral("^(?!Display)")));
    QCOMPARE(entries, kResetLog + lines("CommentBlock= CommentOverAll= ClearCompas=true ClearCompas=false"));
    QCOMPARE(f.dataSet().MeasurementParameters(), &f.parameters());
    QCOMPARE(pointed.count(), 2);
    // Reset without a signal.
    QCOMPARE(meter->SelectedModeIndex(), 0);
    QCOMPARE(meter->SelectedProbeAxisIndex(), 2);
    // What is no data stays.
    QVERIFY(meter->RotEnable());
    QCOMPARE(tableB(*meter), QVector<float>());
}

void tst_CMeterOperationViewModel::playingBackStarted()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("comment")));
    f.dataSet().SetComment(QStringLiteral("whole"));
    f.manager().SetIsPlayingBack(true);
    QCOMPARE(tableB(*meter), QVector<float>());
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("whole"));
    QCOMPARE(meter->BLastBlock(), 3.0);
    meter->SetCommentOverAll(QStringLiteral("other"));
    f.manager().SetIsPlayingBack(false);
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("other"));
}

void tst_CMeterOperationViewModel::opensOnNothing()
{
    MeasureFixture f;
    f.manager().SetIsProcessingBlock(true);
    f.dataSet().SetComment(QStringLiteral("whole"));
    QSignalSpy processed(&f.manager(), &CRecordingManager::IsProcessingBlockChanged);
    const MeterPointer meter = makeMeter(f);
    QVERIFY(!f.manager().IsProcessingBlock());
    QCOMPARE(processed.count(), 1);
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("whole"));
    QVERIFY(!meter->NewMeasureReady());
    processed.clear();
    makeMeter(f);
    QCOMPARE(processed.count(), 0);
}

void tst_CMeterOperationViewModel::opensOnExistingData_data()
{
    QTest::addColumn<bool>("playingBack");
    QTest::addColumn<bool>("dataLoaded");
    QTest::addColumn<bool>("idleWithData");
    QTest::addColumn<bool>("recording");
    QTest::addColumn<int>("replayIndex");
    QTest::addColumn<double>("shown");
    QTest::addRow("live") << false << false << false << false << 0 << 30.0;
    QTest::addRow("recording") << false << false << false << true << 0 << 30.0;
    QTest::addRow("recording over idle data") << false << false << true << true << 0 << 30.0;
    QTest::addRow("replay at the first block") << true << false << false << false << 0 << 10.0;
    QTest::addRow("replay in the middle") << true << false << false << false << 1 << 20.0;
    QTest::addRow("replay beyond the end") << true << false << false << false << 7 << 30.0;
    QTest::addRow("replay before the start") << true << false << false << false << -1 << 30.0;
    QTest::addRow("stored data at rest") << false << false << true << false << 1 << 20.0;
    QTest::addRow("loaded record") << false << true << false << false << 1 << 20.0;
    QTest::addRow("record over a loaded one") << false << true << false << true << 1 << 20.0;
}

void tst_CMeterOperationViewModel::opensOnExistingData()
{
    QFETCH(bool, playingBack);
    QFETCH(bool, dataLoaded);
    QFETCH(bool, idleWithData);
    QFETCH(bool, recording);
    QFETCH(int, replayIndex);
    QFETCH(double, shown);
    MeasureFixture f;
    for (const float b : {10.0F, 20.0F, 30.0F})
        f.operation.OnNewMeasure(makeBlock({field(0, 0, b)}, QString::number(double(b))));
    f.manager().SetIsPlayingBack(playingBack);
    f.manager().SetIsDataLoaded(dataLoaded);
    f.manager().SetIsIdleWithData(idleWithData);
    f.manager().SetIsRecording(recording);
    f.manager().SetReplayIndex(replayIndex);
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(meter->BLastBlock(), shown);
    QCOMPARE(meter->BMax(), shown);
    QCOMPARE(meter->CommentBlock(), QString::number(shown));
    QCOMPARE(meter->CompasWidth(), 1.0);
    QVERIFY(meter->UpdateRightCompas());
    QVERIFY(meter->NewMeasureReady());
    QCOMPARE(meter->QuatScalar(), 1.0);
}

void tst_CMeterOperationViewModel::opensOnLoadedRecord()
{
    MeasureFixture f;
    QVERIFY(f.manager().Load(f.writeRecord()));
    f.manager().SetReplayIndex(1);
    const CMeasurementParameters* loaded = f.dataSet().MeasurementParameters();
    const MeterPointer meter = makeMeter(f);
    QCOMPARE(f.dataSet().MeasurementParameters(), loaded);
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 11.0);
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("from file"));
}

void tst_CMeterOperationViewModel::loadPresentsTheLastBlock()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}, QStringLiteral("live")));
    DialogDriver dialogs;
    dialogs.pickNext(f.writeRecord());
    meter->load();
    QVERIFY(dialogs.isDone());
    QCOMPARE(meter->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(meter->BLastBlock(), 21.0);
    QCOMPARE(meter->BMax(), 21.0);
    QCOMPARE(meter->CommentBlock(), QString());
    QCOMPARE(meter->CommentOverAll(), QStringLiteral("from file"));
    QCOMPARE(tableB(*meter), (QVector<float>{20, 21}));
    QVERIFY(meter->NewMeasureReady());
    QCOMPARE(f.manager().ReplayIndex(), 2);
    QCOMPARE(meter->ReplayParametersViewModel()->CurrentBlock(), 3);
    QCOMPARE(meter->ReplayParametersViewModel()->EndingBlock(), 3);
    QVERIFY(f.dataSet().MeasurementParameters() != &f.parameters());
}

void tst_CMeterOperationViewModel::loadOfAnEmptyRecord()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    f.manager().SetIsDataLoaded(true);
    PropertyLog log(meter.get());
    emit meter->DatasetLoaded();
    QCOMPARE(log.count(QStringLiteral("NewMeasureReady")), 0);
    QCOMPARE(meter->ReplayParametersViewModel()->EndingBlock(), 0);
    QCOMPARE(f.manager().ReplayIndex(), 0);
}

void tst_CMeterOperationViewModel::sameTableForStoredBlocks()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeRamp(1, 2, 0, 10));
    deliver(f, makeRamp(3, 2, 20, 10));
    deliver(f, makeRamp(5, 2, 40, 10));
    f.manager().StopRecord();
    for (const int block : {1, 3, 2}) {
        f.manager().playCurrentBlock(block);
        QCOMPARE(tableB(*meter), (QVector<float>{float(2 * block - 1), float(2 * block)}));
        QCOMPARE(meter->BLastBlock(), double(2 * block));
    }
}

void tst_CMeterOperationViewModel::leftPageHearsNothing()
{
    MeasureFixture f;
    const MeterPointer meter = makeMeter(f);
    deliver(f, makeBlock({magnitude(3)}));
    meter->PageLeft();
    PropertyLog log(meter.get());
    deliver(f, makeBlock({magnitude(30)}));
    f.parameters().SetUnits(CUnits::GAUSS);
    f.parameters().SetUncertaintyUnits(CUnits::PERCENT);
    f.manager().SetIsPlayingBack(true);
    f.manager().SetIsHolding(true);
    f.manager().SetIsHolding(false);
    f.dataSet().SetMeasurementParameters(&f.parameters());
    f.dataSet().Clear();
    emit meter->DatasetLoaded();
    QCOMPARE(log.take(), QStringList());
    meter->SetSelectedProbeAxisIndex(0);
    meter->SetSelectedModeIndex(1);
    QCOMPARE(log.take(), lines("SelectedProbeAxisIndex=0 SelectedModeIndex=1"));
    QVERIFY(f.manager().IsDataSetEmpty());
}

QTEST_MAIN(tst_CMeterOperationViewModel)
#include "tst_CMeterOperationViewModel.moc"
