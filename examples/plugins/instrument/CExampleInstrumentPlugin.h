// SPDX-License-Identifier: MIT
#pragma once

#include "CMinimalInstrumentListProvider.h"

#include <CInstrumentPlugin.h>

/// What the library gives to the application.
class CMinimalInstrumentPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    void Start() override;
    void Stop() override;
    CInstrumentListProvider* GetInstrumentListProvider() override;

private:
    CMinimalInstrumentListProvider m_provider;
};
