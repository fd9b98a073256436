// SPDX-License-Identifier: MIT
#include "CSimulatedTrigger.h"

KESTRIX_PLUGIN_FACTORY CTriggerPlugin* CreateTriggerPlugin()
{
    return new CSimulatedTrigger;
}
