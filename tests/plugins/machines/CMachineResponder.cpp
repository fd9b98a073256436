// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMachineResponder.h"

#include <QtGlobal>

#include <algorithm>
#include <chrono>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

CMachineResponder::CMachineResponder()
{
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0)
        qFatal("no pseudo-terminal");
    const char* const name = ptsname(m_master);
    m_port = QString::fromLocal8Bit(name);
    // Held open, so that the line does not hang up between two users; raw, so that it has no echo.
    m_slave = open(name, O_RDWR | O_NOCTTY);
    termios settings{};
    tcgetattr(m_slave, &settings);
    cfmakeraw(&settings);
    tcsetattr(m_slave, TCSANOW, &settings);
}

CMachineResponder::~CMachineResponder()
{
    end();
    close(m_slave);
    close(m_master);
}

void CMachineResponder::Run()
{
    m_thread = std::thread([this] { loop(); });
}

void CMachineResponder::end()
{
    m_isToEnd = true;
    if (m_thread.joinable())
        m_thread.join();
}

QList<QByteArray> CMachineResponder::Lines() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines;
}

int CMachineResponder::CountOf(const QByteArray& beginning) const
{
    const QList<QByteArray> lines = Lines();
    return static_cast<int>(std::count_if(lines.cbegin(), lines.cend(), [&beginning](const QByteArray& line) {
        return line.startsWith(beginning);
    }));
}

void CMachineResponder::ForgetLines()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.clear();
}

CMotionModel::Place CMachineResponder::Place() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_motion.At;
}

bool CMachineResponder::IsMoving() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_motion.IsMoving();
}

void CMachineResponder::send(const QByteArray& line)
{
    if (IsMute || IsBabbling)
        return;
    const QByteArray bytes = line + "\r\n";
    if (write(m_master, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size())
        qWarning("the pseudo-terminal is full");
}

// As a board with a sensor does, three hundred times a second; half of it comes from before the speed was
// set.
void CMachineResponder::babble(double elapsedS)
{
    constexpr double kPeriodS = 1.0 / 300;
    m_sinceBabbleS += elapsedS;
    if (!IsBabbling || m_sinceBabbleS < kPeriodS)
        return;
    m_sinceBabbleS = 0;
    const QByteArray bytes("\xFE\x00\x91 12.5,-3.25,40.75\r\n", 22);
    // What nobody reads is lost.
    if (write(m_master, bytes.constData(), static_cast<size_t>(bytes.size())) < 0)
        m_sinceBabbleS = -1;
}

void CMachineResponder::loop()
{
    using Clock = std::chrono::steady_clock;
    auto last = Clock::now();
    while (!m_isToEnd) {
        pollfd ready{m_master, POLLIN, 0};
        poll(&ready, 1, 2);
        char bytes[256];
        const ssize_t count = read(m_master, bytes, sizeof bytes);
        const auto now = Clock::now();
        const std::lock_guard<std::mutex> lock(m_mutex);
        const double elapsedS = std::chrono::duration<double>(now - last).count();
        m_motion.Advance(elapsedS);
        babble(elapsedS);
        last = now;
        OnTick();
        for (ssize_t i = 0; i < count; ++i)
            OnByte(bytes[i]);
    }
}
