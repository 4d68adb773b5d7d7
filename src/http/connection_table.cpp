// SPDX-License-Identifier: MIT
#include "http/connection_table.h"

#include <algorithm>
#include <tuple>

namespace raincast {

ConnectionTable::Admission
ConnectionTable::enter(int connection, const std::string& client, Time now) {
    Admission result{true, std::nullopt};
    if (size() >= m_limits.connections || countOf(client) >= m_limits.connectionsPerClient) {
        result.displaced = findRoom(client, now);
        result.isLetIn = result.displaced.has_value();
    }
    if (result.isLetIn) {
        m_connections[connection] = {client, Phase::waiting, now, now + m_limits.idle};
        ++m_counts[client];
    }
    return result;
}

void ConnectionTable::leave(int connection) {
    const auto found = m_connections.find(connection);
    if (found == m_connections.end()) {
        return;
    }
    const auto count = m_counts.find(found->second.client);
    if (--count->second == 0) {
        m_counts.erase(count);
    }
    m_connections.erase(found);
}

void ConnectionTable::set(int connection, Phase phase, Time now) {
    const auto found = m_connections.find(connection);
    if (found == m_connections.end()) {
        return;
    }
    Connection& at = found->second;
    switch (phase) {
    case Phase::waiting:
        at.deadline = now + m_limits.idle;
        break;
    case Phase::reading:
        // Not from now on: its first bytes may have come unseen with the request before it.
        now = at.since;
        at.deadline = at.since + m_limits.request;
        break;
    case Phase::making:
        at.deadline = now + m_limits.making;
        break;
    case Phase::sending:
        at.deadline = now + m_limits.answer;
        break;
    }
    at.phase = phase;
    at.since = now;
}

void ConnectionTable::noteInput(int connection, Time now) {
    if (phaseOf(connection) == Phase::waiting) {
        set(connection, Phase::reading, now);
    }
}

std::optional<ConnectionTable::Time> ConnectionTable::nextDeadline() const {
    std::optional<Time> next;
    for (const auto& [id, connection] : m_connections) {
        next = std::min(next.value_or(connection.deadline), connection.deadline);
    }
    return next;
}

std::vector<int> ConnectionTable::overdue(Time now) const {
    std::vector<int> result;
    for (const auto& [id, connection] : m_connections) {
        if (connection.deadline <= now) {
            result.push_back(id);
        }
    }
    return result;
}

std::optional<ConnectionTable::Phase> ConnectionTable::phaseOf(int connection) const {
    const auto found = m_connections.find(connection);
    return found == m_connections.end() ? std::nullopt : std::optional(found->second.phase);
}

ConnectionTable::Use ConnectionTable::useOf(const Connection& connection, Time now) const {
    switch (connection.phase) {
    case Phase::waiting:
        return Use::idle;
    case Phase::reading:
    case Phase::sending:
        return now - connection.since >= m_limits.slow ? Use::slow : Use::busy;
    case Phase::making:
        break; // that is the server's time
    }
    return Use::busy;
}

bool ConnectionTable::mayLose(const Connection& connection, Use use, const std::string& to) const {
    if (connection.client == to) {
        return use != Use::busy;
    }
    const int less = countOf(connection.client) - countOf(to);
    return countOf(to) < m_limits.connectionsPerClient && less >= (use == Use::busy ? 2 : 1);
}

std::optional<int> ConnectionTable::findRoom(const std::string& client, Time now) const {
    using Rank = std::tuple<Use, int, Time>; // the lowest goes
    std::optional<std::pair<Rank, int>> first;
    for (const auto& [id, connection] : m_connections) {
        const Use use = useOf(connection, now);
        const Rank rank{use, -countOf(connection.client), connection.since};
        if (mayLose(connection, use, client) && (!first || rank < first->first)) {
            first = {rank, id};
        }
    }
    return first ? std::optional(first->second) : std::nullopt;
}

int ConnectionTable::countOf(const std::string& client) const {
    const auto found = m_counts.find(client);
    return found == m_counts.end() ? 0 : found->second;
}

} // namespace raincast
