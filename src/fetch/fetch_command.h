// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <iosfwd>

namespace raincast {

/// The exit status of raincast-fetch.
enum class FetchExit {
    allFrames = 0,
    noFrame = 1,
    wrongUsage = 2, ///< kUsageErrorStatus
    someFrames = 3,
};

/// The streams that raincast-fetch writes to; borrowed.
struct FetchStreams {
    std::ostream& frames;  ///< a line per frame, oldest first: file, tab, time text
    std::ostream& report;  ///< status texts, URLs, usage errors
    bool reportIsTerminal; ///< a progress bar may be drawn
};

/// raincast-fetch: `arguments` is the command line, the program's name first.
[[nodiscard]] FetchExit runFetch(const QStringList& arguments, const FetchStreams& streams);

} // namespace raincast
