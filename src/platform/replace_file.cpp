// SPDX-License-Identifier: MIT
#include "platform/replace_file.h"

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace raincast {

bool replaceFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    // The flush is not commit's to make: commit does not look at what became of its own, and would
    // put a cut file in place on a full disk.
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
           file.commit();
}

} // namespace raincast
