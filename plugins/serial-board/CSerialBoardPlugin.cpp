// SPDX-License-Identifier: MIT
#include "CSerialBoardPlugin.h"

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CSerialBoardPlugin;
}
