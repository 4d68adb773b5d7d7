// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <chrono>
#include <map>
#include <optional>

namespace raincast {

/// Sockets that will be sent nothing more. Each is kept for a moment, and what its client still
/// sends is thrown away: closing on bytes that nobody has read would reset the connection, and the
/// last answer might never be seen.
class Farewells {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// How many there may be at a time, more are closed at once; and how long each stays.
    Farewells(std::size_t most, std::chrono::milliseconds patience)
        : m_most(most), m_patience(patience) {}

    /// Takes a socket that does not block. Whoever watches it calls read() when it is readable.
    void add(FileDescriptor socket, Time now);
    /// False when the socket is none of these.
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
