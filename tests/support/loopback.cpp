// SPDX-License-Identifier: MIT
#include "support/loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>

namespace raincast {

namespace {

sockaddr_in loopbackAddress(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

QString loopbackHost(int port) {
    return QStringLiteral("127.0.0.1:") + QString::number(port);
}

void keepLoopbackFromProxies() {
    setenv("no_proxy", "127.0.0.1,localhost", 1);
}

int bindLoopback(int backlog, int& port) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopbackAddress(0);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(descriptor, generic, size) != 0 || getsockname(descriptor, generic, &size) != 0 ||
        (backlog >= 0 && listen(descriptor, backlog) != 0)) {
        ::close(descriptor);
        return -1;
    }
    port = ntohs(address.sin_port);
    return descriptor;
}

RefusingPort::RefusingPort() : m_socket(bindLoopback(-1, m_port)) {
    keepLoopbackFromProxies();
}

RefusingPort::~RefusingPort() {
    ::close(m_socket);
}

DeafPort::DeafPort() : m_socket(bindLoopback(0, m_port)) {
    keepLoopbackFromProxies();
    // A queue of length 0 takes one; the rest make sure of it without waiting.
    for (int i = 0; i < 4; ++i) {
        const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        const sockaddr_in address = loopbackAddress(m_port);
        static_cast<void>(
            connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address)
        );
        m_queue.push_back(client);
    }
}

DeafPort::~DeafPort() {
    for (const int client : m_queue) {
        ::close(client);
    }
    ::close(m_socket);
}

} // namespace raincast
