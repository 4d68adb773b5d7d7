// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>
#include <optional>
#include <string_view>

namespace raincast {

/// The answer of the tree to a path: the file's bytes and their HTTP headers.
struct TreeAnswer {
    QByteArray body;
    const char* type = "text/html; charset=utf-8"; ///< lives as long as the program
    int maxAgeSeconds = 0; ///< how long a cache may keep it; 0: it must ask again
    /// Of a listing of frames: a word for why it may be empty or old, as in frame_source.h.
    std::string_view source{};
};

/// A request to the tree for a path.
struct TreeAsker {
    /// Takes the answer, once; nothing if the path is not in the tree. Called in any thread.
    std::function<void(std::optional<TreeAnswer>)> tell;
    /// False when the answer is of no use any more. Called in any thread.
    std::function<bool()> isWaiting;
};

} // namespace raincast
