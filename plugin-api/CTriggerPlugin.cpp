// SPDX-License-Identifier: MIT
#include "CTriggerPlugin.h"
