// SPDX-License-Identifier: GPL-3.0-or-later
#include "PresentTime.h"

#include <QDateTime>
#include <QLocale>

QString presentTime(const QString& format)
{
    return QLocale::c().toString(QDateTime::currentDateTime(), format);
}
