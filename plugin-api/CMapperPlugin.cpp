// SPDX-License-Identifier: MIT
#include "CMapperPlugin.h"
