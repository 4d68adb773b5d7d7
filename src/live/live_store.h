// SPDX-License-Identifier: MIT
#pragma once

#include "core/folder_wish.h"
#include "provider/live_object.h"
#include "tree/server_log.h"

#include <QCache>
#include <QString>

#include <mutex>
#include <optional>
#include <vector>

namespace raincast {

/// Providers' objects on disk, each under its key and tag, whole or not at all. Where the disk
/// takes nothing the latest few stay in memory. For several threads at once. Several programs may
/// use one folder: what any of them wants stays.
class LiveStore {
public:
    /// The folder is made at need. Objects of the last so many hours are wanted.
    LiveStore(QString folder, int hours, ServerLog log);

    /// Objects before this time are of no use.
    [[nodiscard]] FileTime horizon() const { return horizon(m_hours); }

    /// The objects that are there and of use, without their bytes.
    [[nodiscard]] std::vector<LiveObject> load() const;
    /// Deletes what is of no use to any program that runs.
    void clean() const;

    /// Keeps an object with its bytes, in the place of another one with its key. The first of
    /// several failures in a row is logged.
    void keep(const LiveObject& object);

    /// Whether an object is there, as far as its file's name says.
    [[nodiscard]] bool has(const LiveObject& object) const;

    /// The bytes of an object, if it is there and what its key says.
    [[nodiscard]] std::optional<QByteArray> read(const LiveObject& object) const;

    void drop(const LiveObject& object);

private:
    [[nodiscard]] QString folderOf(const LiveName& name) const;
    [[nodiscard]] QString fileOf(const LiveObject& object) const;
    [[nodiscard]] static FileTime horizon(int hours);
    /// Calls `visit(object, path)` for each object that is there.
    template<typename Visit>
    void forEach(Visit visit) const;

    QString m_folder;
    int m_hours;
    FolderWish m_wish;
    ServerLog m_log;
    mutable std::mutex m_mutex; ///< of what follows
    mutable QCache<QString, QByteArray> m_latest;
    bool m_cannotWrite = false; ///< this is logged already
};

} // namespace raincast
