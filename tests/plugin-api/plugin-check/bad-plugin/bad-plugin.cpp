// SPDX-License-Identifier: GPL-3.0-or-later
#include "BadMode.h"
#include "CBadInstrumentPlugin.h"
#include "CBadMapper.h"
#include "CBadTrigger.h"

#include <QThread>

KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin()
{
    return new CBadInstrumentPlugin;
}

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CBadMapper;
}

KESTRIX_PLUGIN_FACTORY CTriggerPlugin* CreateTriggerPlugin()
{
    if (isBad("factory-null"))
        return nullptr;
    // These two are never deleted, and stay known for the leak check.
    static QObject* kept = nullptr;
    if (isBad("wrong-class")) {
        auto* mapper = new CBadMapper;
        kept = mapper;
        return reinterpret_cast<CTriggerPlugin*>(mapper);
    }
    auto* trigger = new CBadTrigger;
    if (isBad("object-thread")) {
        // A thread that does not run: nothing happens there.
        static QThread thread;
        trigger->moveToThread(&thread);
        kept = trigger;
    }
    Q_UNUSED(kept)
    return trigger;
}
