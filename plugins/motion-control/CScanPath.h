// SPDX-License-Identifier: MIT
#pragma once

#include "StageSettings.h"

#include <vector>

/// The lines that a mapper follows without stopping at its points: to and fro along X, spread evenly over Y
/// and Z.
struct ScanLine
{
    StagePlace from{};
    StagePlace to{};
};

/// Tells when the points of one line are passed. They lie at equal distances from its beginning.
class CScanPath
{
public:
    static std::vector<ScanLine> LinesOf(const StageSettings& settings);

    CScanPath(const ScanLine& line, double spacing);

    /// Points that are passed by now and were not told before.
    int Pass(const StagePlace& place);
    /// Those that are left when the end of the line is reached.
    int Finish();
    int Count() const { return m_numPoints; }

private:
    ScanLine m_line;
    double m_spacing;
    double m_length;
    int m_numPoints;
    int m_numPassed = 0;
};
