// SPDX-License-Identifier: MIT
#include "CInstrumentInterface.h"
