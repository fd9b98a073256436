// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What must be settled in a process that opens the window, before its QApplication is made: names, time
/// zone, scaling, the OpenGL version of the 3-D scenes and the pace of the window.
void prepareProcess();
