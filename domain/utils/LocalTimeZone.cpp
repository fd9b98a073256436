// SPDX-License-Identifier: GPL-3.0-or-later
#include "LocalTimeZone.h"

#include <QByteArray>
#include <QtGlobal>

void keepLocalTimeZone()
{
#ifdef Q_OS_LINUX
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", QByteArrayLiteral(":/etc/localtime"));
#endif
}
