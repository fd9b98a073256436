// SPDX-License-Identifier: MIT
#pragma once

#include <CTriggerPlugin.h>

#include <QTimer>

/// A source of trigger events: here a clock that ticks twice a second. An instrument in EXTERNAL mode, which
/// connects to Trigger() by itself, takes one block for each.
class CExampleTrigger : public CTriggerPlugin
{
    Q_OBJECT

public:
    CExampleTrigger();

    /// Each session in EXTERNAL mode begins with it, each place of a mapping, too.
    void Start() override;
    /// May come twice, and without a Start() before. Nothing is emitted afterwards.
    void Stop() override;
    /// The user asked to quit. The program may go on all the same, and Start() comes again.
    void Shutdown() override;

private:
    QTimer m_timer{this};
};
