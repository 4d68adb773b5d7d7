// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <chrono>
#include <map>
#include <optional>

namespace raincast {

/// Sockets whose last answer is sent. Each stays open for a moment, and further bytes from its
/// client are discarded: closing a socket with unread bytes resets the connection, and the client
/// might never see the answer.
class Farewells {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// The most at a time (more are closed at once), and how long each stays.
    Farewells(std::size_t most, std::chrono::milliseconds patience)
        : m_most(most), m_patience(patience) {}

    /// Takes a socket that does not block. Call read() when it is readable.
    void add(FileDescriptor socket, Time now);
    /// False for an unknown socket.
    bool read(int socket);

    [[nodiscard]] std::optional<Time> nextDeadline() const;
    void closeOverdue(Time now);

private:
    struct Farewell {
        FileDescriptor socket;
        Time deadline;
        std::size_t bytesLeft;
    };

    [[nodiscard]] static bool isOver(Farewell& farewell);

    std::size_t m_most;
    std::chrono::milliseconds m_patience;
    std::map<int, Farewell> m_sockets;
};

} // namespace raincast
