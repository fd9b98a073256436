// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

/// Cuts the bytes of a serial line into text lines, which end in "\n" or "\r\n". What comes before the first
/// end of a line after a start or a gap is the rest of a line whose beginning is lost, and is skipped.
class CLineSplitter
{
public:
    /// A longer line is none: it is dropped up to its end.
    static constexpr int kMaxLineLength = 512;

    /// The lines that `bytes` complete, without their ends.
    QList<QByteArray> Feed(const QByteArray& bytes);

    /// Bytes may be missing here.
    void Interrupt();
    /// What comes next is the beginning of a line, as is known of what ends a silence.
    void BeginLine();

    /// Whether a line has begun and not ended.
    bool HasPartialLine() const { return !m_partial.isEmpty(); }

private:
    QByteArray m_partial;
    bool m_isSkipping = true;
};
