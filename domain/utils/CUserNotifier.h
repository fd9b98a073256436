// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Ways to tell the user something without a window. Main thread only.
class CUserNotifier
{
public:
    virtual ~CUserNotifier() = default;

    /// A warning at the icon in the system tray, for five seconds.
    virtual void ShowTrayMessage(const QString& title, const QString& text) = 0;
    virtual void Beep() = 0;

protected:
    CUserNotifier() = default;

    Q_DISABLE_COPY(CUserNotifier)
};
