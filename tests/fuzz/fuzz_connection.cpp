// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as the file of the connection page: nothing may crash or hang, and what was read is found again
// when it has been saved.

#include "CConnectionPageSettings.h"
#include "CSettings.h"
#include "DataHome.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    DataHome::prepare();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static CSettings settings(QStringLiteral("/nowhere"));
    DataHome::write(QStringLiteral("KestrixConnectionSettings.xml"), data, size);
    CConnectionPageSettings connection(&settings);
    const auto textsOf = [](const CConnectionPageSettings& page) {
        return QStringList{page.SerialPort(), page.BaudRate(), page.InstrumentName(),
                           page.InstrumentSerialNumber()};
    };
    const QStringList texts = textsOf(connection);
    if (!DataHome::isPlain(texts.join(QString())))
        return 0;
    connection.SaveConnectionSettings(texts[0], texts[1], texts[2], texts[3]);
    const CConnectionPageSettings again(&settings);
    if (textsOf(again) != texts)
        std::abort();
    return 0;
}
