// SPDX-License-Identifier: GPL-3.0-or-later
// Keys reach a window only while it is active, and the window manager may take its time to make it so: after
// a dialog has closed, keys are lost until the focus is back.
#pragma once

#include "PatientWait.h"

#include <QTest>
#include <QWindow>

/// Makes the window the one that keys reach; false if that cannot be done.
inline bool makeActive(QWindow* window)
{
    if (window->isActive())
        return true;
    window->requestActivate();
    return QTest::qWaitForWindowActive(window, kLongWaitMs);
}
