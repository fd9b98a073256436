// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

/// Passes connections on to another port of this computer, until it is frozen: then it holds them open and
/// passes nothing on, like a computer whose plug was pulled.
class TcpRelay
{
public:
    explicit TcpRelay(quint16 target);
    ~TcpRelay(); ///< closes all connections
    TcpRelay(const TcpRelay&) = delete;
    TcpRelay& operator=(const TcpRelay&) = delete;

    quint16 Port() const { return m_port; }
    void SetFrozen(bool isFrozen) { m_isFrozen = isFrozen; }

private:
    void run();
    void accept();
    bool pass(int from, int to);

    quint16 m_target;
    quint16 m_port = 0;
    int m_listener = -1;
    std::vector<std::pair<int, int>> m_connections;
    std::atomic<bool> m_isFrozen{false};
    std::atomic<bool> m_isStopping{false};
    std::thread m_thread;
};

/// Whether somebody listens at a port of this computer.
bool isListening(quint16 port);
