// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace raincast {

/// By these a file that has changed is told from one that has not.
struct FileState {
    qint64 bytes = -1;
    qint64 changed = 0; ///< milliseconds since 1970

    friend bool operator==(const FileState&, const FileState&) = default;
};

struct FoundFile {
    QString path;
    FileState state;
};

using FoundFiles = std::vector<FoundFile>;

/// Appends a file, or all files in a folder and the folders in it; nothing when there is neither.
/// `entering` is called with each folder before it is read. Leaves out names that begin with a dot,
/// and folders behind links other than the path itself. A link counts as the file that it leads to.
void findFiles(
    const QString& path, FoundFiles& files, const std::function<void(const QString&)>& entering = {}
);

} // namespace raincast
