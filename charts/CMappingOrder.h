// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MappingEntry.h"

#include <vector>

/// Entries of a mapping in order of their keys, found by number or by key. They lie in pieces of bounded
/// length: an entry that comes or goes moves those of its piece and no others, so that its cost hardly grows
/// with their number.
///
/// Among equal keys the later comer comes first. A key that is not a number comes after all others.
class CMappingOrder
{
public:
    /// An entry with what is drawn of it while each block has one row: the rows of a long run come from all
    /// over the memory, and the entry itself would be one more look at each.
    struct Item
    {
        double key;
        double lastTimeStamp; ///< of its last result; 0 without time stamps
        const MappingEntry* entry;
        std::size_t resultCount;
        FieldSeries::Values lastValues; ///< of its last result
    };

    /// Finds items in ascending order without a search. Nothing may come or go meanwhile.
    class Walk
    {
    public:
        explicit Walk(const CMappingOrder& order) : m_order(order) {}
        /// Item number `index`, which is not before the one asked for last. There must be one.
        const Item& At(std::size_t index);

    private:
        const CMappingOrder& m_order;
        std::size_t m_piece = 0;
    };

    bool IsEmpty() const { return m_pieces.empty(); }
    std::size_t Count() const;
    /// Item number `index` in the order. There must be one.
    const Item& At(std::size_t index) const;
    const Item& First() const { return m_pieces.front().items.front(); } ///< there must be one
    const Item& Last() const { return m_pieces.back().items.back(); }    ///< there must be one

    /// Takes in an entry with at least one result. It must stay where it is in memory.
    void Insert(const MappingEntry& entry);
    /// Lets go of the entry if it is the last one with its key.
    void RemoveLastWithKeyOf(const MappingEntry& entry);
    void Clear() { m_pieces.clear(); }

private:
    /// Never without items.
    struct Piece
    {
        std::size_t begin; ///< number of its first item
        std::vector<Item> items;
    };
    using Pieces = std::vector<Piece>;

    static Pieces::iterator splitInHalf(Pieces& pieces, Pieces::iterator piece);
    static void joinWithNext(Pieces& pieces, Pieces::iterator piece);

    Pieces m_pieces;
};
