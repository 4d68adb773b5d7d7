// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <iosfwd>

namespace raincast {

/// What raincast-fetch ends with.
enum class FetchExit {
    allFrames = 0,
    noFrame = 1,
    wrongUsage = 2,
    someFrames = 3,
};

/// The streams that raincast-fetch writes to; borrowed.
struct FetchStreams {
    std::ostream& frames;  ///< a line per frame, oldest first: file, tab, time text
    std::ostream& report;  ///< status texts, URLs, what is wrong with the usage
    bool reportIsTerminal; ///< a progress bar may be drawn
};

/// raincast-fetch: `arguments` is the command line, the program's name first.
[[nodiscard]] FetchExit runFetch(const QStringList& arguments, const FetchStreams& streams);

} // namespace raincast
