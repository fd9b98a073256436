// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CTriggerPlugin.h"

#include <QTimer>

/// Fires quickly, and breaks the rule named by BadMode.h.
class CBadTrigger : public CTriggerPlugin
{
public:
    CBadTrigger();

    void Start() override;
    void Stop() override;
    void Shutdown() override;

private:
    QTimer m_timer{this};
    bool m_wasStopped = false; ///< after a session
    bool m_isShutDown = false;
};
