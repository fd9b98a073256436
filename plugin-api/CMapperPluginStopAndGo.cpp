// SPDX-License-Identifier: MIT
#include "CMapperPluginStopAndGo.h"

CMapperPluginStopAndGo::CMapperPluginStopAndGo(QObject* parent) : CMapperPlugin(parent)
{
    MapperType = kStopAndGo;
}
