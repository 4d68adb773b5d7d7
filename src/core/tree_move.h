// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

namespace raincast {

/// One move of a file or a folder tree, which remembers what it has done so that it can be undone.
/// The rules are MoveTree's (core/folders.h). File names are the system's bytes, whatever
/// encoding they are in.
class TreeMove {
public:
    using Path = std::filesystem::path;

    /// @param progress called after each file moved with their number so far; may be empty.
    explicit TreeMove(std::function<void(int)> progress) : m_progress(std::move(progress)) {}

    /// Moves source to destination. To be called once.
    [[nodiscard]] bool run(const Path& source, const Path& destination);

    /// Brings back every file that run() has moved, the last one first, and removes the folders
    /// that it had made. One that had replaced another stays at the destination as well: a file was
    /// there before, and some file is there afterwards. What cannot be brought back stays where it
    /// is.
    void undo();

private:
    struct Moved {
        Path from;
        Path to;
        bool replaced; ///< there was something of that name
    };

    bool moveContents(const Path& from, const Path& to);
    bool moveEntry(const Path& from, const Path& to);
    bool moveFile(const Path& from, const Path& to);
    bool makeFolder(const Path& folder);

    std::function<void(int)> m_progress;
    std::vector<Moved> m_moved;
    std::vector<Path> m_made;
};

} // namespace raincast
