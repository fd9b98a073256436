// SPDX-License-Identifier: MIT
#pragma once

#include "CInstrumentPlugin.h"
#include "CSerialBoardListProvider.h"

/// The plug-in of boards that print readings on a serial port.
class CSerialBoardPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    using CInstrumentPlugin::CInstrumentPlugin;

    void Start() override { m_provider.Start(); }
    void Stop() override { m_provider.Stop(); }
    CInstrumentListProvider* GetInstrumentListProvider() override { return &m_provider; }

private:
    CSerialBoardListProvider m_provider;
};
