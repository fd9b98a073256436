// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Gives this process, and those that it starts, users, mounts and a network of their own: as root there it
/// may lay empty folders over /sys/bus and /dev, and ports of the loopback are its own. To be called before
/// the process has a second thread. Gives what was refused, or an empty text.
QString enterPrivateNamespace();

/// While it lives, this thread and those that it starts are bound by the permissions of files, as users are.
class WithoutOverride
{
public:
    WithoutOverride() { set(false); }
    ~WithoutOverride() { set(true); }
    WithoutOverride(const WithoutOverride&) = delete;
    WithoutOverride& operator=(const WithoutOverride&) = delete;

private:
    static void set(bool isOn);
};
