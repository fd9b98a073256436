// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarm.h"
#include "CAxis.h"
#include "CBoundedParm.h"
#include "CBprimeResult.h"
#include "CFieldIntensityResult.h"
#include "CInstrumentInterface.h"
#include "CMeasureBlockMapping.h"
#include "COrientation.h"
#include "CPosition.h"
#include "CTrigger.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

using MetaObjectTable::Property;
using MetaObjectTable::ReadWrite;

/// Three numbers that are stored as doubles start at zero and are stored and emitted on change only.
template <class Class> void checkThreeDoubles(const QVector<const char*>& names)
{
    QVector<Property> properties;
    QVector<QByteArray> changedSignals;
    for (const char* name : names) {
        properties.append({name, "double", ReadWrite});
        changedSignals.append(QByteArray(name) + "Changed(double)");
    }
    const QMetaObject& metaObject = Class::staticMetaObject;
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareProperties(metaObject, properties));
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareMethods(metaObject, QMetaMethod::Signal, changedSignals));

    Class object;
    PropertyLog log(&object);
    double value = 0.1;
    for (const char* name : names) {
        QCOMPARE(object.property(name), QVariant(0.0));
        object.setProperty(name, 0.0);
        QCOMPARE(log.take(), QStringList());
        object.setProperty(name, value);
        object.setProperty(name, value);
        QCOMPARE(object.property(name), QVariant(value));
        QCOMPARE(log.take().size(), 1);
        value += 1.0;
    }
}

/// A class that only holds one enumeration.
void checkEnumHolder(const QMetaObject& metaObject, const char* name,
                     const QVector<MetaObjectTable::EnumValue>& values)
{
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareEnum(metaObject, name, values));
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    QCOMPARE(metaObject.enumeratorCount() - metaObject.enumeratorOffset(), 1);
    QCOMPARE(metaObject.propertyCount(), metaObject.propertyOffset());
    QCOMPARE(metaObject.methodCount(), metaObject.methodOffset());
}

} // namespace

class TestMeasurementRecords : public QObject
{
    Q_OBJECT

private slots:
    void enumHolders();
    void threeDoubles();
    void copiesCarryValuesOnly();
    void timestampableResult();
    void fieldIntensityResultSurface();
    void fieldIntensityResultStartsEmpty();
    void fieldIntensityResultEmitsOnChange();
    void notANumberAlwaysEmits();
    void blockSurfaces();
    void mappingBlockStartsEmpty();
    void queuedTypesAreRegistered_data();
    void queuedTypesAreRegistered();
};

void TestMeasurementRecords::enumHolders()
{
    checkEnumHolder(CAlarm::staticMetaObject, "AlarmState",
                    {{"Off", 1}, {"Notification", 2}, {"Audio", 3}, {"FlagNotification", 4}});
    checkEnumHolder(CAxis::staticMetaObject, "AxisType",
                    {{"B", 1}, {"BBprime", 2}, {"Bx", 3}, {"By", 4}, {"Bz", 5}, {"dB", 6}});
    checkEnumHolder(CTrigger::staticMetaObject, "TriggerMode",
                    {{"CONTINUOUS", 1}, {"IMMEDIATE", 2}, {"TIMER", 3}, {"EXTERNAL", 4}});
    checkEnumHolder(CInstrumentInterface::staticMetaObject, "Interface",
                    {{"Unknown", 1}, {"USB", 2}, {"Ethernet", 3}, {"Serial", 4}});
}

void TestMeasurementRecords::threeDoubles()
{
    checkThreeDoubles<CBprimeResult>({"X", "Y", "Z"});
    checkThreeDoubles<CPosition>({"X", "Y", "Z"});
    checkThreeDoubles<COrientation>({"Roll", "Pitch", "Yaw"});
    checkThreeDoubles<CBoundedParm>({"Min", "Max", "Default"});
}

void TestMeasurementRecords::copiesCarryValuesOnly()
{
    QObject parent;
    CPosition position(&parent);
    position.setObjectName(QStringLiteral("original"));
    position.SetX(1);
    position.SetY(-2);
    position.SetZ(3.5);
    QSignalSpy originalChanged(&position, &CPosition::XChanged);
    CPosition copy(position);
    QCOMPARE(copy.X(), 1.0);
    QCOMPARE(copy.Y(), -2.0);
    QCOMPARE(copy.Z(), 3.5);
    QCOMPARE(copy.parent(), nullptr);
    QCOMPARE(copy.objectName(), QString());
    copy.SetX(9);
    QCOMPARE(position.X(), 1.0);
    QCOMPARE(originalChanged.size(), 0);

    COrientation orientation(&parent);
    orientation.SetRoll(10);
    orientation.SetPitch(20);
    orientation.SetYaw(30);
    COrientation turned;
    turned = orientation;
    QCOMPARE(turned.Roll(), 10.0);
    QCOMPARE(turned.Pitch(), 20.0);
    QCOMPARE(turned.Yaw(), 30.0);
    QCOMPARE(turned.parent(), nullptr);
    const COrientation copied(orientation);
    QCOMPARE(copied.Yaw(), 30.0);
    QCOMPARE(copied.parent(), nullptr);
}

void TestMeasurementRecords::timestampableResult()
{
    const QMetaObject& metaObject = CTimestampableResult::staticMetaObject;
    QCOMPARE(metaObject.propertyCount(), metaObject.propertyOffset());
    QCOMPARE(metaObject.methodCount(), metaObject.methodOffset());
    CTimestampableResult result;
    QVERIFY(!result.Timestamp.isValid());
    QCOMPARE(result.TimestampNanoseconds, 0U);
    result.TimestampNanoseconds = 999999999;
    QCOMPARE(result.TimestampNanoseconds, 999999999U);
}

void TestMeasurementRecords::fieldIntensityResultSurface()
{
    using namespace MetaObjectTable;
    const QMetaObject& metaObject = CFieldIntensityResult::staticMetaObject;
    QCOMPARE(metaObject.superClass(), &CTimestampableResult::staticMetaObject);
    VERIFY_NO_DIFFERENCE(compareProperties(metaObject, {{"Bx", "tFlux", ReadWrite},
                                                        {"By", "tFlux", ReadWrite},
                                                        {"Bz", "tFlux", ReadWrite},
                                                        {"B", "tFlux", ReadWrite},
                                                        {"dB", "tFlux", ReadWrite},
                                                        {"BBprime", "tFlux", ReadWrite},
                                                        {"dBConverted", "tFlux", ReadWrite},
                                                        {"Temperature", "ushort", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(metaObject, QMetaMethod::Signal,
                                        {"BxChanged(tFlux)", "ByChanged(tFlux)", "BzChanged(tFlux)",
                                         "BChanged(tFlux)", "dBChanged(tFlux)", "BBprimeChanged(tFlux)",
                                         "dBConvertedChanged(tFlux)", "TemperatureChanged(quint16)"}));
}

void TestMeasurementRecords::fieldIntensityResultStartsEmpty()
{
    const CFieldIntensityResult result;
    QVERIFY(!result.Timestamp.isValid());
    for (const char* name : {"Bx", "By", "Bz", "B", "dB", "BBprime"})
        QCOMPARE(result.property(name).toFloat(), 0.0F);
    QVERIFY(std::isnan(result.dBConverted()));
    QCOMPARE(result.Temperature(), quint16(0));
}

void TestMeasurementRecords::fieldIntensityResultEmitsOnChange()
{
    CFieldIntensityResult result;
    PropertyLog log(&result);
    float value = 0.125F;
    for (const char* name : {"Bx", "By", "Bz", "B", "dB", "BBprime", "dBConverted"}) {
        for (int i = 0; i < 2; ++i)
            QVERIFY2(result.setProperty(name, QVariant::fromValue<tFlux>(value)), name);
        QCOMPARE(result.property(name).toFloat(), value);
        QCOMPARE(log.take(),
                 QStringList(QString::fromLatin1(name) + QLatin1Char('=') + QVariant(value).toString()));
        value *= 2;
    }
    result.SetTemperature(65535);
    result.SetTemperature(65535);
    QCOMPARE(log.take(), QStringList(QStringLiteral("Temperature=65535")));
}

void TestMeasurementRecords::notANumberAlwaysEmits()
{
    CFieldIntensityResult result;
    QSignalSpy changed(&result, &CFieldIntensityResult::dBConvertedChanged);
    result.SetDBConverted(std::numeric_limits<tFlux>::quiet_NaN());
    result.SetDBConverted(std::numeric_limits<tFlux>::quiet_NaN());
    QCOMPARE(changed.size(), 2);
    // The two zeros are equal.
    QSignalSpy zeroChanged(&result, &CFieldIntensityResult::BChanged);
    result.SetB(-0.0F);
    QCOMPARE(zeroChanged.size(), 0);
}

void TestMeasurementRecords::blockSurfaces()
{
    using namespace MetaObjectTable;
    const QMetaObject& block = CMeasureBlock::staticMetaObject;
    QCOMPARE(block.superClass(), &QObject::staticMetaObject);
    VERIFY_NO_DIFFERENCE(compareProperties(block, {{"Comment", "QString", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(block, QMetaMethod::Signal, {"CommentChanged(QString)"}));
    const QMetaObject& mappingBlock = CMeasureBlockMapping::staticMetaObject;
    QCOMPARE(mappingBlock.superClass(), &CMeasureBlock::staticMetaObject);
    VERIFY_NO_DIFFERENCE(compareProperties(mappingBlock, {{"RotAppliedOnMeasBlock", "bool", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(mappingBlock, QMetaMethod::Signal, {"RotAppliedOnMeasBlockChanged(bool)"}));
}

void TestMeasurementRecords::mappingBlockStartsEmpty()
{
    CMeasureBlockMapping block;
    QCOMPARE(block.RotAppliedOnMeasBlock(), false);
    QCOMPARE(block.Position.X(), 0.0);
    QCOMPARE(block.Orientation.Yaw(), 0.0);
    QSignalSpy changed(&block, &CMeasureBlockMapping::RotAppliedOnMeasBlockChanged);
    block.SetRotAppliedOnMeasBlock(true);
    block.SetRotAppliedOnMeasBlock(true);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.takeFirst().at(0).toBool(), true);
}

void TestMeasurementRecords::queuedTypesAreRegistered_data()
{
    QTest::addColumn<QByteArray>("type");
    for (const char* type :
         {"tFlux", "QList<tFlux>", "QSharedPointer<CMeasureBlock>", "QSharedPointer<CMeasureBlockMapping>",
          "QSharedPointer<CFieldIntensityResult>", "CPosition", "COrientation", "CUnits::UnitType",
          "QList<CUnits::UnitType>", "CTrigger::TriggerMode", "QList<CTrigger::TriggerMode>"})
        QTest::newRow(type) << QByteArray(type);
}

void TestMeasurementRecords::queuedTypesAreRegistered()
{
    QFETCH(QByteArray, type);
    const int id = QMetaType::type(type.constData());
    QVERIFY(id != QMetaType::UnknownType);
    void* value = QMetaType::create(id);
    QVERIFY(value);
    QMetaType::destroy(id, value);
}

QTEST_APPLESS_MAIN(TestMeasurementRecords)
#include "tst_MeasurementRecords.moc"
