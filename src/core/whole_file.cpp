// SPDX-License-Identifier: MIT
#include "core/whole_file.h"

#include "core/text.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace raincast {

namespace {

constexpr mode_t kReadAndWriteForAll = 0666; // less the user's mask
constexpr mode_t kRights = 07777;
constexpr qint64 kAbandonedSeconds = 3600;
constexpr int kMostLinks = 40; // as many as the system follows
constexpr std::size_t kPiece = std::size_t{16} * 1024;

// Calls until no signal interrupts.
template<typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

// Why something that is not a regular file cannot be read or replaced.
QString whyNoFile(const struct stat& status) {
    return S_ISDIR(status.st_mode) ? qt_error_string(EISDIR) : Text::tr("Not a regular file");
}

// Where a name leads, also when nothing is there; empty when it leads in a circle.
QByteArray linkTarget(const QByteArray& path) {
    std::filesystem::path target(path.toStdString());
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(target, error); ++links) {
        const auto next = std::filesystem::read_symlink(target, error);
        if (error || links == kMostLinks) {
            return {};
        }
        target = target.parent_path() / next;
    }
    return QByteArray::fromStdString(target.string());
}

// Whether the name still is that of the opened file.
bool hasName(const struct stat& opened, const char* name) {
    struct stat named {};
    return lstat(name, &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

// A new file is not truncated: ext4 would take that for a file being replaced, and flush it when
// it is closed, which costs ten times the writing.
bool makeEmpty(int descriptor, const struct stat& status) {
    return status.st_size == 0 || ftruncate(descriptor, 0) == 0;
}

// Waits for the disk. A file system that cannot wait has not failed.
bool sync(int descriptor) {
    return uninterrupted([&] { return fsync(descriptor); }) == 0 || errno == EINVAL ||
           errno == ENOTSUP || errno == EROFS;
}

bool syncFolderOf(const QByteArray& path) {
    const auto slash = path.lastIndexOf('/');
    const QByteArray folder = slash < 0 ? QByteArray(".") : path.first(slash + 1);
    const FileDescriptor opened(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder may be written to that cannot be read.
    return !opened.isOpen() || sync(opened.get());
}

} // namespace

bool WholeFile::fail(int error) {
    return fail(qt_error_string(error));
}

bool WholeFile::fail(const QString& reason) {
    m_failure = reason;
    discard();
    return false;
}

bool WholeFile::open(const QString& path) {
    discard();
    m_failure.clear();
    if (path.isEmpty()) {
        return fail(ENOENT);
    }
    m_path = linkTarget(QFile::encodeName(path));
    if (m_path.isEmpty()) {
        return fail(ELOOP);
    }
    static std::atomic<unsigned> count = 0;
    // The plain name first: a killed program's rest is found again under it. The other one where
    // the plain one is a live writer's, or no file.
    const QByteArray unique =
        '.' + QByteArray::number(getpid()) + '-' + QByteArray::number(count++);
    const bool claimed =
        claim(m_path + kTemporarySuffix) || claim(m_path + unique + kTemporarySuffix);
    return (claimed || fail(errno)) && takeAfter(m_path);
}

// The lock tells a live program's temporary file from a killed one's. Where the file system knows
// no locks, two that write the same file at once write into one temporary file.
bool WholeFile::claim(const QByteArray& name) {
    const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    FileDescriptor file(::open(name.constData(), flags, kReadAndWriteForAll));
    if (!file.isOpen()) {
        return false;
    }
    const bool taken = flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    struct stat status {};
    if (fstat(file.get(), &status) != 0) {
        return false;
    }
    // The writer before us may have renamed it between our opening and our locking.
    if (taken || !S_ISREG(status.st_mode) || !hasName(status, name.constData())) {
        errno = EBUSY;
        return false;
    }
    if (!makeEmpty(file.get(), status)) {
        return false;
    }
    m_file = std::move(file);
    m_temporary = name;
    return true;
}

// Gives the temporary file the owner and the rights of the file that it will replace.
bool WholeFile::takeAfter(const QByteArray& path) {
    struct stat old {};
    if (stat(path.constData(), &old) != 0) {
        return errno == ENOENT || fail(errno);
    }
    if (!S_ISREG(old.st_mode)) {
        return fail(whyNoFile(old));
    }
    if (faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) != 0) {
        return fail(errno);
    }
    // A user other than root can at most keep the group. Some file systems know neither owners nor
    // rights; then there is nothing to keep.
    struct stat mine {};
    if (fstat(m_file.get(), &mine) == 0 &&
        (mine.st_uid != old.st_uid || mine.st_gid != old.st_gid) &&
        fchown(m_file.get(), old.st_uid, old.st_gid) != 0) {
        static_cast<void>(fchown(m_file.get(), static_cast<uid_t>(-1), old.st_gid) == 0);
    }
    static_cast<void>(fchmod(m_file.get(), old.st_mode & kRights));
    return true;
}

bool WholeFile::write(QByteArrayView bytes) {
    while (m_failure.isEmpty() && !bytes.isEmpty()) {
        const ssize_t written = uninterrupted([&] {
            return ::write(m_file.get(), bytes.data(), static_cast<size_t>(bytes.size()));
        });
        if (written <= 0) {
            return fail(written < 0 ? errno : EIO);
        }
        bytes = bytes.sliced(written);
    }
    return m_failure.isEmpty();
}

bool WholeFile::finish() {
    if (m_lasting == Lasting::yes && !sync(m_file.get())) {
        return fail(errno);
    }
    // Renamed while still locked: no other writer takes the temporary file for a dead one's.
    // Network file systems report a full disk when the file is closed, hence the second name.
    const int second = fcntl(m_file.get(), F_DUPFD_CLOEXEC, 0);
    if (second < 0 || ::close(second) != 0 ||
        std::rename(m_temporary.constData(), m_path.constData()) != 0) {
        return fail(errno);
    }
    m_file.reset();
    return m_lasting == Lasting::no || syncFolderOf(m_path) || fail(errno);
}

WholeFile::Result WholeFile::commit() {
    const bool good = m_failure.isEmpty() && finish();
    const QString failure = std::exchange(m_failure, Text::tr("No file is open"));
    return good ? Result() : tl::make_unexpected(failure);
}

void WholeFile::discard() {
    if (m_file.isOpen()) {
        unlink(m_temporary.constData());
        m_file.reset();
    }
}

WholeFile::Result replaceFile(const QString& path, QByteArrayView bytes, Lasting lasting) {
    WholeFile file(lasting);
    file.open(path);
    file.write(bytes);
    return file.commit();
}

void removeAbandonedFiles(const QString& folder) {
    const QDateTime hourAgo = QDateTime::currentDateTimeUtc().addSecs(-kAbandonedSeconds);
    const QStringList pattern{u'*' + QLatin1String(WholeFile::kTemporarySuffix)};
    const auto hidden = QDir::Files | QDir::Hidden | QDir::NoSymLinks;
    for (const QFileInfo& file : QDir(folder).entryInfoList(pattern, hidden)) {
        if (file.lastModified() < hourAgo) {
            QFile::remove(file.filePath());
        }
    }
}

namespace {

using Kind = ReadFailure::Kind;

tl::unexpected<ReadFailure> notRead(int error) {
    const bool absent = error == ENOENT || error == ENOTDIR;
    return tl::make_unexpected(ReadFailure{
        absent ? Kind::absent : Kind::unreadable, qt_error_string(error)});
}

tl::unexpected<ReadFailure> largerThan(qint64 mostBytes) {
    return tl::make_unexpected(ReadFailure{
        Kind::tooLarge, Text::tr("Larger than %1 bytes").arg(mostBytes)});
}

// Fills `to`, up to the file's end. Returns the number of bytes read, empty when reading failed.
std::optional<qint64> readInto(int descriptor, char* to, qint64 most) {
    qint64 done = 0;
    while (done < most) {
        const ssize_t count = uninterrupted([&] {
            return ::read(descriptor, to + done, static_cast<std::size_t>(most - done));
        });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        done += count;
    }
    return done;
}

// Reads on to the end. The size is not the last word: the file may grow, and the system's own
// tables have the size 0.
tl::expected<QByteArray, ReadFailure> withRest(int descriptor, QByteArray bytes, qint64 mostBytes) {
    std::array<char, kPiece> piece;
    for (;;) {
        const auto count = readInto(descriptor, piece.data(), kPiece);
        if (!count) {
            return notRead(errno);
        }
        if (*count == 0) {
            return bytes;
        }
        const qint64 size = bytes.size() + *count;
        if (size > mostBytes) {
            return largerThan(mostBytes);
        }
        if (size > bytes.capacity()) {
            bytes.reserve(std::clamp(2 * bytes.size(), size, mostBytes));
        }
        bytes.append(piece.data(), *count);
    }
}

} // namespace

tl::expected<QByteArray, ReadFailure> readWhole(const QString& path, qint64 mostBytes) {
    const QByteArray name = QFile::encodeName(path);
    // A pipe without a writer is not waited for.
    constexpr int kHow = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const FileDescriptor file(::open(name.constData(), kHow));
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0) {
        return notRead(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::make_unexpected(ReadFailure{Kind::unreadable, whyNoFile(status)});
    }
    if (status.st_size > mostBytes) {
        return largerThan(mostBytes);
    }
    QByteArray bytes(status.st_size, Qt::Uninitialized);
    const auto count = readInto(file.get(), bytes.data(), bytes.size());
    if (!count) {
        return notRead(errno);
    }
    bytes.truncate(*count);
    return withRest(file.get(), std::move(bytes), mostBytes);
}

} // namespace raincast
