// SPDX-License-Identifier: MIT
#include "CFileReplayPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CFileReplayPlugin;
}
