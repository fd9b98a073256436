// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QObject>

/// Prefix of a plug-in's factory function. A plug-in library exports exactly one of
///     KESTRIX_PLUGIN_FACTORY CInstrumentPlugin* CreateInstrumentPlugin();
///     KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin();
///     KESTRIX_PLUGIN_FACTORY CTriggerPlugin* CreateTriggerPlugin();
/// The function returns a new object, which the application deletes at its end, or null. It runs before the
/// event loop; the library is never unloaded.
#define KESTRIX_PLUGIN_FACTORY extern "C" Q_DECL_EXPORT

/// Base of everything that a plug-in library provides. All calls come from the main thread; signals may be
/// emitted from any thread.
class KESTRIX_API CPlugin : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins work: instrument plug-ins get it once at start-up, mappers and triggers at each session start.
    virtual void Start() = 0;
    /// Ends work: mappers and triggers get it at each session stop, every plug-in at termination. It can
    /// therefore come twice and must be idempotent.
    virtual void Stop() = 0;
};
