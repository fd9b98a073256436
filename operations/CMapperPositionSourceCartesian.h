// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAxisStepSeries.h"
#include "CMapperPositionSource.h"

#include <array>

/// The points of a grid, X outermost and Z innermost, each axis always in ascending order, all with the same
/// orientation. A grid may be of any size: its points are not stored but reached by counting the axes on.
class CMapperPositionSourceCartesian : public CMapperPositionSource
{
    Q_OBJECT
    Q_PROPERTY(CAxisStepSeries* X READ X CONSTANT)
    Q_PROPERTY(CAxisStepSeries* Y READ Y CONSTANT)
    Q_PROPERTY(CAxisStepSeries* Z READ Z CONSTANT)
    Q_PROPERTY(COrientation* Orientation READ Orientation CONSTANT)

public:
    explicit CMapperPositionSourceCartesian(QObject* parent = nullptr);

    CAxisStepSeries* X() { return &m_x; }
    const CAxisStepSeries* X() const { return &m_x; }
    CAxisStepSeries* Y() { return &m_y; }
    const CAxisStepSeries* Y() const { return &m_y; }
    CAxisStepSeries* Z() { return &m_z; }
    const CAxisStepSeries* Z() const { return &m_z; }
    COrientation* Orientation() { return &m_orientation; } ///< degrees
    const COrientation* Orientation() const { return &m_orientation; }

    void Reset() override;
    bool GetNextPosition(CPosition& position, COrientation& orientation) override;
    int PositionIndex() const { return m_positionIndex; } ///< points handed out since the last restart

public slots:
    /// Begins the grid anew with the axes as they are now; called at every edit of one. There is no point if
    /// a step is 0.001 or less.
    void InitializePositions();

private:
    /// The values of one axis in turn. The steps are added up, with their rounding errors, so that a last
    /// value just above the stop is left out.
    struct Walk
    {
        double start = 0;
        double stop = 0;
        double step = 0;
        double value = 0;

        bool begin();
        bool advance();
    };

    bool beginWalks();

    CAxisStepSeries m_x;
    CAxisStepSeries m_y;
    CAxisStepSeries m_z;
    COrientation m_orientation;
    std::array<Walk, 3> m_walks; ///< X, Y, Z
    bool m_hasPosition = false;  ///< the walks stand at a point that was not handed out yet
    int m_positionIndex = 0;
};
