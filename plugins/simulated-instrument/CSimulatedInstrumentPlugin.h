// SPDX-License-Identifier: MIT
#pragma once

#include "CInstrumentPlugin.h"
#include "CSimulatedInstrumentListProvider.h"

/// The plug-in of the simulated instruments.
class CSimulatedInstrumentPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    using CInstrumentPlugin::CInstrumentPlugin;

    void Start() override { m_provider.Start(); }
    void Stop() override { m_provider.Stop(); }
    CInstrumentListProvider* GetInstrumentListProvider() override { return &m_provider; }

private:
    CSimulatedInstrumentListProvider m_provider;
};
