// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPlugin.h"
#include "CMapperPlugin.h"
#include "CTriggerPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return nullptr;
}

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return nullptr;
}

KESTRIX_PLUGIN_FACTORY CTriggerPlugin* CreateTriggerPlugin()
{
    return nullptr;
}
