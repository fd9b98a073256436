// SPDX-License-Identifier: MIT
#pragma once

#include "CInstrumentListProvider.h"
#include "CPlugin.h"

/// What "CreateInstrumentPlugin" returns.
class KESTRIX_API CInstrumentPlugin : public CPlugin
{
    Q_OBJECT

public:
    using CPlugin::CPlugin;

    /// The provider, owned by the plug-in, not null. Asked once, right after Start().
    virtual CInstrumentListProvider* GetInstrumentListProvider() = 0;
};
