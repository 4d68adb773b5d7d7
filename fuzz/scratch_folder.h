// SPDX-License-Identifier: MIT
#pragma once

#include "input.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace raincast {

/// A folder that a target fills anew for each input, with a file beside it that must stay.
class ScratchFolder {
public:
    ScratchFolder() { write(m_folder.filePath(QStringLiteral("beside")), "beside"); }

    void clear() const {
        QDir(path()).removeRecursively();
        require(QDir().mkpath(path()));
    }

    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("folder")); }

    /// Leaves out names that the system does not take, and those that lead out of the folder.
    void put(const QString& name, const QByteArray& bytes) const {
        const QStringList parts = name.split(u'/');
        if (!parts.contains(QStringLiteral("..")) && parts.size() < 8) {
            const QString file = path() + u'/' + name;
            QDir().mkpath(QFileInfo(file).path());
            write(file, bytes);
        }
    }

    [[nodiscard]] bool isBesideThere() const {
        return QFile::exists(m_folder.filePath(QStringLiteral("beside")));
    }

private:
    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(bytes);
        }
    }

    QTemporaryDir m_folder;
};

} // namespace raincast
