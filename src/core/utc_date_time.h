// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QDateTime>

namespace raincast {

/// The whole second of a time since 1970, in UTC, for Qt's formats.
[[nodiscard]] inline QDateTime utcDateTime(FileTime time) {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(toUnixSeconds(time)), Qt::UTC);
}

} // namespace raincast
