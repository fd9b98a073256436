// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPluginOnTheFly.h"

/// An on-the-fly mapper that asks for blocks when the test says so and records its calls, see FakeOptions.h.
class CFakeFlyingMapperPlugin : public CMapperPluginOnTheFly
{
    Q_OBJECT

public:
    explicit CFakeFlyingMapperPlugin(QObject* parent = nullptr);

    void Start() override;
    void Stop() override;
    CPosition GetPosition() override;
    COrientation GetOrientation() override;
    void Shutdown() override;

public slots:
    /// Is at (x, 2x, 3x) with the angles 4x, 5x, 6x from now on, and asks for a block elsewhere: what it says
    /// with the signal is not where it is.
    void EmitAcquire(double x);

private:
    CPosition m_position;
    COrientation m_orientation;
};
