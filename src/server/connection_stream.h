// SPDX-License-Identifier: MIT
#pragma once

#include "server/tree_server.h"

#include <httplib.h>

#include <array>

namespace raincast {

/// One client's connection as the HTTP library reads and writes it, held to the limits: of bytes
/// and time for each request, of time for each answer. Reading past one of them is the end of the
/// input, writing past one fails. Includes the HTTP library: for tree_server.cpp only.
class ConnectionStream : public httplib::Stream {
public:
    /// Both descriptors are borrowed. What waits ends when `stopFd` becomes readable.
    ConnectionStream(int socket, int stopFd, const TreeServer::Limits& limits);

    /// Waits for the first byte of the next request; false if none comes in time.
    [[nodiscard]] bool waitForRequest();

    /// Whether the present request was longer than allowed.
    [[nodiscard]] bool overlong() const { return m_overlong; }
    /// Whether an answer to the present request has begun.
    [[nodiscard]] bool answered() const { return m_answered; }

    [[nodiscard]] bool is_readable() const override { return true; }
    [[nodiscard]] bool is_writable() const override { return true; }
    ssize_t read(char* to, std::size_t size) override;
    ssize_t write(const char* from, std::size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    [[nodiscard]] int socket() const override { return m_socket; }

private:
    using Time = std::chrono::steady_clock::time_point;

    [[nodiscard]] bool waitFor(short events, Time deadline) const;
    [[nodiscard]] bool fill(Time deadline);

    int m_socket;
    int m_stopFd;
    const TreeServer::Limits& m_limits;
    std::array<char, 4096> m_buffer{};
    std::size_t m_begin = 0; ///< of what is in the buffer
    std::size_t m_end = 0;
    std::size_t m_bytesLeft = 0;
    bool m_overlong = false;
    bool m_answered = false;
    Time m_readDeadline;
    Time m_writeDeadline;
};

} // namespace raincast
