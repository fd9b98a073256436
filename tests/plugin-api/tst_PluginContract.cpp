// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrument.h"
#include "CInstrumentPlugin.h"
#include "CMapperPluginOnTheFly.h"
#include "CMapperPluginStopAndGo.h"
#include "CTriggerPlugin.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QTest>

using namespace MetaObjectTable;

namespace {

class Instrument : public CInstrument
{
public:
    QStringList calls;

    void SendTrigger() override { calls << QStringLiteral("SendTrigger"); }
    bool Connect() override { return true; }
    void Disconnect() override {}
    void StartMeasurement() override {}
    void StopMeasurement() override {}
    void CalibrateZeroOffset(bool forceCalibration) override
    {
        calls << QStringLiteral("CalibrateZeroOffset %1").arg(forceCalibration);
    }
    void RestoreZeroOffsetToFactory() override {}
};

struct Row
{
    const char* name;
    const char* type;
    QVariant value; ///< another one than the initial value
};

QVector<Row> writableProperties()
{
    const QDateTime date(QDate(2024, 3, 1), QTime(10, 11, 12));
    return {
        {"Name", "QString", QStringLiteral("n")},
        {"Interface", "CInstrumentInterface::Interface", 3},
        {"StatusString", "QString", QStringLiteral("s")},
        {"MessagesHistory", "QStringList", QStringList{QStringLiteral("m")}},
        {"LastMessage", "QString", QStringLiteral("l")},
        {"ErrorCode", "int", 7},
        {"RessourceName", "QString", QStringLiteral("r")},
        {"SerialNumber", "QString", QStringLiteral("0007")},
        {"CalibrationDate", "QDateTime", date},
        {"ManufacturingDate", "QDateTime", date},
        {"Manufacturer", "QString", QStringLiteral("m")},
        {"Model", "QString", QStringLiteral("m")},
        {"ElectronicsVersion", "QString", QStringLiteral("e")},
        {"ProbeVersion", "QString", QStringLiteral("p")},
        {"FirmwareVersion", "QString", QStringLiteral("f")},
        {"RangeList", "QList<tFlux>", QVariant::fromValue(QList<tFlux>{0.1F})},
        {"UnitList", "QList<CUnits::UnitType>", QVariant::fromValue(QList<CUnits::UnitType>{CUnits::TESLA})},
        {"DivisorList", "QStringList", QStringList{QStringLiteral("d")}},
        {"TriggerList", "QList<CTrigger::TriggerMode>",
         QVariant::fromValue(QList<CTrigger::TriggerMode>{CTrigger::TIMER})},
        {"IsRunning", "bool", true},
        {"IsConnected", "bool", true},
    };
}

const char* const kBounds[] = {"AveragingBound",
                               "DisplayRateBound",
                               "BlockSizeBound",
                               "AcquisitionRateBound",
                               "KestrixAcquisitionRateBound",
                               "KestrixDisplayRateBound",
                               "FrequencyMinBound",
                               "FrequencyMaxBound"};

} // namespace

class tst_PluginContract : public QObject
{
    Q_OBJECT

private slots:
    void instrumentProperties()
    {
        QVector<Property> expected;
        for (const Row& row : writableProperties())
            expected.append({row.name, row.type, ReadWrite});
        for (const char* bound : kBounds)
            expected.append({bound, "CBoundedParm*", Constant});
        expected.append({"MeasurementParameters", "CMeasurementParameters*", ReadWrite});
        VERIFY_NO_DIFFERENCE(compareProperties(CInstrument::staticMetaObject, expected));
    }

    void instrumentSignalsComeInTheOrderOfDeclaration()
    {
        QVector<QByteArray> expected;
        for (const Row& row : writableProperties())
            expected.append(QByteArray(row.name) + "Changed(" + row.type + ")");
        expected.append("MeasurementParametersChanged(CMeasurementParameters*)");
        expected.append("OnNewMeasureBlock(QSharedPointer<CMeasureBlock>)");
        expected.append("OnUnitListUpdated()");
        expected.append("OnHasAdcUpdated()");
        expected.append("OnRangeListUpdated()");
        expected.append("OnTriggerListUpdated()");
        VERIFY_NO_DIFFERENCE(compareMethods(CInstrument::staticMetaObject, QMetaMethod::Signal, expected));
    }

    void instrumentSlots()
    {
        VERIFY_NO_DIFFERENCE(compareMethods(
            CInstrument::staticMetaObject, QMetaMethod::Slot,
            {"SendTrigger()", "Connect()", "Disconnect()", "StartMeasurement()", "StopMeasurement()",
             "CalibrateZeroOffset(bool)", "CalibrateZeroOffset()", "RestoreZeroOffsetToFactory()"}));
        Instrument instrument;
        QVERIFY(QMetaObject::invokeMethod(&instrument, "SendTrigger"));
        QVERIFY(QMetaObject::invokeMethod(&instrument, "CalibrateZeroOffset"));
        QVERIFY(QMetaObject::invokeMethod(&instrument, "CalibrateZeroOffset", Q_ARG(bool, true)));
        bool isConnected = false;
        QVERIFY(QMetaObject::invokeMethod(&instrument, "Connect", Q_RETURN_ARG(bool, isConnected)));
        QVERIFY(isConnected);
        QCOMPARE(instrument.calls,
                 (QStringList{QStringLiteral("SendTrigger"), QStringLiteral("CalibrateZeroOffset 0"),
                              QStringLiteral("CalibrateZeroOffset 1")}));
    }

    void instrumentSettersEmitOnChangeOnly()
    {
        Instrument instrument;
        for (const Row& row : writableProperties()) {
            const QByteArray signature = QByteArray("2") + row.name + "Changed(" + row.type + ")";
            QSignalSpy changed(&instrument,
                               QMetaObject::normalizedSignature(signature.constData()).constData());
            QVERIFY2(changed.isValid(), row.name);
            QVERIFY2(instrument.setProperty(row.name, row.value), row.name);
            QVERIFY2(instrument.setProperty(row.name, row.value), row.name);
            QVERIFY2(changed.count() == 1, row.name);
        }
    }

    void instrumentAsConstructed()
    {
        Instrument instrument;
        QVERIFY(!instrument.IsRunning());
        QVERIFY(!instrument.IsConnected());
        QCOMPARE(instrument.Interface(), CInstrumentInterface::Unknown);
        QVERIFY(!instrument.CalibrationDate().isValid());
        QCOMPARE(instrument.MeasurementParameters(), nullptr);
        QSet<CBoundedParm*> bounds;
        for (const char* bound : kBounds)
            bounds.insert(instrument.property(bound).value<CBoundedParm*>());
        QCOMPARE(bounds.size(), 8);
        QVERIFY(!bounds.contains(nullptr));
        CMeasurementParameters parameters;
        QSignalSpy changed(&instrument, &CInstrument::MeasurementParametersChanged);
        instrument.SetMeasurementParameters(&parameters);
        QCOMPARE(changed.count(), 1);
    }

    void otherClasses()
    {
        VERIFY_NO_DIFFERENCE(
            compareMethods(CTriggerPlugin::staticMetaObject, QMetaMethod::Signal, {"Trigger()"}));
        VERIFY_NO_DIFFERENCE(
            compareMethods(CMapperPluginStopAndGo::staticMetaObject, QMetaMethod::Signal, {"Ready()"}));
        VERIFY_NO_DIFFERENCE(compareMethods(CMapperPluginOnTheFly::staticMetaObject, QMetaMethod::Signal,
                                            {"Acquire(CPosition,COrientation)"}));
        VERIFY_NO_DIFFERENCE(compareMethods(CInstrumentListProvider::staticMetaObject, QMetaMethod::Signal,
                                            {"InstrumentListUpdated()"}));
        VERIFY_NO_DIFFERENCE(compareMethods(CInstrumentListProvider::staticMetaObject, QMetaMethod::Slot,
                                            {"GetInstrumentList()", "SetSerialPortSettings(QString,int)"}));
        for (const QMetaObject* metaObject :
             {&CPlugin::staticMetaObject, &CInstrumentPlugin::staticMetaObject,
              &CTriggerPlugin::staticMetaObject, &CMapperPlugin::staticMetaObject})
            VERIFY_NO_DIFFERENCE(compareProperties(*metaObject, {}));
        QCOMPARE(CMapperPlugin::kOnTheFly, 1);
        QCOMPARE(CMapperPlugin::kStopAndGo, 2);
    }
};

QTEST_GUILESS_MAIN(tst_PluginContract)
#include "tst_PluginContract.moc"
