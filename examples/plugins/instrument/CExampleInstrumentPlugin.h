// SPDX-License-Identifier: MIT
#pragma once

#include "CExampleInstrumentListProvider.h"

#include <CInstrumentPlugin.h>

/// What the library gives to the application.
class CExampleInstrumentPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    void Start() override;
    void Stop() override;
    CInstrumentListProvider* GetInstrumentListProvider() override;

private:
    CExampleInstrumentListProvider m_provider;
};
