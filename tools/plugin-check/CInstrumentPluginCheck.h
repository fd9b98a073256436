// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrumentPlugin.h"

#include <QList>
#include <QSharedPointer>

class CCheckRun;
class CPluginLibrary;

/// The check of an instrument plug-in: start, list, each instrument, end.
class CInstrumentPluginCheck
{
public:
    explicit CInstrumentPluginCheck(CCheckRun& run) : m_run(run) {}

    void Execute(CPluginLibrary& library);

private:
    bool takeProvider();
    void awaitList();
    QList<QSharedPointer<CInstrument>> askForList();
    void checkList();
    void checkInstruments();
    void checkEnd();

    CCheckRun& m_run;
    CInstrumentPlugin* m_plugin = nullptr;
    CInstrumentListProvider* m_provider = nullptr;
    QList<QSharedPointer<CInstrument>> m_instruments;
    QSharedPointer<CInstrument> m_usable; ///< one that could be connected
};
