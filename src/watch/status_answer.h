// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QByteArray>

#include <optional>

namespace raincast {

// What a raincast-server says of itself at /status, as JSON. Bytes of any other form say nothing.

/// Whether it says that none of its providers can be reached.
[[nodiscard]] bool saysUnreachable(const QByteArray& status);

/// When its replay started, by Clock::real(); nothing if it does not say so.
[[nodiscard]] std::optional<FileTime> replayStartIn(const QByteArray& status);

} // namespace raincast
