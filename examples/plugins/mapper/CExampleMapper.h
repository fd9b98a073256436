// SPDX-License-Identifier: MIT
#pragma once

#include <CMapperPluginStopAndGo.h>

#include <QElapsedTimer>
#include <QTimer>

/// A device that carries the probe to the place that it is sent to: here with 100 mm per second along a
/// straight line. It turns at once.
class CExampleMapper : public CMapperPluginStopAndGo
{
    Q_OBJECT

public:
    CExampleMapper();

    /// Each session begins with it.
    void Start() override;
    /// Stays where it is. May come twice, in the middle of a move, and without a Start() before. Nothing is
    /// emitted afterwards.
    void Stop() override;
    /// Asked for each block, also in the middle of a move and after Stop(): answered at once.
    CPosition GetPosition() override;
    COrientation GetOrientation() override;
    /// The program ends.
    void Shutdown() override;
    /// Begins the move and returns at once. Ready() follows, once, also if there is nothing to move.
    void MoveTo(CPosition& position, COrientation& orientation) override;

private:
    /// Part of the move that is done, 0 to 1.
    double progress() const;

    QTimer m_arrival{this};
    QElapsedTimer m_sinceStart; ///< of the move
    double m_durationMs = 0;    ///< of the move; 0: at rest
    CPosition m_from;
    CPosition m_to;
    COrientation m_orientation;
};
