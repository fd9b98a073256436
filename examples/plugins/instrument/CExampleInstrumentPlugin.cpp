// SPDX-License-Identifier: MIT
#include "CExampleInstrumentPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CExampleInstrumentPlugin;
}

void CExampleInstrumentPlugin::Start()
{
    // The application connects to the provider after this call, so the first report waits for the event loop.
    QMetaObject::invokeMethod(&m_provider, &CInstrumentListProvider::InstrumentListUpdated,
                              Qt::QueuedConnection);
}

void CExampleInstrumentPlugin::Stop()
{
    const QList<QSharedPointer<CInstrument>> instruments = m_provider.GetInstrumentList();
    for (const QSharedPointer<CInstrument>& instrument : instruments) {
        if (instrument->IsConnected())
            instrument->Disconnect();
    }
}

CInstrumentListProvider* CExampleInstrumentPlugin::GetInstrumentListProvider()
{
    return &m_provider;
}
