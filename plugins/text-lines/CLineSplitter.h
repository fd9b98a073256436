// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

/// Cuts the bytes of a serial line, which come in any pieces, into lines of text. A line ends with a line
/// feed, a carriage return or both; empty ones are left out.
class CLineSplitter
{
public:
    /// A longer line is none: it is dropped up to its end. The speed of the port is likely wrong.
    static constexpr int kMaxLineLength = 512;

    /// The lines that `bytes` complete, without their ends.
    QList<QByteArray> Feed(const QByteArray& bytes);

    /// Bytes may be missing here: what comes up to the next end is the rest of a line whose beginning is
    /// lost, and is skipped.
    void Interrupt();
    /// What comes next is the beginning of a line, as at the start.
    void BeginLine();

    /// Whether a line has begun and not ended.
    bool HasPartialLine() const { return !m_partial.isEmpty(); }

private:
    QByteArray m_partial;
    bool m_isSkipping = false;
};
