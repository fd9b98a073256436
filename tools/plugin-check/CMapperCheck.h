// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPluginOnTheFly.h"
#include "CMapperPluginStopAndGo.h"

class CCheckRun;
class CPluginLibrary;

/// The check of a mapper plug-in of either type: sessions, end.
class CMapperCheck
{
public:
    explicit CMapperCheck(CCheckRun& run) : m_run(run) {}

    void Execute(CPluginLibrary& library);

private:
    /// False if MapperType does not tell the class.
    bool castToType();
    void checkPlace();
    void checkFinite(const CPosition& position, const COrientation& orientation);
    void start();
    void stop(const char* name);
    void checkStopAndGo();
    /// Moves it by so much along X and waits for its arrival. False if it did not report it.
    bool moveBy(double distance);
    /// False if it did not ask for a block.
    bool waitForAcquire();

    CCheckRun& m_run;
    CMapperPlugin* m_plugin = nullptr;
    CMapperPluginStopAndGo* m_stopAndGo = nullptr; ///< one of the two is null
    CMapperPluginOnTheFly* m_onTheFly = nullptr;
};
