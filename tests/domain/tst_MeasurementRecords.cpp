// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarm.h"
#include "CAxis.h"
#include "CBoundedParm.h"
#include "CInstrumentInterface.h"
#include "CMeasureBlockMapping.h"
#include "EnumTexts.h"
#include "MetaObjectTable.h"
#include "UncertaintyConversion.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace MetaObjectTable;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

QSharedPointer<CFieldIntensityResult> sample(const QDateTime& time, quint32 nanoseconds, float b)
{
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    result->Timestamp = time;
    result->TimestampNanoseconds = nanoseconds;
    result->SetB(b);
    result->SetBBprime(2.5F);
    result->SetBx(-0.0001F);
    result->SetBy(1234567.0F);
    result->SetBz(0.1F);
    result->SetTemperature(65535);
    result->SetDB(1e-7F);
    return result;
}

} // namespace

class tst_MeasurementRecords : public QObject
{
    Q_OBJECT

private slots:
    void surfaces()
    {
        VERIFY_NO_DIFFERENCE(compareProperties(CTimestampableResult::staticMetaObject, {}));
        VERIFY_NO_DIFFERENCE(compareProperties(CFieldIntensityResult::staticMetaObject,
                                               {{"Bx", "tFlux", ReadWrite},
                                                {"By", "tFlux", ReadWrite},
                                                {"Bz", "tFlux", ReadWrite},
                                                {"B", "tFlux", ReadWrite},
                                                {"dB", "tFlux", ReadWrite},
                                                {"BBprime", "tFlux", ReadWrite},
                                                {"dBConverted", "tFlux", ReadWrite},
                                                {"Temperature", "ushort", ReadWrite}}));
        const QVector<Property> xyz{
            {"X", "double", ReadWrite}, {"Y", "double", ReadWrite}, {"Z", "double", ReadWrite}};
        VERIFY_NO_DIFFERENCE(compareProperties(CBprimeResult::staticMetaObject, xyz));
        VERIFY_NO_DIFFERENCE(compareProperties(CPosition::staticMetaObject, xyz));
        VERIFY_NO_DIFFERENCE(compareProperties(
            COrientation::staticMetaObject,
            {{"Roll", "double", ReadWrite}, {"Pitch", "double", ReadWrite}, {"Yaw", "double", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(compareProperties(
            CBoundedParm::staticMetaObject,
            {{"Min", "double", ReadWrite}, {"Max", "double", ReadWrite}, {"Default", "double", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(
            compareProperties(CMeasureBlock::staticMetaObject, {{"Comment", "QString", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(compareProperties(CMeasureBlockMapping::staticMetaObject,
                                               {{"RotAppliedOnMeasBlock", "bool", ReadWrite}}));
    }

    void enumerations()
    {
        VERIFY_NO_DIFFERENCE(
            compareEnum(CAlarm::staticMetaObject, "AlarmState",
                        {{"Off", 1}, {"Notification", 2}, {"Audio", 3}, {"FlagNotification", 4}}));
        VERIFY_NO_DIFFERENCE(
            compareEnum(CAxis::staticMetaObject, "AxisType",
                        {{"B", 1}, {"BBprime", 2}, {"Bx", 3}, {"By", 4}, {"Bz", 5}, {"dB", 6}}));
        VERIFY_NO_DIFFERENCE(
            compareEnum(CTrigger::staticMetaObject, "TriggerMode",
                        {{"CONTINUOUS", 1}, {"IMMEDIATE", 2}, {"TIMER", 3}, {"EXTERNAL", 4}}));
        VERIFY_NO_DIFFERENCE(compareEnum(CInstrumentInterface::staticMetaObject, "Interface",
                                         {{"Unknown", 1}, {"USB", 2}, {"Ethernet", 3}, {"Serial", 4}}));
    }

    void metaTypes()
    {
        QCOMPARE(QMetaType::type("tFlux"), static_cast<int>(QMetaType::Float));
        for (const char* name : {"QList<tFlux>", "QSharedPointer<CMeasureBlock>",
                                 "QSharedPointer<CMeasureBlockMapping>", "CPosition", "COrientation"})
            QVERIFY2(QMetaType::type(name) != QMetaType::UnknownType, name);
    }

    void aResultAsConstructed()
    {
        const CFieldIntensityResult result;
        QVERIFY(!result.Timestamp.isValid());
        QCOMPARE(result.TimestampNanoseconds, 0U);
        for (const tFlux value :
             {result.Bx(), result.By(), result.Bz(), result.B(), result.dB(), result.BBprime()})
            QCOMPARE(value, 0.0F);
        QVERIFY(std::isnan(result.dBConverted()));
        QCOMPARE(result.Temperature(), quint16(0));
    }

    void settersEmitOnChangeAndAlwaysForNotANumber()
    {
        CFieldIntensityResult result;
        QSignalSpy bx(&result, &CFieldIntensityResult::BxChanged);
        result.SetBx(0.0F);
        QCOMPARE(bx.count(), 0);
        result.SetBx(1.5F);
        QCOMPARE(bx.count(), 1);
        QCOMPARE(bx.at(0).at(0).toFloat(), 1.5F);
        result.SetBx(1.5F);
        QCOMPARE(bx.count(), 1);
        result.SetBx(kNaN);
        result.SetBx(kNaN);
        QCOMPARE(bx.count(), 3);

        CMeasureBlock block;
        QSignalSpy comment(&block, &CMeasureBlock::CommentChanged);
        block.SetComment(QString());
        QCOMPARE(comment.count(), 0);
        block.SetComment(QStringLiteral("a"));
        QCOMPARE(comment.count(), 1);

        CMeasureBlockMapping mapping;
        QVERIFY(!mapping.RotAppliedOnMeasBlock());
        QSignalSpy rotation(&mapping, &CMeasureBlockMapping::RotAppliedOnMeasBlockChanged);
        mapping.SetRotAppliedOnMeasBlock(true);
        mapping.SetRotAppliedOnMeasBlock(true);
        QCOMPARE(rotation.count(), 1);
    }

    void aCopyIsAFreshObjectWithTheValues()
    {
        CPosition position;
        position.SetX(1);
        position.SetY(-2);
        position.SetZ(3);
        QSignalSpy changed(&position, &CPosition::XChanged);
        CPosition copy(position);
        copy.SetX(9);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(position.X(), 1.0);
        QCOMPARE(copy.Y(), -2.0);
        QCOMPARE(copy.Z(), 3.0);
        COrientation orientation;
        orientation.SetRoll(10);
        orientation.SetPitch(20);
        orientation.SetYaw(30);
        COrientation assigned;
        assigned = orientation;
        QCOMPARE(assigned.Roll(), 10.0);
        QCOMPARE(assigned.Pitch(), 20.0);
        QCOMPARE(assigned.Yaw(), 30.0);
    }

    void blockAsText()
    {
        CMeasureBlock block;
        QCOMPARE(block.FormatBlockAsText(QStringLiteral(";")), QString());
        const QDateTime time(QDate(2024, 3, 1), QTime(10, 11, 12, 123));
        block.Results.append(sample(time, 5, 48855.9F));
        QCOMPARE(
            block.FormatBlockAsText(QStringLiteral(";")),
            QStringLiteral("2024.03.01T10:11:12.000000005;48855.9;2.5;-0.0001;1.23457e+06;0.1;65535;1e-07"));
        block.Results.append(sample(time, 999999999, kNaN));
        const QString text = block.FormatBlockAsText(QStringLiteral(", "));
        QCOMPARE(text.count(QLatin1Char('\n')), 1);
        QVERIFY(text.endsWith(QStringLiteral(
            "\n2024.03.01T10:11:12.999999999, nan, 2.5, -0.0001, 1.23457e+06, 0.1, 65535, 1e-07")));
        QCOMPARE(CMeasureBlock::ColumnHeadings().join(QLatin1Char(';')),
                 QStringLiteral("Timestamp;B;B.B';Bx;By;Bz;Temp;dB"));
    }

    void convertedUncertainty()
    {
        const auto percent = [](float dB, float b) {
            return ConvertUncertainty(dB, b, CUnits::TESLA, CUnits::PERCENT);
        };
        QCOMPARE(ConvertUncertainty(0.25F, 7.0F, CUnits::TESLA, CUnits::MILLI_TESLA), 250.0F);
        // The magnitude plays no part outside of percent.
        QCOMPARE(ConvertUncertainty(0.25F, 0.0F, CUnits::MICRO_TESLA, CUnits::NANO_TESLA), 250.0F);
        QVERIFY(std::isnan(percent(1e-20F, 0.00005F)));
        QVERIFY(std::isnan(percent(0.0F, -0.0001F)));
        // As a float, 0.0001 lies a little below the bound, the next one above it.
        QCOMPARE(percent(0.0F, std::nextafter(0.0001F, 1.0F)), 0.0F);
        QCOMPARE(percent(0.000001F, 0.00011F),
                 static_cast<float>(double(0.000001F) * 100 / double(0.00011F)));
        QVERIFY(std::isnan(percent(0.1F, 1.0F)));
        QCOMPARE(percent(0.09F, 1.0F), 9.0F);
        QVERIFY(std::isnan(percent(std::nextafter(0.09F, 1.0F), 1.0F)));
        QCOMPARE(percent(0.05F, -1.0F), -5.0F);
        QVERIFY(std::isnan(percent(0.1F, -1.0F)));
        QVERIFY(std::isnan(percent(kNaN, 1.0F)));
        QVERIFY(std::isnan(percent(0.01F, kNaN)));
    }

    void enumTexts()
    {
        const char* const states[] = {"Off", "Notification", "Audio", "Flag Notification"};
        for (int i = 0; i < 4; ++i) {
            const auto state = static_cast<CAlarm::AlarmState>(i + 1);
            QCOMPARE(AlarmStateToText(state), QString::fromLatin1(states[i]));
            QCOMPARE(TextToAlarmState(QString::fromLatin1(states[i])), state);
        }
        QCOMPARE(AlarmStateToText(static_cast<CAlarm::AlarmState>(0)), QString());
        QCOMPARE(TextToAlarmState(QStringLiteral("off")), CAlarm::Off);

        const char* const axes[] = {"B", "B.B'", "Bx", "By", "Bz", "dB"};
        const char* const shown[] = {"B",
                                     "B\xC2\xB7"
                                     "B'",
                                     "Bx",
                                     "By",
                                     "Bz",
                                     "\xCE\xB5(B)"};
        for (int i = 0; i < 6; ++i) {
            const auto axis = static_cast<CAxis::AxisType>(i + 1);
            QCOMPARE(AxisToText(axis), QString::fromLatin1(axes[i]));
            QCOMPARE(AxisToDisplayText(axis), QString::fromUtf8(shown[i]));
            QCOMPARE(TextToAxis(QString::fromLatin1(axes[i])), axis);
        }
        QCOMPARE(AxisToText(static_cast<CAxis::AxisType>(7)), QString());
        QCOMPARE(AxisToDisplayText(static_cast<CAxis::AxisType>(0)), QString());
        QCOMPARE(TextToAxis(QStringLiteral("bx")), CAxis::dB);

        const char* const modes[] = {"Continuous", "Immediate", "Timer", "External"};
        for (int i = 0; i < 4; ++i) {
            const auto mode = static_cast<CTrigger::TriggerMode>(i + 1);
            QCOMPARE(TriggerModeToText(mode), QString::fromLatin1(modes[i]));
            QCOMPARE(TextToTriggerMode(QString::fromLatin1(modes[i])), mode);
        }
        QCOMPARE(TriggerModeToText(static_cast<CTrigger::TriggerMode>(5)), QString());
        QCOMPARE(TextToTriggerMode(QStringLiteral("x")), CTrigger::CONTINUOUS);
    }
};

QTEST_GUILESS_MAIN(tst_MeasurementRecords)
#include "tst_MeasurementRecords.moc"
