// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CUserNotifier.h"

/// For tests that expect no notice.
class SilentNotifier : public CUserNotifier
{
public:
    void ShowTrayMessage(const QString& /*title*/, const QString& /*text*/) override {}
    void Beep() override {}
};
