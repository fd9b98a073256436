// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CException.h"

namespace VRQ::Instrument::KVP2040Types {
/// Names the origin of the exception below; there are no objects of it.
class CFluxList;
} // namespace VRQ::Instrument::KVP2040Types

/// What every Compute function throws on bad input. Nobody catches it: callers rule such input out first.
using ComputeError = VRQ::CException<VRQ::Instrument::KVP2040Types::CFluxList>;
