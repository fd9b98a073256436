// SPDX-License-Identifier: GPL-3.0-or-later
#include "PtyBoard.h"

#include <QFile>

#include <algorithm>
#include <chrono>

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

using std::chrono::steady_clock;

PtyBoard::PtyBoard(const QString& linkPath) : m_path(linkPath)
{
    QFile::remove(m_path);
}

PtyBoard::~PtyBoard()
{
    Stop();
    Unplug();
}

bool PtyBoard::Plug()
{
    int master = -1;
    char name[256] = "";
    termios settings{};
    cfmakeraw(&settings);
    if (openpty(&master, &m_slave, name, &settings, nullptr) != 0)
        return false;
    // A board does not wait for its reader.
    fcntl(master, F_SETFL, O_NONBLOCK);
    m_master = master;
    return QFile::link(QString::fromLocal8Bit(name), m_path);
}

void PtyBoard::Unplug()
{
    QFile::remove(m_path);
    const int master = m_master.exchange(-1);
    if (master < 0)
        return;
    close(master);
    close(m_slave);
}

void PtyBoard::Start(std::function<PtyWrite()> next)
{
    Stop();
    m_isStopping = false;
    m_startNs =
        std::chrono::duration_cast<std::chrono::nanoseconds>(steady_clock::now().time_since_epoch()).count();
    m_thread = std::thread([this, next = std::move(next)] { run(next); });
}

void PtyBoard::Stop()
{
    m_isStopping = true;
    if (m_thread.joinable())
        m_thread.join();
}

void PtyBoard::run(const std::function<PtyWrite()>& next)
{
    const steady_clock::time_point start{std::chrono::nanoseconds(m_startNs)};
    while (!m_isStopping) {
        const PtyWrite write = next();
        if (write.atS < 0)
            return;
        const auto due = start + std::chrono::duration_cast<steady_clock::duration>(
                                     std::chrono::duration<double>(write.atS));
        std::this_thread::sleep_until(due);
        const double latenessS = std::chrono::duration<double>(steady_clock::now() - due).count();
        m_largestLatenessS = std::max<double>(m_largestLatenessS, latenessS);
        const int master = m_master;
        if (master >= 0 &&
            ::write(master, write.bytes.constData(), static_cast<size_t>(write.bytes.size())) < 0)
            continue; // nobody reads, or the port is away
    }
}
