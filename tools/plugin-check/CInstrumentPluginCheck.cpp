// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPluginCheck.h"

#include "CBlockRecorder.h"
#include "CCheckRun.h"
#include "CInstrumentCheck.h"
#include "CPluginLibrary.h"

#include <QStringList>

#include <memory>

void CInstrumentPluginCheck::Execute(CPluginLibrary& library)
{
    m_run.Phase(QStringLiteral("start"));
    m_run.Call("CreateInstrumentPlugin()",
               [&] { m_plugin = library.Create<CInstrumentPlugin>("CreateInstrumentPlugin"); });
    if (!m_plugin) {
        m_run.Find("factory-null", QStringLiteral("CreateInstrumentPlugin"));
        return;
    }
    if (!m_run.CheckObject(*m_plugin, CInstrumentPlugin::staticMetaObject, "the plug-in"))
        return;
    m_run.Call("Start()", [this] { m_plugin->Start(); });
    if (takeProvider()) {
        awaitList();
        checkList();
        checkInstruments();
    }
    checkEnd();
}

bool CInstrumentPluginCheck::takeProvider()
{
    m_run.Call("GetInstrumentListProvider()", [this] { m_provider = m_plugin->GetInstrumentListProvider(); });
    if (!m_provider) {
        m_run.Find("provider-null", QString());
        return false;
    }
    return m_run.CheckObject(*m_provider, CInstrumentListProvider::staticMetaObject, "the list provider");
}

void CInstrumentPluginCheck::awaitList()
{
    const auto isAnnounced = std::make_shared<bool>(false);
    // In the main thread, as the application gets it.
    QObject receiver;
    QObject::connect(m_provider, &CInstrumentListProvider::InstrumentListUpdated, &receiver,
                     [isAnnounced] { *isAnnounced = true; });
    m_run.Wait("InstrumentListUpdated", m_run.Options().waitMs, [&isAnnounced] { return *isAnnounced; });
    m_instruments = askForList();
    if (!*isAnnounced && !m_instruments.isEmpty())
        m_run.Find("list-not-announced", QStringLiteral("%1 instruments").arg(m_instruments.size()));
}

QList<QSharedPointer<CInstrument>> CInstrumentPluginCheck::askForList()
{
    QList<QSharedPointer<CInstrument>> list;
    m_run.Call("GetInstrumentList()", [&] { list = m_provider->GetInstrumentList(); });
    if (list.removeAll(QSharedPointer<CInstrument>()) > 0)
        m_run.Find("list-null", QString());
    return list;
}

void CInstrumentPluginCheck::checkList()
{
    m_run.Phase(QStringLiteral("list"));
    const CheckOptions& options = m_run.Options();
    m_run.Call("SetSerialPortSettings()",
               [&] { m_provider->SetSerialPortSettings(options.serialPort, options.baudRate); });
    if (!options.serialPort.isEmpty())
        m_run.Rest("the instruments behind the serial line", options.waitMs);
    m_instruments = askForList();
    if (m_instruments.isEmpty())
        m_run.Find("list-empty", QString());
    const QList<QSharedPointer<CInstrument>> again = askForList();
    if (again.size() == m_instruments.size() && again != m_instruments)
        m_run.Find("list-identity", QString());

    QStringList serialNumbers;
    for (const QSharedPointer<CInstrument>& instrument : qAsConst(m_instruments)) {
        m_run.CheckObject(*instrument, CInstrument::staticMetaObject, "an instrument");
        const QString serialNumber = instrument->SerialNumber();
        if (serialNumber.isEmpty())
            m_run.Find("serial-empty", instrument->Name());
        else if (serialNumbers.contains(serialNumber))
            m_run.Find("serial-duplicate", serialNumber);
        serialNumbers.append(serialNumber);
    }
}

void CInstrumentPluginCheck::checkInstruments()
{
    const QString wanted = m_run.Options().serialNumber;
    bool isFound = wanted.isEmpty();
    for (const QSharedPointer<CInstrument>& instrument : qAsConst(m_instruments)) {
        if (!wanted.isEmpty() && instrument->SerialNumber() != wanted)
            continue;
        isFound = true;
        if (CInstrumentCheck(m_run, instrument).Execute() && !m_usable)
            m_usable = instrument;
    }
    if (!isFound)
        m_run.Find("instrument-missing", wanted);
}

void CInstrumentPluginCheck::checkEnd()
{
    m_run.Phase(QStringLiteral("end"));
    {
        // The application ends plug-ins whatever their instruments are at.
        std::unique_ptr<CInstrumentCheck> left;
        if (m_usable)
            left = std::make_unique<CInstrumentCheck>(m_run, m_usable);
        const bool isMeasuring = left && left->LeaveMeasuring();
        m_run.Call("Stop()", [this] { m_plugin->Stop(); });
        const qint64 endNs = CBlockRecorder::NowNs();
        if (isMeasuring)
            left->CheckLeft(endNs);
        const bool wasConnected = m_usable && m_usable->IsConnected();
        const bool wasRunning = m_usable && m_usable->IsRunning();
        m_run.Call("second Stop()", [this] { m_plugin->Stop(); });
        if (m_usable && (m_usable->IsConnected() != wasConnected || m_usable->IsRunning() != wasRunning))
            m_run.Find("stop-not-idempotent", QStringLiteral("IsConnected or IsRunning changed"));
    }
    m_run.Delete(m_plugin);
    // The application's lists hold the instruments longer than that.
    m_run.Call("release of the instruments", [this] {
        m_usable.clear();
        m_instruments.clear();
    });
}
