// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_socket.h"

#include "persist/little_endian.h"
#include "position/navigator/navigator_waiting.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>

namespace raincast {

namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

bool sameUser(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == ::geteuid();
}

bool connectTo(int socket, const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // The last byte is that of the NUL.
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) {
        return false;
    }
    std::copy(path.begin(), path.end(), address.sun_path);
    const auto* const any = reinterpret_cast<const sockaddr*>(&address);
    return ::connect(socket, any, sizeof address) == 0 && sameUser(socket);
}

} // namespace

std::unique_ptr<NavigatorSocket>
NavigatorSocket::connect(const QByteArray& path, std::chrono::milliseconds answerLimit) {
    // Without SOCK_NONBLOCK connecting waits for a program that hangs and does not accept.
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket.isOpen() || !connectTo(socket.get(), path)) {
        return nullptr;
    }
    return std::unique_ptr<NavigatorSocket>(new NavigatorSocket(std::move(socket), answerLimit));
}

bool NavigatorSocket::exists() {
    if (!m_socket.isOpen()) {
        return false;
    }
    // The connection must not have ended, and must hold no bytes that were not asked for.
    char byte = 0;
    const auto there = ::recv(m_socket.get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    if (there >= 0 || (errno != EAGAIN && errno != EINTR)) {
        m_socket.reset();
    }
    return m_socket.isOpen();
}

std::optional<std::uint32_t> NavigatorSocket::send(const NavigatorPort::Message& message) {
    Answer answer{};
    if (!exists() || !write(message) || !read(answer)) {
        // An answer that comes later must not be taken for that of the next message.
        m_socket.reset();
        return std::nullopt;
    }
    return loadLittleEndian<std::uint32_t>(answer.data());
}

void NavigatorSocket::post(const NavigatorPort::Message& message) {
    if (exists() && !write(message)) {
        m_socket.reset();
    }
}

bool NavigatorSocket::write(const NavigatorPort::Message& message) {
    std::array<std::uint8_t, 12> bytes{};
    storeLittleEndian(message.message, bytes.data());
    storeLittleEndian(message.first, bytes.data() + 4);
    storeLittleEndian(message.second, bytes.data() + 8);
    // So few bytes fit as a whole, unless the other end has not read for thousands of messages.
    const auto sent = ::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(bytes.size());
}

bool NavigatorSocket::read(Answer& answer) {
    for (std::size_t have = 0; have < answer.size();) {
        const auto count = ::recv(m_socket.get(), answer.data() + have, answer.size() - have, 0);
        if (count > 0) {
            have += static_cast<std::size_t>(count);
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR) || !awaitBytes()) {
            return false;
        }
    }
    return true;
}

// Until bytes or the end have come; false when that takes too long.
bool NavigatorSocket::awaitBytes() {
    NavigatorWaiting waiting;
    const auto deadline = steady_clock::now() + m_answerLimit;
    pollfd wanted{m_socket.get(), POLLIN, 0};
    while (waiting.goesOn() && steady_clock::now() < deadline) {
        const auto left = ceil<milliseconds>(deadline - steady_clock::now());
        const auto slice = std::clamp(left, milliseconds{0}, NavigatorWaiting::kHookInterval);
        if (::poll(&wanted, 1, static_cast<int>(slice.count())) > 0) {
            return true;
        }
    }
    return false;
}

} // namespace raincast
