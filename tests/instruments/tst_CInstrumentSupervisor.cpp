// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeInstrumentListProvider.h"
#include "CInstrumentSupervisor.h"
#include "CSettings.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kConnectError = QStringLiteral("Error occured when connecting the instrument.");
const QString kDisconnectError = QStringLiteral("Error occured when disconnecting the instrument.");

QStringList callsOf(const QObject& fake)
{
    return fake.property("calls").toStringList();
}

QStringList serialNumbersOf(const QList<QSharedPointer<CInstrument>>& instruments)
{
    QStringList serialNumbers;
    for (const QSharedPointer<CInstrument>& instrument : instruments)
        serialNumbers.append(instrument->SerialNumber());
    return serialNumbers;
}

} // namespace

class tst_CInstrumentSupervisor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void surface();
    void startsIdle();
    void concatenatesTheProviders();
    void dropsNullInstruments();
    void refreshesWhenAProviderReports();
    void connectsAnInstrument();
    void replacesAnInstrument();
    void connectsTheSameInstrumentAgain();
    void setsNoInstrument();
    void failedConnect_data();
    void failedConnect();
    void failedReconnect_data();
    void failedReconnect();
    void failedDisconnect_data();
    void failedDisconnect();
    void clears();
    void clearsNothing();
    void keepsAListedInstrument();
    void disconnectsAVanishedInstrument();
    void dropsARenewedInstrument();
    void followsAnInstrumentThatDied();
    void replacesAnInstrumentThatDied();
    void refreshInsideARefresh();
    void findsTheDefaultInstrument_data();
    void findsTheDefaultInstrument();
    void forwardsSerialPortSettings();
    void savesConnectionSettings();
    void leavesTheInstrumentConnectedAtItsEnd();

private:
    QSharedPointer<CFakeInstrument> instrument(int index) const
    {
        return m_provider->Instruments().at(index);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CFakeInstrumentListProvider> m_provider;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<QSignalSpy> m_activeSpy;
    std::unique_ptr<QSignalSpy> m_updatedSpy;
};

void tst_CInstrumentSupervisor::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<CSettings>(QString());
    m_settings->SetInstrumentParameterPath(m_directory->path());
    m_provider =
        std::make_unique<CFakeInstrumentListProvider>(QStringList{QStringLiteral("1"), QStringLiteral("2")});
    m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
    m_supervisor->AddInstrumentListProvider(m_provider.get());
    m_supervisor->RefreshAvailableInstruments();
    m_activeSpy =
        std::make_unique<QSignalSpy>(m_supervisor.get(), &CInstrumentSupervisor::HasActiveInstrumentChanged);
    m_updatedSpy =
        std::make_unique<QSignalSpy>(m_supervisor.get(), &CInstrumentSupervisor::AvailableInstrumentUpdated);
}

void tst_CInstrumentSupervisor::cleanup()
{
    m_supervisor.reset();
    m_provider.reset();
}

void tst_CInstrumentSupervisor::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& meta = CInstrumentSupervisor::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(
        meta, {
                  {"AvailableInstruments", "QList<QSharedPointer<CInstrument> >", ReadOnlyNoNotify},
                  {"HasActiveInstrument", "bool", ReadOnly},
                  {"Instrument", "QWeakPointer<CInstrument>", ReadOnlyNoNotify},
                  {"ConnectionPageSettings", "CConnectionPageSettings*", Constant},
              }));
    VERIFY_NO_DIFFERENCE(compareMethods(
        meta, QMetaMethod::Signal, {"HasActiveInstrumentChanged(bool)", "AvailableInstrumentUpdated()"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot, {"RefreshAvailableInstruments()"}));
}

void tst_CInstrumentSupervisor::startsIdle()
{
    const CInstrumentSupervisor supervisor(m_settings.get());
    QVERIFY(supervisor.AvailableInstruments().isEmpty());
    QVERIFY(!supervisor.HasActiveInstrument());
    QVERIFY(supervisor.Instrument().isNull());
    QVERIFY(!supervisor.GetDefaultInstrument());
}

void tst_CInstrumentSupervisor::concatenatesTheProviders()
{
    CFakeInstrumentListProvider second({QStringLiteral("3")});
    CFakeInstrumentListProvider third({});
    CFakeInstrumentListProvider fourth({QStringLiteral("0")});
    m_supervisor->AddInstrumentListProvider(&second);
    m_supervisor->AddInstrumentListProvider(&third);
    m_supervisor->AddInstrumentListProvider(&fourth);
    // A provider is not asked before it, or somebody else, reports.
    QVERIFY(callsOf(second).isEmpty());
    QCOMPARE(m_updatedSpy->count(), 0);
    m_supervisor->RefreshAvailableInstruments();
    QCOMPARE(
        serialNumbersOf(m_supervisor->AvailableInstruments()),
        QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("0")}));
    QCOMPARE(m_updatedSpy->count(), 1);
    m_supervisor.reset();
}

void tst_CInstrumentSupervisor::dropsNullInstruments()
{
    class CNullProvider : public CInstrumentListProvider
    {
    public:
        QList<QSharedPointer<CInstrument>> GetInstrumentList() override { return {nullptr, nullptr}; }
        void SetSerialPortSettings(QString /*port*/, int /*baudRate*/) override {}
    };
    CNullProvider provider;
    m_supervisor->AddInstrumentListProvider(&provider);
    m_supervisor->RefreshAvailableInstruments();
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 2);
    m_supervisor.reset();
}

void tst_CInstrumentSupervisor::refreshesWhenAProviderReports()
{
    m_provider->AddInstrument(QSharedPointer<CFakeInstrument>::create(QStringLiteral("3")));
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 2);
    m_provider->Announce();
    QCOMPARE(m_supervisor->AvailableInstruments().size(), 3);
    QCOMPARE(m_updatedSpy->count(), 1);
    QCOMPARE(m_activeSpy->count(), 0);
}

void tst_CInstrumentSupervisor::connectsAnInstrument()
{
    bool wasActiveInConnect = true;
    QSharedPointer<CInstrument> instrumentInConnect;
    connect(instrument(0).data(), &CInstrument::IsConnectedChanged, this, [&] {
        wasActiveInConnect = m_supervisor->HasActiveInstrument();
        instrumentInConnect = m_supervisor->Instrument().toStrongRef();
    });
    m_supervisor->SetActiveInstrument(instrument(0));
    QVERIFY(!wasActiveInConnect);
    QCOMPARE(instrumentInConnect, QSharedPointer<CInstrument>(instrument(0)));
    QVERIFY(m_supervisor->HasActiveInstrument());
    QCOMPARE(m_supervisor->Instrument().toStrongRef(), QSharedPointer<CInstrument>(instrument(0)));
    QCOMPARE(m_activeSpy->count(), 1);
    QCOMPARE(m_activeSpy->first().first().toBool(), true);
    QCOMPARE(m_updatedSpy->count(), 0);
    QCOMPARE(callsOf(*instrument(0)), QStringList(QStringLiteral("Connect")));
}

void tst_CInstrumentSupervisor::replacesAnInstrument()
{
    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();

    QStringList events;
    connect(instrument(0).data(), &CInstrument::IsConnectedChanged, this,
            [&](bool value) { events.append(QStringLiteral("first %1").arg(value)); });
    connect(instrument(1).data(), &CInstrument::IsConnectedChanged, this,
            [&](bool value) { events.append(QStringLiteral("second %1").arg(value)); });
    connect(m_supervisor.get(), &CInstrumentSupervisor::HasActiveInstrumentChanged, this, [&](bool value) {
        events.append(QStringLiteral("active %1 %2").arg(value).arg(m_supervisor->Instrument().isNull()));
    });
    m_supervisor->SetActiveInstrument(instrument(1));
    QCOMPARE(events, QStringList({QStringLiteral("first 0"), QStringLiteral("active 0 1"),
                                  QStringLiteral("second 1"), QStringLiteral("active 1 0")}));
    QCOMPARE(callsOf(*instrument(0)), QStringList({QStringLiteral("Connect"), QStringLiteral("Disconnect")}));
    QCOMPARE(m_supervisor->Instrument().toStrongRef(), QSharedPointer<CInstrument>(instrument(1)));
}

void tst_CInstrumentSupervisor::connectsTheSameInstrumentAgain()
{
    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();
    m_supervisor->SetActiveInstrument(instrument(0));
    QCOMPARE(callsOf(*instrument(0)), QStringList({QStringLiteral("Connect"), QStringLiteral("Connect")}));
    QCOMPARE(m_activeSpy->count(), 0);
    QVERIFY(m_supervisor->HasActiveInstrument());
}

void tst_CInstrumentSupervisor::setsNoInstrument()
{
    m_supervisor->SetActiveInstrument(nullptr);
    QCOMPARE(m_activeSpy->count(), 0);

    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();
    m_supervisor->SetActiveInstrument(nullptr);
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->Instrument().isNull());
    QCOMPARE(m_activeSpy->count(), 1);
    QCOMPARE(callsOf(*instrument(0)).last(), QStringLiteral("Disconnect"));
}

void tst_CInstrumentSupervisor::failedConnect_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::addColumn<QStringList>("warnings");
    QTest::newRow("false") << QStringLiteral("false") << QStringList();
    QTest::newRow("exception") << QStringLiteral("throw") << QStringList(kConnectError);
    QTest::newRow("other exception") << QStringLiteral("throwInt") << QStringList(kConnectError);
}

void tst_CInstrumentSupervisor::failedConnect()
{
    QFETCH(const QString, behaviour);
    QFETCH(const QStringList, warnings);
    instrument(0)->setProperty("connect", behaviour);
    instrument(0)->SetIsConnected(true); // as far as a driver came before it failed
    QSignalSpy connectedSpy(instrument(0).data(), &CInstrument::IsConnectedChanged);
    {
        const LogRecorder log;
        m_supervisor->SetActiveInstrument(instrument(0));
        QCOMPARE(log.Texts(QtWarningMsg), warnings);
        QCOMPARE(log.Messages().size(), warnings.size());
    }
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->Instrument().isNull());
    QCOMPARE(m_activeSpy->count(), 0);
    QVERIFY(!instrument(0)->IsConnected());
    QCOMPARE(connectedSpy.count(), 1);
}

void tst_CInstrumentSupervisor::failedReconnect_data()
{
    failedConnect_data();
}

void tst_CInstrumentSupervisor::failedReconnect()
{
    QFETCH(const QString, behaviour);
    QFETCH(const QStringList, warnings);
    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();
    instrument(0)->setProperty("connect", behaviour);

    QStringList events;
    connect(m_supervisor.get(), &CInstrumentSupervisor::HasActiveInstrumentChanged, this, [&](bool value) {
        events.append(QStringLiteral("active %1 %2").arg(value).arg(m_supervisor->Instrument().isNull()));
    });
    connect(instrument(0).data(), &CInstrument::IsConnectedChanged, this, [&](bool value) {
        events.append(QStringLiteral("connected %1 %2").arg(value).arg(m_supervisor->Instrument().isNull()));
    });
    {
        const LogRecorder log;
        m_supervisor->SetActiveInstrument(instrument(0));
        QCOMPARE(log.Texts(QtWarningMsg), warnings);
    }
    QCOMPARE(events, QStringList({QStringLiteral("active 0 0"), QStringLiteral("connected 0 0")}));
    QVERIFY(m_supervisor->Instrument().isNull());
    QVERIFY(!callsOf(*instrument(0)).contains(QStringLiteral("Disconnect")));
}

void tst_CInstrumentSupervisor::failedDisconnect_data()
{
    QTest::addColumn<QString>("behaviour");
    QTest::newRow("exception") << QStringLiteral("throw");
    QTest::newRow("other exception") << QStringLiteral("throwInt");
}

void tst_CInstrumentSupervisor::failedDisconnect()
{
    QFETCH(const QString, behaviour);
    m_supervisor->SetActiveInstrument(instrument(0));
    instrument(0)->setProperty("disconnect", behaviour);
    {
        const LogRecorder log;
        m_supervisor->SetActiveInstrument(instrument(1));
        QCOMPARE(log.Texts(QtWarningMsg), QStringList(kDisconnectError));
    }
    QVERIFY(m_supervisor->HasActiveInstrument());
    QCOMPARE(m_supervisor->Instrument().toStrongRef(), QSharedPointer<CInstrument>(instrument(1)));
    QCOMPARE(m_activeSpy->count(), 3);

    instrument(1)->setProperty("disconnect", behaviour);
    m_activeSpy->clear();
    const LogRecorder log;
    m_supervisor->ClearActiveInstrument();
    QCOMPARE(log.Texts(QtWarningMsg), QStringList(kDisconnectError));
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->Instrument().isNull());
    QCOMPARE(m_activeSpy->count(), 1);
}

void tst_CInstrumentSupervisor::clears()
{
    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();
    m_supervisor->ClearActiveInstrument();
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QVERIFY(m_supervisor->Instrument().isNull());
    QCOMPARE(m_activeSpy->count(), 1);
    QCOMPARE(m_activeSpy->first().first().toBool(), false);
    QCOMPARE(callsOf(*instrument(0)), QStringList({QStringLiteral("Connect"), QStringLiteral("Disconnect")}));
}

void tst_CInstrumentSupervisor::clearsNothing()
{
    const LogRecorder log;
    m_supervisor->ClearActiveInstrument();
    QCOMPARE(m_activeSpy->count(), 0);
    QVERIFY(log.Messages().isEmpty());
}

void tst_CInstrumentSupervisor::keepsAListedInstrument()
{
    m_supervisor->SetActiveInstrument(instrument(1));
    m_activeSpy->clear();
    m_provider->RemoveInstrument(QStringLiteral("1"));
    m_provider->Announce();
    QVERIFY(m_supervisor->HasActiveInstrument());
    QCOMPARE(m_supervisor->Instrument().toStrongRef()->SerialNumber(), QStringLiteral("2"));
    QCOMPARE(m_activeSpy->count(), 0);
    QCOMPARE(m_updatedSpy->count(), 1);
}

void tst_CInstrumentSupervisor::disconnectsAVanishedInstrument()
{
    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();
    QStringList events;
    bool isDestroyed = false;
    connect(instrument(0).data(), &CInstrument::IsConnectedChanged, this,
            [&](bool value) { events.append(QStringLiteral("connected %1").arg(value)); });
    connect(instrument(0).data(), &QObject::destroyed, this, [&] { isDestroyed = true; });
    connect(m_supervisor.get(), &CInstrumentSupervisor::HasActiveInstrumentChanged, this,
            [&](bool value) { events.append(QStringLiteral("active %1").arg(value)); });
    connect(m_supervisor.get(), &CInstrumentSupervisor::AvailableInstrumentUpdated, this,
            [&] { events.append(QStringLiteral("updated")); });

    m_provider->RemoveInstrument(QStringLiteral("1"));
    m_provider->Announce();
    QCOMPARE(events, QStringList({QStringLiteral("connected 0"), QStringLiteral("active 0"),
                                  QStringLiteral("updated")}));
    QVERIFY(m_supervisor->Instrument().isNull());
    QVERIFY(isDestroyed);
}

void tst_CInstrumentSupervisor::dropsARenewedInstrument()
{
    m_provider->setProperty("renewObjects", true);
    m_supervisor->SetActiveInstrument(instrument(0));
    m_activeSpy->clear();
    m_provider->Announce();
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QCOMPARE(m_activeSpy->count(), 1);
    QCOMPARE(m_supervisor->AvailableInstruments().first()->SerialNumber(), QStringLiteral("1"));

    m_supervisor->SetActiveInstrument(m_supervisor->AvailableInstruments().first());
    QVERIFY(m_supervisor->HasActiveInstrument());
    m_supervisor->RefreshAvailableInstruments();
    QVERIFY(!m_supervisor->HasActiveInstrument());
}

void tst_CInstrumentSupervisor::followsAnInstrumentThatDied()
{
    // One that was never listed has its owner elsewhere.
    auto unlisted = QSharedPointer<CFakeInstrument>::create(QStringLiteral("9"));
    m_supervisor->SetActiveInstrument(unlisted);
    unlisted.reset();
    QVERIFY(m_supervisor->Instrument().isNull());
    QVERIFY(m_supervisor->HasActiveInstrument());
    m_activeSpy->clear();
    m_supervisor->RefreshAvailableInstruments();
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QCOMPARE(m_activeSpy->count(), 1);
    QCOMPARE(m_updatedSpy->count(), 1);
}

void tst_CInstrumentSupervisor::replacesAnInstrumentThatDied()
{
    auto unlisted = QSharedPointer<CFakeInstrument>::create(QStringLiteral("9"));
    m_supervisor->SetActiveInstrument(unlisted);
    unlisted.reset();
    m_activeSpy->clear();
    m_supervisor->SetActiveInstrument(instrument(0));
    QCOMPARE(m_activeSpy->count(), 2);
    QCOMPARE(m_activeSpy->first().first().toBool(), false);
    QVERIFY(m_supervisor->HasActiveInstrument());
}

void tst_CInstrumentSupervisor::refreshInsideARefresh()
{
    m_supervisor->SetActiveInstrument(instrument(0));
    // A question to the user about the lost data lets the event loop run, and with it the next update.
    connect(m_supervisor.get(), &CInstrumentSupervisor::HasActiveInstrumentChanged, this, [this](bool value) {
        if (!value) {
            m_provider->RemoveInstrument(QStringLiteral("2"));
            m_provider->Announce();
        }
    });
    m_provider->RemoveInstrument(QStringLiteral("1"));
    m_provider->Announce();
    QVERIFY(m_supervisor->AvailableInstruments().isEmpty());
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QCOMPARE(m_updatedSpy->count(), 2);
}

void tst_CInstrumentSupervisor::findsTheDefaultInstrument_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("expected");
    QTest::newRow("first of two alike") << QStringLiteral("abc") << 2;
    QTest::newRow("case counts") << QStringLiteral("ABC") << -1;
    QTest::newRow("absent") << QStringLiteral("7") << -1;
    QTest::newRow("empty serial number") << QString() << 3;
}

void tst_CInstrumentSupervisor::findsTheDefaultInstrument()
{
    QFETCH(const QString, stored);
    QFETCH(const int, expected);
    for (const char* serialNumber : {"abc", "", "abc"})
        m_provider->AddInstrument(QSharedPointer<CFakeInstrument>::create(QLatin1String(serialNumber)));
    m_supervisor->SaveConnectionSettings(QString(), QString(), QString(), stored);
    QVERIFY(!m_supervisor->GetDefaultInstrument());
    m_supervisor->RefreshAvailableInstruments();
    const QSharedPointer<CInstrument> found = m_supervisor->GetDefaultInstrument();
    if (expected < 0)
        QVERIFY(!found);
    else
        QCOMPARE(found, QSharedPointer<CInstrument>(instrument(expected)));
}

void tst_CInstrumentSupervisor::forwardsSerialPortSettings()
{
    CFakeInstrumentListProvider second({});
    m_supervisor->AddInstrumentListProvider(&second);
    m_supervisor->SetSerialPortSettings(QStringLiteral("ttyS1"), 9600);
    const QString call = QStringLiteral("SetSerialPortSettings ttyS1 9600");
    QCOMPARE(callsOf(*m_provider).count(call), 1);
    QCOMPARE(callsOf(second), QStringList(call));
    m_supervisor.reset();
}

void tst_CInstrumentSupervisor::savesConnectionSettings()
{
    m_supervisor->SaveConnectionSettings(QStringLiteral("ttyS1"), QStringLiteral("9600"),
                                         QStringLiteral("Probe"), QStringLiteral("17"));
    CInstrumentSupervisor next(m_settings.get());
    const CConnectionPageSettings* stored = next.ConnectionPageSettings();
    QCOMPARE(stored->SerialPort(), QStringLiteral("ttyS1"));
    QCOMPARE(stored->BaudRate(), QStringLiteral("9600"));
    QCOMPARE(stored->InstrumentName(), QStringLiteral("Probe"));
    QCOMPARE(stored->InstrumentSerialNumber(), QStringLiteral("17"));
}

void tst_CInstrumentSupervisor::leavesTheInstrumentConnectedAtItsEnd()
{
    m_supervisor->SetActiveInstrument(instrument(0));
    m_supervisor.reset();
    QCOMPARE(callsOf(*instrument(0)), QStringList(QStringLiteral("Connect")));
}

QTEST_GUILESS_MAIN(tst_CInstrumentSupervisor)

#include "tst_CInstrumentSupervisor.moc"
