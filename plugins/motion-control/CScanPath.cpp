// SPDX-License-Identifier: MIT
#include "CScanPath.h"

#include <algorithm>

namespace {

constexpr int kMaxPointsOfLine = 100000;
/// The rounding of a length that is a whole number of spacings must not cost the last point.
constexpr double kScanRounding = 1e-9;

} // namespace

std::vector<ScanLine> CScanPath::LinesOf(const StageSettings& settings)
{
    std::vector<ScanLine> lines;
    const StagePlace& from = settings.scanFrom;
    const StagePlace& to = settings.scanTo;
    for (int i = 0; i < settings.scanLines; ++i) {
        const double part = settings.scanLines > 1 ? i / (settings.scanLines - 1.0) : 0.0;
        const double y = from[1] + (to[1] - from[1]) * part;
        const double z = from[2] + (to[2] - from[2]) * part;
        ScanLine line{{from[0], y, z}, {to[0], y, z}};
        if (i % 2 != 0)
            std::swap(line.from, line.to);
        lines.push_back(line);
    }
    return lines;
}

CScanPath::CScanPath(const ScanLine& line, double spacing)
    : m_line(line), m_spacing(spacing), m_length(distanceOf(line.from, line.to)),
      m_numPoints(
          static_cast<int>(std::min<double>(m_length / spacing + kScanRounding, kMaxPointsOfLine - 1)) + 1)
{
}

int CScanPath::Pass(const StagePlace& place)
{
    if (m_length <= 0)
        return 0;
    const StagePlace way = differenceOf(m_line.to, m_line.from);
    const StagePlace gone = differenceOf(place, m_line.from);
    const double along = (way[0] * gone[0] + way[1] * gone[1] + way[2] * gone[2]) / m_length;
    // Bounded before the conversion: a place may be anything.
    const double numSpacings = std::clamp(along / m_spacing + kScanRounding, -1.0, m_numPoints - 1.0);
    const int numReached = static_cast<int>(std::floor(numSpacings)) + 1;
    const int numNew = std::max(0, numReached - m_numPassed);
    m_numPassed += numNew;
    return numNew;
}

int CScanPath::Finish()
{
    const int numNew = m_numPoints - m_numPassed;
    m_numPassed = m_numPoints;
    return numNew;
}
