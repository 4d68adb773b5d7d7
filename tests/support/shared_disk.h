// SPDX-License-Identifier: MIT
#pragma once

#include "tree/folder_watch.h"

#include <QFile>
#include <QString>

#include <sys/vfs.h>

#include <cstdint>

namespace raincast::test {

/// Whether a folder lies where the system does not tell of all changes.
inline bool isOnSharedDisk(const QString& folder) {
    struct statfs status {};
    return statfs(QFile::encodeName(folder).constData(), &status) != 0 ||
           FolderWatch::isShared(static_cast<std::uint32_t>(status.f_type));
}

} // namespace raincast::test
