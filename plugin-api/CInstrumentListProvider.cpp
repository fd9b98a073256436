// SPDX-License-Identifier: MIT
#include "CInstrumentListProvider.h"
