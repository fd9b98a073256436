// SPDX-License-Identifier: MIT
#include "CMinimalInstrumentPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CMinimalInstrumentPlugin;
}

void CMinimalInstrumentPlugin::Start()
{
    // The application connects to the provider after this call, so the first report waits for the event loop.
    QMetaObject::invokeMethod(&m_provider, &CInstrumentListProvider::InstrumentListUpdated,
                              Qt::QueuedConnection);
}

void CMinimalInstrumentPlugin::Stop()
{
    const QList<QSharedPointer<CInstrument>> instruments = m_provider.GetInstrumentList();
    for (const QSharedPointer<CInstrument>& instrument : instruments) {
        if (instrument->IsConnected())
            instrument->Disconnect();
    }
}

CInstrumentListProvider* CMinimalInstrumentPlugin::GetInstrumentListProvider()
{
    return &m_provider;
}
