// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

/// Counts how often the bell of the X display rings. A connection of its own: the display tells it of bells
/// that nobody can hear.
class BellListener
{
public:
    BellListener();
    ~BellListener();

    /// False without a display that tells of its bell.
    bool IsListening() const;
    /// The number of rings since the construction.
    int Count();

private:
    struct Connection;

    std::unique_ptr<Connection> m_connection;
    int m_count = 0;
};
