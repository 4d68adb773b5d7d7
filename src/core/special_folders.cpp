// SPDX-License-Identifier: MIT
#include "core/special_folders.h"

#include "core/folders.h"

#include <QStandardPaths>

namespace raincast {

std::optional<QString> applicationDataRoot() {
    const QString root = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return EnsureFolder(root) ? std::optional(root) : std::nullopt;
}

std::optional<QString> folderInApplicationData(const QString& relative) {
    const auto root = applicationDataRoot();
    if (!root) {
        return std::nullopt;
    }
    const QString folder = *root + u'/' + relative;
    // A write into the folder fails if this did.
    static_cast<void>(EnsureFolder(folder));
    return folder;
}

std::optional<QString> applicationFolder() {
    return folderInApplicationData(QStringLiteral("Quorvane/Raincast_1"));
}

} // namespace raincast
