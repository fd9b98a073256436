// SPDX-License-Identifier: GPL-3.0-or-later
#include "InitResources.h"

#include <QtGlobal>

void InitResources()
{
    Q_INIT_RESOURCE(KestrixResources);
}
