// SPDX-License-Identifier: MIT
#include "CGrblController.h"
#include "CStageScanner.h"
#include "MachineNames.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CStageScanner(QCoreApplication::translate("CStageMapper", "GRBL on the fly"),
                             kGrblSettingsFile, makeController<CGrblController>);
}
