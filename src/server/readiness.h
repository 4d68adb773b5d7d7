// SPDX-License-Identifier: MIT
#pragma once

#include "server/status_page.h"

#include <string_view>

namespace raincast {

/// Why a server should not be asked now, in words; empty when it should: it knows its frames, its
/// live weather is not silent, and it is not about to end.
[[nodiscard]] std::string_view whyNotReady(const ServerStatus& status, FileTime now);

/// The age of the newest frame of all that is wanted of live weather; nothing without any.
[[nodiscard]] std::optional<FileTime> newestAge(const LiveStatus& live, FileTime now);

} // namespace raincast
