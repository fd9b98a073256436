// SPDX-License-Identifier: MIT
#pragma once

#include "COrientation.h"
#include "CPlugin.h"
#include "CPosition.h"

#include <QString>

/// What "CreateMapperPlugin" returns: in fact a CMapperPluginStopAndGo or a CMapperPluginOnTheFly.
class KESTRIX_API CMapperPlugin : public CPlugin
{
    Q_OBJECT

public:
    using CPlugin::CPlugin;

    virtual CPosition GetPosition() = 0;
    virtual COrientation GetOrientation() = 0;
    /// Told at application exit, only when the exit is allowed.
    virtual void Shutdown() = 0;

    static constexpr int kOnTheFly = 1;
    static constexpr int kStopAndGo = 2;

    /// kOnTheFly or kStopAndGo; the application casts on it, so it must tell the truth about the class.
    int MapperType = kOnTheFly;
    /// Shown to the user and written to parameter files.
    QString Name;
};
