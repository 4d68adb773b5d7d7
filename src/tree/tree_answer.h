// SPDX-License-Identifier: MIT
#pragma once

#include "tree/tree_body.h"

#include <functional>
#include <optional>
#include <string_view>

namespace raincast {

/// How long a copy of an answer may be used without asking again.
enum class Keeping {
    forGood,  ///< it never changes
    aDay,     ///< it changes when the operator's data or the program do
    aMoment,  ///< half a minute: listings, warnings, and frames that may still change
    askAgain, ///< not at all, but it need not be sent again while it is the same
    never,    ///< not at all: it is of the moment when it was asked for
};

/// The answer of the tree to a path: the file's bytes and their HTTP headers.
struct TreeAnswer {
    TreeBody body;
    const char* type = "text/html; charset=utf-8"; ///< lives as long as the program
    Keeping keeping = Keeping::aMoment;
    /// Of a listing of frames: a word for why it may be empty or old, as in frame_source.h.
    std::string_view source{};
    int status = 200;
};

/// A request to the tree for a path.
struct TreeAsker {
    /// Takes the answer, once; nothing if the path is not in the tree. Called in any thread.
    std::function<void(std::optional<TreeAnswer>)> tell;
    /// False when the answer is of no use any more. Called in any thread.
    std::function<bool()> isWaiting;
};

} // namespace raincast
