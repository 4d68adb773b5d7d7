// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <set>
#include <tl/expected.hpp>

namespace raincast {

/// Whether the path is a folder. If nothing is there, makes it and its missing parents first; false
/// when that fails, when a file is in the way, and for a path of fewer than two characters that
/// does not exist.
[[nodiscard]] bool EnsureFolder(const QString& path);

/// Makes a folder and its missing parents; one that is there is good. The reason of a failure has
/// no full stop: "Read-only file system".
[[nodiscard]] tl::expected<void, QString> makeFolder(const QString& path);

/// Whether a file name matches a pattern as a whole: '?' is any one character, '*' any run of them,
/// "*.*" every name. Letter case does not count.
[[nodiscard]] bool matchesFilePattern(const QString& name, const QString& pattern);

/// Deletes the folder's own files whose name matches the pattern (as matchesFilePattern) and is not
/// one of keepNames (here letter case counts). Sub-folders stay, with all that is in them; of a
/// symbolic link only the link itself goes. Does nothing when the folder is missing, has an empty
/// path or is itself a symbolic link. What cannot be deleted stays, silently.
void DeleteMatchingExcept(
    const QString& folder, const QString& pattern, const std::set<QString>& keepNames
);

/// Called after each file of a move with the number of files moved so far.
using MoveProgress = std::function<void(int filesMoved)>;

/// Moves a file, or a folder with everything in it, to a new path; existing files there are
/// replaced, existing folders are added to. Files are copied, then deleted: source and destination
/// may lie on different volumes.
///
/// Stops with false at the first file that cannot be copied. Every file is then complete at its old
/// place or at its new one, and there is no half file. Symbolic links are moved as links and never
/// followed, neither below the source nor below the destination; only the two paths themselves may
/// lead through some. Pipes, sockets and devices cannot be copied. Where source and destination
/// are the same place nothing is moved and the result is true; where one contains the other nothing
/// is moved and the result is false.
[[nodiscard]] bool
MoveTree(const QString& source, const QString& destination, const MoveProgress& progress = {});

/// As MoveTree, but a move that fails brings back what it had moved, as far as that is possible:
/// what was at the destination before stays there, but a file that was replaced stays replaced, by
/// a copy of the one that is back at the source.
[[nodiscard]] bool moveTreeOrBringBack(
    const QString& source, const QString& destination, const MoveProgress& progress = {}
);

} // namespace raincast
