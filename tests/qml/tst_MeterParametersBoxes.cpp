// SPDX-License-Identifier: GPL-3.0-or-later
// The box of the measurement parameters of the meter page on the real view models, driven by mouse and
// keyboard.
#include "ActiveWindow.h"
#include "DialogDriver.h"
#include "MeterPageFixture.h"

#include <QFile>
#include <QMessageBox>
#include <QTest>

Q_DECLARE_METATYPE(CTrigger::TriggerMode)

class tst_MeterParametersBoxes : public QObject, private MeterPageFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void choicesOfTheInstrument();
    void withoutInstrument();
    void fieldsByTriggerMode_data();
    void fieldsByTriggerMode();
    void editsReachTheParameters();
    void fieldsFollowTheCascade();
    void invalidValueIsRedAndStopsTheStart_data();
    void invalidValueIsRedAndStopsTheStart();
    void averagingIsWrittenInRangeOnly();
    void displayRateIsCappedByTheAcquisitionRate();
    void invisibleDisplayRateStopsNothing();
    void boundsChange();
    void unknownUnitStopsTheStart();
    void toolTips();
    void unitQuestionCancelled();
    void unitQuestionAccepted();
    void listUpdateKeepsTheChoices();
    void percentSurvivesAUnitChange();
    void uncertaintyAfterALoad();
    void rangeEntries();
    void defaultButton();
    void measurementBoxByState();
};

void tst_MeterParametersBoxes::choicesOfTheInstrument()
{
    load();
    QCOMPARE(choice("unitsComboBox")->property("model").toStringList(), measurement().UnitsList());
    QCOMPARE(choice("unitsComboBox")->property("currentText").toString(), QStringLiteral("µT"));
    QCOMPARE(choice("uncertaintyUnitsComboBox")->property("currentText").toString(), QStringLiteral("µT"));
    QCOMPARE(choice("rangeComboBox")->property("currentText").toString(), QStringLiteral("Auto"));
    QCOMPARE(choice("triggerComboBox")->property("currentText").toString(), QStringLiteral("Continuous"));
    QVERIFY(!isVisible("busTriggerComboBox"));
    choose("uncertaintyUnitsComboBox", 1);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    choose("triggerComboBox", 2);
    QCOMPARE(parameters().TriggerMode(), CTrigger::TIMER);
    // And the other way.
    parameters().SetTriggerMode(CTrigger::EXTERNAL);
    QCOMPARE(chosen("triggerComboBox"), 3);
    QVERIFY(isVisible("busTriggerComboBox"));
    QVERIFY(isEnabled("resumeButton"));
    QVERIFY(isEnabled("recordButton"));
}

void tst_MeterParametersBoxes::withoutInstrument()
{
    m_fixture->supervisor.ClearActiveInstrument();
    load();
    QCOMPARE(choice("unitsComboBox")->property("count").toInt(), 1);
    QCOMPARE(choice("unitsComboBox")->property("currentText").toString(), QStringLiteral("--"));
    QVERIFY(item("measurementBox")->property("valid").toBool());
    QCOMPARE(choice("rangeComboBox")->property("count").toInt(), 1);
    QCOMPARE(item("acquisitionRateField")->property("minValue").toDouble(), 5e-324);
    QCOMPARE(item("acquisitionRateField")->property("maxValue").toDouble(), 1.7976931348623157e308);
    QCOMPARE(item("acquisitionRateField")->property("toolTipText").toString(), QString());
    // There is no upper bound that the acquisition rate could lower.
    QCOMPARE(item("displayRateField")->property("maxValue").toDouble(), 1.7976931348623157e308);
    QVERIFY(!isVisible("resumeButton"));
    click("defaultButton");
    QCOMPARE(parameters().AcquisitionRate(), 200.0);
}

void tst_MeterParametersBoxes::fieldsByTriggerMode_data()
{
    QTest::addColumn<CTrigger::TriggerMode>("mode");
    QTest::addColumn<QString>("enabled");
    QTest::addColumn<bool>("isDisplayRateShown");
    QTest::addColumn<bool>("isImmediate");
    QTest::newRow("continuous") << CTrigger::CONTINUOUS << "ad" << true << false;
    QTest::newRow("immediate") << CTrigger::IMMEDIATE << "" << false << true;
    QTest::newRow("timer") << CTrigger::TIMER << "a" << false << false;
    QTest::newRow("external") << CTrigger::EXTERNAL << "" << false << false;
}

void tst_MeterParametersBoxes::fieldsByTriggerMode()
{
    QFETCH(CTrigger::TriggerMode, mode);
    QFETCH(QString, enabled);
    QFETCH(bool, isDisplayRateShown);
    QFETCH(bool, isImmediate);
    load();
    choose("triggerComboBox", mode - 1);
    QCOMPARE(parameters().TriggerMode(), mode);
    QCOMPARE(isEnabled("acquisitionRateField"), enabled.contains(QLatin1Char('a')));
    QCOMPARE(isEnabled("displayRateField"), enabled.contains(QLatin1Char('d')));
    QCOMPARE(textOf("displayRateFieldText").isEmpty(), !isDisplayRateShown);
    QCOMPARE(isVisible("acquisitionRateField"), !isImmediate);
    QCOMPARE(isVisible("immediateAcquisitionRateField"), isImmediate);
    QVERIFY(!isEnabled("immediateAcquisitionRateField"));
    QCOMPARE(item("immediateAcquisitionRateField")->property("value").toDouble(),
             parameters().AcquisitionRate());
    QVERIFY(isVisible("displayRateField"));
    QVERIFY(isVisible("blockSizeField"));
    QVERIFY(isVisible("averagingField"));
    for (const char* hidden : {"frequencyMinField", "frequencyMaxField", "numberOfBinsField"})
        QVERIFY2(!isVisible(hidden), hidden);
    QCOMPARE(isVisible("busTriggerComboBox"), mode == CTrigger::EXTERNAL);
}

void tst_MeterParametersBoxes::editsReachTheParameters()
{
    load();
    enter("acquisitionRateField", QStringLiteral("100"));
    QCOMPARE(parameters().AcquisitionRate(), 100.0);
    enter("displayRateField", QStringLiteral("12,5"));
    QCOMPARE(parameters().DisplayRate(), 12.5);
    QCOMPARE(textOf("displayRateFieldText"), QStringLiteral("12.500"));
    enter("averagingField", QStringLiteral("7"));
    QCOMPARE(parameters().Averaging(), 7);
    QCOMPARE(textOf("averagingFieldText"), QStringLiteral("7"));
    enter("blockSizeField", QStringLiteral("20"));
    QCOMPARE(parameters().BlockSize(), 20);
    QVERIFY(!item("blockSizeField")->property("valueEditDone").toBool());
}

void tst_MeterParametersBoxes::fieldsFollowTheCascade()
{
    load();
    QCOMPARE(textOf("blockSizeFieldText"), QStringLiteral("20"));
    enter("blockSizeField", QStringLiteral("40"));
    QCOMPARE(textOf("acquisitionRateFieldText"), QStringLiteral("400.00"));
    enter("displayRateField", QStringLiteral("20"));
    QCOMPARE(textOf("blockSizeFieldText"), QStringLiteral("20"));
    // Not through the list, whose entry between has a rate of its own.
    parameters().SetTriggerMode(CTrigger::TIMER);
    enter("acquisitionRateField", QStringLiteral("100"));
    QCOMPARE(textOf("blockSizeFieldText"), QStringLiteral("5"));
}

void tst_MeterParametersBoxes::invalidValueIsRedAndStopsTheStart_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("invalid");
    QTest::addColumn<QString>("valid");
    QTest::newRow("acquisition rate") << "acquisitionRateField"
                                      << "1001"
                                      << "1000";
    QTest::newRow("display rate") << "displayRateField"
                                  << "0.4"
                                  << "0.5";
    QTest::newRow("block size") << "blockSizeField"
                                << "1"
                                << "2";
    QTest::newRow("averaging") << "averagingField"
                               << "101"
                               << "100";
}

void tst_MeterParametersBoxes::invalidValueIsRedAndStopsTheStart()
{
    QFETCH(QString, field);
    QFETCH(QString, invalid);
    QFETCH(QString, valid);
    const QByteArray name = field.toLatin1();
    // The block size follows the acquisition rate: let it stay in its bounds.
    setBound(m_instrument->BlockSizeBound(), 2, 5000);
    load();
    QVERIFY(!isRed(name.constData()));
    enter(name.constData(), invalid);
    QVERIFY(isRed(name.constData()));
    QVERIFY(!isEnabled("resumeButton"));
    QVERIFY(!isEnabled("recordButton"));
    QVERIFY(isEnabled("loadButton"));
    QVERIFY(isEnabled("zeroOffsetButton"));
    enter(name.constData(), valid);
    QVERIFY(!isRed(name.constData()));
    QVERIFY(isEnabled("resumeButton"));
    QVERIFY(isEnabled("recordButton"));
}

void tst_MeterParametersBoxes::averagingIsWrittenInRangeOnly()
{
    load();
    enter("averagingField", QStringLiteral("0"));
    QCOMPARE(parameters().Averaging(), 5);
    QCOMPARE(textOf("averagingFieldText"), QStringLiteral("0"));
    // The others are written all the same.
    enter("blockSizeField", QStringLiteral("501"));
    QCOMPARE(parameters().BlockSize(), 501);
}

void tst_MeterParametersBoxes::displayRateIsCappedByTheAcquisitionRate()
{
    load();
    QCOMPARE(item("displayRateField")->property("maxValue").toDouble(), 50.0);
    enter("acquisitionRateField", QStringLiteral("8"));
    QCOMPARE(item("displayRateField")->property("maxValue").toDouble(), 8.0);
    QVERIFY(isRed("displayRateField"));
    QVERIFY(!isEnabled("resumeButton"));
    enter("displayRateField", QStringLiteral("4"));
    QVERIFY(!isRed("displayRateField"));
    QVERIFY(isEnabled("resumeButton"));
}

void tst_MeterParametersBoxes::invisibleDisplayRateStopsNothing()
{
    load();
    enter("displayRateField", QStringLiteral("60"));
    QVERIFY(!isEnabled("resumeButton"));
    choose("triggerComboBox", 2);
    QVERIFY(!item("displayRateField")->property("valid").toBool());
    QVERIFY(isEnabled("blockSizeField"));
    QVERIFY(isEnabled("resumeButton"));
}

void tst_MeterParametersBoxes::boundsChange()
{
    load();
    m_instrument->KestrixAcquisitionRateBound()->SetMax(150);
    QVERIFY(isRed("acquisitionRateField"));
    QVERIFY(!isEnabled("recordButton"));
    m_instrument->KestrixAcquisitionRateBound()->SetMax(250);
    QVERIFY(!isRed("acquisitionRateField"));
    QVERIFY(isEnabled("recordButton"));
}

void tst_MeterParametersBoxes::unknownUnitStopsTheStart()
{
    load();
    parameters().SetUnits(CUnits::NANO_TESLA);
    QCOMPARE(chosen("unitsComboBox"), -1);
    QVERIFY(!isEnabled("resumeButton"));
    choose("unitsComboBox", 0);
    QCOMPARE(parameters().Units(), CUnits::TESLA);
    QVERIFY(isEnabled("resumeButton"));
}

void tst_MeterParametersBoxes::toolTips()
{
    load();
    const auto toolTip = [this](const char* name) { return item(name)->property("toolTipText").toString(); };
    QCOMPARE(toolTip("acquisitionRateField").remove(QLatin1Char(',')),
             QStringLiteral("Min = 1.000 Max = 1000.000"));
    QCOMPARE(toolTip("displayRateField"), QStringLiteral("Min = 0.50000 Max = 50.00000"));
    QCOMPARE(toolTip("blockSizeField"), QStringLiteral("Min = 2 Max = 500"));
    QCOMPARE(toolTip("averagingField"), QStringLiteral("Min = 1 Max = 100"));
}

void tst_MeterParametersBoxes::unitQuestionCancelled()
{
    load();
    addBlocks(2);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Cancel);
    QVERIFY(makeActive(m_view.get()));
    item("unitsComboBoxBox")->forceActiveFocus();
    QTest::keyClick(m_view.get(), Qt::Key_Down);
    QTRY_VERIFY(dialogs.isDone());
    QCOMPARE(dialogs.messages, QStringList{QStringLiteral("Are you sure you want to change units?|All the "
                                                          "measured data will be lost")});
    QCOMPARE(chosen("unitsComboBox"), 1);
    QCOMPARE(choice("unitsComboBox")->property("currentText").toString(), QStringLiteral("µT"));
    QCOMPARE(parameters().Units(), CUnits::MICRO_TESLA);
    QCOMPARE(m_fixture->manager().NumBlocks(), 2);
}

void tst_MeterParametersBoxes::unitQuestionAccepted()
{
    load();
    addBlocks(2);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    QVERIFY(makeActive(m_view.get()));
    item("unitsComboBoxBox")->forceActiveFocus();
    QTest::keyClick(m_view.get(), Qt::Key_Down);
    QTRY_VERIFY(dialogs.isDone());
    QCOMPARE(parameters().Units(), CUnits::GAUSS);
    QCOMPARE(chosen("unitsComboBox"), 2);
    QCOMPARE(choice("uncertaintyUnitsComboBox")->property("currentText").toString(), QStringLiteral("mG"));
    QCOMPARE(m_fixture->manager().NumBlocks(), 0);
    QCOMPARE(item("bDisplayer")->property("unit").toInt(), int(CUnits::GAUSS));
}

void tst_MeterParametersBoxes::listUpdateKeepsTheChoices()
{
    load();
    addBlocks(1);
    choose("rangeComboBox", 2);
    choose("triggerComboBox", 2);
    DialogDriver dialogs;
    m_instrument->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA});
    m_instrument->SetRangeList({0.1F, 3.0F, 5.0F});
    m_instrument->SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER});
    emit m_instrument->OnUnitListUpdated();
    QVERIFY(dialogs.isDone());
    QCOMPARE(choice("unitsComboBox")->property("count").toInt(), 2);
    QCOMPARE(chosen("unitsComboBox"), 1);
    QCOMPARE(chosen("rangeComboBox"), 2);
    QCOMPARE(chosen("triggerComboBox"), 2);
    QCOMPARE(parameters().Units(), CUnits::MICRO_TESLA);
    QCOMPARE(parameters().Range(), 3.0F);
    QCOMPARE(parameters().TriggerMode(), CTrigger::TIMER);
}

void tst_MeterParametersBoxes::percentSurvivesAUnitChange()
{
    load();
    choose("uncertaintyUnitsComboBox", 1);
    choose("unitsComboBox", 2);
    QCOMPARE(parameters().Units(), CUnits::GAUSS);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    QCOMPARE(choice("uncertaintyUnitsComboBox")->property("currentText").toString(), QStringLiteral("%"));
    choose("uncertaintyUnitsComboBox", 0);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::MILLI_GAUSS);
}

void tst_MeterParametersBoxes::uncertaintyAfterALoad()
{
    load();
    const QString path = m_fixture->directory.filePath(QStringLiteral("p.xml"));
    const auto loadFile = [&](const char* elements) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("<A><MEASUREMENT_PARAMETERS>") + elements + "</MEASUREMENT_PARAMETERS></A>");
        file.close();
        QVERIFY(m_fixture->operation.LoadParameters(path));
    };
    loadFile("<Units>G</Units><UncertaintyUnits>mG</UncertaintyUnits>");
    QCOMPARE(chosen("unitsComboBox"), 2);
    QCOMPARE(choice("uncertaintyUnitsComboBox")->property("currentText").toString(), QStringLiteral("mG"));
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::MILLI_GAUSS);
    loadFile("<Units>T</Units><UncertaintyUnits>%</UncertaintyUnits>");
    QCOMPARE(choice("uncertaintyUnitsComboBox")->property("currentText").toString(), QStringLiteral("%"));
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
}

void tst_MeterParametersBoxes::rangeEntries()
{
    load();
    QCOMPARE(choice("rangeComboBox")->property("count").toInt(), 3);
    choose("rangeComboBox", 1);
    QVERIFY(!parameters().AutoRange());
    QCOMPARE(parameters().Range(), 0.1F);
    QCOMPARE(choice("rangeComboBox")->property("currentText").toString(), QStringLiteral("0.1"));
    choose("rangeComboBox", 2);
    QCOMPARE(parameters().Range(), 3.0F);
    choose("rangeComboBox", 0);
    QVERIFY(parameters().AutoRange());
}

void tst_MeterParametersBoxes::defaultButton()
{
    load();
    choose("triggerComboBox", 2);
    choose("unitsComboBox", 2);
    enter("averagingField", QStringLiteral("99"));
    click("defaultButton");
    QCOMPARE(parameters().TriggerMode(), CTrigger::CONTINUOUS);
    QCOMPARE(parameters().Averaging(), 10);
    QCOMPARE(textOf("acquisitionRateFieldText"), QStringLiteral("20.000"));
    QCOMPARE(textOf("displayRateFieldText"), QStringLiteral("10.000"));
    QCOMPARE(textOf("blockSizeFieldText"), QStringLiteral("2"));
    QCOMPARE(textOf("averagingFieldText"), QStringLiteral("10"));
    QCOMPARE(chosen("unitsComboBox"), 0);
    QCOMPARE(chosen("triggerComboBox"), 0);
}

void tst_MeterParametersBoxes::measurementBoxByState()
{
    load();
    QVERIFY(isVisible("measurementBox"));
    m_meter->record();
    QVERIFY(isVisible("measurementBox"));
    QVERIFY(!isEnabled("averagingField"));
    QVERIFY(!isEnabled("unitsComboBoxBox"));
    QVERIFY(isEnabled("resumeButton"));
    addBlocks(2);
    m_meter->stop();
    QVERIFY(!isVisible("measurementBox"));
    m_meter->start();
    QVERIFY(!isVisible("measurementBox"));
    m_meter->stop();
    m_fixture->operation.Reset();
    QVERIFY(isVisible("measurementBox"));
    QVERIFY(isEnabled("averagingField"));
}

QTEST_MAIN(tst_MeterParametersBoxes)

#include "tst_MeterParametersBoxes.moc"
