// SPDX-License-Identifier: MIT
#include "CBlockSource.h"

CBlockSource::~CBlockSource() = default;
