// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CBadListProvider.h"
#include "CInstrumentPlugin.h"

/// Breaks the rules of plug-ins as such, too: it crashes, hangs, throws.
class CBadInstrumentPlugin : public CInstrumentPlugin
{
public:
    void Start() override;
    void Stop() override;
    CInstrumentListProvider* GetInstrumentListProvider() override;

private:
    CBadListProvider m_provider;
    bool m_isStopped = false;
};
