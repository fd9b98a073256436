// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Makes the resource bundle known under ":/Resources". A static library's resources need the call; it can be
/// made more than once.
void InitResources();
