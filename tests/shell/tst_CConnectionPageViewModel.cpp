// SPDX-License-Identifier: GPL-3.0-or-later
#include "CConnectionPageSettings.h"
#include "CConnectionPageViewModel.h"
#include "CInstrumentSupervisor.h"
#include "CSettings.h"
#include "MetaObjectTable.h"
#include "ShellTestSupport.h"

#include <QAbstractItemModelTester>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace MetaObjectTable;

class tst_CConnectionPageViewModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void surface();
    void initialValues();
    void noInstrumentsAndNoDefault();
    void visitRefreshesTheList();
    void listsInstrumentsInOrder();
    void defaultIsSelected();
    void absentDefaultIsListedLast();
    void absentDefaultNeedsNameAndSerialNumber();
    void serialNumbersCompareCaseSensitively();
    void storedPortAndBaudRate();
    void unknownBaudRateSelectsTheFirst();
    void storedPortStaysWithoutPorts();
    void indexChangesNamesAndMarksUnsaved();
    void indexOutsideTheListKeepsTheName();
    void listUpdateCountsAsChange();
    void connectingIsNoChange();
    void applyStoresAndTells();
    void applyWithNone();
    void applyKeepsTheAbsentDefault();
    void applyCutsNamesWithTheSeparator();
    void applyEmitsEvenWhenNothingIsUnsaved();
    void connectShowsFacts();
    void datesWithoutValueAreEmpty();
    void calibrationAge_data();
    void calibrationAge();
    void disconnectClearsFacts();
    void failedConnect_data();
    void failedConnect();
    void lastOfEqualSerialNumbersWins();
    void indexOutsideTheListConnectsNothing();
    void vanishedInstrumentIsNoLongerActive();
    void invokables();
    void endsWithoutItsConnections();

private:
    void store(const char* port, const char* baud, const char* name, const char* serialNumber)
    {
        CConnectionPageSettings(m_settings.get())
            .SaveConnectionSettings(QString::fromLatin1(port), QString::fromLatin1(baud),
                                    QString::fromLatin1(name), QString::fromLatin1(serialNumber));
        makeSupervisor();
    }

    void makeSupervisor()
    {
        m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
        m_supervisor->AddInstrumentListProvider(m_provider.get());
    }

    static QStringList words(const char* text) { return QString::fromLatin1(text).split(QLatin1Char('|')); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<FakeProvider> m_provider;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
};

void tst_CConnectionPageViewModel::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<CSettings>(QStringLiteral("/nowhere"));
    m_settings->SetInstrumentParameterPath(m_folder->path());
    m_provider = std::make_unique<FakeProvider>();
    makeSupervisor();
}

void tst_CConnectionPageViewModel::cleanup()
{
    m_supervisor.reset();
    m_provider.reset();
    m_settings.reset();
    m_folder.reset();
}

void tst_CConnectionPageViewModel::surface()
{
    const QMetaObject& meta = CConnectionPageViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(
        compareProperties(meta, {{"InstrumentSupervisor", "CInstrumentSupervisor*", Constant},
                                 {"ConnectedInstruments", "CInstrumentsList*", ReadOnly},
                                 {"SerialPortNames", "QStringList", ReadOnly},
                                 {"BaudrateNames", "QStringList", ReadOnly},
                                 {"InstrumentNames", "QStringList", ReadOnly},
                                 {"SelectedSerialPortName", "QString", ReadOnly},
                                 {"SelectedBaudrateName", "QString", ReadOnly},
                                 {"SelectedBaudrateIndex", "int", ReadWrite},
                                 {"SelectedSerialPortNameIndex", "int", ReadWrite},
                                 {"SelectedDefaultInstrumentIndex", "int", ReadWrite},
                                 {"ActiveInstrumentIndex", "int", ReadOnly},
                                 {"SerialNumber", "QString", ReadOnly},
                                 {"CalibrationDate", "QString", ReadOnly},
                                 {"ManufacturingDate", "QString", ReadOnly},
                                 {"Manufacturer", "QString", ReadOnly},
                                 {"Model", "QString", ReadOnly},
                                 {"ElectronicsVersion", "QString", ReadOnly},
                                 {"ProbeVersion", "QString", ReadOnly},
                                 {"FirmwareVersion", "QString", ReadOnly},
                                 {"CalibrationOutOfDate", "bool", ReadOnly}}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot,
                                        {"OnInstrumentListUpdated()", "OnHasActiveInstrumentChanged()",
                                         "OnConnectionPageParametersChanged()"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Method,
                       {"apply()", "restore()", "setActiveInstrument(int)", "clearActiveInstrument()"}));
}

void tst_CConnectionPageViewModel::initialValues()
{
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.Name(), QStringLiteral("Connection"));
    QCOMPARE(page.GetHelpName(), QStringLiteral("connection"));
    QVERIFY(!page.HasUnsavedParameter());
    QCOMPARE(page.InstrumentSupervisor(), m_supervisor.get());
    QVERIFY(page.ConnectedInstruments());
    QCOMPARE(page.ConnectedInstruments()->rowCount(), 0);
    QAbstractItemModelTester tester(page.ConnectedInstruments(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(page.BaudrateNames(), words("110|300|600|1200|2400|4800|9600|14400|19200|38400|57600|115200|"
                                         "230400|460800|921600"));
    QStringList ports;
    const QList<QSerialPortInfo> available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& port : available)
        ports << port.portName();
    QCOMPARE(page.SerialPortNames(), ports);
    QCOMPARE(page.ActiveInstrumentIndex(), -1);
    for (const QString& fact :
         {page.SerialNumber(), page.CalibrationDate(), page.ManufacturingDate(), page.Manufacturer(),
          page.Model(), page.ElectronicsVersion(), page.ProbeVersion(), page.FirmwareVersion()})
        QCOMPARE(fact, QString());
    QVERIFY(!page.CalibrationOutOfDate());
}

void tst_CConnectionPageViewModel::noInstrumentsAndNoDefault()
{
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.InstrumentNames(), words("None"));
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 0);
    QVERIFY(!page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::visitRefreshesTheList()
{
    m_provider->add("Probe", "1");
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 0);
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(m_provider->listCalls, 1);
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 1);
    QCOMPARE(page.ConnectedInstruments()->rowCount(), 1);
}

void tst_CConnectionPageViewModel::listsInstrumentsInOrder()
{
    m_provider->add("B", "2");
    m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.InstrumentNames(), words("None|B - 2|A - 1"));
    const CInstrumentsList* list = page.ConnectedInstruments();
    QCOMPARE(list->rowCount(), 2);
    QCOMPARE(list->data(list->index(1), Qt::UserRole + 1).toString(), QStringLiteral("A - 1"));

    m_provider->add("C", "3");
    QSignalSpy names(&page, &CConnectionPageViewModel::InstrumentNamesChanged);
    emit m_provider->InstrumentListUpdated();
    QCOMPARE(page.InstrumentNames(), words("None|B - 2|A - 1|C - 3"));
    QCOMPARE(list->rowCount(), 3);
    QCOMPARE(names.count(), 1);
}

void tst_CConnectionPageViewModel::defaultIsSelected()
{
    store("", "9600", "Stored name", "7");
    m_provider->add("A", "1");
    m_provider->add("B", "7");
    m_provider->add("C", "7");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.InstrumentNames(), words("None|A - 1|B - 7|C - 7"));
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 2);
    QVERIFY(!page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::absentDefaultIsListedLast()
{
    store("", "9600", "Lost", "7");
    m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.InstrumentNames(), words("None|A - 1|Lost - 7"));
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 2);
    QVERIFY(!page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::absentDefaultNeedsNameAndSerialNumber()
{
    store("", "9600", "", "7");
    {
        CConnectionPageViewModel page(m_supervisor.get());
        QCOMPARE(page.InstrumentNames(), words("None"));
        QCOMPARE(page.SelectedDefaultInstrumentIndex(), 0);
    }
    store("", "9600", "Lost", "");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.InstrumentNames(), words("None"));
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 0);
}

void tst_CConnectionPageViewModel::serialNumbersCompareCaseSensitively()
{
    store("", "9600", "A", "sn7");
    m_provider->add("A", "SN7");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.InstrumentNames(), words("None|A - SN7|A - sn7"));
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 2);
}

void tst_CConnectionPageViewModel::storedPortAndBaudRate()
{
    store("", "57600", "", "");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.SelectedBaudrateIndex(), 10);
    QCOMPARE(page.SelectedBaudrateName(), QStringLiteral("57600"));
    QCOMPARE(page.SelectedSerialPortNameIndex(), 0);
}

void tst_CConnectionPageViewModel::unknownBaudRateSelectsTheFirst()
{
    store("", "12345", "", "");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.SelectedBaudrateIndex(), 0);
    QCOMPARE(page.SelectedBaudrateName(), QStringLiteral("110"));
    QVERIFY(!page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::storedPortStaysWithoutPorts()
{
    if (!QSerialPortInfo::availablePorts().isEmpty())
        QSKIP("this machine has serial ports");
    store("ttyX9", "9600", "", "");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.SelectedSerialPortName(), QStringLiteral("ttyX9"));
    QCOMPARE(page.SelectedSerialPortNameIndex(), 0);
    page.SetSelectedBaudrateIndex(3);
    QCOMPARE(page.SelectedSerialPortName(), QStringLiteral("ttyX9"));
}

void tst_CConnectionPageViewModel::indexChangesNamesAndMarksUnsaved()
{
    store("", "9600", "", "");
    CConnectionPageViewModel page(m_supervisor.get());
    QSignalSpy index(&page, &CConnectionPageViewModel::SelectedBaudrateIndexChanged);
    QSignalSpy name(&page, &CConnectionPageViewModel::SelectedBaudrateNameChanged);
    QSignalSpy unsaved(&page, &CConnectionPageViewModel::HasUnsavedParameterChanged);
    page.SetSelectedBaudrateIndex(6);
    QCOMPARE(index.count(), 0);
    QVERIFY(!page.HasUnsavedParameter());
    page.SetSelectedBaudrateIndex(11);
    page.SetSelectedBaudrateIndex(12);
    QCOMPARE(index.count(), 2);
    QCOMPARE(name.count(), 2);
    QCOMPARE(page.SelectedBaudrateName(), QStringLiteral("230400"));
    QCOMPARE(unsaved.count(), 1);
    QVERIFY(page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::indexOutsideTheListKeepsTheName()
{
    store("", "9600", "", "");
    CConnectionPageViewModel page(m_supervisor.get());
    for (const int index : {-1, 15}) {
        page.SetSelectedBaudrateIndex(index);
        QCOMPARE(page.SelectedBaudrateName(), QStringLiteral("9600"));
    }
}

void tst_CConnectionPageViewModel::listUpdateCountsAsChange()
{
    store("", "9600", "Lost", "7");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 1);
    QVERIFY(!page.HasUnsavedParameter());
    m_provider->add("A", "1");
    emit m_provider->InstrumentListUpdated();
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 2);
    QVERIFY(page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::connectingIsNoChange()
{
    m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    page.clearActiveInstrument();
    QVERIFY(!page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::applyStoresAndTells()
{
    store("ttyX9", "9600", "", "");
    m_provider->add("A", "1");
    m_provider->add("B", "2");
    CConnectionPageViewModel page(m_supervisor.get());
    page.SetSelectedBaudrateIndex(11);
    page.SetSelectedDefaultInstrumentIndex(2);
    QVERIFY(page.HasUnsavedParameter());
    QSignalSpy unsaved(&page, &CConnectionPageViewModel::HasUnsavedParameterChanged);
    page.apply();

    QCOMPARE(m_provider->portSettings, QStringList{page.SelectedSerialPortName() + QLatin1String("@115200")});
    QVERIFY(!page.HasUnsavedParameter());
    QCOMPARE(unsaved.count(), 1);
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 2);
    const CConnectionPageSettings stored(m_settings.get());
    QCOMPARE(stored.SerialPort(), page.SelectedSerialPortName());
    QCOMPARE(stored.BaudRate(), QStringLiteral("115200"));
    QCOMPARE(stored.InstrumentName(), QStringLiteral("B"));
    QCOMPARE(stored.InstrumentSerialNumber(), QStringLiteral("2"));
}

void tst_CConnectionPageViewModel::applyWithNone()
{
    store("", "9600", "A", "1");
    m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 1);
    page.SetSelectedDefaultInstrumentIndex(0);
    page.apply();
    const CConnectionPageSettings stored(m_settings.get());
    QCOMPARE(stored.InstrumentName(), QString());
    QCOMPARE(stored.InstrumentSerialNumber(), QString());
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 0);

    page.SetSelectedDefaultInstrumentIndex(-1);
    page.apply();
    QCOMPARE(CConnectionPageSettings(m_settings.get()).InstrumentName(), QString());
}

void tst_CConnectionPageViewModel::applyKeepsTheAbsentDefault()
{
    store("", "9600", "Lost", "7");
    CConnectionPageViewModel page(m_supervisor.get());
    page.apply();
    const CConnectionPageSettings stored(m_settings.get());
    QCOMPARE(stored.InstrumentName(), QStringLiteral("Lost"));
    QCOMPARE(stored.InstrumentSerialNumber(), QStringLiteral("7"));
    QCOMPARE(page.InstrumentNames(), words("None|Lost - 7"));
    QCOMPARE(page.SelectedDefaultInstrumentIndex(), 1);
}

void tst_CConnectionPageViewModel::applyCutsNamesWithTheSeparator()
{
    m_provider->add("Probe - long", "9");
    CConnectionPageViewModel page(m_supervisor.get());
    page.SetSelectedDefaultInstrumentIndex(1);
    page.apply();
    const CConnectionPageSettings stored(m_settings.get());
    QCOMPARE(stored.InstrumentName(), QStringLiteral("Probe"));
    QCOMPARE(stored.InstrumentSerialNumber(), QStringLiteral("long"));
}

void tst_CConnectionPageViewModel::applyEmitsEvenWhenNothingIsUnsaved()
{
    CConnectionPageViewModel page(m_supervisor.get());
    QSignalSpy unsaved(&page, &CConnectionPageViewModel::HasUnsavedParameterChanged);
    page.apply();
    QCOMPARE(unsaved.count(), 1);
    QCOMPARE(unsaved.at(0).at(0).toBool(), false);
}

void tst_CConnectionPageViewModel::connectShowsFacts()
{
    m_provider->add("A", "1");
    const QSharedPointer<FakeInstrument> instrument = m_provider->add("B", " 2 ");
    instrument->SetManufacturer(QStringLiteral("\tMaker "));
    instrument->SetModel(QStringLiteral(" M2040 "));
    instrument->SetElectronicsVersion(QStringLiteral(" 1.0"));
    instrument->SetProbeVersion(QStringLiteral("2.0\n"));
    instrument->SetFirmwareVersion(QStringLiteral("3.0 "));
    instrument->SetManufacturingDate(QDateTime(QDate(2019, 2, 3), QTime(23, 59)));
    instrument->SetCalibrationDate(QDateTime(QDate(2020, 11, 9), QTime(12, 0)));

    CConnectionPageViewModel page(m_supervisor.get());
    QSignalSpy active(&page, &CConnectionPageViewModel::ActiveInstrumentIndexChanged);
    page.setActiveInstrument(1);
    QCOMPARE(instrument->connects, 1);
    QCOMPARE(page.ActiveInstrumentIndex(), 1);
    QCOMPARE(active.count(), 1);
    QCOMPARE(page.SerialNumber(), QStringLiteral("2"));
    QCOMPARE(page.Manufacturer(), QStringLiteral("Maker"));
    QCOMPARE(page.Model(), QStringLiteral("M2040"));
    QCOMPARE(page.ElectronicsVersion(), QStringLiteral("1.0"));
    QCOMPARE(page.ProbeVersion(), QStringLiteral("2.0"));
    QCOMPARE(page.FirmwareVersion(), QStringLiteral("3.0"));
    QCOMPARE(page.ManufacturingDate(), QStringLiteral("2019-02-03"));
    QCOMPARE(page.CalibrationDate(), QStringLiteral("2020-11-09"));
    QVERIFY(page.CalibrationOutOfDate());

    // A later visit shows the instrument that is still connected.
    CConnectionPageViewModel visit(m_supervisor.get());
    QCOMPARE(visit.ActiveInstrumentIndex(), 1);
    QCOMPARE(visit.Model(), QStringLiteral("M2040"));
    QCOMPARE(instrument->connects, 1);
}

void tst_CConnectionPageViewModel::datesWithoutValueAreEmpty()
{
    m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    QCOMPARE(page.CalibrationDate(), QString());
    QCOMPARE(page.ManufacturingDate(), QString());
    QVERIFY(!page.CalibrationOutOfDate());
}

void tst_CConnectionPageViewModel::calibrationAge_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<bool>("outOfDate");
    QTest::newRow("today") << 0 << false;
    QTest::newRow("365 days") << 365 << false;
    QTest::newRow("366 days") << 366 << true;
    QTest::newRow("tomorrow") << -1 << false;
}

void tst_CConnectionPageViewModel::calibrationAge()
{
    QFETCH(int, days);
    QFETCH(bool, outOfDate);
    const QSharedPointer<FakeInstrument> instrument = m_provider->add("A", "1");
    instrument->SetCalibrationDate(QDateTime::currentDateTime().addDays(-days));
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    QCOMPARE(page.CalibrationOutOfDate(), outOfDate);
}

void tst_CConnectionPageViewModel::disconnectClearsFacts()
{
    const QSharedPointer<FakeInstrument> instrument = m_provider->add("A", "1");
    instrument->SetModel(QStringLiteral("M"));
    instrument->SetCalibrationDate(QDateTime(QDate(2000, 1, 1), QTime(0, 0)));
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    QVERIFY(page.CalibrationOutOfDate());

    QTest::ignoreMessage(QtDebugMsg, "Active instrument cleared");
    page.clearActiveInstrument();
    QCOMPARE(instrument->disconnects, 1);
    QCOMPARE(page.ActiveInstrumentIndex(), -1);
    QCOMPARE(page.SerialNumber(), QString());
    QCOMPARE(page.Model(), QString());
    QCOMPARE(page.CalibrationDate(), QString());
    QVERIFY(!page.CalibrationOutOfDate());
}

void tst_CConnectionPageViewModel::failedConnect_data()
{
    QTest::addColumn<int>("connecting");
    QTest::newRow("false") << int(FakeInstrument::Fails);
    QTest::newRow("exception") << int(FakeInstrument::Throws);
}

void tst_CConnectionPageViewModel::failedConnect()
{
    QFETCH(int, connecting);
    m_provider->add("A", "1");
    const QSharedPointer<FakeInstrument> failing = m_provider->add("B", "2");
    failing->connecting = static_cast<FakeInstrument::Connecting>(connecting);
    failing->SetModel(QStringLiteral("M"));
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    QCOMPARE(page.ActiveInstrumentIndex(), 0);
    page.setActiveInstrument(1);
    QCOMPARE(failing->connects, 1);
    QCOMPARE(page.ActiveInstrumentIndex(), -1);
    QCOMPARE(page.Model(), QString());
    QVERIFY(!m_supervisor->HasActiveInstrument());
}

void tst_CConnectionPageViewModel::lastOfEqualSerialNumbersWins()
{
    m_provider->add("A", "1");
    const QSharedPointer<FakeInstrument> twin = m_provider->add("B", "1");
    m_provider->add("C", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    QCOMPARE(page.ActiveInstrumentIndex(), 0);
    twin->SetIsConnected(true);
    page.OnInstrumentListUpdated();
    QCOMPARE(page.ActiveInstrumentIndex(), 1);
}

void tst_CConnectionPageViewModel::indexOutsideTheListConnectsNothing()
{
    const QSharedPointer<FakeInstrument> instrument = m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    for (const int index : {-1, 1, 100}) {
        page.setActiveInstrument(index);
        QCOMPARE(page.ActiveInstrumentIndex(), 0);
    }
    QCOMPARE(instrument->disconnects, 0);
}

void tst_CConnectionPageViewModel::vanishedInstrumentIsNoLongerActive()
{
    m_provider->add("A", "1")->SetModel(QStringLiteral("M"));
    CConnectionPageViewModel page(m_supervisor.get());
    page.setActiveInstrument(0);
    m_provider->instruments.clear();
    emit m_provider->InstrumentListUpdated();
    QCOMPARE(page.ActiveInstrumentIndex(), -1);
    QCOMPARE(page.Model(), QString());
    QCOMPARE(page.InstrumentNames(), words("None"));
    QCOMPARE(page.ConnectedInstruments()->rowCount(), 0);
}

void tst_CConnectionPageViewModel::invokables()
{
    m_provider->add("A", "1");
    CConnectionPageViewModel page(m_supervisor.get());
    QVERIFY(QMetaObject::invokeMethod(&page, "setActiveInstrument", Q_ARG(int, 0)));
    QCOMPARE(page.ActiveInstrumentIndex(), 0);
    QVERIFY(QMetaObject::invokeMethod(&page, "clearActiveInstrument"));
    QCOMPARE(page.ActiveInstrumentIndex(), -1);
    page.SetSelectedBaudrateIndex(4);
    QVERIFY(QMetaObject::invokeMethod(&page, "restore"));
    QCOMPARE(page.SelectedBaudrateIndex(), 0);
    QVERIFY(QMetaObject::invokeMethod(&page, "apply"));
    QVERIFY(!page.HasUnsavedParameter());
}

void tst_CConnectionPageViewModel::endsWithoutItsConnections()
{
    {
        CConnectionPageViewModel page(m_supervisor.get());
    }
    m_provider->add("A", "1");
    emit m_provider->InstrumentListUpdated();
    m_supervisor->SetActiveInstrument(m_supervisor->AvailableInstruments().at(0));
    QVERIFY(m_supervisor->HasActiveInstrument());
}

QTEST_GUILESS_MAIN(tst_CConnectionPageViewModel)
#include "tst_CConnectionPageViewModel.moc"
