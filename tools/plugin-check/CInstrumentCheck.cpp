// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentCheck.h"

#include "CCheckRun.h"
#include "CInstrument.h"
#include "CMeasurementCheck.h"
#include "CapabilityRules.h"

CInstrumentCheck::CInstrumentCheck(CCheckRun& run, const QSharedPointer<CInstrument>& instrument)
    : m_run(run), m_instrument(instrument), m_watch(run, *instrument)
{
}

CInstrumentCheck::~CInstrumentCheck() = default;

void CInstrumentCheck::phase(const char* name)
{
    m_run.Phase(QStringLiteral("%1, %2").arg(m_instrument->SerialNumber(), QLatin1String(name)));
}

bool CInstrumentCheck::Execute()
{
    phase("listed");
    checkListed();
    phase("Connect");
    if (!connectInstrument("connect-failed"))
        return false;
    checkCapabilities(m_run, *m_instrument);
    // The user may choose the active instrument once more.
    connectInstrument("reconnect-failed");
    {
        CMeasurementCheck measurement(m_run, *m_instrument, m_watch);
        measurement.Execute();
    }
    if (m_run.Options().isCalibrating) {
        phase("zero offset");
        m_run.BlockingCall("CalibrateZeroOffset()", [this] { m_instrument->CalibrateZeroOffset(); });
        m_run.BlockingCall("RestoreZeroOffsetToFactory()",
                           [this] { m_instrument->RestoreZeroOffsetToFactory(); });
        m_watch.CheckWhileConnected();
    }
    checkDisconnectWhileMeasuring();
    phase("Connect again");
    if (connectInstrument("reconnect-failed"))
        disconnectInstrument();
    // An instrument that has been lost is disconnected, too.
    disconnectInstrument();
    return true;
}

void CInstrumentCheck::checkListed()
{
    const int interface = m_instrument->Interface();
    if (interface < CInstrumentInterface::Unknown || interface > CInstrumentInterface::Serial)
        m_run.Find("enum-value", QStringLiteral("Interface is %1").arg(interface));
    if (m_instrument->Name().isEmpty())
        m_run.Find("name-empty", QStringLiteral("of the instrument"));
    if (m_instrument->IsConnected() || m_instrument->IsRunning())
        m_run.Find("state", QStringLiteral("IsConnected or IsRunning before Connect()"));
    m_run.Fact(m_instrument->SerialNumber(),
               m_instrument->Name() + QStringLiteral(" - ") + m_instrument->SerialNumber());
}

bool CInstrumentCheck::connectInstrument(const char* codeOfFailure)
{
    bool isConnected = false;
    QString error;
    if (!m_run.Guarded("Connect()", error, [&] { isConnected = m_instrument->Connect(); })) {
        m_run.Find(codeOfFailure, error);
        return false;
    }
    if (!isConnected) {
        m_run.Find(codeOfFailure, m_instrument->StatusString());
        return false;
    }
    if (!m_instrument->IsConnected())
        m_run.Find("state", QStringLiteral("IsConnected is false after Connect() answered true"));
    m_watch.Check();
    return true;
}

void CInstrumentCheck::disconnectInstrument()
{
    QString error;
    if (!m_run.Guarded("Disconnect()", error, [this] { m_instrument->Disconnect(); }))
        m_run.Find("disconnect-threw", error);
    if (m_instrument->IsConnected())
        m_run.Find("state", QStringLiteral("IsConnected is true after Disconnect()"));
    m_watch.Check();
}

void CInstrumentCheck::checkDisconnectWhileMeasuring()
{
    phase("Disconnect while measuring");
    CMeasurementCheck measurement(m_run, *m_instrument, m_watch);
    measurement.StartOngoing(1);
    disconnectInstrument();
    measurement.CheckEnd(CBlockRecorder::NowNs());
}

bool CInstrumentCheck::LeaveMeasuring()
{
    if (!connectInstrument("reconnect-failed"))
        return false;
    m_left = std::make_unique<CMeasurementCheck>(m_run, *m_instrument, m_watch);
    return m_left->StartOngoing(1);
}

void CInstrumentCheck::CheckLeft(qint64 endNs)
{
    if (m_left)
        m_left->CheckEnd(endNs);
}
