// SPDX-License-Identifier: MIT
#include "CIioPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CIioPlugin;
}
