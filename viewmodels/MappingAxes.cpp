// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingAxes.h"

#include "CMapperPositionSourceCartesian.h"
#include "MappingXmlFile.h"

#include <algorithm>

namespace {

void include(double value, double& start, double& stop)
{
    start = std::min(start, value);
    stop = std::max(stop, value);
}

/// Not-a-number is no extent either.
void widen(double start, double& stop)
{
    if (!(start < stop))
        stop = start + 1;
}

} // namespace

MappingAxes MappingAxes::ofGrid(CMapperPositionSourceCartesian& grid)
{
    return {grid.X()->Start(), grid.X()->Stop(),  grid.Y()->Start(),
            grid.Y()->Stop(),  grid.Z()->Start(), grid.Z()->Stop()};
}

MappingAxes MappingAxes::ofFile(const MappingXmlFile& file)
{
    return {file.PositionXMin(), file.PositionXMax(), file.PositionYMin(),
            file.PositionYMax(), file.PositionZMin(), file.PositionZMax()};
}

MappingAxes MappingAxes::ofBlocks(const std::deque<QSharedPointer<CMeasureBlockMapping>>& blocks)
{
    const CPosition& first = blocks.front()->Position;
    MappingAxes axes{first.X(), first.X(), first.Y(), first.Y(), first.Z(), first.Z()};
    for (const auto& block : blocks) {
        include(block->Position.X(), axes.xStart, axes.xStop);
        include(block->Position.Y(), axes.yStart, axes.yStop);
        include(block->Position.Z(), axes.zStart, axes.zStop);
    }
    widen(axes.xStart, axes.xStop);
    widen(axes.yStart, axes.yStop);
    widen(axes.zStart, axes.zStop);
    return axes;
}
