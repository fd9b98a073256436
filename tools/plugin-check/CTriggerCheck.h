// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CTriggerPlugin.h"

class CCheckRun;
class CPluginLibrary;

/// The check of a trigger plug-in: sessions, exit requests, end.
class CTriggerCheck
{
public:
    explicit CTriggerCheck(CCheckRun& run) : m_run(run) {}

    void Execute(CPluginLibrary& library);

private:
    void checkName();
    /// Starts it and waits for a trigger. False if none came.
    bool session();
    void stop(const char* name);

    CCheckRun& m_run;
    CTriggerPlugin* m_plugin = nullptr;
};
