// SPDX-License-Identifier: MIT
#include "tree/found_files.h"

#include <QDirIterator>
#include <QFileInfo>

namespace raincast {

namespace {

FoundFile found(const QFileInfo& file) {
    return {file.filePath(), {file.size(), file.lastModified().toMSecsSinceEpoch()}};
}

} // namespace

void findFiles(
    const QString& path, FoundFiles& files, const std::function<void(const QString&)>& entering
) {
    const QFileInfo start(path);
    if (start.isFile()) {
        files.push_back(found(start));
    }
    if (!start.isDir()) {
        return;
    }
    if (entering) {
        entering(path);
    }
    QStringList folders;
    QDirIterator entries(path, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        const QFileInfo entry = entries.nextFileInfo();
        if (entry.isFile()) {
            files.push_back(found(entry));
        } else if (!entry.isSymLink()) {
            folders += entry.filePath();
        }
    }
    for (const QString& folder : folders) {
        findFiles(folder, files, entering);
    }
}

} // namespace raincast
