// SPDX-License-Identifier: MIT
#include "CLineLink.h"

#include <QElapsedTimer>

CLineLink::Input CLineLink::Read(QByteArray& line, int waitMs)
{
    QElapsedTimer timer;
    timer.start();
    while (m_lines.isEmpty()) {
        const qint64 left = waitMs - timer.elapsed();
        if (left < 0)
            return Input::Nothing;
        QByteArray bytes;
        if (!ReadBytes(bytes, static_cast<int>(left)))
            return Input::Lost;
        if (bytes.isEmpty() && left == 0)
            return Input::Nothing;
        m_lines += m_splitter.Feed(bytes);
    }
    line = m_lines.takeFirst();
    return Input::Line;
}

void CLineLink::ForgetInput()
{
    m_splitter = {};
    m_lines.clear();
}
