// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPluginStopAndGo.h"

#include <QTimer>

/// A stop-and-go mapper that arrives in a moment and breaks the rule named by BadMode.h.
class CBadMapper : public CMapperPluginStopAndGo
{
public:
    CBadMapper();

    void Start() override;
    void Stop() override;
    CPosition GetPosition() override;
    COrientation GetOrientation() override;
    void Shutdown() override;
    void MoveTo(CPosition& position, COrientation& orientation) override;

private:
    QTimer m_arrival{this};
    CPosition m_position;
    COrientation m_orientation;
};
