// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace raincast {

/// A kind of file, told by its first bytes. What answers in a server's place, as the page of a
/// network that wants a log-in does, is of another kind.
struct FileKind {
    const char* name;       ///< for people: "GIF image"
    qsizetype tellingBytes; ///< so many of its first bytes tell
    /// Whether a file that begins with these bytes is of the kind. They are tellingBytes, or the
    /// whole file where it is shorter.
    bool (*isOne)(QByteArrayView first);
    /// Whether a body that broke off is none, though it may look like one.
    bool mustBeWhole;
};

/// Any file, an empty one too.
inline constexpr FileKind kAnyFile{"file", 0, [](QByteArrayView) { return true; }, false};

} // namespace raincast
