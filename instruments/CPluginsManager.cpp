// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPluginsManager.h"

#include "CInstrumentPlugin.h"
#include "CMapperPlugin.h"
#include "CSettings.h"
#include "CTriggerPlugin.h"

#include <QDebug>
#include <QDir>
#include <QLibrary>
#include <QStringList>

namespace {

/// Every regular file: what is no library fails when it is loaded.
QStringList filesIn(const QString& directory)
{
    return QDir(directory).entryList(QDir::Files, QDir::Type);
}

QString pathOf(const QString& directory, const QString& file)
{
    return directory + QLatin1Char('/') + file;
}

/// Lets a loaded library make its plug-in. A factory may answer null, which is not an error. A plug-in that
/// deletes itself leaves the list, which is a member of `owner`.
template <class Plugin>
void createPlugin(QLibrary& library, const char* factoryName, const char* missingText, CPluginsManager* owner,
                  QList<Plugin*>& plugins)
{
    using Factory = Plugin* (*)();
    const auto factory = reinterpret_cast<Factory>(library.resolve(factoryName));
    if (!factory) {
        qDebug("%s", missingText);
        return;
    }
    Plugin* const plugin = factory();
    if (!plugin)
        return;
    plugins.append(plugin);
    QObject::connect(plugin, &QObject::destroyed, owner, [&plugins, plugin] { plugins.removeOne(plugin); });
}

template <class Plugin>
void loadOptionalPlugins(const QString& directory, const char* factoryName, const char* missingText,
                         CPluginsManager* owner, QList<Plugin*>& plugins)
{
    if (!QDir(directory).exists())
        return;
    const QStringList files = filesIn(directory);
    for (const QString& file : files) {
        QLibrary library(pathOf(directory, file));
        bool isLoaded = library.load();
        if (!isLoaded) {
            qDebug().noquote() << library.errorString();
            isLoaded = library.load();
        }
        if (!isLoaded)
            continue;
        qDebug().noquote() << "library" << file << "loaded";
        createPlugin(library, factoryName, missingText, owner, plugins);
    }
}

template <class Plugin> void terminateAll(QList<Plugin*>& plugins)
{
    while (!plugins.isEmpty()) {
        Plugin* const plugin = plugins.takeFirst();
        plugin->Stop();
        plugin->deleteLater();
    }
}

} // namespace

CPluginsManager::CPluginsManager(const CSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings)
{
}

void CPluginsManager::LoadAll()
{
    LoadInstrumentPlugins();
    LoadMapperPlugins();
    LoadTriggerPlugins();
}

void CPluginsManager::Terminate()
{
    terminateAll(m_instrumentPlugins);
    terminateAll(m_mapperPlugins);
    terminateAll(m_triggerPlugins);
}

void CPluginsManager::LoadInstrumentPlugins()
{
    const QString directory = m_settings.InstrumentDriverPluginsPath();
    qInfo().noquote().nospace() << "Loading Instrument plugin in " << directory;

    // Libraries count, not plug-ins: one without the factory silences the warning too.
    int numLibraries = 0;
    const QStringList files = QDir(directory).exists() ? filesIn(directory) : QStringList();
    for (const QString& file : files) {
        QLibrary library(pathOf(directory, file));
        if (!library.load()) {
            qInfo().noquote() << library.errorString();
            continue;
        }
        ++numLibraries;
        qInfo().noquote() << "library" << file << "loaded";
        createPlugin(library, "CreateInstrumentPlugin",
                     "Could not create instrument plugin from the loaded library", this, m_instrumentPlugins);
    }
    if (numLibraries == 0)
        qWarning("Unable to load any instrument plugins");
}

void CPluginsManager::LoadMapperPlugins()
{
    loadOptionalPlugins(m_settings.MapperPluginsPath(), "CreateMapperPlugin",
                        "Could not create mapper plugin from the loaded library", this, m_mapperPlugins);
}

void CPluginsManager::LoadTriggerPlugins()
{
    loadOptionalPlugins(m_settings.TriggerPluginsPath(), "CreateTriggerPlugin",
                        "Could not create trigger plugin from the loaded library", this, m_triggerPlugins);
}
