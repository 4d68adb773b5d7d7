// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

namespace raincast {

/// What the tree gives for a path: the file's bytes and what HTTP says about them.
struct TreeAnswer {
    QByteArray body;
    const char* type = "text/html; charset=utf-8"; ///< lives as long as the program
    int maxAgeSeconds = 0; ///< how long a cache may keep it; 0: it must ask again
};

/// Somebody who asks the tree for a path.
struct TreeAsker {
    /// Takes the answer, once: nothing where the tree has none. Called in any thread.
    std::function<void(std::optional<TreeAnswer>)> tell;
    /// False when the answer is of no use any more. Called in any thread.
    std::function<bool()> isWaiting;
};

} // namespace raincast
