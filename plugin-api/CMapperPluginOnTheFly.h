// SPDX-License-Identifier: MIT
#pragma once

#include "CMapperPlugin.h"

/// A mapper that moves by itself and tells when a block must be taken.
class KESTRIX_API CMapperPluginOnTheFly : public CMapperPlugin
{
    Q_OBJECT

public:
    using CMapperPlugin::CMapperPlugin;

signals:
    void Acquire(CPosition position, COrientation orientation);
};
