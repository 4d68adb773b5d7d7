// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <string>

namespace raincast {

/// One connection to a server at a loopback port, in raw bytes. Reading waits for at most a minute.
class RawClient {
public:
    /// From the address 127.0.0.`from`: each is another client to the server.
    explicit RawClient(int port, int from = 1) : m_socket(open(AF_INET)) {
        // The port is chosen by the peer, too: thousands of connections find one at once.
        const int yes = 1;
        setsockopt(m_socket.get(), IPPROTO_IP, IP_BIND_ADDRESS_NO_PORT, &yes, sizeof yes);
        const sockaddr_in self = loopback(from, 0);
        EXPECT_EQ(bind(m_socket.get(), generic(self), sizeof self), 0);
        const sockaddr_in peer = loopback(1, port);
        EXPECT_EQ(connect(m_socket.get(), generic(peer), sizeof peer), 0);
    }
    /// Whether this machine has the address ::1.
    static bool hasIpVersion6() {
        const sockaddr_in6 self = loopback6(0);
        return bind(open(AF_INET6).get(), generic(self), sizeof self) == 0;
    }
    /// To ::1.
    static RawClient overIpVersion6(int port) {
        const sockaddr_in6 peer = loopback6(port);
        FileDescriptor socket = open(AF_INET6);
        EXPECT_EQ(connect(socket.get(), generic(peer), sizeof peer), 0);
        return RawClient(std::move(socket));
    }

    void send(const std::string& bytes) const {
        ::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }
    void endSending() const { shutdown(m_socket.get(), SHUT_WR); }
    /// Lets closing be a reset, as when a program crashes.
    void resetOnClose() const {
        const linger hard{1, 0};
        setsockopt(m_socket.get(), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    }
    /// So that the system buffers little for this client; before it asks for anything.
    void bufferLittle() const {
        const int bytes = 4096;
        setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
    }

    /// Everything until the server closes the connection.
    [[nodiscard]] std::string readAll() const {
        std::string all;
        char piece[4096];
        for (ssize_t count = 0; (count = recv(m_socket.get(), piece, sizeof piece, 0)) > 0;) {
            all.append(piece, static_cast<std::size_t>(count));
        }
        return all;
    }

    /// Everything until a text has come.
    [[nodiscard]] std::string readUntil(const std::string& text) const {
        std::string all;
        char byte = 0;
        while (all.find(text) == std::string::npos && recv(m_socket.get(), &byte, 1, 0) == 1) {
            all += byte;
        }
        return all;
    }

    /// Waits until the server has closed its end, whatever it sends before. False after a minute.
    [[nodiscard]] bool isHungUpOn() const {
        char byte = 0;
        ssize_t count = 0;
        while ((count = recv(m_socket.get(), &byte, 1, 0)) > 0) {
        }
        return count == 0 || errno == ECONNRESET;
    }

    /// Waits until the server has reset the connection, without reading. False after a minute.
    [[nodiscard]] bool isReset() const {
        pollfd waited{m_socket.get(), 0, 0};
        return poll(&waited, 1, 60'000) == 1;
    }

private:
    explicit RawClient(FileDescriptor socket) : m_socket(std::move(socket)) {}

    static FileDescriptor open(int family) {
        FileDescriptor descriptor(socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const timeval limit{60, 0};
        setsockopt(descriptor.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        return descriptor;
    }

    static sockaddr_in loopback(int last, int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK - 1 + static_cast<std::uint32_t>(last));
        return address;
    }

    static sockaddr_in6 loopback6(int port) {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        address.sin6_port = htons(static_cast<std::uint16_t>(port));
        address.sin6_addr = in6addr_loopback;
        return address;
    }

    template<typename Address>
    static const sockaddr* generic(const Address& address) {
        return reinterpret_cast<const sockaddr*>(&address);
    }

    FileDescriptor m_socket;
};

} // namespace raincast
