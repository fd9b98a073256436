// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "MeterFixture.h"
#include "PropertyLog.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>

class tst_CMeterDirection : public QObject
{
    Q_OBJECT

private slots:
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
};

void tst_CMeterDirection::compassAtTheAxes_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<float>("sign");
    for (int axis = 0; axis < 3; ++axis) {
        QTest::addRow("+%d", axis) << axis << 1.0F;
        QTest::addRow("-%d", axis) << axis << -1.0F;
    }
}

void tst_CMeterDirection::compassAtTheAxes()
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

void tst_CMeterDirection::compassWithoutField()
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

void tst_CMeterDirection::compassOfReferenceDirection()
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

void tst_CMeterDirection::compassFollowsTheSelection()
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

void tst_CMeterDirection::compassOverRandomFields()
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

void tst_CMeterDirection::arrowFollowsTheField()
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

void tst_CMeterDirection::arrowInAlternatingMode()
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

void tst_CMeterDirection::rotationNeedsToBeEnabled()
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

void tst_CMeterDirection::rotationByCameraPreset()
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

QTEST_MAIN(tst_CMeterDirection)
#include "tst_CMeterDirection.moc"
