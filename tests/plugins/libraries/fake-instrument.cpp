// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeInstrumentPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CFakeInstrumentPlugin;
}
