// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CTriggerPlugin.h"

/// A trigger plug-in that records its calls, see FakeOptions.h.
class CFakeTriggerPlugin : public CTriggerPlugin
{
    Q_OBJECT

public:
    explicit CFakeTriggerPlugin(QObject* parent = nullptr);

    void Start() override;
    void Stop() override;
    void Shutdown() override;
};
