// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeFlyingMapperPlugin.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CFakeFlyingMapperPlugin;
}
