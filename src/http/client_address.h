// SPDX-License-Identifier: MIT
#pragma once

#include <string>

struct sockaddr_storage;

namespace raincast {

/// Who is at an address, as a key that counts: one client of IP version 4 has one address, one of
/// version 6 has a network of addresses (the first 64 bits), except where neighbours on the same
/// wire share that network. Version 4 inside version 6 counts as version 4.
[[nodiscard]] std::string clientAt(const sockaddr_storage& address);

} // namespace raincast
