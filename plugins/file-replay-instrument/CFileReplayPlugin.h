// SPDX-License-Identifier: MIT
#pragma once

#include "CFileReplayListProvider.h"
#include "CInstrumentPlugin.h"

/// The plug-in of the recordings that are replayed as instruments.
class CFileReplayPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    using CInstrumentPlugin::CInstrumentPlugin;

    void Start() override { m_provider.Start(); }
    void Stop() override { m_provider.Stop(); }
    CInstrumentListProvider* GetInstrumentListProvider() override { return &m_provider; }

private:
    CFileReplayListProvider m_provider;
};
