// SPDX-License-Identifier: MIT
#include "CSimulatedGantry.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CSimulatedGantry;
}
