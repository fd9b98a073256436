// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as the two settings files: nothing may crash or hang, and what was read is written and read
// again.

#include "CConnectionPageSettings.h"
#include "CSettings.h"
#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QMetaProperty>

#include <cstdlib>

namespace {

// Before the path of the settings is computed: the files of the user who runs this are not for fuzzing.
__attribute__((constructor(101))) void moveDataHome()
{
    static char folder[] = "/tmp/fuzz_settings.XXXXXX";
    if (mkdtemp(folder) == nullptr || setenv("XDG_DATA_HOME", folder, 1) != 0)
        std::abort();
}

void removeDataHome()
{
    QDir(qEnvironmentVariable("XDG_DATA_HOME")).removeRecursively();
}

void write(const char* name, const unsigned char* data, size_t size)
{
    QFile file(QDir(SettingsDirectoryPath).filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
}

/// Texts may hold what XML cannot, and numbers with a fraction are shortened: whole numbers and switches
/// stay.
void compare(const CSettings& before, const CSettings& after)
{
    const QMetaObject* meta = before.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const int type = property.userType();
        const bool isWhole = type == QMetaType::Bool || type == QMetaType::Int || type == QMetaType::UInt ||
                             type == QMetaType::ULongLong;
        if (isWhole && property.read(&before) != property.read(&after))
            std::abort();
    }
}

bool isPlain(const QString& text)
{
    for (const QChar character : text) {
        if (!character.isPrint())
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    QDir().mkpath(SettingsDirectoryPath);
    std::atexit(removeDataHome);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    write("KestrixApplicationSettings.xml", data, size);
    write("KestrixConnectionSettings.xml", data, size);
    CSettings settings(QStringLiteral("/nowhere"));
    if (settings.Mapping2DPlotHorizontalAxisType() > CSettings::e_HorizAxisIsZPosition)
        std::abort();
    // Not where the file says: nothing is written outside of the folder.
    const bool isPlainText = isPlain(settings.InstrumentParameterPath()) &&
                             isPlain(settings.DefaultStoragePath()) &&
                             isPlain(settings.IgnoreSpecificVersion());
    settings.SetInstrumentParameterPath(SettingsDirectoryPath);
    const CConnectionPageSettings connection(&settings);
    if (isPlainText) {
        settings.WriteToFile();
        const CSettings again(QStringLiteral("/nowhere"));
        compare(settings, again);
    }
    return 0;
}
