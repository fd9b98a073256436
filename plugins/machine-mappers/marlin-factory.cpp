// SPDX-License-Identifier: MIT
#include "CMarlinController.h"
#include "CStageMapper.h"
#include "MachineNames.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CStageMapper(QCoreApplication::translate("CStageMapper", "Marlin machine"),
                            kMarlinSettingsFile, makeController<CMarlinController>);
}
