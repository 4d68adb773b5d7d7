// SPDX-License-Identifier: MIT
#include "http/listening_socket.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <memory>

namespace raincast {

namespace {

// As many as the system lets wait: one that finds no room is tried again by its client's system
// after a second, whoever it is.
constexpr int kBacklog = 4096;

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

AddressList addressesOf(const std::string& address, int port) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0) {
        found = nullptr;
    }
    return {found, freeaddrinfo};
}

FileDescriptor listenAt(const addrinfo& address) {
    FileDescriptor descriptor(
        socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)
    );
    // At a restart connections of the last run may still be ending. A second server at the same
    // port fails nevertheless.
    const int yes = 1;
    setsockopt(descriptor.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(descriptor.get(), address.ai_addr, address.ai_addrlen) != 0 ||
        listen(descriptor.get(), kBacklog) != 0) {
        return {};
    }
    return descriptor;
}

} // namespace

FileDescriptor listenAt(const std::string& address, int port) {
    const AddressList addresses = addressesOf(address, port);
    for (const addrinfo* at = addresses.get(); at != nullptr; at = at->ai_next) {
        if (FileDescriptor descriptor = listenAt(*at); descriptor.isOpen()) {
            return descriptor;
        }
    }
    return {};
}

int portOf(const FileDescriptor& socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        return 0;
    }
    if (address.ss_family == AF_INET6) {
        sockaddr_in6 six{};
        std::memcpy(&six, &address, sizeof six);
        return ntohs(six.sin6_port);
    }
    sockaddr_in four{};
    std::memcpy(&four, &address, sizeof four);
    return ntohs(four.sin_port);
}

} // namespace raincast
