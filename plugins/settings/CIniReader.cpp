// SPDX-License-Identifier: MIT
#include "CIniReader.h"

#include <QStandardPaths>

#include <algorithm>
#include <cmath>
#include <limits>

CIniReader::CIniReader(const QString& path) : m_settings(path, QSettings::IniFormat) {}

QString CIniReader::PathOf(const QString& fileName)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Kestrix/") + fileName;
}

void CIniReader::Read(const char* key, double& value, double factor) const
{
    bool ok = false;
    const double read = Text(key).toDouble(&ok);
    if (ok && std::isfinite(read))
        value = read * factor;
}

void CIniReader::Read(const char* key, bool& value) const
{
    const QString read = Text(key);
    if (!read.isEmpty())
        value = read == QLatin1String("true") || read == QLatin1String("1");
}

void CIniReader::ReadInteger(const char* key, int& value) const
{
    auto read = static_cast<quint64>(value);
    ReadInteger(key, read);
    value = static_cast<int>(read);
}

void CIniReader::ReadInteger(const char* key, quint64& value) const
{
    bool ok = false;
    const qlonglong read = Text(key).toLongLong(&ok);
    if (ok && read >= 0)
        value = static_cast<quint64>(std::min<qlonglong>(read, std::numeric_limits<int>::max()));
}

QString CIniReader::Text(const char* key) const
{
    return m_settings.value(QLatin1String(key)).toString().trimmed();
}
