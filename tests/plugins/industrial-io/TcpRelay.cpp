// SPDX-License-Identifier: GPL-3.0-or-later
#include "TcpRelay.h"

#include <array>
#include <chrono>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kTurnMs = 20;

sockaddr_in addressOf(quint16 port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int connectTo(quint16 port)
{
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = addressOf(port);
    if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        return connection;
    close(connection);
    return -1;
}

} // namespace

bool isListening(quint16 port)
{
    const int connection = connectTo(port);
    if (connection >= 0)
        close(connection);
    return connection >= 0;
}

TcpRelay::TcpRelay(quint16 target)
    : m_target(target), m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = addressOf(0);
    socklen_t length = sizeof address;
    if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(m_listener, 16) != 0 ||
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        qFatal("No port for the relay");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
}

TcpRelay::~TcpRelay()
{
    m_isStopping = true;
    m_thread.join();
    close(m_listener);
    for (const auto& [client, server] : m_connections) {
        close(client);
        close(server);
    }
}

void TcpRelay::run()
{
    while (!m_isStopping) {
        if (m_isFrozen) {
            std::this_thread::sleep_for(std::chrono::milliseconds(kTurnMs));
            continue;
        }
        std::vector<pollfd> watched{{m_listener, POLLIN, 0}};
        for (const auto& [client, server] : m_connections) {
            watched.push_back({client, POLLIN, 0});
            watched.push_back({server, POLLIN, 0});
        }
        if (poll(watched.data(), watched.size(), kTurnMs) <= 0 || m_isFrozen)
            continue;
        for (std::size_t i = m_connections.size(); i-- > 0;) {
            const auto [client, server] = m_connections.at(i);
            const bool isOpen = (watched.at(2 * i + 1).revents == 0 || pass(client, server)) &&
                                (watched.at(2 * i + 2).revents == 0 || pass(server, client));
            if (isOpen)
                continue;
            close(client);
            close(server);
            m_connections.erase(m_connections.begin() + static_cast<std::ptrdiff_t>(i));
        }
        if (watched.front().revents != 0)
            accept();
    }
}

void TcpRelay::accept()
{
    const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0)
        return;
    const int server = connectTo(m_target);
    if (server < 0)
        close(client);
    else
        m_connections.emplace_back(client, server);
}

bool TcpRelay::pass(int from, int to)
{
    std::array<char, 65536> bytes{};
    const ssize_t count = recv(from, bytes.data(), bytes.size(), 0);
    if (count <= 0)
        return false;
    for (ssize_t sent = 0; sent < count;) {
        const ssize_t part = send(to, bytes.data() + sent, static_cast<size_t>(count - sent), MSG_NOSIGNAL);
        if (part <= 0)
            return false;
        sent += part;
    }
    return true;
}
