// SPDX-License-Identifier: MIT
#pragma once

#include "CPlugin.h"

#include <QString>

/// What "CreateTriggerPlugin" returns: a source of external triggers. The application starts and stops it
/// with each session in EXTERNAL trigger mode; how its signal reaches the instrument is a matter between the
/// two plug-ins.
class KESTRIX_API CTriggerPlugin : public CPlugin
{
    Q_OBJECT

public:
    using CPlugin::CPlugin;

    /// Told to the selected plug-in at every request to quit the application, even if the exit is then
    /// refused.
    virtual void Shutdown() = 0;

    /// Shown to the user and written to parameter files, by which such a file finds the plug-in again.
    QString Name;

signals:
    void Trigger();
};
