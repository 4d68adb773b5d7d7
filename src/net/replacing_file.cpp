// SPDX-License-Identifier: MIT
#include "net/replacing_file.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace raincast {

namespace {

constexpr mode_t kReadAndWriteForAll = 0666; // less the user's umask

// Whether the name still is that of the opened file.
bool hasName(const struct stat& opened, const char* name) {
    struct stat named {};
    return lstat(name, &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

// A new file is not truncated: ext4 would take that for a file being replaced, and flush it when
// it is closed, which costs ten times the writing.
bool makeEmpty(int descriptor, const struct stat& status) {
    return S_ISREG(status.st_mode) && (status.st_size == 0 || ftruncate(descriptor, 0) == 0);
}

} // namespace

bool ReplacingFile::open(const QString& path) {
    discard();
    if (path.isEmpty()) {
        return false;
    }
    m_path = QFile::encodeName(path);
    // The plain name first: a killed program's rest is found again under it. The other one where
    // the plain one is a live program's, or no file.
    return claim(m_path + ".part") || claim(m_path + '.' + QByteArray::number(getpid()) + ".part");
}

// The lock tells a live program's temporary file from a killed one's. Where the file system knows
// no locks, two that write the same file at once write into one temporary file.
bool ReplacingFile::claim(const QByteArray& name) {
    const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const int descriptor = ::open(name.constData(), flags, kReadAndWriteForAll);
    if (descriptor < 0) {
        return false;
    }
    const bool taken = flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    // Whoever had it before may have renamed it between our opening and our locking.
    struct stat status {};
    if (taken || fstat(descriptor, &status) != 0 || !hasName(status, name.constData()) ||
        !makeEmpty(descriptor, status)) {
        ::close(descriptor);
        return false;
    }
    m_descriptor = descriptor;
    m_temporary = name;
    return true;
}

bool ReplacingFile::write(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(m_descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes = bytes.sliced(written);
    }
    return true;
}

bool ReplacingFile::commit() {
    // Renamed while still locked: no other program takes the temporary file for a dead one's.
    // Network file systems report a full disk when the file is closed, hence the second name.
    const int second = fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0);
    const bool written = second >= 0 && ::close(second) == 0;
    if (!written || std::rename(m_temporary.constData(), m_path.constData()) != 0) {
        discard();
        return false;
    }
    ::close(m_descriptor);
    m_descriptor = -1;
    return true;
}

void ReplacingFile::discard() {
    if (m_descriptor < 0) {
        return;
    }
    unlink(m_temporary.constData());
    ::close(m_descriptor);
    m_descriptor = -1;
}

} // namespace raincast
