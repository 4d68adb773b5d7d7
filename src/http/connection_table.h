// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace raincast {

/// The limits of connections, in time and number.
struct ConnectionLimits {
    int connections = 64;                      ///< at a time
    int connectionsPerClient = 32;             ///< at a time, of one client (see clientAt())
    std::chrono::milliseconds idle{5'000};     ///< without a byte of a request
    std::chrono::milliseconds request{10'000}; ///< until a request is whole, waiting included
    std::chrono::milliseconds making{60'000};  ///< until there is an answer
    std::chrono::milliseconds answer{30'000};  ///< sending the answer, in all
    /// A request or answer that takes longer than this is slow: its connection can be displaced.
    std::chrono::milliseconds slow{2'000};
};

/// The connections of a server: the phase of each, its deadline, and which of them makes room for a
/// new one. Knows no sockets and no clock: connections are numbers, times are arguments.
///
/// A full server lets a newcomer in at the cost of a connection that is idle or else slow: the
/// longest so of the client that has most. No client loses a connection to one that has as many or
/// more. If all are busy, a client that has at least two more than the newcomer loses one. So a
/// client with many connections, busy or not, keeps no other client out.
class ConnectionTable {
public:
    using Time = std::chrono::steady_clock::time_point;
    enum class Phase {
        waiting, ///< for a request
        reading, ///< one of which some bytes have come
        making,  ///< its answer
        sending, ///< it
    };
    struct Admission {
        bool isLetIn = false;
        std::optional<int> displaced; ///< this one must go: call leave()
    };

    explicit ConnectionTable(const ConnectionLimits& limits) : m_limits(limits) {}

    /// A new connection, which waits for a request; it is in the table if it is let in.
    [[nodiscard]] Admission enter(int connection, const std::string& client, Time now);
    /// Unknown connections are ignored, here and below.
    void leave(int connection);
    void set(int connection, Phase phase, Time now);
    /// A byte has come.
    void noteInput(int connection, Time now);

    /// When the next one is overdue, if nothing happens.
    [[nodiscard]] std::optional<Time> nextDeadline() const;
    [[nodiscard]] std::vector<int> overdue(Time now) const;

    [[nodiscard]] std::optional<Phase> phaseOf(int connection) const;
    [[nodiscard]] int size() const { return static_cast<int>(m_connections.size()); }

private:
    struct Connection {
        std::string client;
        Phase phase;
        Time since;    ///< of this phase; a request is counted from when it could have begun
        Time deadline; ///< of this phase
    };
    enum class Use { idle, slow, busy };

    [[nodiscard]] Use useOf(const Connection& connection, Time now) const;
    [[nodiscard]] bool mayLose(const Connection& connection, Use use, const std::string& to) const;
    [[nodiscard]] std::optional<int> findRoom(const std::string& client, Time now) const;
    [[nodiscard]] int countOf(const std::string& client) const;

    ConnectionLimits m_limits;
    std::map<int, Connection> m_connections;
    std::map<std::string, int> m_counts; ///< of each client's connections
};

} // namespace raincast
