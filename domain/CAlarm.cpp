// SPDX-License-Identifier: MIT
#include "CAlarm.h"
