// SPDX-License-Identifier: GPL-3.0-or-later
// The boxes of the meter page in the whole program: alarm, measurement parameters and their files, comments.
#include "BellListener.h"
#include "CApplication.h"
#include "EndToEndTest.h"
#include "TrayBalloon.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>
#include <QXmlStreamReader>

namespace {

/// The texts of the leaf elements, by the names of the element and its parent:
/// "MEASUREMENT_PARAMETERS/Units".
QHash<QString, QString> leaves(const QString& path)
{
    QHash<QString, QString> texts;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return texts;
    QXmlStreamReader xml(&file);
    QStringList open;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement())
            open << xml.name().toString();
        else if (xml.isEndElement())
            open.removeLast();
        else if (xml.isCharacters() && !xml.isWhitespace() && open.size() > 1)
            texts[open.at(open.size() - 2) + QLatin1Char('/') + open.last()] = xml.text().toString();
    }
    return texts;
}

} // namespace

class tst_EndToEndMeter : public EndToEndTest
{
    Q_OBJECT

private:
    enum State { Off, Notification, Audio, FlagNotification };

    void chooseState(State state)
    {
        QVERIFY(driver().Choose(QStringLiteral("alarmStateComboBox"), state));
        // There is room for all of its text.
        const auto* shown = qvariant_cast<QQuickItem*>(
            driver().Find(QStringLiteral("alarmStateComboBoxBox"))->property("contentItem"));
        QVERIFY(!shown->property("truncated").toBool());
    }
    bool isWarned() { return driver().IsVisible(QStringLiteral("outOfBoundsWarning")); }
    int logLines() { return scenario().LogText().count(kLogLine); }
    /// Lets blocks pass that find the field where it was.
    void letBlocksPass()
    {
        const int before = blocks();
        QTRY_VERIFY(blocks() >= before + 3);
    }
    QString fieldText(const char* field)
    {
        return driver().Text(QLatin1String(field) + QStringLiteral("Text"));
    }
    QString choice(const char* comboBox)
    {
        return driver().Find(QLatin1String(comboBox))->property("currentText").toString();
    }
    bool isRed(const char* field)
    {
        const QQuickItem* input = driver().Find(QLatin1String(field) + QStringLiteral("Text"));
        return input->property("color").value<QColor>() == QColor(Qt::red);
    }
    bool isEnabled(const char* button) { return driver().Find(QLatin1String(button))->isEnabled(); }

    const QString kLogLine =
        QStringLiteral("B is out-of-limit [\u00B5T] : Minimum = -1.0000, B = 5.0000, Maximum = 4.0000");
    const QString kBalloon =
        QStringLiteral("B is out-of-limit [\u00B5T]|Minimum = -1.0000\nB = 5.0000\nMaximum = 4.0000");

private slots:
    void alarmByState()
    {
        // A field of 5 microtesla that stays.
        Scenario::WriteSimulationSettings(QStringLiteral(
            "[Field]\nDcX=3\nDcY=4\nDcZ=0\nAcX=0\nAcY=0\nAcZ=0\nAcThirdX=0\nAcThirdY=0\nAcThirdZ=0\nAcFifthX="
            "0\n"
            "AcFifthY=0\nAcFifthZ=0\nRotatingAmplitude=0\nDriftPerHourX=0\nDriftPerHourY=0\nDriftPerHourZ=0\n"
            "[Sensor]\nNoise=0\nOffsetX=0\nOffsetY=0\nOffsetZ=0\n"));
        startWithDefaultInstrument();
        auto* tray = scenario().Application()->findChild<QSystemTrayIcon*>();
        QVERIFY(tray);
        QTRY_VERIFY2(tray->geometry().isValid(), "no system tray");
        BellListener bell;
        QVERIFY(bell.IsListening());
        QVERIFY(driver().Click(QStringLiteral("alarmBoxTitle")));
        QVERIFY(driver().WaitFor(QStringLiteral("alarmMinimumField")));
        QVERIFY(driver().Enter(QStringLiteral("alarmMinimumField"), QStringLiteral("-1")));
        QVERIFY(driver().Enter(QStringLiteral("alarmMaximumField"), QStringLiteral("4")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        letBlocksPass();
        QVERIFY(!isWarned());
        QCOMPARE(logLines(), 0);

        // Straight to the last state, not through those between.
        QObject* alarm = scenario().PageViewModel()->property("AlarmParametersViewModel").value<QObject*>();
        alarm->setProperty("SelectedStateIndex", FlagNotification);
        QTRY_VERIFY(isWarned());
        QTRY_COMPARE(logLines(), 1);
        letBlocksPass();
        QCOMPARE(TrayBalloon::Text(), QString());
        QCOMPARE(bell.Count(), 0);
        QCOMPARE(choice("alarmStateComboBox"), QStringLiteral("Flag Notification"));
        alarm->setProperty("SelectedStateIndex", Off);
        QTRY_VERIFY(!isWarned());

        chooseState(Notification);
        QTRY_COMPARE(TrayBalloon::Text(), kBalloon);
        QVERIFY(isWarned());
        QCOMPARE(logLines(), 2);
        QSignalSpy clicked(tray, &QSystemTrayIcon::messageClicked);
        QTest::mouseClick(TrayBalloon::Find(), Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
        QTRY_VERIFY(!TrayBalloon::Find());
        // One message for a violation that lasts.
        letBlocksPass();
        QVERIFY(!TrayBalloon::Find());
        QCOMPARE(logLines(), 2);
        QCOMPARE(bell.Count(), 0);

        chooseState(Audio);
        QTRY_COMPARE(TrayBalloon::Text(), kBalloon);
        QTRY_COMPARE(bell.Count(), 1);
        QCOMPARE(logLines(), 3);
        QVERIFY(driver().Enter(QStringLiteral("alarmMaximumField"), QStringLiteral("6")));
        QTRY_VERIFY(!isWarned());
        QVERIFY(driver().Enter(QStringLiteral("alarmMaximumField"), QStringLiteral("4")));
        // Soon after, so that nothing but the flag tells.
        QTRY_VERIFY(isWarned());
        letBlocksPass();
        QCOMPARE(bell.Count(), 1);
        QCOMPARE(logLines(), 3);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(scenario().CloseWindow());
    }

    void parametersAndTheirFiles()
    {
        const QString written = QDir::current().filePath(QStringLiteral("by-hand.xml"));
        QFile file(written);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<OPERATION_PARAMETERS>\n"
                   " <MEASUREMENT_PARAMETERS>\n"
                   "  <Range>0.001</Range><AutoRange>0</AutoRange><AdcUnit>0</AdcUnit>\n"
                   "  <Units>nT</Units><UncertaintyUnits>nT</UncertaintyUnits>\n"
                   "  <Averaging>7</Averaging><AcquisitionRate>100</AcquisitionRate>\n"
                   "  <DisplayRate>20</DisplayRate><TriggerMode>Continuous</TriggerMode>\n"
                   " </MEASUREMENT_PARAMETERS>\n"
                   " <ALARM_METER_PARAMETERS><Axis>By</Axis><State>Audio</State>\n"
                   "  <Minimum>-2.5</Minimum><Maximum>1e6</Maximum></ALARM_METER_PARAMETERS>\n"
                   "</OPERATION_PARAMETERS>\n");
        file.close();
        startWithDefaultInstrument();
        QCOMPARE(fieldText("blockSizeField"), QStringLiteral("2"));
        QVERIFY(driver().Click(QStringLiteral("saveImportParametersBoxTitle")));
        QVERIFY(driver().WaitFor(QStringLiteral("loadParametersButton")));
        answers().ExpectFileDialog(QStringLiteral("Open parameters to file"), written);
        QVERIFY(driver().Click(QStringLiteral("loadParametersButton")));
        QTRY_COMPARE(fieldText("acquisitionRateField"), QStringLiteral("100.00"));
        QCOMPARE(fieldText("displayRateField"), QStringLiteral("20.000"));
        QCOMPARE(fieldText("blockSizeField"), QStringLiteral("5"));
        QCOMPARE(fieldText("averagingField"), QStringLiteral("7"));
        QCOMPARE(choice("unitsComboBox"), QStringLiteral("nT"));
        QCOMPARE(choice("uncertaintyUnitsComboBox"), QStringLiteral("nT"));
        QCOMPARE(choice("rangeComboBox"), QStringLiteral("0.001"));

        // What is out of the instrument's bounds stays in its field, in red, and nothing can be started.
        QVERIFY(driver().Enter(QStringLiteral("averagingField"), QStringLiteral("10001")));
        QVERIFY(isRed("averagingField"));
        QVERIFY(!isEnabled("resumeButton") && !isEnabled("recordButton"));
        QVERIFY(isEnabled("loadButton") && isEnabled("zeroOffsetButton"));
        QVERIFY(driver().Enter(QStringLiteral("averagingField"), QStringLiteral("9")));
        QVERIFY(!isRed("averagingField"));
        QVERIFY(driver().Enter(QStringLiteral("displayRateField"), QStringLiteral("2000")));
        QVERIFY(isRed("displayRateField"));
        QVERIFY(!isEnabled("resumeButton") && !isEnabled("recordButton"));
        QVERIFY(driver().Enter(QStringLiteral("displayRateField"), QStringLiteral("10")));
        QVERIFY(isEnabled("resumeButton") && isEnabled("recordButton"));
        QCOMPARE(fieldText("blockSizeField"), QStringLiteral("10"));

        // Data are there: the unit is not changed without asking.
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 2);
        QVERIFY(!isEnabled("loadParametersButton"));
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
        const int measured = blocks();
        const QString question = QStringLiteral("Are you sure you want to change units?");
        answers().ExpectMessage(question, QMessageBox::Cancel);
        driver().Find(QStringLiteral("unitsComboBoxBox"))->forceActiveFocus();
        driver().Key(Qt::Key_Up);
        QTRY_VERIFY(answers().IsDone());
        QTRY_COMPARE(choice("unitsComboBox"), QStringLiteral("nT"));
        QCOMPARE(blocks(), measured);
        answers().ExpectMessage(question, QMessageBox::Ok);
        const int index = driver().Find(QStringLiteral("unitsComboBox"))->property("currentIndex").toInt();
        driver().Find(QStringLiteral("unitsComboBoxBox"))->forceActiveFocus();
        driver().Key(Qt::Key_Up);
        QTRY_COMPARE(blocks(), 0);
        QTRY_COMPARE(driver().Find(QStringLiteral("unitsComboBox"))->property("currentIndex").toInt(),
                     index - 1);
        const QString unit = choice("unitsComboBox");
        QVERIFY(unit != QStringLiteral("nT"));
        QVERIFY(WindowDriver::AccessibleName(driver().Find(QStringLiteral("bxDisplayer")))
                    .endsWith(QLatin1Char(' ') + unit));
        QCOMPARE(driver().Text(QStringLiteral("bDisplayer"), QStringLiteral("value")),
                 QStringLiteral("0.0000"));

        const QString saved = QDir::current().filePath(QStringLiteral("saved.xml"));
        answers().ExpectFileDialog(QStringLiteral("Save parameters to file"), saved);
        QVERIFY(driver().Click(QStringLiteral("saveParametersButton")));
        QTRY_VERIFY(answers().IsDone());
        QVERIFY(answers().LastProposal().startsWith(QStringLiteral("MeasurementParameters-")));
        const QHash<QString, QString> texts = leaves(saved);
        const auto measurement = [&texts](const char* name) {
            return texts.value(QStringLiteral("MEASUREMENT_PARAMETERS/") + QLatin1String(name));
        };
        const auto alarm = [&texts](const char* name) {
            return texts.value(QStringLiteral("ALARM_METER_PARAMETERS/") + QLatin1String(name));
        };
        QCOMPARE(measurement("Units"), unit);
        QCOMPARE(measurement("Range"), QStringLiteral("0.001"));
        QCOMPARE(measurement("AutoRange"), QStringLiteral("0"));
        QCOMPARE(measurement("Averaging"), QStringLiteral("9"));
        QCOMPARE(measurement("AcquisitionRate"), QStringLiteral("100"));
        QCOMPARE(measurement("DisplayRate"), QStringLiteral("10"));
        QCOMPARE(alarm("State"), QStringLiteral("Audio"));
        QCOMPARE(alarm("Axis"), QStringLiteral("By"));
        QCOMPARE(alarm("Minimum"), QStringLiteral("-2.5"));
        QCOMPARE(alarm("Maximum"), QStringLiteral("1e+06"));
        QVERIFY(scenario().CloseWindow());
    }

    void commentsOfARecord()
    {
        startWithDefaultInstrument();
        QVERIFY(!driver().IsVisible(QStringLiteral("recordBox")));
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("bodyCommentAreaText")));
        type("Cellar <2> & stairs");
        // The Tab key goes on to the other comment.
        driver().Key(Qt::Key_Tab);
        type("first");
        // Other keys leave the two.
        const auto focusAfter = [this](Qt::Key key, Qt::KeyboardModifiers modifiers) {
            driver().Key(key, modifiers);
            const QQuickItem* item = driver().Window()->activeFocusItem();
            return item ? item->objectName() : QString();
        };
        const QString body = QStringLiteral("bodyCommentAreaText");
        const QString title = QStringLiteral("recordBoxTitle");
        QCOMPARE(focusAfter(Qt::Key_Backtab, Qt::ShiftModifier), body);
        QCOMPARE(focusAfter(Qt::Key_Backtab, Qt::ShiftModifier), title);
        QCOMPARE(focusAfter(Qt::Key_Tab, Qt::NoModifier), body);
        QCOMPARE(focusAfter(Qt::Key_Tab, Qt::ControlModifier), QStringLiteral("measCommentAreaText"));
        QVERIFY(focusAfter(Qt::Key_Tab, Qt::ControlModifier).endsWith(QStringLiteral("BoxTitle")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() >= 2);
        QVERIFY(driver().Click(QStringLiteral("measCommentAreaText")));
        driver().Key(Qt::Key_End);
        type(" later");
        const int before = blocks();
        QTRY_VERIFY(blocks() >= before + 3);
        QVERIFY(driver().Click(QStringLiteral("stopButton")));
        QVERIFY(!driver().IsVisible(QStringLiteral("recordBox")));
        const QString path = saveRecord(QStringLiteral("commented.qdr.xml"));
        QVERIFY(!path.isEmpty());

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QStringList comments;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("comment"))
                comments << xml.readElementText();
        }
        QVERIFY(comments.size() >= 6);
        QCOMPARE(comments.first(), QStringLiteral("Cellar <2> & stairs"));
        QCOMPARE(comments.at(1), QStringLiteral("first"));
        QCOMPARE(comments.last(), QStringLiteral("first later"));
        // The table shows the comment of the block that the user looks at.
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("blockComment")));
        QCOMPARE(driver().Text(QStringLiteral("blockComment")), QStringLiteral("first later"));
        QVERIFY(driver().Enter(QStringLiteral("currentBlockField"), QStringLiteral("1")));
        QTRY_COMPARE(driver().Text(QStringLiteral("blockComment")), QStringLiteral("first"));
        QVERIFY(scenario().CloseWindow());
    }

private:
    void type(const char* text) { driver().Type(QLatin1String(text)); }
};

END_TO_END_MAIN(tst_EndToEndMeter)
#include "tst_EndToEndMeter.moc"
