// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <string>

namespace raincast {

/// Listens for TCP connections at an address (a name, or numbers of either IP version) and port, 0
/// for any free one. The descriptor never blocks. One that is not open, with errno set where the
/// system gives a reason, when the port is in use or the address is not this machine's.
[[nodiscard]] FileDescriptor listenAt(const std::string& address, int port);

/// The port a listening socket has.
[[nodiscard]] int portOf(const FileDescriptor& socket);

} // namespace raincast
