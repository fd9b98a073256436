// SPDX-License-Identifier: MIT
#include "CMapperPluginOnTheFly.h"
