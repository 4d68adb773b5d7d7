// SPDX-License-Identifier: MIT
#include "core/program_paths.h"

#include <QFile>

namespace raincast {

QString programFolder() {
    // When a newer file has replaced the running one, the link ends in " (deleted)": its folder
    // still is the right one.
    return directoryPart(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")));
}

QString directoryPart(const QString& path) {
    const auto slash = path.lastIndexOf(u'/');
    return slash < 0 ? QString() : path.left(slash);
}

} // namespace raincast
