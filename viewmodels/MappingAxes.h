// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlockMapping.h"

#include <QSharedPointer>

#include <deque>

class CMapperPositionSourceCartesian;
class MappingXmlFile;

/// Limits of the 3-D view of a mapping, in the length unit of the mapper. A stop may lie below its start.
struct MappingAxes
{
    double xStart = 0;
    double xStop = 1;
    double yStart = 0;
    double yStop = 1;
    double zStart = 0;
    double zStop = 1;

    static MappingAxes ofGrid(CMapperPositionSourceCartesian& grid);
    static MappingAxes ofFile(const MappingXmlFile& file);
    /// From the least to the greatest place on each axis; to 1 above it if all are alike. There must be a
    /// block.
    static MappingAxes ofBlocks(const std::deque<QSharedPointer<CMeasureBlockMapping>>& blocks);
};
