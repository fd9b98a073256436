// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeTriggerPlugin.h"

KESTRIX_PLUGIN_FACTORY CTriggerPlugin* CreateTriggerPlugin()
{
    return new CFakeTriggerPlugin;
}
