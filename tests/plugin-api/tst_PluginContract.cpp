// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrument.h"
#include "CInstrumentPlugin.h"
#include "CMapperPluginOnTheFly.h"
#include "CMapperPluginStopAndGo.h"
#include "CTriggerPlugin.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <cstring>
#include <thread>

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

#if defined(Q_CC_GNU) && defined(Q_PROCESSOR_X86_64) && !defined(Q_OS_WIN)
/// Gives a name to the last virtual function of QObject, which is protected.
struct ObjectProbe : QObject
{
    static auto last() { return &ObjectProbe::disconnectNotify; }
};

/// Place in the table of virtual functions: in this ABI a pointer to a virtual member function holds its
/// offset plus one.
template <class Member> int slotOf(Member member)
{
    static_assert(sizeof(member) >= sizeof(quintptr));
    quintptr offset = 0;
    std::memcpy(&offset, &member, sizeof(offset));
    return static_cast<int>((offset - 1) / sizeof(void*));
}
#endif

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

#if defined(Q_CC_GNU) && defined(Q_PROCESSOR_X86_64) && !defined(Q_OS_WIN)
    void virtualOperationsComeInOrder()
    {
        // A plug-in is compiled against these places in the tables of virtual functions.
        const int afterObject = slotOf(ObjectProbe::last()) + 1;
        QCOMPARE(slotOf(&CPlugin::Start), afterObject);
        QCOMPARE(slotOf(&CPlugin::Stop), afterObject + 1);
        QCOMPARE(slotOf(&CInstrumentPlugin::GetInstrumentListProvider), afterObject + 2);
        QCOMPARE(slotOf(&CTriggerPlugin::Shutdown), afterObject + 2);
        QCOMPARE(slotOf(&CMapperPlugin::GetPosition), afterObject + 2);
        QCOMPARE(slotOf(&CMapperPlugin::GetOrientation), afterObject + 3);
        QCOMPARE(slotOf(&CMapperPlugin::Shutdown), afterObject + 4);
        QCOMPARE(slotOf(&CMapperPluginStopAndGo::MoveTo), afterObject + 5);
        QCOMPARE(slotOf(&CInstrumentListProvider::GetInstrumentList), afterObject);
        QCOMPARE(slotOf(&CInstrumentListProvider::SetSerialPortSettings), afterObject + 1);
        QCOMPARE(slotOf(&CInstrument::SendTrigger), afterObject);
        QCOMPARE(slotOf(&CInstrument::Connect), afterObject + 1);
        QCOMPARE(slotOf(&CInstrument::Disconnect), afterObject + 2);
        QCOMPARE(slotOf(&CInstrument::StartMeasurement), afterObject + 3);
        QCOMPARE(slotOf(&CInstrument::StopMeasurement), afterObject + 4);
        QCOMPARE(slotOf(&CInstrument::CalibrateZeroOffset), afterObject + 5);
        QCOMPARE(slotOf(&CInstrument::RestoreZeroOffsetToFactory), afterObject + 6);
    }
#endif

    void aBlockCrossesThreads()
    {
        Instrument instrument;
        QWeakPointer<CMeasureBlock> watched;
        QVector<QSharedPointer<CMeasureBlock>> received;
        QObject receiver;
        connect(&instrument, &CInstrument::OnNewMeasureBlock, &receiver,
                [&](const QSharedPointer<CMeasureBlock>& block) {
                    QCOMPARE(QThread::currentThread(), thread());
                    received.append(block);
                });
        std::thread driver([&] {
            auto block = QSharedPointer<CMeasureBlock>::create();
            block->Results.append(QSharedPointer<CFieldIntensityResult>::create());
            block->moveToThread(thread());
            watched = block;
            emit instrument.OnNewMeasureBlock(block);
        });
        driver.join();
        QVERIFY(received.isEmpty());
        QVERIFY2(!watched.isNull(), "the queued signal keeps the block");
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(received.constFirst()->Results.size(), 1);
        received.clear();
        QVERIFY(watched.isNull());
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
