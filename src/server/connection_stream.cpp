// SPDX-License-Identifier: MIT
#include "server/connection_stream.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>

namespace raincast {

namespace {

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(0, left.count()));
}

} // namespace

ConnectionStream::ConnectionStream(int socket, int stopFd, const TreeServer::Limits& limits)
    : m_socket(socket), m_stopFd(stopFd), m_limits(limits) {}

bool ConnectionStream::waitFor(short events, Time deadline) const {
    pollfd waited[] = {{m_socket, events, 0}, {m_stopFd, POLLIN, 0}};
    for (;;) {
        const int count = poll(waited, 2, millisecondsUntil(deadline));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        return count > 0 && waited[1].revents == 0;
    }
}

bool ConnectionStream::fill(Time deadline) {
    if (!waitFor(POLLIN, deadline)) {
        return false;
    }
    const ssize_t count = recv(m_socket, m_buffer.data(), m_buffer.size(), MSG_DONTWAIT);
    m_begin = 0;
    m_end = count > 0 ? static_cast<std::size_t>(count) : 0;
    return count > 0;
}

bool ConnectionStream::waitForRequest() {
    if (m_begin == m_end && !fill(Clock::now() + m_limits.idle)) {
        return false;
    }
    m_bytesLeft = m_limits.requestBytes;
    m_overlong = false;
    m_answered = false;
    m_readDeadline = Clock::now() + m_limits.request;
    return true;
}

ssize_t ConnectionStream::read(char* to, std::size_t size) {
    if (m_bytesLeft == 0) {
        m_overlong = true;
        return -1;
    }
    if (m_begin == m_end && !fill(m_readDeadline)) {
        return -1;
    }
    const std::size_t count = std::min({size, m_end - m_begin, m_bytesLeft});
    std::memcpy(to, m_buffer.data() + m_begin, count);
    m_begin += count;
    m_bytesLeft -= count;
    return static_cast<ssize_t>(count);
}

ssize_t ConnectionStream::write(const char* from, std::size_t size) {
    if (!m_answered) {
        m_answered = true;
        m_writeDeadline = Clock::now() + m_limits.answer;
    }
    for (;;) {
        const ssize_t count = send(m_socket, from, size, MSG_DONTWAIT | MSG_NOSIGNAL);
        const bool wouldWait = count < 0 && (errno == EAGAIN || errno == EINTR);
        if (!wouldWait || !waitFor(POLLOUT, m_writeDeadline)) {
            return count;
        }
    }
}

// The peers' addresses are of no interest to what is answered.
void ConnectionStream::get_remote_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}

void ConnectionStream::get_local_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}

} // namespace raincast
