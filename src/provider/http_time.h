// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QByteArray>

namespace raincast {

/// A time as HTTP headers write it, "Sun, 31 May 2026 20:09:00 GMT"; 0 for any other text.
[[nodiscard]] FileTime readHttpTime(const QByteArray& text);

} // namespace raincast
