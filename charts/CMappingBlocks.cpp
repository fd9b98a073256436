// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingBlocks.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

bool isBefore(double a, double b)
{
    return a < b || (!std::isnan(a) && std::isnan(b));
}

} // namespace

CMappingBlocks::Entry& CMappingBlocks::Append(Entry entry)
{
    m_arrived.push_back(std::move(entry));
    return m_arrived.back();
}

void CMappingBlocks::Plot(const Entry& entry)
{
    const auto place = std::partition_point(m_plotted.begin(), m_plotted.end(), [&](const KeyedEntry& other) {
        return isBefore(other.key, entry.key);
    });
    m_plotted.insert(place, {entry.key, &entry});
}

void CMappingBlocks::DropOldest()
{
    const Entry& oldest = m_arrived.front();
    // The last of those with its key, as all later ones stand before it
    const auto behind =
        std::partition_point(m_plotted.begin(), m_plotted.end(),
                             [&](const KeyedEntry& other) { return !isBefore(oldest.key, other.key); });
    if (behind != m_plotted.begin() && std::prev(behind)->entry == &oldest)
        m_plotted.erase(std::prev(behind));
    m_arrived.pop_front();
}

void CMappingBlocks::Clear()
{
    m_plotted.clear();
    m_arrived.clear();
}

QSharedPointer<CFieldIntensityResult> CMappingBlocks::ResultAt(quint64 serial) const
{
    const auto behind = std::partition_point(m_arrived.begin(), m_arrived.end(),
                                             [&](const Entry& entry) { return entry.firstResult <= serial; });
    if (behind == m_arrived.begin())
        return {};
    const Entry& entry = *std::prev(behind);
    return entry.block->Results.value(static_cast<int>(serial - entry.firstResult));
}
