// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as the application's settings file: nothing may crash or hang, and what was read is written and
// read again.

#include "CSettings.h"
#include "DataHome.h"

#include <QMetaProperty>

#include <cstdlib>

namespace {

const QString& fileName()
{
    static const QString name = QStringLiteral("KestrixApplicationSettings.xml");
    return name;
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

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    DataHome::prepare();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    DataHome::write(fileName(), data, size);
    CSettings settings(QStringLiteral("/nowhere"));
    if (settings.Mapping2DPlotHorizontalAxisType() > CSettings::e_HorizAxisIsZPosition)
        std::abort();
    if (DataHome::isPlain(settings.InstrumentParameterPath()) &&
        DataHome::isPlain(settings.DefaultStoragePath()) &&
        DataHome::isPlain(settings.IgnoreSpecificVersion())) {
        settings.WriteToFile();
        const CSettings again(QStringLiteral("/nowhere"));
        compare(settings, again);
    }
    return 0;
}
