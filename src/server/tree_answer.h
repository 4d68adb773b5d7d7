// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace raincast {

/// What the tree gives for a path: the file's bytes and what HTTP says about them.
struct TreeAnswer {
    QByteArray body;
    const char* type = "text/html; charset=utf-8"; ///< lives as long as the program
    int maxAgeSeconds = 0; ///< how long a cache may keep it; 0: it must ask again
};

} // namespace raincast
