// SPDX-License-Identifier: MIT
#include "CSimulatedInstrumentPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CSimulatedInstrumentPlugin;
}
