// SPDX-License-Identifier: MIT
#include "CPlugin.h"
