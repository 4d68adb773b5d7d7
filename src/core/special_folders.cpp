// SPDX-License-Identifier: MIT
#include "core/special_folders.h"

#include "core/folders.h"

#include <QStandardPaths>

namespace raincast {

QString applicationDataRoot() {
    const QString root = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return EnsureFolder(root) ? root : QString();
}

QString folderInApplicationData(const QString& relative) {
    const QString root = applicationDataRoot();
    if (root.isEmpty()) {
        return {};
    }
    QString folder = root + u'/' + relative;
    // Who writes there finds out if this failed.
    static_cast<void>(EnsureFolder(folder));
    return folder;
}

QString applicationFolder() {
    return folderInApplicationData(QStringLiteral("Quorvane/Raincast_1"));
}

} // namespace raincast
