// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <ctime>

/// The processor time of the test, by which it tells work that grows without bound from work that does not:
/// other programs on a loaded machine do not count.
class CpuTimer
{
public:
    /// Milliseconds since it was made
    qint64 elapsed() const { return qint64(std::clock() - m_start) * 1000 / CLOCKS_PER_SEC; }

private:
    std::clock_t m_start = std::clock();
};
