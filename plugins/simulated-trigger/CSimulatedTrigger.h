// SPDX-License-Identifier: MIT
#pragma once

#include "CTriggerPlugin.h"

#include <QTimer>

/// Fires at equal intervals between Start() and Stop(); only once while a simulated mapper is at work, which
/// wants one block at each place. Its settings file, "KestrixSimulatedTrigger.ini" in the per-user directory,
/// is read again at every start; see docs/simulated-mapper.md.
class CSimulatedTrigger : public CTriggerPlugin
{
    Q_OBJECT

public:
    explicit CSimulatedTrigger(QObject* parent = nullptr);

    void Start() override;
    void Stop() override;
    void Shutdown() override;

private:
    void fire();

    QTimer m_timer{this};
    int m_intervalMs = 0;
    int m_left = 0; ///< triggers to come; below 0 without end
};
