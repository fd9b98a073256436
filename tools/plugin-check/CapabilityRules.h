// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CCheckRun;
class CInstrument;

/// Reports what is wrong with identity, lists and bounds of a connected instrument.
void checkCapabilities(CCheckRun& run, CInstrument& instrument);
