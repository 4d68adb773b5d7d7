// SPDX-License-Identifier: MIT
#include "tree/folder_watch.h"

#include <QFile>
#include <QFileInfo>

#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace raincast {

namespace {

constexpr std::uint32_t kWhole = IN_CLOSE_WRITE | IN_MOVED_TO;
constexpr std::uint32_t kBegun = IN_CREATE | IN_MODIFY;
// A folder that is moved takes its watch along, but not its path.
constexpr std::uint32_t kMoved = IN_MOVED_FROM | IN_MOVE_SELF;
constexpr std::uint32_t kLost = IN_Q_OVERFLOW | IN_UNMOUNT | IN_MOVE_SELF;
constexpr std::uint32_t kWanted = kWhole | kBegun | kMoved | IN_ONLYDIR | IN_EXCL_UNLINK;

// Linux names some of them in no header, or only newer versions do.
constexpr std::uint32_t kVirtualBox = 0x786F4256;
constexpr std::uint32_t kVmware = 0xBACBACBC;
constexpr std::uint32_t kLustre = 0x0BD00BD0;
constexpr std::uint32_t kGpfs = 0x47504653;
constexpr std::uint32_t kGfs2 = 0x01161970;
constexpr std::uint32_t kOrangeFs = 0x20030528;
constexpr std::uint32_t kShared[] = {
    NFS_SUPER_MAGIC,
    SMB_SUPER_MAGIC,
    CIFS_SUPER_MAGIC,
    SMB2_SUPER_MAGIC,
    FUSE_SUPER_MAGIC,
    V9FS_MAGIC,
    CEPH_SUPER_MAGIC,
    AFS_SUPER_MAGIC,
    AFS_FS_MAGIC,
    CODA_SUPER_MAGIC,
    OCFS2_SUPER_MAGIC,
    kVirtualBox,
    kVmware,
    kLustre,
    kGpfs,
    kGfs2,
    kOrangeFs,
};

bool isShared(const QByteArray& folder) {
    struct statfs status {};
    return statfs(folder.constData(), &status) != 0 ||
           FolderWatch::isShared(static_cast<std::uint32_t>(status.f_type));
}

void noteFolder(std::uint32_t what, const QString& path, FolderWatch::Changes& changes) {
    if ((what & IN_MOVED_FROM) != 0) {
        changes.isLost = true;
    } else if ((what & (IN_CREATE | IN_MOVED_TO)) != 0) {
        changes.folders += path;
    }
}

// Nobody writes a link, nor a file that has got a second name here.
bool isLinked(const QString& path) {
    struct stat status {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 &&
           (S_ISLNK(status.st_mode) || status.st_nlink > 1);
}

// Such a folder counts for nothing, here as in a full look.
bool isLinkToFolder(const QString& path) {
    const QFileInfo file(path);
    return file.isSymLink() && file.isDir();
}

void noteFile(std::uint32_t what, const QString& path, FolderWatch::Changes& changes) {
    if (isLinkToFolder(path)) {
        return;
    }
    if ((what & kWhole) != 0 || ((what & IN_CREATE) != 0 && isLinked(path))) {
        changes.whole += path;
    } else if ((what & kBegun) != 0) {
        changes.begun += path;
    }
}

} // namespace

FolderWatch::FolderWatch() {
    clear();
}

void FolderWatch::clear() {
    m_folders.clear();
    m_inotify = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    m_isSure = m_inotify.isOpen();
}

bool FolderWatch::isShared(std::uint32_t fileSystem) {
    return std::find(std::begin(kShared), std::end(kShared), fileSystem) != std::end(kShared);
}

void FolderWatch::add(const QString& folder) {
    const QByteArray name = QFile::encodeName(folder);
    const int watch = inotify_add_watch(m_inotify.get(), name.constData(), kWanted);
    if (watch >= 0) {
        m_folders.insert(watch, folder);
    }
    m_isSure = m_isSure && watch >= 0 && !raincast::isShared(name);
}

FolderWatch::Changes FolderWatch::take() {
    Changes changes;
    alignas(inotify_event) std::array<char, 16384> bytes{};
    ssize_t length = 0;
    while ((length = read(m_inotify.get(), bytes.data(), bytes.size())) > 0) {
        const char* const end = bytes.data() + length;
        for (const char* at = bytes.data(); at < end;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(at);
            note(*event, changes);
            at += sizeof(inotify_event) + event->len;
        }
    }
    return changes;
}

void FolderWatch::note(const inotify_event& event, Changes& changes) {
    if ((event.mask & kLost) != 0) {
        changes.isLost = true;
    } else if ((event.mask & IN_IGNORED) != 0) {
        m_folders.remove(event.wd);
    } else if (event.len > 0 && event.name[0] != '.' && m_folders.contains(event.wd)) {
        const QString path = m_folders[event.wd] + u'/' + QFile::decodeName(event.name);
        (event.mask & IN_ISDIR) != 0 ? noteFolder(event.mask, path, changes)
                                     : noteFile(event.mask, path, changes);
    }
}

} // namespace raincast
