// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPlugin.h"

/// A library like any other, which happens to lie among the plug-ins.
KESTRIX_PLUGIN_FACTORY int answerOfNoFactory()
{
    return 42;
}
