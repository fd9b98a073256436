// SPDX-License-Identifier: MIT
#include "CSimulatedMover.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CSimulatedMover;
}
