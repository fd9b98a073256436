// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeMapperPlugin.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CFakeMapperPlugin;
}
