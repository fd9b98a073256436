// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as a parameter file of the mapping, which has every element: nothing may crash or hang, a refused
// file changes nothing, and what was taken over is found again when it has been saved.

#include "CInstrumentSupervisor.h"
#include "COperationMapping.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "DataHome.h"

#include <cstdlib>

namespace {

struct Surroundings
{
    CSettings settings{QStringLiteral("/nowhere")};
    CPluginsManager plugins{settings};
    CInstrumentSupervisor supervisor{&settings};
};

/// What the operation would store. The measurement parameters depend on each other and so on the order of
/// their assignment: they are left out.
QByteArray stored(COperationMapping& operation)
{
    const QString name = QStringLiteral("stored.xml");
    operation.SaveParameters(DataHome::pathOf(name));
    QByteArray text = DataHome::read(name);
    const int begin = text.indexOf("<MEASUREMENT_PARAMETERS>");
    const int end = text.indexOf("</MEASUREMENT_PARAMETERS>");
    if (begin < 0 || end < begin)
        std::abort();
    return text.remove(begin, end - begin);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    DataHome::prepare();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static Surroundings around;
    const QString name = QStringLiteral("parameters.xml");
    DataHome::write(name, data, size);
    COperationMapping operation(&around.settings, &around.plugins, &around.supervisor);
    const QByteArray before = stored(operation);
    const bool isLoaded = operation.LoadParameters(DataHome::pathOf(name));
    if (!isLoaded && stored(operation) != before)
        std::abort();
    if (!operation.OperationParameters()->MeasurementParameters()->ApplyConfiguration() && isLoaded)
        std::abort();

    // Texts may hold what XML cannot say.
    CLimitsParameters& limits = *operation.OperationParameters()->LimitsParameters();
    if (!DataHome::isPlain(limits.LimitsFilePath() + limits.LimitsFileName())) {
        limits.SetLimitsFileName(QString());
        limits.AssignLimitsFilePath(QString());
    }
    const QByteArray text = stored(operation);
    COperationMapping again(&around.settings, &around.plugins, &around.supervisor);
    if (!again.LoadParameters(DataHome::pathOf(QStringLiteral("stored.xml"))) || stored(again) != text)
        std::abort();
    return 0;
}
