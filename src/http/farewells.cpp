// SPDX-License-Identifier: MIT
#include "http/farewells.h"

#include <sys/socket.h>

#include <algorithm>

namespace raincast {

namespace {

constexpr std::size_t kMostBytes = 1024 * 1024;

} // namespace

void Farewells::add(FileDescriptor socket, Time now) {
    shutdown(socket.get(), SHUT_WR);
    Farewell farewell{std::move(socket), now + m_patience, kMostBytes};
    if (!isOver(farewell) && m_sockets.size() < m_most) {
        const int descriptor = farewell.socket.get();
        m_sockets.insert_or_assign(descriptor, std::move(farewell));
    }
}

bool Farewells::read(int socket) {
    const auto found = m_sockets.find(socket);
    if (found == m_sockets.end()) {
        return false;
    }
    if (isOver(found->second)) {
        m_sockets.erase(found);
    }
    return true;
}

// Reads what is there. It is over at the end of the stream, or when there is too much.
bool Farewells::isOver(Farewell& farewell) {
    char unread[4096];
    while (farewell.bytesLeft > 0) {
        const ssize_t count = recv(farewell.socket.get(), unread, sizeof unread, MSG_DONTWAIT);
        if (count <= 0) {
            return count == 0 || errno != EAGAIN;
        }
        farewell.bytesLeft -= std::min(farewell.bytesLeft, static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<Farewells::Time> Farewells::nextDeadline() const {
    std::optional<Time> next;
    for (const auto& [descriptor, farewell] : m_sockets) {
        next = std::min(next.value_or(farewell.deadline), farewell.deadline);
    }
    return next;
}

void Farewells::closeOverdue(Time now) {
    std::erase_if(m_sockets, [now](const auto& entry) { return entry.second.deadline <= now; });
}

} // namespace raincast
