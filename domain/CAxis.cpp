// SPDX-License-Identifier: MIT
#include "CAxis.h"
