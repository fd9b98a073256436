// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingOrder.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

/// Small enough that moving half of it costs next to nothing, large enough that a long run has few pieces.
constexpr std::size_t kLongestPiece = 128;

bool isKeyBefore(double a, double b)
{
    return a < b || (!std::isnan(a) && std::isnan(b));
}

CMappingOrder::Item itemOf(const MappingEntry& entry)
{
    return {entry.key, entry.timeStamps.empty() ? 0.0 : entry.timeStamps.back(), &entry, entry.values.size(),
            entry.values.back()};
}

} // namespace

const CMappingOrder::Item& CMappingOrder::Walk::At(std::size_t index)
{
    const Pieces& pieces = m_order.m_pieces;
    while (index - pieces[m_piece].begin >= pieces[m_piece].items.size())
        ++m_piece;
    return pieces[m_piece].items[index - pieces[m_piece].begin];
}

std::size_t CMappingOrder::Count() const
{
    return m_pieces.empty() ? 0 : m_pieces.back().begin + m_pieces.back().items.size();
}

const CMappingOrder::Item& CMappingOrder::At(std::size_t index) const
{
    const auto behind = std::partition_point(m_pieces.begin(), m_pieces.end(),
                                             [index](const Piece& piece) { return piece.begin <= index; });
    const Piece& piece = *std::prev(behind);
    return piece.items[index - piece.begin];
}

void CMappingOrder::Insert(const MappingEntry& entry)
{
    // In front of the first item that is not before it
    auto piece = std::partition_point(m_pieces.begin(), m_pieces.end(), [&](const Piece& other) {
        return isKeyBefore(other.items.back().key, entry.key);
    });
    if (piece == m_pieces.end()) {
        // A run along the order fills its pieces.
        if (m_pieces.empty() || m_pieces.back().items.size() == kLongestPiece) {
            m_pieces.push_back({Count(), {}});
            m_pieces.back().items.reserve(kLongestPiece);
        }
        m_pieces.back().items.push_back(itemOf(entry));
        return;
    }
    if (piece->items.size() == kLongestPiece) {
        piece = splitInHalf(m_pieces, piece);
        if (isKeyBefore(piece->items.back().key, entry.key))
            ++piece;
    }
    const auto place = std::partition_point(piece->items.begin(), piece->items.end(), [&](const Item& other) {
        return isKeyBefore(other.key, entry.key);
    });
    piece->items.insert(place, itemOf(entry));
    std::for_each(std::next(piece), m_pieces.end(), [](Piece& later) { ++later.begin; });
}

void CMappingOrder::RemoveLastWithKeyOf(const MappingEntry& entry)
{
    const auto isNotBehind = [&](const Item& item) { return !isKeyBefore(entry.key, item.key); };
    auto piece = std::partition_point(m_pieces.begin(), m_pieces.end(),
                                      [&](const Piece& other) { return isNotBehind(other.items.front()); });
    if (piece == m_pieces.begin())
        return;
    --piece;
    const auto last = std::prev(std::partition_point(piece->items.begin(), piece->items.end(), isNotBehind));
    if (last->entry != &entry)
        return;
    piece->items.erase(last);
    std::for_each(std::next(piece), m_pieces.end(), [](Piece& later) { --later.begin; });
    if (piece->items.empty())
        m_pieces.erase(piece);
    else
        joinWithNext(m_pieces, piece);
}

/// Returns the first half.
CMappingOrder::Pieces::iterator CMappingOrder::splitInHalf(Pieces& pieces, Pieces::iterator piece)
{
    const auto half = static_cast<std::ptrdiff_t>(piece->items.size() / 2);
    Piece second{piece->begin + static_cast<std::size_t>(half), {}};
    second.items.reserve(kLongestPiece);
    second.items.assign(piece->items.begin() + half, piece->items.end());
    piece->items.erase(piece->items.begin() + half, piece->items.end());
    return std::prev(pieces.insert(std::next(piece), std::move(second)));
}

/// Pieces that have become short would be as many as the items.
void CMappingOrder::joinWithNext(Pieces& pieces, Pieces::iterator piece)
{
    const auto next = std::next(piece);
    if (next == pieces.end() || piece->items.size() + next->items.size() > kLongestPiece / 2)
        return;
    piece->items.insert(piece->items.end(), next->items.begin(), next->items.end());
    pieces.erase(next);
}
