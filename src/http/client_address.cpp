// SPDX-License-Identifier: MIT
#include "http/client_address.h"

#include <netinet/in.h>

#include <cstring>

namespace raincast {

namespace {

constexpr std::size_t kNetworkBytes = 8;
constexpr std::size_t kMappedPrefix = 12;

std::string bytesOf(const void* bytes, std::size_t count) {
    return {static_cast<const char*>(bytes), count};
}

} // namespace

std::string clientAt(const sockaddr_storage& address) {
    if (address.ss_family == AF_INET) {
        sockaddr_in four{};
        std::memcpy(&four, &address, sizeof four);
        return bytesOf(&four.sin_addr, sizeof four.sin_addr);
    }
    if (address.ss_family != AF_INET6) {
        return {};
    }
    sockaddr_in6 six{};
    std::memcpy(&six, &address, sizeof six);
    const std::string bytes = bytesOf(&six.sin6_addr, sizeof six.sin6_addr);
    if (IN6_IS_ADDR_V4MAPPED(&six.sin6_addr) != 0) {
        return bytes.substr(kMappedPrefix);
    }
    const bool isNeighbour = IN6_IS_ADDR_LINKLOCAL(&six.sin6_addr) != 0;
    return isNeighbour ? bytes : bytes.substr(0, kNetworkBytes);
}

} // namespace raincast
