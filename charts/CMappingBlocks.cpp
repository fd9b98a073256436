// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingBlocks.h"

#include <algorithm>
#include <utility>

CMappingBlocks::Entry& CMappingBlocks::Append(Entry entry)
{
    m_arrived.push_back(std::move(entry));
    return m_arrived.back();
}

void CMappingBlocks::DropOldest()
{
    // Among those with its key it is the last, as all later ones stand before it.
    m_plotted.RemoveLastWithKeyOf(m_arrived.front());
    m_arrived.pop_front();
}

void CMappingBlocks::Clear()
{
    m_plotted.Clear();
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
