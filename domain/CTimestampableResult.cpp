// SPDX-License-Identifier: MIT
#include "CTimestampableResult.h"
