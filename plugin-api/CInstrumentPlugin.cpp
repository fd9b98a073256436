// SPDX-License-Identifier: MIT
#include "CInstrumentPlugin.h"
