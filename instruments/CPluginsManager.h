// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

class CInstrumentPlugin;
class CMapperPlugin;
class CSettings;
class CTriggerPlugin;

/// Finds the plug-in libraries, loads them, owns their plug-in objects and ends them. A library is never
/// unloaded: it holds the code of objects that may outlive the manager's lists. Main thread only.
class CPluginsManager : public QObject
{
    Q_OBJECT

public:
    /// `settings` name the three directories and must outlive the manager.
    explicit CPluginsManager(const CSettings& settings, QObject* parent = nullptr);

    const QList<CInstrumentPlugin*>& InstrumentPlugins() const { return m_instrumentPlugins; }
    const QList<CMapperPlugin*>& MapperPlugins() const { return m_mapperPlugins; }
    const QList<CTriggerPlugin*>& TriggerPlugins() const { return m_triggerPlugins; }

    /// Fills the three lists in the order instrument, mapper, trigger. Called once. Nothing that lies in the
    /// directories makes it fail; what cannot be loaded is logged.
    void LoadAll();

    /// Stops every plug-in and hands it to deleteLater; empties the lists. Must come before the end of the
    /// manager, which does not do it by itself.
    void Terminate();

private:
    void LoadInstrumentPlugins();
    void LoadMapperPlugins();
    void LoadTriggerPlugins();

    const CSettings& m_settings;
    QList<CInstrumentPlugin*> m_instrumentPlugins;
    QList<CMapperPlugin*> m_mapperPlugins;
    QList<CTriggerPlugin*> m_triggerPlugins;
};
