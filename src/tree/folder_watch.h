// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>

struct inotify_event;

namespace raincast {

/// What changes in folders, as the system tells it by inotify. What has a name that begins with a
/// dot is left out. For one thread.
class FolderWatch {
public:
    struct Changes {
        QStringList whole;   ///< files that were written to their end, moved to here or linked
        QStringList begun;   ///< files that somebody is writing
        QStringList folders; ///< new ones, which are not watched yet
        /// More has changed than is told: everything is to be looked at and watched anew.
        bool isLost = false;
    };

    FolderWatch();

    /// Watches a folder, without those in it.
    void add(const QString& folder);

    /// Watches nothing any more. What was not taken is lost.
    void clear();

    /// Whether all changes in the folders are told: false when one of them cannot be watched (a
    /// limit of the system, no rights, it has gone), or is on a file system that others may change
    /// without this system's knowledge.
    [[nodiscard]] bool isSure() const { return m_isSure; }

    /// What there is to take() makes it readable; negative when the system has no watches left.
    [[nodiscard]] int descriptor() const { return m_inotify.get(); }

    /// The changes since the last call. Does not wait.
    [[nodiscard]] Changes take();

    /// Whether a file system, by its number in statfs(2), may be changed by other machines or in
    /// ways that inotify does not tell.
    [[nodiscard]] static bool isShared(std::uint32_t fileSystem);

private:
    void note(const inotify_event& event, Changes& changes);

    FileDescriptor m_inotify;
    QHash<int, QString> m_folders; ///< by inotify's number of the watch
    bool m_isSure = true;
};

} // namespace raincast
