// SPDX-License-Identifier: MIT
#include "CLineSplitter.h"

#include <algorithm>

void CLineSplitter::Add(const QByteArray& bytes)
{
    m_bytes += bytes;
}

bool CLineSplitter::Take(QByteArray& line)
{
    const auto isEnd = [](char byte) { return byte == '\n' || byte == '\r'; };
    const auto* const begin = std::find_if_not(m_bytes.cbegin(), m_bytes.cend(), isEnd);
    const auto* const end = std::find_if(begin, m_bytes.cend(), isEnd);
    if (end == m_bytes.cend()) {
        if (m_bytes.size() > kMaxLineBytes)
            m_bytes.clear();
        return false;
    }
    line = QByteArray(begin, static_cast<int>(end - begin));
    m_bytes.remove(0, static_cast<int>(end - m_bytes.cbegin()));
    return true;
}
