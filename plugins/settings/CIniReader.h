// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>
#include <QString>

/// Reads the settings file of a plug-in, an INI file in the per-user directory. A key that is missing or has
/// no sensible value leaves the value that stands already, its default.
class CIniReader
{
public:
    explicit CIniReader(const QString& path);

    /// Path of a file in the per-user directory of the application.
    static QString PathOf(const QString& fileName);

    /// A finite number, which is multiplied by `factor`.
    void Read(const char* key, double& value, double factor = 1) const;
    /// "true" or "1", or anything else.
    void Read(const char* key, bool& value) const;
    /// A whole number from 0 on; beyond the largest int that one.
    void ReadInteger(const char* key, int& value) const;
    void ReadInteger(const char* key, quint64& value) const;
    QString Text(const char* key) const;

private:
    QSettings m_settings;
};
