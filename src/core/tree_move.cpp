// SPDX-License-Identifier: MIT
#include "core/tree_move.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>

namespace raincast {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCopyBytes = std::size_t{64} * 1024;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, CloseFile>;

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

// A folder, not a link to one.
bool isRealFolder(const fs::path& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() == fs::file_type::directory;
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// Removes a folder that is empty; nothing else, so that a link or a file in its place stays.
void removeEmptyFolder(const fs::path& folder) {
    static_cast<void>(::rmdir(folder.c_str()));
}

bool isWithin(const fs::path& inner, const fs::path& outer) {
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first ==
           outer.end();
}

// Whether both are one name in one folder. (Two names of one file are not.)
bool isSameEntry(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return isThere(one) && one.filename() == other.filename() &&
           fs::equivalent(folderOf(one), folderOf(other), error);
}

bool copyBytes(const fs::path& from, const fs::path& to) {
    // "x": whatever has the name already, a link to somewhere else perhaps, is not written to.
    const FilePointer in(std::fopen(from.c_str(), "rbe"));
    FilePointer out(in != nullptr ? std::fopen(to.c_str(), "wbxe") : nullptr);
    if (out == nullptr) {
        return false;
    }
    std::array<char, kCopyBytes> buffer;
    bool written = true;
    std::size_t count = 0;
    while (written && (count = std::fread(buffer.data(), 1, buffer.size(), in.get())) > 0) {
        written = std::fwrite(buffer.data(), 1, count, out.get()) == count;
    }
    const bool read = std::ferror(in.get()) == 0;
    // A full disk may show only when the last buffer is written.
    const bool closed = std::fclose(out.release()) == 0;
    return written && read && closed;
}

bool copyEntry(const fs::path& from, const fs::path& to) {
    std::error_code error;
    const fs::file_type type = fs::symlink_status(from, error).type();
    if (type == fs::file_type::symlink) {
        fs::copy_symlink(from, to, error);
        return !error;
    }
    if (type != fs::file_type::regular || !copyBytes(from, to)) {
        return false;
    }
    // The date is worth keeping, but not every card can.
    const fs::file_time_type time = fs::last_write_time(from, error);
    if (!error) {
        fs::last_write_time(to, time, error);
    }
    return true;
}

// Copies a file or a link over whatever file or link is there. It gets its name when it is
// complete, so that a copy that fails half-way leaves both ends as they were.
bool copyOver(const fs::path& from, const fs::path& to) {
    const fs::path part = folderOf(to) / (".raincast-" + std::to_string(::getpid()) + ".part");
    std::error_code error;
    fs::remove(part, error);
    if (copyEntry(from, part)) {
        fs::rename(part, to, error);
        if (!error) {
            return true;
        }
    }
    fs::remove(part, error);
    return false;
}

std::vector<fs::path> sortedEntries(const fs::path& folder, std::error_code& error) {
    std::vector<fs::path> names;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        names.push_back(it->path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

bool TreeMove::run(const Path& source, const Path& destination) {
    if (destination.empty()) {
        return false;
    }
    std::error_code error;
    const Path from = fs::canonical(source, error);
    if (error || !fs::is_directory(from, error)) {
        return isSameEntry(source, destination) || moveFile(source, destination);
    }
    const Path to = fs::weakly_canonical(fs::absolute(destination, error), error);
    if (error) {
        return false;
    }
    if (from == to) {
        return true;
    }
    if (isWithin(to, from) || isWithin(from, to)) {
        return false;
    }
    fs::create_directories(to.parent_path(), error);
    if (!moveContents(from, to)) {
        return false;
    }
    // By the name that we were given: if that is a link, its folder stays for it to lead to.
    removeEmptyFolder(source);
    return true;
}

void TreeMove::undo() {
    std::error_code error;
    for (auto moved = m_moved.rbegin(); moved != m_moved.rend(); ++moved) {
        fs::create_directories(moved->from.parent_path(), error);
        if (copyOver(moved->to, moved->from) && !moved->replaced) {
            fs::remove(moved->to, error);
        }
    }
    std::for_each(m_made.rbegin(), m_made.rend(), removeEmptyFolder);
    m_moved.clear();
    m_made.clear();
}

bool TreeMove::moveContents(const Path& from, const Path& to) {
    std::error_code error;
    // The same folder under two names (mounted twice, say) must not be copied onto itself.
    if (!makeFolder(to) || fs::equivalent(from, to, error) || error) {
        return false;
    }
    const std::vector<Path> names = sortedEntries(from, error);
    return !error && std::all_of(names.begin(), names.end(), [&](const Path& name) {
        return moveEntry(from / name, to / name);
    });
}

bool TreeMove::moveEntry(const Path& from, const Path& to) {
    if (!isRealFolder(from)) {
        return moveFile(from, to);
    }
    if (!moveContents(from, to)) {
        return false;
    }
    removeEmptyFolder(from);
    return true;
}

bool TreeMove::moveFile(const Path& from, const Path& to) {
    const bool replaces = isThere(to);
    if (!copyOver(from, to)) {
        return false;
    }
    m_moved.push_back({from, to, replaces});
    std::error_code error;
    fs::remove(from, error);
    if (m_progress) {
        m_progress(static_cast<int>(m_moved.size()));
    }
    return true;
}

bool TreeMove::makeFolder(const Path& folder) {
    if (isThere(folder)) {
        return isRealFolder(folder);
    }
    std::error_code error;
    if (!fs::create_directory(folder, error)) {
        return false;
    }
    m_made.push_back(folder);
    return true;
}

} // namespace raincast
