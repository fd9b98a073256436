// SPDX-License-Identifier: MIT
#include "CLineSplitter.h"

QList<QByteArray> CLineSplitter::Feed(const QByteArray& bytes)
{
    QList<QByteArray> lines;
    int begin = 0;
    while (begin < bytes.size()) {
        const int end = bytes.indexOf('\n', begin);
        const int length = (end < 0 ? bytes.size() : end) - begin;
        if (!m_isSkipping && m_partial.size() + length <= kMaxLineLength)
            m_partial.append(bytes.constData() + begin, length);
        else
            Interrupt();
        if (end < 0)
            break;
        if (!m_isSkipping) {
            if (m_partial.endsWith('\r'))
                m_partial.chop(1);
            lines.append(m_partial);
        }
        m_partial.clear();
        m_isSkipping = false;
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
