// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QString>

namespace raincast {

/// When a frame was taken, for the user: "2019-05-19 5:44 PDT", on the local clock or in UTC. Empty
/// for no time.
[[nodiscard]] QString frameTimeText(FileTime taken, bool utc);

/// How long ago that was: "just now", "16 minutes ago", "2 hours 5 minutes ago", "3 days ago".
/// Empty for no time and for one of the future.
[[nodiscard]] QString frameAgeText(FileTime taken, FileTime now);

} // namespace raincast
