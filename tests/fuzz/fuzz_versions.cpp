// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as a version list: nothing may crash or hang, and only a later version may be announced.

#include "CVersionChecker.h"

#include <QLoggingCategory>
#include <QVersionNumber>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    CVersionChecker checker(QStringLiteral("Kestrix"), QStringLiteral("1.2.4"), QString());
    int numAnnounced = 0;
    QObject::connect(&checker, &CVersionChecker::NewVersionAvailable, &checker, [&](const QString& text) {
        ++numAnnounced;
        const QVersionNumber version = QVersionNumber::fromString(text);
        if (version < QVersionNumber(1, 2, 4) || version.toString() != text)
            std::abort();
    });
    checker.SetResponse(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    checker.OnNewVersionResponse();
    if (numAnnounced > 1)
        std::abort();
    return 0;
}
