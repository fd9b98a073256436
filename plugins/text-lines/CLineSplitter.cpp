// SPDX-License-Identifier: MIT
#include "CLineSplitter.h"

#include <algorithm>

QList<QByteArray> CLineSplitter::Feed(const QByteArray& bytes)
{
    QList<QByteArray> lines;
    const auto* begin = bytes.cbegin();
    while (begin != bytes.cend()) {
        const auto* const end =
            std::find_if(begin, bytes.cend(), [](char byte) { return byte == '\n' || byte == '\r'; });
        const auto length = static_cast<int>(end - begin);
        if (m_isSkipping || m_partial.size() + length > kMaxLineLength)
            Interrupt();
        else
            m_partial.append(begin, length);
        if (end == bytes.cend())
            break;
        if (!m_partial.isEmpty())
            lines.append(m_partial);
        BeginLine();
        begin = end + 1;
    }
    return lines;
}

void CLineSplitter::Interrupt()
{
    m_partial.clear();
    m_isSkipping = true;
}

void CLineSplitter::BeginLine()
{
    m_partial.clear();
    m_isSkipping = false;
}
