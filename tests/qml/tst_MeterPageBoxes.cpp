// SPDX-License-Identifier: GPL-3.0-or-later
// The boxes of the meter page for alarm, record, replay and parameter files on the real view models, driven
// by mouse and keyboard.
#include "DialogDriver.h"
#include "MeterPageFixture.h"

#include <QFile>
#include <QTest>

class tst_MeterPageBoxes : public QObject, private MeterPageFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void alarmBox();
    void alarmUnitLabel();
    void warning();
    void recordBox();
    void recordBoxKeyboard();
    void recordCommentsAreEmptiedByAReset();
    void replayBoxByState();
    void replayChoices();
    void replayFieldBounds();
    void currentBlockIsPlayed();
    void stepByStep();
    void replayInformation();
    void replayInformationOfALoadedRecord();
    void loadButtonByState();
    void saveAndLoadParameters();
    void boxesMoveIntoTheDrawer();
    void drawerFollowsTheMenu();
    void boxesCollapse();
};

void tst_MeterPageBoxes::alarmBox()
{
    CAlarmParametersMeter& alarm = *m_fixture->operation.OperationParameters()->AlarmParametersMeter();
    alarm.SetAxis(CAxis::Bz);
    alarm.SetMaximum(3);
    load();
    QVERIFY(!item("alarmBox")->property("expanded").toBool());
    QCOMPARE(alarm.Axis(), CAxis::Bz);
    expandBox("alarmBox");
    QCOMPARE(chosen("alarmStateComboBox"), 0);
    QCOMPARE(chosen("alarmAxisComboBox"), 4);
    choose("alarmStateComboBox", 3);
    QCOMPARE(alarm.State(), CAlarm::FlagNotification);
    choose("alarmAxisComboBox", 1);
    QCOMPARE(alarm.Axis(), CAxis::BBprime);
    QCOMPARE(choice("alarmAxisComboBox")->property("currentText").toString(), QStringLiteral("B·B'"));
    enter("alarmMinimumField", QStringLiteral("-12.5"));
    QCOMPARE(alarm.Minimum(), -12.5);
    QVERIFY(!isRed("alarmMinimumField"));
    enter("alarmMaximumField", QStringLiteral("0"));
    QCOMPARE(alarm.Maximum(), 0.0);
    QVERIFY(!isRed("alarmMaximumField"));
    // Limits stop no measurement.
    enter("alarmMaximumField", QStringLiteral("-50"));
    QVERIFY(isEnabled("resumeButton"));
}

void tst_MeterPageBoxes::alarmUnitLabel()
{
    load();
    expandBox("alarmBox");
    QCOMPARE(item("alarmMinimumField")->property("unit").toInt(), int(CUnits::MICRO_TESLA));
    choose("uncertaintyUnitsComboBox", 1);
    choose("alarmAxisComboBox", 5);
    QCOMPARE(item("alarmMaximumField")->property("unit").toInt(), int(CUnits::PERCENT));
    choose("alarmAxisComboBox", 0);
    choose("unitsComboBox", 2);
    QCOMPARE(item("alarmMaximumField")->property("unit").toInt(), int(CUnits::GAUSS));
}

void tst_MeterPageBoxes::warning()
{
    load();
    QVERIFY(!isVisible("outOfBoundsWarning"));
    m_meter->AlarmParametersViewModel()->SetSelectedStateIndex(3);
    m_meter->AlarmParametersViewModel()->SetMaximum(10);
    m_fixture->operation.OnNewMeasure(makeRamp(11, 1, 0, 1));
    QVERIFY(isVisible("outOfBoundsWarning"));
    m_fixture->operation.OnNewMeasure(makeRamp(1, 1, 0, 1));
    QVERIFY(!isVisible("outOfBoundsWarning"));
}

void tst_MeterPageBoxes::recordBox()
{
    load();
    QVERIFY(!isVisible("recordBox"));
    m_meter->record();
    QVERIFY(isVisible("recordBox"));
    QVERIFY(item("recordBox")->property("expanded").toBool());
    QCOMPARE(item("bodyCommentArea")->height(), 50.0);
    QCOMPARE(item("measCommentArea")->height(), 50.0);
    enterText("bodyCommentAreaText", QStringLiteral("All"));
    QCOMPARE(m_fixture->manager().BodyComment(), QStringLiteral("All"));
    QCOMPARE(m_fixture->dataSet().Comment(), QStringLiteral("All"));
    enterText("measCommentAreaText", QStringLiteral("One"));
    QCOMPARE(m_fixture->manager().MeasComment(), QStringLiteral("One"));
    addBlocks(1);
    QCOMPARE(m_fixture->dataSet().MeasureBlocks()->front()->Comment(), QStringLiteral("One"));
    m_meter->stop();
    QVERIFY(!isVisible("recordBox"));
}

void tst_MeterPageBoxes::recordBoxKeyboard()
{
    load();
    m_meter->record();
    enterText("bodyCommentAreaText", QStringLiteral("a"));
    QTest::keyClick(m_view.get(), Qt::Key_Tab);
    QTest::keyClick(m_view.get(), 'b');
    QTest::keyClick(m_view.get(), Qt::Key_Tab);
    QTest::keyClick(m_view.get(), 'c');
    QCOMPARE(m_fixture->manager().BodyComment(), QStringLiteral("ac"));
    QCOMPARE(m_fixture->manager().MeasComment(), QStringLiteral("b"));
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QTest::keyClick(m_view.get(), 'd');
    QCOMPARE(m_fixture->manager().BodyComment(), QStringLiteral("ac\nd"));
}

void tst_MeterPageBoxes::recordCommentsAreEmptiedByAReset()
{
    load();
    m_meter->record();
    enterText("bodyCommentAreaText", QStringLiteral("x"));
    m_fixture->operation.Reset();
    QCOMPARE(textOf("bodyCommentAreaText"), QString());
    m_meter->record();
    enterText("bodyCommentAreaText", QStringLiteral("y"));
    QCOMPARE(m_fixture->manager().BodyComment(), QStringLiteral("y"));
}

void tst_MeterPageBoxes::replayBoxByState()
{
    load();
    QVERIFY(!isVisible("replayBox"));
    addBlocks(3);
    QVERIFY(!isVisible("replayBox"));
    m_fixture->manager().StopRecord();
    QVERIFY(isVisible("replayBox"));
    QVERIFY(item("replayBox")->property("expanded").toBool());
    for (const char* name : {"timeWarpComboBox", "startingBlockField", "endingBlockField",
                             "currentBlockField", "stepByStepCheckBox"})
        QVERIFY2(isEnabled(name), name);
    m_fixture->manager().SetTimeWarp(0.01);
    m_meter->start();
    QVERIFY(isVisible("replayBox"));
    for (const char* name : {"timeWarpComboBox", "startingBlockField", "endingBlockField",
                             "currentBlockField", "stepByStepCheckBox"})
        QVERIFY2(!isEnabled(name), name);
    m_meter->stop();
    QVERIFY(isEnabled("startingBlockField"));
}

void tst_MeterPageBoxes::replayChoices()
{
    load();
    addBlocks(5);
    m_fixture->manager().StopRecord();
    QCOMPARE(choice("timeWarpComboBox")->property("currentText").toString(), QStringLiteral("1x"));
    choose("timeWarpComboBox", 5);
    QCOMPARE(m_fixture->manager().TimeWarp(), 10.0);
    choose("timeWarpComboBox", 0);
    QCOMPARE(m_fixture->manager().TimeWarp(), 0.0001);
    QCOMPARE(textOf("startingBlockFieldText"), QStringLiteral("1"));
    QCOMPARE(textOf("endingBlockFieldText"), QStringLiteral("5"));
    enter("startingBlockField", QStringLiteral("2"));
    enter("endingBlockField", QStringLiteral("4"));
    QCOMPARE(m_fixture->manager().StartReplayIndex(), 1);
    QCOMPARE(m_fixture->manager().EndReplayIndex(), 3);
}

void tst_MeterPageBoxes::replayFieldBounds()
{
    load();
    QCOMPARE(item("endingBlockField")->property("minValue").toDouble(), 1.0);
    QCOMPARE(item("endingBlockField")->property("maxValue").toDouble(), 1.0);
    QCOMPARE(item("endingBlockField")->property("toolTipText").toString(), QStringLiteral("Min = 1 Max = 1"));
    addBlocks(5);
    m_fixture->manager().StopRecord();
    for (const char* field : {"startingBlockField", "endingBlockField", "currentBlockField"}) {
        QCOMPARE(item(field)->property("maxValue").toDouble(), 5.0);
        QCOMPARE(item(field)->property("toolTipText").toString(), QStringLiteral("Min = 1 Max = 5"));
        QVERIFY(!isRed(field));
        enter(field, QStringLiteral("6"));
        QVERIFY2(isRed(field), field);
        enter(field, QStringLiteral("0"));
        QVERIFY2(isRed(field), field);
        enter(field, QStringLiteral("5"));
        QVERIFY2(!isRed(field), field);
    }
}

void tst_MeterPageBoxes::currentBlockIsPlayed()
{
    load();
    addBlocks(5);
    m_fixture->manager().StopRecord();
    m_meter->ReplayParametersViewModel()->SetEndingBlock(5);
    enter("currentBlockField", QStringLiteral("3"));
    QCOMPARE(m_fixture->manager().ReplayIndex(), 2);
    // The last sample of the ramp that starts at 2.
    QCOMPARE(m_meter->BLastBlock(), 3.0);
    QCOMPARE(item("blockLine")->property("value").toString(), QStringLiteral("3"));
    enter("currentBlockField", QStringLiteral("9"));
    QCOMPARE(m_fixture->manager().ReplayIndex(), 2);
    QCOMPARE(m_meter->ReplayParametersViewModel()->CurrentBlock(), 9);
}

void tst_MeterPageBoxes::stepByStep()
{
    load();
    addBlocks(3);
    m_fixture->manager().StopRecord();
    QVERIFY(!isVisible("stepButton"));
    click("stepByStepCheckBoxBox");
    QVERIFY(m_fixture->manager().ReplayStepByStep());
    click("playbackButton");
    // The index is that of the first block at once; a step before that block is due plays it and no other.
    QTRY_COMPARE(m_fixture->manager().NextReplayIndex(), 1);
    QVERIFY(isVisible("stepButton"));
    QTRY_COMPARE(textOf("currentBlockFieldText"), QStringLiteral("1"));
    click("stepButton");
    QTRY_COMPARE(textOf("currentBlockFieldText"), QStringLiteral("2"));
    click("stopButton");
    QVERIFY(!isVisible("stepButton"));
    click("stepByStepCheckBoxBox");
    QVERIFY(!m_fixture->manager().ReplayStepByStep());
}

void tst_MeterPageBoxes::replayInformation()
{
    parameters().SetRange(0.1F);
    load();
    m_meter->record();
    addBlocks(4);
    m_meter->stop();
    QCOMPARE(information("fileLine"), QString());
    QVERIFY(!information("dateLine").isEmpty());
    QCOMPARE(information("instrumentLine"), QStringLiteral("Probe 2040 B SN-17"));
    QCOMPARE(information("unitsLine"), QStringLiteral("µT"));
    QCOMPARE(information("rangeLine"), QStringLiteral("Auto"));
    QCOMPARE(information("triggerLine"), QStringLiteral("Continuous"));
    QCOMPARE(information("blockCountLine"), QStringLiteral("4"));
    QCOMPARE(information("blockSizeLine"), QStringLiteral("20"));
    QCOMPARE(information("averagingLine"), QStringLiteral("5"));
    QCOMPARE(information("acquisitionRateLine"), QStringLiteral("200"));
    QCOMPARE(information("displayRateLine"), QStringLiteral("10"));
    QVERIFY(!isVisible("frequencyMinLine"));
    QVERIFY(!isVisible("frequencyMaxLine"));
    parameters().SetAutoRange(false);
    QCOMPARE(information("rangeLine"), QStringLiteral("0.1"));
}

void tst_MeterPageBoxes::replayInformationOfALoadedRecord()
{
    const QString path = m_fixture->writeRecord();
    load();
    DialogDriver dialogs;
    dialogs.pickNext(path);
    click("loadButton");
    QVERIFY(dialogs.isDone());
    QCOMPARE(information("fileLine"), QStringLiteral("record.xml"));
    QCOMPARE(information("unitsLine"), QStringLiteral("G"));
    QCOMPARE(information("blockCountLine"), QStringLiteral("3"));
    QCOMPARE(information("blockSizeLine"), QStringLiteral("2"));
    QCOMPARE(textOf("endingBlockFieldText"), QStringLiteral("3"));
    QCOMPARE(textOf("currentBlockFieldText"), QStringLiteral("3"));
    // The live parameters are their own.
    QCOMPARE(parameters().Units(), CUnits::MICRO_TESLA);
}

void tst_MeterPageBoxes::loadButtonByState()
{
    load();
    expandBox("saveImportParametersBox");
    QVERIFY(isEnabled("loadParametersButton"));
    QVERIFY(isEnabled("saveParametersButton"));
    m_meter->resume();
    QVERIFY(!isEnabled("loadParametersButton"));
    QVERIFY(isEnabled("saveParametersButton"));
    m_meter->hold();
    QVERIFY(isEnabled("loadParametersButton"));
    addBlocks(2);
    m_fixture->manager().StopRecord();
    QVERIFY(!isEnabled("loadParametersButton"));
    m_fixture->manager().SetTimeWarp(0.01);
    m_meter->start();
    QVERIFY(!isEnabled("loadParametersButton"));
    QVERIFY(isEnabled("saveParametersButton"));
    m_meter->stop();
}

void tst_MeterPageBoxes::saveAndLoadParameters()
{
    load();
    expandBox("saveImportParametersBox");
    enter("averagingField", QStringLiteral("33"));
    choose("rangeComboBox", 2);
    const QString path = m_fixture->directory.filePath(QStringLiteral("mine.xml"));
    DialogDriver dialogs;
    dialogs.pickNext(path);
    click("saveParametersButton");
    QVERIFY(dialogs.isDone());
    QVERIFY(QFile::exists(path));
    enter("averagingField", QStringLiteral("44"));
    choose("rangeComboBox", 0);
    dialogs.pickNext(path);
    click("loadParametersButton");
    QVERIFY(dialogs.isDone());
    QCOMPARE(parameters().Averaging(), 33);
    QCOMPARE(textOf("averagingFieldText"), QStringLiteral("33"));
    QCOMPARE(chosen("rangeComboBox"), 2);
    QCOMPARE(parameters().Range(), 3.0F);
}

void tst_MeterPageBoxes::boxesMoveIntoTheDrawer()
{
    load();
    expandBox("alarmBox");
    QVERIFY(isVisible("parametersPanel"));
    const QQuickItem* box = item("measurementBox");
    m_mainViewModel->insert(QStringLiteral("SmallWindowSize"), true);
    QTRY_VERIFY(isVisible("smallParametersPanel"));
    QVERIFY(!isVisible("parametersPanel"));
    QVERIFY(!box->isVisible());
    m_mainViewModel->insert(QStringLiteral("ParameterMenuExpanded"), true);
    QVERIFY(box->isVisible());
    QVERIFY(item("alarmBox")->property("expanded").toBool());
    // An invalid number stops the start from there too.
    enter("averagingField", QStringLiteral("0"));
    QVERIFY(!isEnabled("resumeButton"));
    m_mainViewModel->insert(QStringLiteral("SmallWindowSize"), false);
    QTRY_VERIFY(isVisible("parametersPanel"));
    QVERIFY(box->isVisible());
    QVERIFY(isRed("averagingField"));
}

void tst_MeterPageBoxes::drawerFollowsTheMenu()
{
    load();
    m_mainViewModel->insert(QStringLiteral("SmallWindowSize"), true);
    QTRY_VERIFY(isVisible("smallParametersPanel"));
    QTRY_COMPARE(item("smallParametersPanel")->width(), 60.0);
    QTRY_COMPARE(item("smallParametersPanel")->mapToScene({}).x(), 1140.0);
    QCOMPARE(item("smallParametersPanel")->height(), 950.0);
    click("parametersMenuToggle");
    QVERIFY(m_mainViewModel->value(QStringLiteral("ParameterMenuExpanded")).toBool());
    QTRY_COMPARE(item("smallParametersPanel")->width(), 210.0);
    QTRY_COMPARE(item("smallParametersPanel")->mapToScene({}).x(), 990.0);
    // Who goes on elsewhere closes it.
    item("averagingFieldText")->forceActiveFocus();
    item("resumeButton")->forceActiveFocus();
    QVERIFY(!m_mainViewModel->value(QStringLiteral("ParameterMenuExpanded")).toBool());
}

void tst_MeterPageBoxes::boxesCollapse()
{
    load();
    QVERIFY(!item("alarmBox")->property("expanded").toBool());
    QVERIFY(!item("saveImportParametersBox")->property("expanded").toBool());
    QVERIFY(item("measurementBox")->property("expanded").toBool());
    enter("averagingField", QStringLiteral("0"));
    click("measurementBoxTitle");
    QVERIFY(!isVisible("averagingField"));
    // Out of sight, not out of force.
    QVERIFY(!isEnabled("resumeButton"));
}

QTEST_MAIN(tst_MeterPageBoxes)

#include "tst_MeterPageBoxes.moc"
