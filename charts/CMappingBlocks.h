// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMappingOrder.h"
#include "MappingEntry.h"

#include <QSharedPointer>

#include <deque>

/// The blocks of a mapping in order of arrival, and the plotted ones of them in order of a key as well. A
/// block is added and dropped without a look at the others, so that its cost does not grow with the run.
class CMappingBlocks
{
public:
    using Entry = MappingEntry;

    const std::deque<Entry>& Arrived() const { return m_arrived; }
    std::deque<Entry>& Arrived() { return m_arrived; }

    /// The plotted entries in order of their keys.
    const CMappingOrder& Plotted() const { return m_plotted; }

    /// Adds an entry behind the others, without plotting it.
    Entry& Append(Entry entry);
    /// Takes an entry of the arrived ones, with its values, among the plotted.
    void Plot(const Entry& entry) { m_plotted.Insert(entry); }
    /// Takes none as plotted any more.
    void ClearPlotted() { m_plotted.Clear(); }
    /// Drops the oldest entry. There must be one.
    void DropOldest();
    void Clear();

    /// The result that arrived as number `serial`, counted from 0 over all that ever did; null once dropped.
    QSharedPointer<CFieldIntensityResult> ResultAt(quint64 serial) const;

private:
    std::deque<Entry> m_arrived; ///< entries keep their place in memory
    CMappingOrder m_plotted;
};
