// SPDX-License-Identifier: GPL-3.0-or-later
#include "DataHome.h"

#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

// Before the path of the settings is computed.
__attribute__((constructor(101))) void moveDataHome()
{
    const char* parent = std::getenv("TMPDIR");
    std::string folder = (parent ? parent : "/tmp") + std::string("/kestrix_fuzz.XXXXXX");
    if (mkdtemp(folder.data()) == nullptr || setenv("XDG_DATA_HOME", folder.c_str(), 1) != 0)
        std::abort();
}

void removeDataHome()
{
    QDir(qEnvironmentVariable("XDG_DATA_HOME")).removeRecursively();
}

} // namespace

namespace DataHome {

void prepare()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    QDir().mkpath(SettingsDirectoryPath);
    std::atexit(removeDataHome);
}

void write(const QString& name, const unsigned char* data, size_t size)
{
    QFile file(pathOf(name));
    const auto length = static_cast<qint64>(size);
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char*>(data), length) != length)
        std::abort();
}

QByteArray read(const QString& name)
{
    QFile file(pathOf(name));
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    return file.readAll();
}

QString pathOf(const QString& name)
{
    return QDir(SettingsDirectoryPath).filePath(name);
}

bool isPlain(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.isPrint(); });
}

} // namespace DataHome
