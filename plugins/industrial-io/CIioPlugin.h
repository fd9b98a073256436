// SPDX-License-Identifier: MIT
#pragma once

#include "CIioListProvider.h"
#include "CInstrumentPlugin.h"

/// The plug-in of magnetometers that the Linux kernel drives as industrial-I/O devices.
class CIioPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    using CInstrumentPlugin::CInstrumentPlugin;

    void Start() override { m_provider.Start(); }
    void Stop() override { m_provider.Stop(); }
    CInstrumentListProvider* GetInstrumentListProvider() override { return &m_provider; }

private:
    CIioListProvider m_provider;
};
