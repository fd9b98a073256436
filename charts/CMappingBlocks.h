// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlockMapping.h"
#include "FieldSeries.h"

#include <QSharedPointer>

#include <deque>
#include <vector>

/// The blocks of a mapping in order of arrival, and the plotted ones of them in order of a key as well. A
/// block is added and dropped without a look at the others, so that its cost does not grow with the run.
///
/// Among equal keys the later block comes first. A key that is not a number comes after all others.
class CMappingBlocks
{
public:
    struct Entry
    {
        QSharedPointer<CMeasureBlockMapping> block;
        double key = 0.0;
        quint64 firstResult = 0;                 ///< results that arrived before this block's
        std::vector<double> timeStamps;          ///< of each result on the time axis, in s since the epoch
        std::vector<FieldSeries::Values> values; ///< of each result, as they are plotted
    };

    const std::deque<Entry>& Arrived() const { return m_arrived; }
    std::deque<Entry>& Arrived() { return m_arrived; }

    bool IsEmpty() const { return m_plotted.empty(); }
    std::size_t PlottedCount() const { return m_plotted.size(); }
    /// The plotted entry number `index` in key order. There must be one.
    const Entry& Plotted(std::size_t index) const { return *m_plotted[index].entry; }
    double Key(std::size_t index) const { return m_plotted[index].key; }
    double FirstKey() const { return m_plotted.front().key; }
    double LastKey() const { return m_plotted.back().key; }

    /// Adds an entry behind the others, without plotting it.
    Entry& Append(Entry entry);
    /// Takes an entry of the arrived ones among the plotted.
    void Plot(const Entry& entry);
    /// Takes none as plotted any more.
    void ClearPlotted() { m_plotted.clear(); }
    /// Drops the oldest entry. There must be one.
    void DropOldest();
    void Clear();

    /// The result that arrived as number `serial`, counted from 0 over all that ever did; null once dropped.
    QSharedPointer<CFieldIntensityResult> ResultAt(quint64 serial) const;

private:
    /// The key is kept beside the entry, for the search reads many.
    struct KeyedEntry
    {
        double key;
        const Entry* entry;
    };

    std::deque<Entry> m_arrived; ///< entries keep their place in memory
    std::deque<KeyedEntry> m_plotted;
};
