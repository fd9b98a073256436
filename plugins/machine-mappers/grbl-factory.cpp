// SPDX-License-Identifier: MIT
#include "CGrblController.h"
#include "CStageMapper.h"
#include "MachineNames.h"

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CStageMapper(QCoreApplication::translate("CStageMapper", "GRBL machine"), kGrblSettingsFile,
                            makeController<CGrblController>);
}
