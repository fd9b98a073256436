// SPDX-License-Identifier: GPL-3.0-or-later
// The parameter boxes of the meter page on the real view models, driven by mouse and keyboard.
#include "CMeterOperationViewModel.h"
#include "CPlotTable.h"
#include "DialogDriver.h"
#include "MeasureFixture.h"
#include "QmlTestSetup.h"

#include <QColor>
#include <QQmlContext>
#include <QQmlPropertyMap>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(CTrigger::TriggerMode)

namespace {

void setBound(CBoundedParm* bound, double min, double max)
{
    bound->SetMin(min);
    bound->SetMax(max);
}

} // namespace

class tst_MeterParametersBoxes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

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

private:
    void load();
    QQuickItem* item(const char* name) const;
    bool isVisible(const char* name) const;
    QString textOf(const char* field) const { return item(field)->property("text").toString(); }
    QObject* choice(const char* name) const { return item(name); }
    int chosen(const char* name) const { return choice(name)->property("currentIndex").toInt(); }
    void click(const char* name);
    void choose(const char* name, int index);
    /// Types a number into a field and presses Return.
    void enter(const char* field, const QString& text);
    void enterText(const char* area, const QString& text);
    bool isRed(const char* field) const;
    bool isEnabled(const char* name) const { return item(name)->isEnabled(); }
    QString information(const char* line) const;
    void expandBox(const char* name);
    void addBlocks(int count);
    CMeasurementParameters& parameters() { return m_fixture->parameters(); }
    CMeasurementParametersViewModel& measurement() { return *m_meter->MeasurementParametersViewModel(); }

    std::unique_ptr<MeasureFixture> m_fixture;
    QSharedPointer<FakeInstrument> m_instrument;
    std::unique_ptr<CMeterOperationViewModel> m_meter;
    std::unique_ptr<QQmlPropertyMap> m_mainViewModel;
    std::unique_ptr<QmlTestSetup> m_setup;
    std::unique_ptr<QQuickView> m_view;
    int m_warningsBefore = 0;
};

void tst_MeterParametersBoxes::initTestCase()
{
    QmlTestSetup::Prepare();
    CPlotTable::RegisterQmlTypes();
}

void tst_MeterParametersBoxes::init()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
    m_fixture = std::make_unique<MeasureFixture>();
    m_instrument = m_fixture->connectInstrument();
    m_instrument->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA, CUnits::GAUSS});
    m_instrument->SetRangeList({0.1F, 3.0F});
    m_instrument->SetTriggerList(
        {CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});
    setBound(m_instrument->KestrixAcquisitionRateBound(), 1, 1000);
    setBound(m_instrument->KestrixDisplayRateBound(), 0.5, 50);
    setBound(m_instrument->BlockSizeBound(), 2, 500);
    setBound(m_instrument->AveragingBound(), 1, 100);
    setBound(m_instrument->FrequencyMinBound(), 0, 500);
    setBound(m_instrument->FrequencyMaxBound(), 1, 500);
    parameters().SetImmediateAcquisitionRate(200);
    parameters().SetAcquisitionRate(200);
    parameters().SetDisplayRate(10);
    parameters().SetAveraging(5);
    parameters().SetAutoRange(true);
}

void tst_MeterParametersBoxes::cleanup()
{
    m_view.reset();
    m_setup.reset();
    m_mainViewModel.reset();
    m_meter.reset();
    m_instrument.reset();
    m_fixture.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

/// The meter page with all boxes in sight.
void tst_MeterParametersBoxes::load()
{
    m_meter = std::make_unique<CMeterOperationViewModel>(&m_fixture->operation, &m_fixture->settings,
                                                         &m_fixture->notifier);
    m_mainViewModel = std::make_unique<QQmlPropertyMap>();
    m_mainViewModel->insert(QStringLiteral("SmallWindowSize"), false);
    m_mainViewModel->insert(QStringLiteral("ParameterMenuExpanded"), false);
    m_mainViewModel->insert(QStringLiteral("PageMenuExpanded"), false);
    m_mainViewModel->insert(QStringLiteral("MainWindowHeight"), 1000);
    m_setup = std::make_unique<QmlTestSetup>();
    m_view = std::make_unique<QQuickView>();
    m_setup->setUp(m_view->engine());
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("QtVerSix"), false);
    context->setContextProperty(QStringLiteral("Settings"), &m_fixture->settings);
    context->setContextProperty(QStringLiteral("MainViewModel"), m_mainViewModel.get());
    context->setContextProperty(QStringLiteral("ActiveOperation"), &m_fixture->operation);
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), m_meter.get());
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setSource(QUrl(QStringLiteral("qrc:/Resources/Pages/MeterPage.qml")));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->resize(1200, 1000);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
}

QQuickItem* tst_MeterParametersBoxes::item(const char* name) const
{
    QQuickItem* const found = QmlTestSetup::FindItem(m_view->contentItem(), name);
    if (!found)
        qFatal("no item %s", name);
    return found;
}

bool tst_MeterParametersBoxes::isVisible(const char* name) const
{
    return item(name)->isVisible();
}

void tst_MeterParametersBoxes::click(const char* name)
{
    QQuickItem* target = item(name);
    // Positioners place their items when the next frame is made.
    QTest::qWait(30);
    QVERIFY2(target->isVisible() && target->isEnabled(), name);
    const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, centre.toPoint());
}

void tst_MeterParametersBoxes::choose(const char* name, int index)
{
    const QByteArray box = QByteArray(name) + "Box";
    item(box.constData())->forceActiveFocus();
    while (chosen(name) < index) {
        const int before = chosen(name);
        QTest::keyClick(m_view.get(), Qt::Key_Down);
        if (chosen(name) == before)
            return;
    }
    while (chosen(name) > index)
        QTest::keyClick(m_view.get(), Qt::Key_Up);
    QCoreApplication::processEvents();
}

void tst_MeterParametersBoxes::enter(const char* field, const QString& text)
{
    const QByteArray input = QByteArray(field) + "Text";
    item(input.constData())->forceActiveFocus();
    QTest::keyClick(m_view.get(), Qt::Key_A, Qt::ControlModifier);
    for (const QChar character : text)
        QTest::keyClick(m_view.get(), character.toLatin1());
    QTest::keyClick(m_view.get(), Qt::Key_Return);
}

void tst_MeterParametersBoxes::enterText(const char* area, const QString& text)
{
    click(area);
    for (const QChar character : text)
        QTest::keyClick(m_view.get(), character.toLatin1());
}

bool tst_MeterParametersBoxes::isRed(const char* field) const
{
    const QByteArray input = QByteArray(field) + "Text";
    return item(input.constData())->property("color").value<QColor>() == QColor(Qt::red);
}

QString tst_MeterParametersBoxes::information(const char* line) const
{
    return item(line)->property("value").toString();
}

void tst_MeterParametersBoxes::expandBox(const char* name)
{
    if (!item(name)->property("expanded").toBool())
        click((QByteArray(name) + "Title").constData());
}

void tst_MeterParametersBoxes::addBlocks(int count)
{
    for (int i = 0; i < count; ++i)
        m_fixture->operation.OnNewMeasure(makeRamp(i, 2, 10 * i, 5));
}

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

void tst_MeterParametersBoxes::alarmBox()
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

void tst_MeterParametersBoxes::alarmUnitLabel()
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

void tst_MeterParametersBoxes::warning()
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

void tst_MeterParametersBoxes::recordBox()
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

void tst_MeterParametersBoxes::recordBoxKeyboard()
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

void tst_MeterParametersBoxes::recordCommentsAreEmptiedByAReset()
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

void tst_MeterParametersBoxes::replayBoxByState()
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

void tst_MeterParametersBoxes::replayChoices()
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

void tst_MeterParametersBoxes::replayFieldBounds()
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

void tst_MeterParametersBoxes::currentBlockIsPlayed()
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

void tst_MeterParametersBoxes::stepByStep()
{
    load();
    addBlocks(3);
    m_fixture->manager().StopRecord();
    QVERIFY(!isVisible("stepButton"));
    click("stepByStepCheckBoxBox");
    QVERIFY(m_fixture->manager().ReplayStepByStep());
    click("playbackButton");
    QTRY_COMPARE(m_fixture->manager().ReplayIndex(), 0);
    QVERIFY(isVisible("stepButton"));
    QTRY_COMPARE(textOf("currentBlockFieldText"), QStringLiteral("1"));
    click("stepButton");
    QTRY_COMPARE(textOf("currentBlockFieldText"), QStringLiteral("2"));
    click("stopButton");
    QVERIFY(!isVisible("stepButton"));
    click("stepByStepCheckBoxBox");
    QVERIFY(!m_fixture->manager().ReplayStepByStep());
}

void tst_MeterParametersBoxes::replayInformation()
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

void tst_MeterParametersBoxes::replayInformationOfALoadedRecord()
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

void tst_MeterParametersBoxes::loadButtonByState()
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

void tst_MeterParametersBoxes::saveAndLoadParameters()
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

void tst_MeterParametersBoxes::boxesMoveIntoTheDrawer()
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

void tst_MeterParametersBoxes::drawerFollowsTheMenu()
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

void tst_MeterParametersBoxes::boxesCollapse()
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

QTEST_MAIN(tst_MeterParametersBoxes)

#include "tst_MeterParametersBoxes.moc"
