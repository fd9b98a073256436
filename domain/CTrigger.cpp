// SPDX-License-Identifier: MIT
#include "CTrigger.h"
