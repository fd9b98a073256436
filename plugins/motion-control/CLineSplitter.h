// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Makes lines of bytes that come in any pieces. A line ends with a line feed, a carriage return or both;
/// empty ones are left out. What is no end of a line for too long is thrown away: the speed of the port is
/// likely wrong.
class CLineSplitter
{
public:
    static constexpr int kMaxLineBytes = 4096;

    void Add(const QByteArray& bytes);
    /// The next whole line, without its end; false if there is none.
    bool Take(QByteArray& line);

private:
    QByteArray m_bytes;
};
