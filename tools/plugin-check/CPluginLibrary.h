// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLibrary>
#include <QString>
#include <QStringList>

#include <memory>

/// A plug-in library. Like the application it is never unloaded.
class CPluginLibrary
{
public:
    explicit CPluginLibrary(const QString& path);

    /// False if it cannot be loaded. `error` may say something about one that can: that a symbol is missing,
    /// which shows only when it is called.
    bool Load(QString& error);
    /// First number of the version of the contract that the library was linked with; empty if unknown.
    QString ContractVersion() const;
    /// Kinds of plug-in for which it exports a factory.
    QStringList Kinds();
    static const char* FactoryNameOf(const QString& kind);

    /// Calls the factory of this kind, which must be one of Kinds().
    template <class Plugin> Plugin* Create(const char* factoryName)
    {
        return reinterpret_cast<Plugin* (*)()>(m_library->resolve(factoryName))();
    }

private:
    QString m_path;
    std::unique_ptr<QLibrary> m_library; ///< not null
};
