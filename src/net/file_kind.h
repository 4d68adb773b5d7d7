// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace raincast {

/// A kind of file, known by its first bytes. The page of a network that wants a log-in, which may
/// answer in a server's place, is of another kind.
struct FileKind {
    const char* name;       ///< for people: "GIF image"
    qsizetype tellingBytes; ///< how many of its first bytes show the kind
    /// Whether a file that begins with these bytes is of the kind: tellingBytes of them, or the
    /// whole file if it is shorter.
    bool (*isOne)(QByteArrayView first);
    /// Whether a body that broke off must be refused.
    bool mustBeWhole;
};

/// Any file, an empty one too.
inline constexpr FileKind kAnyFile{"file", 0, [](QByteArrayView) { return true; }, false};

} // namespace raincast
