// SPDX-License-Identifier: GPL-3.0-or-later
#include "EnumTexts.h"

#include <QtTest>

class TestEnumTexts : public QObject
{
    Q_OBJECT

private slots:
    void alarmStates();
    void axes();
    void triggerModes();
};

void TestEnumTexts::alarmStates()
{
    const QStringList texts{QStringLiteral("Off"), QStringLiteral("Notification"), QStringLiteral("Audio"),
                            QStringLiteral("Flag Notification")};
    for (int value = 1; value <= 4; ++value) {
        QCOMPARE(AlarmStateToText(static_cast<CAlarm::AlarmState>(value)), texts[value - 1]);
        QCOMPARE(static_cast<int>(TextToAlarmState(texts[value - 1])), value);
    }
    for (const int value : {0, 5, 7})
        QCOMPARE(AlarmStateToText(static_cast<CAlarm::AlarmState>(value)), QString());
    for (const char* text : {"", "foo", "FlagNotification", "audio", " Audio"})
        QCOMPARE(TextToAlarmState(QString::fromLatin1(text)), CAlarm::Off);
}

void TestEnumTexts::axes()
{
    const QStringList texts{QStringLiteral("B"),  QStringLiteral("B.B'"), QStringLiteral("Bx"),
                            QStringLiteral("By"), QStringLiteral("Bz"),   QStringLiteral("dB")};
    const QStringList displayTexts{QStringLiteral("B"),  QStringLiteral("B\u00B7B'"),
                                   QStringLiteral("Bx"), QStringLiteral("By"),
                                   QStringLiteral("Bz"), QStringLiteral("\u03B5(B)")};
    for (int value = 1; value <= 6; ++value) {
        QCOMPARE(AxisToText(static_cast<CAxis::AxisType>(value)), texts[value - 1]);
        QCOMPARE(AxisToDisplayText(static_cast<CAxis::AxisType>(value)), displayTexts[value - 1]);
        QCOMPARE(static_cast<int>(TextToAxis(texts[value - 1])), value);
    }
    for (const int value : {0, 7}) {
        QCOMPARE(AxisToText(static_cast<CAxis::AxisType>(value)), QString());
        QCOMPARE(AxisToDisplayText(static_cast<CAxis::AxisType>(value)), QString());
    }
    // The texts of the screen are not those of the files.
    for (const QString& text :
         {QString(), QStringLiteral("foo"), QStringLiteral("bx"), displayTexts[1], displayTexts[5]})
        QCOMPARE(TextToAxis(text), CAxis::dB);
}

void TestEnumTexts::triggerModes()
{
    const QStringList texts{QStringLiteral("Continuous"), QStringLiteral("Immediate"),
                            QStringLiteral("Timer"), QStringLiteral("External")};
    for (int value = 1; value <= 4; ++value) {
        QCOMPARE(TriggerModeToText(static_cast<CTrigger::TriggerMode>(value)), texts[value - 1]);
        QCOMPARE(static_cast<int>(TextToTriggerMode(texts[value - 1])), value);
    }
    for (const int value : {0, 5, 7})
        QCOMPARE(TriggerModeToText(static_cast<CTrigger::TriggerMode>(value)), QString());
    for (const char* text : {"", "foo", "CONTINUOUS", "timer", "External "})
        QCOMPARE(TextToTriggerMode(QString::fromLatin1(text)), CTrigger::CONTINUOUS);
}

QTEST_APPLESS_MAIN(TestEnumTexts)
#include "tst_EnumTexts.moc"
