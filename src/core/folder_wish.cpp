// SPDX-License-Identifier: MIT
#include "core/folder_wish.h"

#include <QDir>
#include <QFile>

#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <optional>
#include <utility>

namespace raincast {

namespace {

constexpr int kMostTries = 5;
constexpr qint64 kMostBytes = 16;

/// The wish of a living program; nothing for a dead one's, which is removed.
std::optional<int> readWish(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    if (flock(file.handle(), LOCK_EX | LOCK_NB) == 0) {
        file.remove();
        return std::nullopt;
    }
    if (errno != EWOULDBLOCK) {
        return std::nullopt;
    }
    bool isNumber = false;
    const int wish = file.read(kMostBytes).trimmed().toInt(&isNumber);
    // Its program is about to write it: it may be any.
    return isNumber ? wish : std::numeric_limits<int>::max();
}

} // namespace

FolderWish::FolderWish(QString folder, int wish) : m_folder(std::move(folder)), m_wish(wish) {
    const bool isThere = QDir().mkpath(m_folder); // never for an empty name
    for (int i = 0; isThere && i < kMostTries && !publish(); ++i) {
    }
}

// False when another program took the file for a dead one's before it was locked.
bool FolderWish::publish() {
    m_file = std::make_unique<QTemporaryFile>(m_folder + QStringLiteral("/.wish-XXXXXX"));
    if (!m_file->open() || flock(m_file->handle(), LOCK_EX) != 0) {
        m_file.reset();
        return true;
    }
    m_file->write(QByteArray::number(m_wish) + '\n');
    m_file->flush();
    return QFile::exists(m_file->fileName());
}

int FolderWish::greatest() const {
    int greatest = m_wish;
    const QDir folder(m_folder);
    const auto notes = folder.entryList(
        {QStringLiteral(".wish-*")}, QDir::Files | QDir::Hidden | QDir::NoSymLinks
    );
    for (const QString& note : notes) {
        const QString path = folder.filePath(note);
        if (!m_file || path != QDir::cleanPath(m_file->fileName())) {
            greatest = std::max(greatest, readWish(path).value_or(m_wish));
        }
    }
    return greatest;
}

} // namespace raincast
